#include "ui/screentime/ApplicationIconView.h"

#include <QImageReader>
#include <QPainter>

#include "platform/ApplicationIcons.h"
#include "ui/screentime/ActivityText.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {
namespace {

constexpr int maximumEdge = 2'048;
constexpr int keptEdge = 128;

// Read at a small size at once: a file may hold far more pixels than are ever shown.
QIcon iconFromFile(const QString& path) {
  QImageReader reader(path);
  const QSize size = reader.size();
  if (!size.isValid() || size.width() > maximumEdge || size.height() > maximumEdge) return {};
  if (size.width() > keptEdge || size.height() > keptEdge) {
    reader.setScaledSize(size.scaled(keptEdge, keptEdge, Qt::KeepAspectRatio));
  }
  const QImage image = reader.read();
  return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
}

QIcon iconNamed(const std::string& name) {
  if (name.empty()) return {};
  return name.front() == '/' ? iconFromFile(qtText(name)) : QIcon::fromTheme(qtText(name));
}

QString initialOf(const ActivityApp& app) {
  const QString text = ActivityText::name(app);
  if (text.isEmpty()) return {};
  const qsizetype length = text.front().isHighSurrogate() && text.size() > 1 ? 2 : 1;
  return text.left(length).toUpper();
}

}  // namespace

ApplicationIconView::ApplicationIconView(ApplicationIcons& icons, int points, QWidget* parent)
    : QWidget(parent), icons_(icons), points_(points) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ApplicationIconView::setApplication(const ActivityApp& app, const std::string& tint) {
  if (app == app_ && tint == tint_) return;
  if (app.id != app_.id) icon_ = iconNamed(icons_.iconName(app.id));
  app_ = app;
  tint_ = tint;
  update();
}

void ApplicationIconView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!icon_.isNull()) {
    icon_.paint(&painter, rect());
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor tint = ThemeColors::of(palette()).tint(tint_);
  QColor ground = tint;
  ground.setAlphaF(0.14F);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  const double corner = points_ * 0.28;
  painter.drawRoundedRect(rect(), corner, corner);
  QFont font = fontFor(TextRole::strong);
  font.setPixelSize(points_ / 2);
  painter.setFont(font);
  painter.setPen(tint);
  painter.drawText(rect(), Qt::AlignCenter, initialOf(app_));
}

}  // namespace quillmeter
