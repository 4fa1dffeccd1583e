// What is read as a date is written and read again as the same instant, and writing is stable.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "base/Iso8601.h"

namespace {

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "iso8601: %s\n", what);
  std::abort();
}

// The C library's reading of a text that was accepted, whose fields therefore stand in their places.
std::int64_t referenceSeconds(const std::string& text) {
  std::tm time{};
  strptime(text.substr(0, 19).c_str(), "%Y-%m-%dT%H:%M:%S", &time);
  const std::int64_t seconds = timegm(&time);
  if (text.back() == 'Z') return seconds;
  const std::size_t sign = text.find_last_of("+-");
  std::string digits = text.substr(sign + 1);
  if (digits[2] == ':') digits.erase(2, 1);
  const std::int64_t offset = std::stoi(digits.substr(0, 2)) * 3600 + std::stoi(digits.substr(2)) * 60;
  return text[sign] == '+' ? seconds - offset : seconds + offset;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmeter;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto date = parseIso8601(text);
  if (!date) return 0;
  require(*date >= Date::distantPast() && *date <= Date::distantFuture(), "a date out of range");
  const std::string written = formatIso8601(*date);
  const auto again = parseIso8601(written);
  require(again.has_value() && *again == *date, "another instant after writing and reading");
  require(formatIso8601(*again) == written, "writing is not stable");
  require(Date::fromWholeSeconds(referenceSeconds(text)).microseconds <= date->microseconds &&
              date->microseconds - Date::fromWholeSeconds(referenceSeconds(text)).microseconds <
                  Date::microsecondsPerSecond,
          "another second than the C library's");
  return 0;
}
