#include "ui/cards/BatteryCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "core/model/NumberText.h"
#include "menubar/CompactStatusRenderer.h"
#include "ui/cards/FactList.h"
#include "ui/cards/GaugeBody.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter {

namespace {

constexpr int markPoints = 16;

QString capacityText(const SystemSnapshot& system) {
  if (!system.batteryFullChargeCapacity) return {};
  const std::string full = std::to_string(*system.batteryFullChargeCapacity);
  if (!system.batteryDesignCapacity) return qtText(full + " mAh");
  return qtText(full + " / " + std::to_string(*system.batteryDesignCapacity) + " mAh");
}

}  // namespace

BatteryCard::BatteryCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services,
                         QWidget* parent)
    : MonitorCard(MonitorComponentKind::battery, size, placement, services, parent),
      body_(new GaugeBody(form(), GaugeBody::Graphic::level, objectName(), this)),
      power_(new SymbolView("bolt.fill", "", markPoints, this)) {
  name(power_, "power");
  body_->setMark(power_);
  power_->hide();
  content()->addWidget(body_);
  if (FactList* facts = body_->facts()) {
    time_ = facts->add(QStringLiteral("card.battery.time"));
    health_ = facts->add(QStringLiteral("card.battery.health"));
    cycles_ = facts->add(QStringLiteral("card.battery.cycles"));
    temperature_ = facts->add(QStringLiteral("card.battery.temperature"));
    capacity_ = facts->add(QStringLiteral("card.battery.capacity"));
  }
}

void BatteryCard::retranslate() {
  body_->setSubject(qtText(title(kind())));
  if (FactList* facts = body_->facts()) {
    facts->setLabel(time_, qtText(QM_TR("时间")));
    facts->setLabel(health_, qtText(QM_TR("健康度")));
    facts->setLabel(cycles_, qtText(QM_TR("循环次数")));
    facts->setLabel(temperature_, qtText(QM_TR("温度")));
    facts->setLabel(capacity_, qtText(QM_TR("满充容量")));
  }
}

void BatteryCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  const bool hasBattery = system.batteryLevel || system.batteryState != "—";
  const bool isDark = ThemeColors::of(palette()).dark;
  const std::string tint = hexText(CompactStatusRenderer::batteryColor(system.batteryLevel, isDark));
  body_->setTint(tint);
  body_->setMeasurable(hasBattery);
  body_->setFraction(system.batteryLevel, system.batteryLevel ? qtText(MetricFormatter::percent(*system.batteryLevel))
                                                              : QStringLiteral("—"));
  power_->setVisible(system.batteryIsCharging || system.batteryACPowered);
  power_->setSymbol(system.batteryIsCharging ? "bolt.fill" : "powerplug.fill");
  power_->setTint(tint);
  const bool showsTime = form() == CardForm::compact && system.batteryTime != "—";
  body_->setNote(qtText(!hasBattery || showsTime ? system.batteryTime : system.batteryState));
  showFacts();
}

void BatteryCard::showFacts() {
  FactList* facts = body_->facts();
  if (facts == nullptr) return;
  const SystemSnapshot& system = services().store.system();
  const bool hasBattery = system.batteryLevel || system.batteryState != "—";
  facts->setKnownValue(time_, hasBattery ? qtText(system.batteryTime) : QString());
  facts->setKnownValue(health_,
                       system.batteryHealth ? qtText(fixedDecimalText(*system.batteryHealth, 0) + "%") : QString());
  facts->setKnownValue(cycles_, qtText(system.batteryCycles));
  facts->setKnownValue(temperature_, qtText(system.batteryTemperature));
  facts->setKnownValue(capacity_, form() == CardForm::wide ? capacityText(system) : QString());
}

}  // namespace quillmeter
