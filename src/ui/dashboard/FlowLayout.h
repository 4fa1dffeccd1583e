#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace quillmeter {

// Widgets side by side at their own size, going on in the next line where there is no room. Owns its items.
class FlowLayout final : public QLayout {
 public:
  explicit FlowLayout(int gap) : gap_(gap) {}
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return flow(QRect(0, 0, width, 0), false); }
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& area) override;

 private:
  int flow(const QRect& area, bool places) const;

  const int gap_;
  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace quillmeter
