#include "update/model/AppVersion.h"

namespace quillmeter {

AppVersion AppVersion::current() {
  return {QUILLMETER_VERSION, QUILLMETER_BUILD};
}

}  // namespace quillmeter
