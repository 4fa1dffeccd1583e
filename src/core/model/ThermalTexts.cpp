#include "core/model/ThermalTexts.h"

#include "base/L10n.h"

namespace quillmeter {

std::string thermalStateText(int level) {
  switch (level) {
    case 0:
      return QM_TR("正常");
    case 1:
      return QM_TR("温热");
    case 2:
      return QM_TR("较热");
    case 3:
      return QM_TR("过热");
    default:
      return QM_TR("未知");
  }
}

}  // namespace quillmeter
