#pragma once

#include <map>
#include <optional>
#include <string_view>
#include <tuple>

#include "agents/LogFile.h"
#include "base/Calendar.h"

namespace quillmeter {

// Tells on which day a Codex session began: its file lies in folders named after the year, month and day. Where it does
// not, the day of the last change stands for it. Made for one scan; remembers the days it has worked out.
class CodexSessionDay {
 public:
  struct Day {
    Date start;
    bool holdsModification = false;  // the file was last changed on the same day
  };

  explicit CodexSessionDay(const Calendar& calendar) : calendar_(calendar) {}

  Day sessionDay(const LogFile& file);

 private:
  struct Span {
    Date start;
    Date end;
  };
  std::optional<Span> namedDay(std::string_view path);

  const Calendar& calendar_;
  std::map<std::tuple<int, int, int>, std::optional<Span>> days_;
};

}  // namespace quillmeter
