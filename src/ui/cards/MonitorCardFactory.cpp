#include "ui/cards/AgentLimitsCard.h"
#include "ui/cards/AgentTokensCard.h"
#include "ui/cards/AudioCard.h"
#include "ui/cards/BatteryCard.h"
#include "ui/cards/CpuCard.h"
#include "ui/cards/DiskCard.h"
#include "ui/cards/FanCard.h"
#include "ui/cards/MemoryCard.h"
#include "ui/cards/MonitorCard.h"
#include "ui/cards/NetworkCard.h"
#include "ui/cards/WifiCard.h"

namespace quillmeter {

namespace {

MonitorCard* newCard(const DashboardCardConfig& config, ComponentPlacement placement, const UiServices& services,
                     QWidget* parent) {
  switch (config.kind) {
    case MonitorComponentKind::cpu:
      return new CpuCard(config.size, placement, services, parent);
    case MonitorComponentKind::memory:
      return new MemoryCard(config.size, placement, services, parent);
    case MonitorComponentKind::disk:
      return new DiskCard(config.size, placement, services, parent);
    case MonitorComponentKind::battery:
      return new BatteryCard(config.size, placement, services, parent);
    case MonitorComponentKind::network:
      return new NetworkCard(config.size, placement, services, parent);
    case MonitorComponentKind::fan:
      return new FanCard(config.size, placement, services, parent);
    case MonitorComponentKind::agentTokens:
      return new AgentTokensCard(config.size, placement, services, parent);
    case MonitorComponentKind::agentLimits:
      return new AgentLimitsCard(config.size, placement, services, parent);
    case MonitorComponentKind::wifi:
      return new WifiCard(config.size, placement, services, parent);
    case MonitorComponentKind::audio:
      break;
  }
  return new AudioCard(config.size, placement, services, parent);
}

}  // namespace

MonitorCard* makeMonitorCard(const DashboardCardConfig& config, ComponentPlacement placement,
                             const UiServices& services, QWidget* parent) {
  MonitorCard* card = newCard(config, placement, services, parent);
  card->prepare();
  return card;
}

}  // namespace quillmeter
