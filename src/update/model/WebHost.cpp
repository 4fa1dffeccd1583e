#include "update/model/WebHost.h"

namespace quillmeter {

std::string_view productWebHost() {
  return QUILLMETER_WEB_HOST;
}

}  // namespace quillmeter
