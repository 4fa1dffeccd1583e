#include "base/CheckedInt.h"

#include <cstdio>
#include <cstdlib>

namespace quillmeter {

void fatalError(std::string_view message) {
  std::fprintf(stderr, "quillmeter: fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
  std::abort();
}

}  // namespace quillmeter
