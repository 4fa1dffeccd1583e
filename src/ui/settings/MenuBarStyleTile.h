#pragma once

#include <string>
#include <variant>

#include <QAbstractButton>
#include <QImage>

#include "menubar/CompactIconDrawing.h"
#include "menubar/MenuBarLabelRenderer.h"
#include "menubar/model/MenuBarStyle.h"

namespace quillmeter {

// What a style looks like on a light and on a dark panel. A value.
struct MenuBarStylePicture {
  using Drawing = std::variant<CompactIconDrawing, MenuBarLabel>;
  Drawing light;
  Drawing dark;
  friend bool operator==(const MenuBarStylePicture&, const MenuBarStylePicture&) = default;
};

// One style to choose: its picture on both panels, its name below. A radio button to keyboard and accessibility. Paints
// its icons only when their drawing changes.
class MenuBarStyleTile final : public QAbstractButton {
 public:
  explicit MenuBarStyleTile(MenuBarStyle style, QWidget* parent = nullptr);

  MenuBarStyle style() const { return style_; }
  void show(const MenuBarStylePicture& picture);
  using QWidget::show;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void paintPanels(QPainter& painter, const QRectF& area) const;

  const MenuBarStyle style_;
  MenuBarStylePicture picture_;
  QImage light_;
  QImage dark_;
};

}  // namespace quillmeter
