#include "ui/settings/PathLabel.h"

#include <QtGui/QPainter>

#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

constexpr int leastWidth = 24;

QString withShortHome(const std::filesystem::path& path, const std::filesystem::path& home) {
  const std::string& text = path.native();
  const std::string& start = home.native();
  const bool isBelow =
      start.size() > 1 && text.starts_with(start) && (text.size() == start.size() || text[start.size()] == '/');
  return isBelow ? "~" + qtText(std::string_view(text).substr(start.size())) : qtText(text);
}

}  // namespace

PathLabel::PathLabel(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PathLabel::setPath(const std::filesystem::path& path, const std::filesystem::path& home) {
  const QString whole = qtText(path.native());
  const QString text = withShortHome(path, home);
  if (text == text_ && whole == accessibleName()) return;
  text_ = text;
  setAccessibleName(whole);
  setToolTip(whole);
  updateGeometry();
  update();
}

void PathLabel::setIsExpected(bool isExpected) {
  if (isExpected_ == isExpected) return;
  isExpected_ = isExpected;
  update();
}

QSize PathLabel::sizeHint() const {
  const QFontMetrics metrics(fontFor(TextRole::caption));
  return {metrics.horizontalAdvance(text_) + 1, metrics.height()};
}

QSize PathLabel::minimumSizeHint() const {
  return {std::min(leastWidth, sizeHint().width()), sizeHint().height()};
}

void PathLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.setFont(fontFor(TextRole::caption));
  painter.setPen(isExpected_ ? colors.tertiaryText : colors.secondaryText);
  const QString shown = painter.fontMetrics().elidedText(text_, Qt::ElideMiddle, width());
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, shown);
}

}  // namespace quillmeter
