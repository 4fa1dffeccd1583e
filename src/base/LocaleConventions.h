#pragma once

#include <span>
#include <string>

#include "base/Calendar.h"

namespace quillmeter {

// What the formatting rules need to know of the user's locale. The default is POSIX with an English list.
struct LocaleConventions {
  std::string decimalSeparator = ".";
  std::string groupingSeparator;   // empty: digits are not grouped
  Weekday firstWeekday = 1;        // 0 = Sunday
  std::string listPair = " and ";  // between two items
  std::string listMiddle = ", ";   // between items of a list of three and more
  std::string listEnd = ", and ";  // before the last of three and more
  friend bool operator==(const LocaleConventions&, const LocaleConventions&) = default;
};

// "A", "A and B", "A, B, and C".
std::string joinList(std::span<const std::string> items, const LocaleConventions& locale);

}  // namespace quillmeter
