#include "agents/adapters/LocalUsageReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "base/DirectoryWalk.h"
#include "base/Iso8601.h"

namespace quillmeter {

namespace {

// The number that the whole text is, whatever the process's locale; signs and exponents as strtod reads them, but no
// hexadecimal form and no white space.
std::optional<double> decimalNumber(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<double> number(const UsageValue& value) {
  if (const auto* signedNumber = std::get_if<std::int64_t>(&value)) return static_cast<double>(*signedNumber);
  if (const auto* unsignedNumber = std::get_if<std::uint64_t>(&value)) return static_cast<double>(*unsignedNumber);
  if (const auto* floating = std::get_if<double>(&value)) return *floating;
  if (const auto* text = std::get_if<std::string_view>(&value)) return decimalNumber(*text);
  return std::nullopt;
}

}  // namespace

std::int64_t LocalUsageReader::integer(const UsageValue& value) {
  const auto figure = number(value);
  if (!figure || !std::isfinite(*figure) || *figure < 0) return 0;
  if (*figure > static_cast<double>(maximumInteger)) return maximumInteger;
  return static_cast<std::int64_t>(*figure);
}

std::optional<Date> LocalUsageReader::date(const UsageValue& value) {
  constexpr double leastMilliseconds = 1e10;
  if (const auto figure = number(value)) {
    if (!std::isfinite(*figure)) return std::nullopt;
    return Date::fromSeconds(*figure > leastMilliseconds ? *figure / 1000 : *figure);
  }
  if (const auto* text = std::get_if<std::string_view>(&value)) return parseIso8601(*text);
  return std::nullopt;
}

std::vector<UsageFile> LocalUsageReader::files(const std::filesystem::path& root, std::string_view extension,
                                               HiddenNames hidden) {
  const std::string suffix = "." + std::string(extension);
  std::vector<UsageFile> found;
  walkDirectory(
      root, WalkOptions{.skipHidden = hidden == HiddenNames::skip},
      [&](std::string_view name) { return name.size() > suffix.size() && name.ends_with(suffix); },
      [&](const WalkedFile& file) {
        found.push_back({file.path, {file.modifiedAt, file.size}});
      });
  std::sort(found.begin(), found.end(),
            [](const UsageFile& a, const UsageFile& b) { return a.path.native() < b.path.native(); });
  return found;
}

bool LocalUsageReader::lines(const std::filesystem::path& file, const LineConsumer& body, std::string_view marker,
                             const LineFilter& accept) {
  auto descriptor = opener_.open(file);
  if (!descriptor) return false;
  if (!scanner_ || scannerMarker_ != marker) {
    scannerMarker_ = marker;
    scanner_.emplace(scannerMarker_, true);
  }
  const ScanEnd end = scanner_->scan(descriptor->get(), [&](const ScannedLine& line) {
    if (accept && !accept(line.text)) return true;
    if (const auto object = parser_.parsePadded(line.text)) body(*object, line.index);
    return true;
  });
  return end == ScanEnd::complete;
}

std::vector<AdapterUsageSession> LocalUsageReader::grouped(std::vector<SessionEvent> events) {
  std::vector<AdapterUsageSession> sessions;
  std::unordered_map<std::string, std::size_t> places;
  for (SessionEvent& item : events) {
    const auto [place, isNew] = places.try_emplace(std::move(item.sessionID), sessions.size());
    if (isNew) sessions.push_back({place->first, {}, std::nullopt});
    sessions[place->second].events.push_back(std::move(item.event));
  }
  std::sort(sessions.begin(), sessions.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  return sessions;
}

std::string secondsText(Date date) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof(text), date.seconds(), std::chars_format::fixed).ptr;
  std::string result(text, end);
  return result.find('.') == std::string::npos ? result + ".0" : result;
}

}  // namespace quillmeter
