#pragma once

#include <cstdint>

#include "base/Date.h"

namespace quillmeter {

// The change test of every per-file parse cache: a file is read again only when one of the two differs.
struct FileSignature {
  Date modifiedAt;
  std::int64_t size = 0;  // bytes
  friend bool operator==(const FileSignature&, const FileSignature&) = default;
};

}  // namespace quillmeter
