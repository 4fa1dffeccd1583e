// A release manifest as a stranger might serve it: decoding and checking never fail hard, and an accepted download lies on the own host.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/CheckedInt.h"
#include "update/model/UpdateManifest.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmeter;
  const auto manifest = UpdateManifest::decode({reinterpret_cast<const char*>(data), size});
  if (!manifest || manifest->validate("quillmeter.example")) return 0;
  if (!manifest->downloadURL.starts_with("https://quillmeter.example/downloads/Quillmeter-")) fatalError("foreign URL");
  static_cast<void>(manifest->isNewer({"1.0", 1}));
  static_cast<void>(manifest->supports("1.0"));
  return 0;
}
