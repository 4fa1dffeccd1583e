#include "core/model/BatteryTexts.h"

#include "base/L10n.h"

namespace quillmeter {

std::string batteryTimeText(std::optional<bool> isCharging, std::string_view timeLeft) {
  if (!isCharging || timeLeft.empty() || timeLeft == "-") return "—";
  return L10n::format(*isCharging ? QM_TR("充满还需 %@") : QM_TR("剩余 %@"), {timeLeft});
}

std::string batteryStateText(std::optional<bool> isCharging, std::optional<bool> isCharged,
                             std::optional<bool> acPowered) {
  if (isCharging.value_or(false)) return QM_TR("充电中");
  // Right after unplugging a source may still say that it is charged.
  if (!acPowered.value_or(false)) return QM_TR("使用电池");
  return isCharged.value_or(false) ? QM_TR("已充满") : QM_TR("已接通电源");
}

}  // namespace quillmeter
