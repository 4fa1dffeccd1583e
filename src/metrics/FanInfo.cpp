#include "metrics/FanInfo.h"

namespace quillmeter {

void FanInfo::update() {
  rpm_.reset();
  temperature_.reset();
}

}  // namespace quillmeter
