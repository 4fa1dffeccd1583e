#include "ui/cards/LimitMeter.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/model/ClockTexts.h"
#include "core/model/MetricFormatter.h"
#include "core/model/UnitInterval.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/LevelBar.h"
#include "ui/widgets/RingGauge.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr double warningFraction = 0.80;
constexpr double dangerFraction = 0.95;
constexpr int ringDiameter = 92;

TextTone toneOf(double fraction) {
  if (fraction >= dangerFraction) return TextTone::danger;
  return fraction >= warningFraction ? TextTone::warning : TextTone::primary;
}

std::string tintOf(double fraction, const std::string& usual, const QPalette& palette) {
  const ThemeColors& colors = ThemeColors::of(palette);
  if (fraction < warningFraction) return usual;
  return hexText(fraction >= dangerFraction ? colors.danger : colors.warning);
}

// "14:30", with the day before it where that is another one.
std::string momentText(Date date, Date now, const Calendar& calendar) {
  const std::string clock = clockText(date, calendar);
  if (calendar.startOfDay(date) == calendar.startOfDay(now)) return clock;
  return monthDayText(date, calendar) + " " + clock;
}

}  // namespace

LimitMeter::LimitMeter(CardForm form, std::string tint, const QString& objectName, QWidget* parent)
    : QWidget(parent),
      form_(form),
      tint_(std::move(tint)),
      title_(new FigureLabel(TextRole::body, TextTone::secondary, this)),
      reset_(new FigureLabel(form == CardForm::wide ? TextRole::strong : TextRole::caption,
                             form == CardForm::wide ? TextTone::primary : TextTone::secondary, this)) {
  reset_->setObjectName(objectName + QStringLiteral(".reset"));
  if (form == CardForm::wide) {
    buildRing(objectName);
  } else {
    buildLine(form, objectName);
  }
}

void LimitMeter::buildRing(const QString& objectName) {
  ring_ = new RingGauge(this);
  ring_->setDiameter(ringDiameter);
  ring_->setTint(tint_);
  ring_->setObjectName(objectName + QStringLiteral(".used"));
  caption_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  row->addWidget(ring_, 0, Qt::AlignVCenter);
  auto* column = new QVBoxLayout;
  column->setSpacing(1);
  column->addStretch();
  column->addWidget(title_);
  column->addSpacing(5);
  column->addWidget(caption_);
  clock_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  column->addWidget(reset_);
  column->addWidget(clock_);
  column->addStretch();
  row->addLayout(column, 1);
}

void LimitMeter::buildLine(CardForm form, const QString& objectName) {
  figure_ = new FigureLabel(TextRole::strong, TextTone::primary, this);
  figure_->setObjectName(objectName + QStringLiteral(".used"));
  figure_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  level_ = new LevelBar(this);
  level_->setTint(tint_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(form == CardForm::compact ? 4 : 6);
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  row->addWidget(title_);
  row->addWidget(figure_, 1);
  column->addLayout(row);
  column->addWidget(level_);
  column->addWidget(reset_);
}

void LimitMeter::setTitle(const QString& title) {
  title_->setText(title);
}

QString LimitMeter::resetText(std::optional<Date> resetAt, Date now, const Calendar& calendar) const {
  if (!resetAt) return QStringLiteral("—");
  const std::optional<std::string> left = timeLeftText(*resetAt, now);
  if (form_ == CardForm::wide) return qtText(left ? *left : QM_TR("已重置"));
  if (!left) return qtText(QM_TR("窗口已重置"));
  if (form_ == CardForm::compact) return qtText(L10n::format(QM_TR("%@ 后重置"), {*left}));
  return qtText(L10n::format(QM_TR("%@ 后重置 · %@"), {*left, momentText(*resetAt, now, calendar)}));
}

void LimitMeter::show(std::optional<double> used, std::optional<Date> resetAt, Date now, const Calendar& calendar) {
  // What was used before the window began anew says nothing of the new one.
  const bool isOver = used && resetAt && *resetAt <= now;
  const double fraction = clampToUnit(used.value_or(0));
  const std::optional<double> shown = used && !isOver ? std::optional(fraction) : std::nullopt;
  const QString text = shown ? qtText(MetricFormatter::percent(fraction)) : QStringLiteral("—");
  const std::string tint = isOver ? tint_ : tintOf(fraction, tint_, palette());
  reset_->setText(used ? resetText(resetAt, now, calendar) : qtText(QM_TR("暂无记录")));
  if (ring_ != nullptr) {
    ring_->setTint(tint);
    ring_->setFraction(shown);
    ring_->setText(text);
    WidgetAccessibility::setName(*ring_, title_->text());
    caption_->setText(shown && resetAt ? qtText(QM_TR("距重置")) : QString());
    clock_->setText(used && resetAt ? qtText(momentText(*resetAt, now, calendar)) : QString());
    return;
  }
  level_->setTint(tint);
  level_->setFraction(shown);
  figure_->setTone(isOver ? TextTone::tertiary : toneOf(fraction));
  figure_->setText(text);
  WidgetAccessibility::setName(*figure_, QStringLiteral("%1 %2").arg(title_->text(), text));
}

}  // namespace quillmeter
