#include "ui/cards/FanCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/NumberText.h"
#include "core/model/ThermalTexts.h"
#include "ui/cards/FactList.h"
#include "ui/cards/LevelSteps.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

namespace {

constexpr int thermalLevels = 4;
constexpr int tileColumns = 3;

// 0 ... 3; absent for "unknown", and for a text that was made in another language.
std::optional<int> thermalLevel(const std::string& state) {
  for (int level = 0; level < thermalLevels; ++level) {
    if (thermalStateText(level) == state) return level;
  }
  return std::nullopt;
}

std::string limitText(int level) {
  switch (level) {
    case 0:
      return QM_TR("性能不受限制");
    case 1:
      return QM_TR("风扇可能会加速");
    case 2:
      return QM_TR("性能可能会下降");
    default:
      return QM_TR("请让电脑降温");
  }
}

TextTone toneOf(int level) {
  if (level >= 3) return TextTone::danger;
  return level == 2 ? TextTone::warning : TextTone::primary;
}

}  // namespace

FanCard::FanCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent)
    : MonitorCard(MonitorComponentKind::fan, size, placement, services, parent),
      state_(new FigureLabel(TextRole::figure, TextTone::primary, this)),
      steps_(new LevelSteps(thermalLevels, LevelSteps::Shape::row, this)),
      note_(
          new Paragraph(form() == CardForm::compact ? TextRole::caption : TextRole::body, TextTone::secondary, this)) {
  name(state_, "state");
  name(note_, "note");
  content()->setSpacing(8);
  content()->addWidget(state_);
  content()->addWidget(steps_);
  content()->addWidget(note_);
  if (form() != CardForm::compact) buildFacts();
  content()->addStretch();
}

void FanCard::buildFacts() {
  facts_ = form() == CardForm::wide ? new FactList(this, tileColumns) : new FactList(this);
  temperature_ = facts_->add(QStringLiteral("card.fan.temperature"));
  speed_ = facts_->add(QStringLiteral("card.fan.speed"));
  content()->addWidget(facts_);
}

void FanCard::retranslate() {
  if (facts_ == nullptr) return;
  facts_->setLabel(temperature_, qtText(QM_TR("温度")));
  facts_->setLabel(speed_, qtText(QM_TR("风扇")));
}

void FanCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  const std::optional<int> level = thermalLevel(system.thermalState);
  const ThemeColors& colors = ThemeColors::of(palette());
  state_->setText(qtText(system.thermalState));
  state_->setTone(level ? toneOf(*level) : TextTone::secondary);
  const QColor color = !level || *level < 2 ? colors.tint(quillmeter::tint(kind()))
                       : *level == 2        ? colors.warning
                                            : colors.danger;
  steps_->setLevel(level ? std::optional(*level + 1) : std::nullopt, color);

  const QString temperature =
      system.sensorTemperature ? qtText(fixedDecimalText(*system.sensorTemperature, 1) + " °C") : QString();
  const QString speed = system.fanRPM ? qtText(std::to_string(*system.fanRPM) + " RPM") : QString();
  QString note = level ? qtText(limitText(*level)) : QString();
  if (facts_ != nullptr) {
    facts_->setKnownValue(temperature_, temperature);
    facts_->setKnownValue(speed_, speed);
  } else if (!temperature.isEmpty() || !speed.isEmpty()) {
    note = temperature.isEmpty() ? speed : temperature;
  }
  if (note_->text() != note) note_->setText(note);
}

}  // namespace quillmeter
