#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "screentime/model/ActivityArchive.h"

using quillmeter::ActivityArchive;
using quillmeter::ActivityArchiveView;

// Any bytes may lie in the screen-time file. What loads has to survive being saved and loaded again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto archive = ActivityArchive::decode({reinterpret_cast<const char*>(data), size});
  if (!archive || !archive->validate()) return 0;
  const auto bytes = ActivityArchiveView{archive->startedAt, archive->enabled, archive->spans}.encode();
  const auto again = bytes ? ActivityArchive::decode(*bytes) : tl::unexpected(bytes.error());
  if (!again || !again->validate()) std::abort();
  if (!(*again == *archive)) std::abort();
  return 0;
}
