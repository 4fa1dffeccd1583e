#include "base/LocaleConventions.h"

namespace quillmeter {

std::string joinList(std::span<const std::string> items, const LocaleConventions& locale) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) {
      const bool last = i + 1 == items.size();
      text += items.size() == 2 ? locale.listPair : last ? locale.listEnd : locale.listMiddle;
    }
    text += items[i];
  }
  return text;
}

}  // namespace quillmeter
