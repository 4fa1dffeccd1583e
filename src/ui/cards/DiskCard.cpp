#include "ui/cards/DiskCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "ui/cards/FactList.h"
#include "ui/cards/GaugeBody.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

DiskCard::DiskCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent)
    : MonitorCard(MonitorComponentKind::disk, size, placement, services, parent),
      body_(new GaugeBody(form(), GaugeBody::Graphic::level, objectName(), this)) {
  body_->setTint(std::string(quillmeter::tint(kind())));
  content()->addWidget(body_);
  if (FactList* facts = body_->facts()) {
    used_ = facts->add(QStringLiteral("card.disk.used"));
    free_ = facts->add(QStringLiteral("card.disk.free"));
    total_ = facts->add(QStringLiteral("card.disk.total"));
  }
}

void DiskCard::retranslate() {
  body_->setSubject(qtText(title(kind())));
  if (FactList* facts = body_->facts()) {
    facts->setLabel(used_, qtText(QM_TR("已用")));
    facts->setLabel(free_, qtText(QM_TR("可用")));
    facts->setLabel(total_, qtText(QM_TR("总量")));
  }
}

void DiskCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  const bool isKnown = system.diskTotal != "—";
  body_->setFraction(isKnown ? std::optional(system.diskUsage) : std::nullopt,
                     isKnown ? qtText(MetricFormatter::percent(system.diskUsage)) : QStringLiteral("—"));
  if (FactList* facts = body_->facts()) {
    facts->setValue(used_, qtText(system.diskUsed));
    facts->setValue(free_, qtText(system.diskFree));
    facts->setValue(total_, qtText(system.diskTotal));
  } else {
    body_->setNote(isKnown ? qtText(L10n::format(QM_TR("可用 %@"), {system.diskFree})) : QString());
  }
}

}  // namespace quillmeter
