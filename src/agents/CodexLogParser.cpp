#include "agents/CodexLogParser.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "agents/CodexTail.h"
#include "agents/JsonCursor.h"
#include "agents/JsonString.h"
#include "agents/LogFields.h"

namespace quillmeter {

namespace {

constexpr std::int64_t primaryWindowMinutes = 300;
constexpr std::int64_t weeklyWindowMinutes = 10'080;

struct LimitWindow {
  std::optional<double> used;
  std::int64_t minutes = 0;
  std::optional<Date> resetAt;
};

// By row: the key of the window and the length it has when it names none.
struct LimitRow {
  std::string_view key;
  std::int64_t defaultMinutes;
};
constexpr std::array<LimitRow, 2> limitRows = {{{"primary", primaryWindowMinutes}, {"secondary", weeklyWindowMinutes}}};
using LimitWindows = std::array<std::optional<LimitWindow>, limitRows.size()>;

// Calls `read` with each key of the object at the cursor; false when there is none.
template <typename Read>
bool readObject(JsonCursor& cursor, const Read& read) {
  if (!cursor.enterObject()) {
    cursor.skip();
    return false;
  }
  std::string buffer;
  for (std::string_view key; cursor.nextKey(key);) read(unescapeJson(key, buffer));
  return !cursor.failed();
}

std::optional<double> readUsedFraction(JsonCursor& cursor) {
  const std::optional<double> percent = readDouble(cursor);
  if (!percent || !std::isfinite(*percent) || *percent < 0) return std::nullopt;
  return std::min(*percent, 100.0) / 100.0;
}

std::optional<LimitWindow> readLimitWindow(JsonCursor& cursor, std::int64_t defaultMinutes) {
  LimitWindow window{std::nullopt, defaultMinutes, std::nullopt};
  const bool isObject = readObject(cursor, [&](std::string_view key) {
    if (key == "used_percent") {
      window.used = readUsedFraction(cursor);
    } else if (key == "window_minutes") {
      window.minutes = readInteger(cursor).value_or(defaultMinutes);
    } else if (key == "resets_at") {
      const std::optional<std::int64_t> seconds = readInteger(cursor);
      window.resetAt = seconds ? std::optional(Date::fromWholeSeconds(*seconds)) : std::nullopt;
    } else {
      cursor.skip();
    }
  });
  return isObject ? std::optional(window) : std::nullopt;
}

// Absent when the value is no object.
std::optional<LimitWindows> readLimitWindows(JsonCursor& cursor) {
  LimitWindows windows;
  const bool isObject = readObject(cursor, [&](std::string_view key) {
    for (std::size_t row = 0; row < limitRows.size(); ++row) {
      if (key == limitRows[row].key) {
        windows[row] = readLimitWindow(cursor, limitRows[row].defaultMinutes);
        return;
      }
    }
    cursor.skip();
  });
  return isObject ? std::optional(windows) : std::nullopt;
}

// A window is placed by its length, whatever its key.
CodexLimits limitsFrom(const LimitWindows& windows, Date observedAt) {
  CodexLimits limits;
  limits.observedAt = observedAt;
  for (const std::optional<LimitWindow>& window : windows) {
    if (!window) continue;
    if (window->minutes == weeklyWindowMinutes) {
      limits.weeklyUsed = window->used;
      limits.weeklyResetAt = window->resetAt;
    } else if (window->minutes == primaryWindowMinutes) {
      limits.primaryUsed = window->used;
      limits.primaryResetAt = window->resetAt;
    }
  }
  return limits;
}

// The running totals as written.
struct TotalUsage {
  std::optional<std::int64_t> total;
  std::int64_t input = 0;
  std::int64_t cached = 0;
  std::int64_t output = 0;
};

std::optional<TotalUsage> readTotalUsage(JsonCursor& cursor) {
  TotalUsage usage;
  const bool isObject = readObject(cursor, [&](std::string_view key) {
    if (key == "total_tokens") {
      usage.total = readInteger(cursor);
    } else if (key == "input_tokens") {
      usage.input = readInteger(cursor).value_or(0);
    } else if (key == "cached_input_tokens") {
      usage.cached = readInteger(cursor).value_or(0);
    } else if (key == "output_tokens") {
      usage.output = readInteger(cursor).value_or(0);
    } else {
      cursor.skip();
    }
  });
  return isObject ? std::optional(usage) : std::nullopt;
}

std::optional<TotalUsage> readInfo(JsonCursor& cursor) {
  std::optional<TotalUsage> usage;
  readObject(cursor, [&](std::string_view key) {
    if (key == "total_token_usage") {
      usage = readTotalUsage(cursor);
    } else {
      cursor.skip();
    }
  });
  return usage;
}

struct Payload {
  bool isTokenCount = false;
  std::optional<TotalUsage> usage;
  std::optional<LimitWindows> limits;
};

Payload readPayload(JsonCursor& cursor) {
  Payload payload;
  std::string buffer;
  readObject(cursor, [&](std::string_view key) {
    if (key == "type") {
      payload.isTokenCount = readString(cursor, buffer) == "token_count";
    } else if (key == "info") {
      payload.usage = readInfo(cursor);
    } else if (key == "rate_limits") {
      payload.limits = readLimitWindows(cursor);
    } else {
      cursor.skip();
    }
  });
  return payload;
}

// Cached tokens are part of the reported input; the split keeps them from counting twice.
std::optional<AgentTokenMetrics> metricsFrom(const TotalUsage& usage) {
  if (!usage.total) return std::nullopt;
  for (const std::int64_t counter : {*usage.total, usage.input, usage.cached, usage.output}) {
    if (!isCounterInBounds(counter)) return std::nullopt;
  }
  const std::int64_t cached = std::min(usage.input, usage.cached);
  return AgentTokenMetrics{*usage.total, std::max<std::int64_t>(usage.input - cached, 0), usage.output, cached, 0};
}

// Field by field, each at least 0: counters that restart lower give no negative usage.
AgentTokenMetrics growth(const AgentTokenMetrics& from, const AgentTokenMetrics& to) {
  AgentTokenMetrics step = to.subtracting(from);
  step.totalTokens = std::max<std::int64_t>(step.totalTokens, 0);
  step.inputTokens = std::max<std::int64_t>(step.inputTokens, 0);
  step.outputTokens = std::max<std::int64_t>(step.outputTokens, 0);
  step.cachedTokens = std::max<std::int64_t>(step.cachedTokens, 0);
  step.sessionCount = 0;
  return step;
}

// What growth() takes no notice of: counters below zero, which a log may hold as well.
AgentTokenMetrics belowZero(const AgentTokenMetrics& metrics) {
  return {std::min<std::int64_t>(metrics.totalTokens, 0), std::min<std::int64_t>(metrics.inputTokens, 0),
          std::min<std::int64_t>(metrics.outputTokens, 0), std::min<std::int64_t>(metrics.cachedTokens, 0), 0};
}

}  // namespace

CodexLogParser::CodexLogParser(FileOpener& opener)
    : opener_(opener), scanner_("\"token_count\""), tail_(std::make_unique<CodexTail>()) {}

CodexLogParser::~CodexLogParser() = default;

std::optional<CodexRecord> CodexLogParser::codexEvent(std::string_view line) {
  JsonCursor cursor(line);
  std::optional<Date> date;
  Payload payload;
  const bool isObject = readObject(cursor, [&](std::string_view key) {
    if (key == "timestamp") {
      date = readDate(cursor);
    } else if (key == "payload") {
      payload = readPayload(cursor);
    } else {
      cursor.skip();
    }
  });
  if (!isObject || !cursor.atEnd() || !date || !payload.isTokenCount || !payload.usage || !isUtf8(line))
    return std::nullopt;
  const std::optional<AgentTokenMetrics> metrics = metricsFrom(*payload.usage);
  if (!metrics) return std::nullopt;
  return CodexRecord{{*date, *metrics}, payload.limits ? limitsFrom(*payload.limits, *date) : CodexLimits{}};
}

tl::expected<CachedCodexFile, int> CodexLogParser::parse(const LogFile& file, bool needsTimeline) {
  const tl::expected<FileDescriptor, int> descriptor = opener_.open(file.path);
  if (!descriptor) return tl::unexpected(descriptor.error());
  auto parsed = needsTimeline ? parseTimeline(descriptor->get()) : parseTail(descriptor->get());
  if (parsed) parsed->signature = file.signature();
  return parsed;
}

tl::expected<CachedCodexFile, int> CodexLogParser::parseTimeline(int fd) {
  CachedCodexFile parsed;
  UsageTimeline& points = parsed.points.emplace();
  const ScanEnd end = scanner_.scan(fd, [&](const ScannedLine& line) {
    const std::optional<CodexRecord> record = codexEvent(line.text);
    if (!record) return true;
    parsed.magnitude.add(growth(parsed.latest ? parsed.latest->metrics : AgentTokenMetrics{}, record->point.metrics));
    points.append(record->point);
    parsed.latest = record->point;
    if (record->limits.observedAt > parsed.limits.observedAt) parsed.limits = record->limits;
    return true;
  });
  if (end == ScanEnd::readError) return tl::unexpected(EIO);
  if (parsed.latest) parsed.magnitude.add(belowZero(parsed.latest->metrics));
  points.shrink();
  return parsed;
}

tl::expected<CachedCodexFile, int> CodexLogParser::parseTail(int fd) {
  const auto record = tail_->lastCodexPoint(fd);
  if (!record) return tl::unexpected(record.error());
  CachedCodexFile parsed;
  if (*record) {
    parsed.latest = (*record)->point;
    parsed.limits = (*record)->limits;
    parsed.magnitude.add(parsed.latest->metrics);
  }
  return parsed;
}

AgentTokenMetrics codexDelta(const UsageTimeline& points, Date start) {
  AgentUsageEvent baseline;
  AgentUsageEvent last;
  UsageTimeline::Reader reader(points);
  for (AgentUsageEvent point; reader.next(point); last = point) {
    if (point.date < start) baseline = point;
  }
  if (points.empty() || last.date < start) return {};
  return growth(baseline.metrics, last.metrics);
}

std::vector<AgentUsageEvent> codexEvents(const UsageTimeline& points, Date start) {
  std::vector<AgentUsageEvent> events;
  AgentTokenMetrics previous;
  UsageTimeline::Reader reader(points);
  for (AgentUsageEvent point; reader.next(point); previous = point.metrics) {
    if (point.date >= start) events.push_back({point.date, growth(previous, point.metrics)});
  }
  return events;
}

}  // namespace quillmeter
