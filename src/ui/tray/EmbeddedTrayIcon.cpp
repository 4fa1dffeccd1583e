#include "ui/tray/EmbeddedTrayIcon.h"

#include <algorithm>
#include <cmath>

#include <QCursor>
#include <QEvent>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include "ui/theme/QtText.h"
#include "ui/tray/ContextMenu.h"

namespace quillmeter {

// Paints the icon as it is now, in the size that is asked for, and keeps the image for the next exposure.
class EmbeddedTrayIcon::Engine final : public QIconEngine {
 public:
  explicit Engine(TrayContent& content) : content_(content) {}

  void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode, QIcon::State) override {
    const double ratio = painter->device()->devicePixelRatio();
    const int edge = std::min(rectangle.width(), rectangle.height());
    const QRect square(rectangle.x() + (rectangle.width() - edge) / 2, rectangle.y() + (rectangle.height() - edge) / 2,
                       edge, edge);
    painter->drawImage(square, image(static_cast<int>(std::lround(edge * ratio))));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
    return QPixmap::fromImage(image(std::min(size.width(), size.height())));
  }
  QIconEngine* clone() const override { return new Engine(*this); }
  bool isNull() override { return false; }

 private:
  const QImage& image(int pixels) {
    if (image_.width() != pixels) image_ = content_.iconImage(pixels);
    return image_;
  }

  TrayContent& content_;
  QImage image_;
};

EmbeddedTrayIcon::EmbeddedTrayIcon(TrayContent& content) : content_(content) {
  icon_.installEventFilter(this);
  connect(&icon_, &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
  iconChanged();
  icon_.show();
}

void EmbeddedTrayIcon::iconChanged() {
  icon_.setIcon(QIcon(new Engine(content_)));
}

// The tray's window passes the event on before it shows its tooltip.
bool EmbeddedTrayIcon::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ToolTip) icon_.setToolTip(qtText(content_.tooltipText()));
  return QObject::eventFilter(watched, event);
}

void EmbeddedTrayIcon::activated(QSystemTrayIcon::ActivationReason reason) {
  if (reason == QSystemTrayIcon::Trigger) content_.activated(icon_.geometry());
  if (reason == QSystemTrayIcon::MiddleClick) content_.secondaryActivated();
  if (reason == QSystemTrayIcon::Context) showContextMenu(content_, QCursor::pos());
}

}  // namespace quillmeter
