#pragma once

#include <string_view>

namespace quillmeter {

// The host that serves the release manifest and the downloads, as this program was built (QUILLMETER_WEB_HOST).
std::string_view productWebHost();

}  // namespace quillmeter
