#include "ui/cards/CpuCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "ui/cards/FactList.h"
#include "ui/cards/GaugeBody.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

CpuCard::CpuCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent)
    : MonitorCard(MonitorComponentKind::cpu, size, placement, services, parent),
      body_(new GaugeBody(form(), GaugeBody::Graphic::history, objectName(), this)) {
  body_->setTint(std::string(quillmeter::tint(kind())));
  content()->addWidget(body_);
  if (FactList* facts = body_->facts()) {
    user_ = facts->add(QStringLiteral("card.cpu.user"));
    system_ = facts->add(QStringLiteral("card.cpu.system"));
  }
}

void CpuCard::retranslate() {
  body_->setSubject(qtText(title(kind())));
  if (FactList* facts = body_->facts()) {
    facts->setLabel(user_, qtText(QM_TR("用户")));
    facts->setLabel(system_, qtText(QM_TR("系统")));
  }
}

void CpuCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  body_->setFraction(system.cpuUsage, qtText(MetricFormatter::percent(system.cpuUsage)));
  body_->setHistory(services().store.cpuHistory().values());
  if (FactList* facts = body_->facts()) {
    facts->setValue(user_, qtText(system.cpuUser));
    facts->setValue(system_, qtText(system.cpuSystem));
  }
}

}  // namespace quillmeter
