#include "LogHomeGenerator.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/Calendar.h"
#include "base/Iso8601.h"

namespace quillmeter::bench {

namespace {

constexpr std::int64_t second = Date::microsecondsPerSecond;
constexpr std::int64_t day = 86'400 * second;

// Escaped JSON text that looks like code and prose; cut only between words, so that no escape is torn.
class TextPool {
 public:
  explicit TextPool(std::mt19937_64& random) {
    static constexpr std::string_view words[] = {"const ",    "return ", "value",
                                                 " = ",       "(",       ")",
                                                 ";\\n",      "\\n    ", "\\\"name\\\": ",
                                                 "if ",       "the ",    "file ",
                                                 "changed ",  "std::",   "vector",
                                                 "0x1f",      "42",      ", ",
                                                 "// ",       "\\t",     "/home/dev/project/",
                                                 "error: ",   "{ ",      " }",
                                                 "test",      "größe",   "日志",
                                                 "\\u001b[0m"};
    while (text_.size() < poolBytes) {
      starts_.push_back(text_.size());
      text_ += words[random() % std::size(words)];
    }
  }
  // About `bytes` of text.
  std::string_view cut(std::mt19937_64& random, std::size_t bytes) const {
    bytes = std::min(bytes, poolBytes / 2);
    const std::size_t begin = starts_[random() % (starts_.size() / 2)];
    const auto end = std::upper_bound(starts_.begin(), starts_.end(), begin + bytes);
    return std::string_view(text_).substr(begin, *(end - 1) - begin);
  }

 private:
  static constexpr std::size_t poolBytes = 2'000'000;
  std::string text_;
  std::vector<std::size_t> starts_;
};

class Generator {
 public:
  explicit Generator(const LogHomeOptions& options)
      : options_(options),
        random_(options.seed),
        pool_(random_),
        today_(calendar_.startOfDay(options.now)),
        week_(calendar_.startOfWeek(options.now)),
        month_(calendar_.startOfMonth(options.now)) {
    truth_.now = options.now;
  }

  LogHomeTruth run() {
    const int codexFiles = options_.claudeBytes == 0 ? options_.files : options_.files / 2;
    writeAll(options_.codexBytes == 0 ? 0 : codexFiles, options_.codexBytes, &Generator::writeCodex);
    writeAll(options_.claudeBytes == 0 ? 0 : options_.files - (options_.codexBytes == 0 ? 0 : codexFiles),
             options_.claudeBytes, &Generator::writeClaude);
    return truth_;
  }

 private:
  std::int64_t below(std::int64_t bound) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(bound));
  }
  bool oneIn(std::int64_t count) { return below(count) == 0; }

  // Some files ten times as large as others.
  void writeAll(int count, std::int64_t bytes, void (Generator::*write)(int, std::int64_t)) {
    std::vector<std::int64_t> weights;
    std::int64_t sum = 0;
    for (int i = 0; i < count; ++i) sum += weights.emplace_back(2 + below(20));
    for (int i = 0; i < count; ++i) (this->*write)(i, bytes * weights[static_cast<std::size_t>(i)] / sum);
  }

  void save(const std::filesystem::path& path, const std::string& bytes, Date modified) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    const timespec when{static_cast<time_t>(modified.microseconds / second),
                        static_cast<long>(modified.microseconds % second * 1000)};
    const timespec times[2] = {when, when};
    if (!file || utimensat(AT_FDCWD, path.c_str(), times, 0) != 0)
      throw std::runtime_error("cannot write " + path.string());
    truth_.bytes += static_cast<std::int64_t>(bytes.size());
    ++truth_.files;
  }

  // A line without usage; one in forty is huge.
  void appendNoise(std::string& out, std::string_view front, std::string_view back) {
    const std::size_t bytes =
        oneIn(40) ? 100'000 + static_cast<std::size_t>(below(400'000)) : 200 + static_cast<std::size_t>(below(12'000));
    out += front;
    out += pool_.cut(random_, bytes);
    out += back;
    out += '\n';
  }

  // When a session began: one in fifteen today, the others on the days of the month before it.
  Date sessionStart() {
    const std::int64_t days = (today_.microseconds - month_.microseconds) / day;
    const std::int64_t morning = 6 * 3600 * second + below(3600 * second);
    if (days == 0 || oneIn(15)) return Date{today_.microseconds + below(3 * 3600) * second};
    return Date{month_.microseconds + below(days) * day + morning};
  }

  void addTo(LogHomeRanges& ranges, Date start, const AgentTokenMetrics& usage) const {
    if (start >= today_) ranges.today += usage;
    if (start >= week_) ranges.week += usage;
    if (start >= month_) ranges.month += usage;
  }

  void writeCodex(int number, std::int64_t bytes) {
    const Date began = sessionStart();
    const bool goesOn = began < today_ && oneIn(20);  // to the next day, without starting over
    const Date other{began.microseconds + day};
    const bool startsOver = !goesOn && oneIn(6);
    AgentTokenMetrics counters;
    std::int64_t inputWithCached = 0;
    LogHomeRanges used;
    std::string out;
    out.reserve(static_cast<std::size_t>(bytes) + 600'000);
    Date date = began;
    bool isOtherDay = false;
    while (static_cast<std::int64_t>(out.size()) < bytes) {
      const auto written = static_cast<std::int64_t>(out.size());
      if (goesOn && !isOtherDay && written > bytes / 2) {
        date = other;
        isOtherDay = true;
      }
      const bool restart = startsOver && written > bytes / 2 && written < bytes * 6 / 10;
      if (restart) {
        counters = {};
        inputWithCached = 0;
        used = {};  // only what the last process used is in the last record
      }
      date.microseconds += (1 + below(900)) * 1000;
      appendNoise(out,
                  fmt::format(R"({{"timestamp":"{}","type":"response_item","payload":{{"type":"message","text":")",
                              formatIso8601(date)),
                  "\"}}");
      if (!restart && !oneIn(6)) continue;
      const AgentTokenMetrics step = codexStep();
      counters += step;
      inputWithCached += step.inputTokens + step.cachedTokens;
      addTo(used, date, step);
      appendCodexRecord(out, date, counters, inputWithCached);
      if (oneIn(3)) appendCodexRecord(out, date, counters, inputWithCached);
    }
    const CalendarDay folder = calendar_.components(began).day;
    save(codexRoot(options_.root) /
             fmt::format("{:04}/{:02}/{:02}/rollout-{}.jsonl", folder.year, folder.month, folder.day, number),
         out, date);
    addFile(truth_.codex, used);
  }

  AgentTokenMetrics codexStep() {
    const AgentTokenMetrics step{0, below(5000), below(1500), below(30'000), 0};
    return {step.inputTokens + step.outputTokens + step.cachedTokens, step.inputTokens, step.outputTokens,
            step.cachedTokens, 0};
  }

  void appendCodexRecord(std::string& out, Date date, const AgentTokenMetrics& counters, std::int64_t input) {
    fmt::format_to(
        std::back_inserter(out),
        R"({{"timestamp":"{}","type":"event_msg","payload":{{"type":"token_count","info":{{"total_token_usage":{{"input_tokens":{},)"
        R"("cached_input_tokens":{},"output_tokens":{},"reasoning_output_tokens":0,"total_tokens":{}}},"last_token_usage":{{)"
        R"("input_tokens":1,"total_tokens":1}},"model_context_window":258400}},"rate_limits":{{"primary":{{"used_percent":4.5,)"
        R"("window_minutes":300,"resets_at":1795651200}},"secondary":null}}}}}})"
        "\n",
        formatIso8601(date), input, counters.cachedTokens, counters.outputTokens, counters.totalTokens);
  }

  void writeClaude(int number, std::int64_t bytes) {
    Date date = sessionStart();
    LogHomeRanges used;
    std::string out;
    out.reserve(static_cast<std::size_t>(bytes) + 600'000);
    std::int64_t marked = 0;
    for (int reply = 0; static_cast<std::int64_t>(out.size()) < bytes; ++reply) {
      date.microseconds += (1 + below(900)) * 1000;
      appendNoise(
          out,
          fmt::format(
              R"({{"parentUuid":"a0e5cd9b-42d7-41b9-9f55-ac519a8ab335","isSidechain":false,"cwd":"/home/dev","type":"user",)"
              R"("message":{{"role":"user","content":[{{"tool_use_id":"toolu_1","type":"tool_result","content":")"),
          fmt::format(R"("}}]}},"uuid":"b477e7a9-{}","timestamp":"{}"}})", reply, formatIso8601(date)));
      while (static_cast<double>(marked) < options_.markedShare * static_cast<double>(out.size())) {
        const std::size_t before = out.size();
        appendClaudeReply(out, used, date, number, reply++);
        marked += static_cast<std::int64_t>(out.size() - before);
      }
    }
    save(claudeRoot(options_.root) / fmt::format("-home-dev-project-{}/{:08x}-transcript.jsonl", number % 12, number),
         out, date);
    addFile(truth_.claude, used);
  }

  // One reply on one to three lines; one in thirty lines is long, one in twelve comes from a user and only mentions the
  // word.
  void appendClaudeReply(std::string& out, LogHomeRanges& used, Date date, int file, int reply) {
    if (oneIn(12)) {
      fmt::format_to(std::back_inserter(out),
                     R"({{"type":"user","message":{{"role":"user","content":["assistant","{}"]}},"timestamp":"{}"}})"
                     "\n",
                     pool_.cut(random_, 300), formatIso8601(date));
      return;
    }
    const std::int64_t input = below(50), creation = below(8000), read = below(90'000), output = below(1200);
    for (std::int64_t lines = 1 + below(3); lines > 0; --lines) {
      const std::size_t bytes =
          oneIn(30) ? 40'000 + static_cast<std::size_t>(below(120'000)) : 50 + static_cast<std::size_t>(below(4000));
      fmt::format_to(
          std::back_inserter(out),
          R"({{"parentUuid":"a0e5cd9b-42d7-41b9-9f55-ac519a8ab335","isSidechain":false,"userType":"external","cwd":"/home/dev/project",)"
          R"("sessionId":"c273d7b8-f332-4c5e-b484-93682f6203c7","version":"2.1.0","gitBranch":"main","message":{{"id":"msg_{}","type":)"
          R"("message","role":"assistant","model":"claude-sonnet-4-5","content":[{{"type":"text","text":"{}"}}],"stop_reason":null,)"
          R"("usage":{{"input_tokens":{},"cache_creation_input_tokens":{},"cache_read_input_tokens":{},"cache_creation":{{)"
          R"("ephemeral_5m_input_tokens":{}}},"output_tokens":{},"service_tier":"standard"}}}},"requestId":"req_011C{:08}{:08}",)"
          R"("type":"assistant","uuid":"f7e595b2-d6ba-4220-{}-{}","timestamp":"{}"}})"
          "\n",
          reply, pool_.cut(random_, bytes), input, creation, read, creation, output, file, reply, reply, lines,
          formatIso8601(date));
    }
    addTo(used, date, {input + creation + read + output, input + creation, output, read, 0});
  }

  static void addFile(LogHomeRanges& ranges, const LogHomeRanges& used) {
    ranges.today += used.today.countingSessionWhenUsed();
    ranges.week += used.week.countingSessionWhenUsed();
    ranges.month += used.month.countingSessionWhenUsed();
  }

  LogHomeOptions options_;
  std::mt19937_64 random_;
  TextPool pool_;
  Calendar calendar_ = Calendar::utc();
  Date today_;
  Date week_;
  Date month_;
  LogHomeTruth truth_;
};

nlohmann::json encode(const AgentTokenMetrics& metrics) {
  return {{"totalTokens", metrics.totalTokens},
          {"inputTokens", metrics.inputTokens},
          {"outputTokens", metrics.outputTokens},
          {"cachedTokens", metrics.cachedTokens},
          {"sessionCount", metrics.sessionCount}};
}

AgentTokenMetrics decodeMetrics(const nlohmann::json& json) {
  return {json.at("totalTokens"), json.at("inputTokens"), json.at("outputTokens"), json.at("cachedTokens"),
          json.at("sessionCount")};
}

nlohmann::json encode(const LogHomeRanges& ranges) {
  return {{"today", encode(ranges.today)}, {"week", encode(ranges.week)}, {"month", encode(ranges.month)}};
}

LogHomeRanges decodeRanges(const nlohmann::json& json) {
  return {decodeMetrics(json.at("today")), decodeMetrics(json.at("week")), decodeMetrics(json.at("month"))};
}

}  // namespace

LogHomeTruth generateLogHome(const LogHomeOptions& options) {
  const LogHomeTruth truth = Generator(options).run();
  const nlohmann::json json = {{"now", formatIso8601(truth.now)},
                               {"timeZone", "UTC"},
                               {"firstWeekday", "Monday"},
                               {"codex", encode(truth.codex)},
                               {"claude", encode(truth.claude)},
                               {"bytes", truth.bytes},
                               {"files", truth.files}};
  std::ofstream file(truthPath(options.root), std::ios::trunc);
  if (!(file << json.dump(2) << '\n').flush()) throw std::runtime_error("cannot write the truth");
  return truth;
}

LogHomeTruth readTruth(const std::filesystem::path& root) {
  std::ifstream file(truthPath(root));
  const auto json = nlohmann::json::parse(file);
  return {parseIso8601(json.at("now").get<std::string>()).value(), decodeRanges(json.at("codex")),
          decodeRanges(json.at("claude")), json.at("bytes"), json.at("files")};
}

}  // namespace quillmeter::bench
