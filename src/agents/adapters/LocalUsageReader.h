#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agents/adapters/JsonAccess.h"
#include "agents/model/AgentUsageAdapter.h"
#include "agents/model/FileSignature.h"
#include "base/Date.h"
#include "base/FileOpener.h"
#include "base/LineScanner.h"

namespace quillmeter {

// A log file as the listing found it.
struct UsageFile {
  std::filesystem::path path;
  FileSignature signature;
};

// An event with the session that it belongs to, before grouping.
struct SessionEvent {
  std::string sessionID;
  AdapterUsageEvent event;
};

// What every adapter needs to read foreign figures: numbers and dates in the forms that agents write them, log files,
// marked JSON lines. Total: what cannot be read is left out, nothing throws. An instance holds the buffers that reading
// lines needs; it belongs to one adapter and is used on the collector's queue only.
class LocalUsageReader {
 public:
  static constexpr std::int64_t maximumInteger = std::int64_t{1} << 59;
  static constexpr std::string_view usageMarker = "\"usage\"";

  explicit LocalUsageReader(FileOpener& opener) : opener_(opener) {}

  // A number, or a text that is a decimal number as a whole: truncated toward zero, 0 when negative or not finite, held
  // below maximumInteger. Anything else is 0.
  static std::int64_t integer(const UsageValue& value);
  // A number, or a text that is a decimal number as a whole, is a Unix time: milliseconds above 1e10, else seconds.
  // Another text is read as ISO 8601. A text that begins with white space is no number.
  static std::optional<Date> date(const UsageValue& value);

  enum class HiddenNames { skip, include };
  // The regular files below `root` with exactly this extension (without dot), sorted by path; links are left out.
  static std::vector<UsageFile> files(const std::filesystem::path& root, std::string_view extension,
                                      HiddenNames hidden = HiddenNames::skip);

  using LineConsumer = std::function<void(const JsonObject& line, std::uint64_t index)>;
  using LineFilter = std::function<bool(std::string_view line)>;
  // The lines of a file that hold the marker and are a JSON object, each with its index (from 0) among all lines of the
  // file. False when the file could not be opened or read to its end; the lines before a read error are delivered.
  // `accept` may refuse a marked line before it is parsed.
  bool lines(const std::filesystem::path& file, const LineConsumer& body, std::string_view marker = usageMarker,
             const LineFilter& accept = {});

  // Sessions in ascending order of their id, events within each in their order of arrival, without activityDate.
  static std::vector<AdapterUsageSession> grouped(std::vector<SessionEvent> events);

 private:
  FileOpener& opener_;
  std::optional<LineScanner> scanner_;
  std::string scannerMarker_;
  JsonParser parser_;
};

// The seconds of an instant as a double is written by default ("1700000000.0", "1700000000.125"): part of ids made of a
// date.
std::string secondsText(Date date);

}  // namespace quillmeter
