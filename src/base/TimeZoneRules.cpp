#include "base/TimeZoneRules.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <limits>

namespace quillmeter {

namespace {

constexpr std::int64_t forEver = std::numeric_limits<std::int64_t>::max();

std::int64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = (bytes.front() & 0x80) != 0 ? ~std::uint64_t{0} : 0;
  for (const char c : bytes) value = value << 8 | static_cast<unsigned char>(c);
  return static_cast<std::int64_t>(value);
}

// The counts of one data block, in the order of the file's header.
struct Header {
  static constexpr std::size_t bytes = 44;
  char version = 0;
  std::array<std::size_t, 6>
      counts{};  // UT indicators, standard indicators, leap seconds, transitions, types, abbreviation bytes

  std::size_t transitions() const { return counts[3]; }
  std::size_t types() const { return counts[4]; }
  std::size_t blockBytes(std::size_t timeBytes) const {
    return transitions() * (timeBytes + 1) + types() * 6 + counts[5] + counts[2] * (timeBytes + 4) + counts[1] +
           counts[0];
  }
};

std::optional<Header> readHeader(std::string_view bytes) {
  if (bytes.size() < Header::bytes || !bytes.starts_with("TZif")) return std::nullopt;
  constexpr std::int64_t maximumCount = 65'536;  // the database's largest has some hundreds
  Header header;
  header.version = bytes[4];
  for (std::size_t i = 0; i < header.counts.size(); ++i) {
    const std::int64_t count = bigEndian(bytes.substr(20 + 4 * i, 4));
    if (count < 0 || count > maximumCount) return std::nullopt;
    header.counts[i] = static_cast<std::size_t>(count);
  }
  return header;
}

}  // namespace

std::optional<TimeZoneRules> TimeZoneRules::fromFile(const std::filesystem::path& file) {
  std::error_code error;
  constexpr std::uintmax_t maximumFileBytes = 1'048'576;
  const auto size = std::filesystem::file_size(file, error);  // an error for what is no regular file
  if (error || size > maximumFileBytes) return std::nullopt;
  std::string bytes(size, '\0');
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) return std::nullopt;
  return fromBytes(bytes);
}

std::optional<TimeZoneRules> TimeZoneRules::fromBytes(std::string_view bytes) {
  auto header = readHeader(bytes);
  if (!header) return std::nullopt;
  std::size_t timeBytes = 4;
  bytes.remove_prefix(Header::bytes);
  if (header->version >= '2') {  // the same again with 64 bits, which holds everything
    const std::size_t oldBlock = header->blockBytes(timeBytes);
    if (bytes.size() < oldBlock) return std::nullopt;
    bytes.remove_prefix(oldBlock);
    header = readHeader(bytes);
    if (!header) return std::nullopt;
    bytes.remove_prefix(Header::bytes);
    timeBytes = 8;
  }
  if (bytes.size() < header->blockBytes(timeBytes)) return std::nullopt;

  TimeZoneRules rules;
  const std::size_t count = header->transitions();
  const std::string_view typeOf = bytes.substr(count * timeBytes, count);
  const std::string_view types = bytes.substr(count * (timeBytes + 1), header->types() * 6);
  std::vector<int> offsetOfType;
  for (std::size_t i = 0; i < header->types(); ++i) {
    const std::int64_t offset = bigEndian(types.substr(i * 6, 4));
    if (offset < -maximumOffset || offset > maximumOffset) return std::nullopt;
    offsetOfType.push_back(static_cast<int>(offset));
  }
  if (offsetOfType.empty()) return std::nullopt;
  rules.firstOffset_ = offsetOfType.front();
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t time = bigEndian(bytes.substr(i * timeBytes, timeBytes));
    const std::size_t type = static_cast<unsigned char>(typeOf[i]);
    if (type >= offsetOfType.size() || (i > 0 && time <= rules.transitions_.back())) return std::nullopt;
    rules.transitions_.push_back(time);
    rules.offsets_.push_back(offsetOfType[type]);
  }
  bytes.remove_prefix(header->blockBytes(timeBytes));
  if (bytes.starts_with('\n')) {
    const std::string_view footer = bytes.substr(1, bytes.find('\n', 1) - 1);
    rules.continuation_ = PosixZone::parse(footer);
  }
  return rules;
}

TimeZoneRules::Stretch TimeZoneRules::at(std::int64_t seconds) const {
  const auto next = std::upper_bound(transitions_.begin(), transitions_.end(), seconds);
  if (next == transitions_.end() && continuation_) return continuedAt(seconds);
  const int offset =
      next == transitions_.begin() ? firstOffset_ : offsets_[static_cast<std::size_t>(next - transitions_.begin()) - 1];
  return {offset, next == transitions_.end() ? forEver : *next};
}

TimeZoneRules::Stretch TimeZoneRules::continuedAt(std::int64_t seconds) const {
  const PosixZone& zone = *continuation_;
  if (!zone.hasDaylight) return {zone.standardOffset, forEver};
  using namespace std::chrono;
  const sys_days day{floor<days>(sys_seconds{std::chrono::seconds{seconds + zone.standardOffset}})};
  const int year = static_cast<int>(year_month_day{day}.year());

  struct Switch {
    std::int64_t time;
    int offset;
  };
  std::array<Switch, 6> switches{};
  for (int i = 0; i < 3; ++i) {
    const auto at = static_cast<std::size_t>(2 * i);
    switches[at] = {zone.daylightBegins.localSeconds(year - 1 + i) - zone.standardOffset, zone.daylightOffset};
    switches[at + 1] = {zone.daylightEnds.localSeconds(year - 1 + i) - zone.daylightOffset, zone.standardOffset};
  }
  std::stable_sort(switches.begin(), switches.end(), [](const Switch& a, const Switch& b) { return a.time < b.time; });
  const auto next = std::find_if(switches.begin(), switches.end(), [&](const Switch& s) { return s.time > seconds; });
  // A switch of the year before has passed, one of the year after is still to come.
  const int offset = next == switches.begin() ? zone.standardOffset : std::prev(next)->offset;
  return {offset, next == switches.end() ? forEver : next->time};
}

}  // namespace quillmeter
