#pragma once

#include "platform/AllocatorRelief.h"

namespace quillmeter {

// The C library's allocator: malloc_trim, and the difference of the resident pages around it, since the allocator's own
// figures and its return value do not tell how much went back.
class MallocTrimRelief final : public AllocatorRelief {
 public:
  std::int64_t releaseUnusedMemory() override;
};

}  // namespace quillmeter
