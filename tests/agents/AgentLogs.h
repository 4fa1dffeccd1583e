#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agents/AgentUsageCollector.h"
#include "base/FileOpener.h"
#include "base/Iso8601.h"
#include "base/LineScanner.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

inline Date date(std::string_view text) {
  return parseIso8601(text).value();
}

// A text with the bytes behind it that the parsers may read.
class PaddedText {
 public:
  explicit PaddedText(std::string_view text) : bytes_(text), size_(text.size()) {
    bytes_.append(LineScanner::paddingBytes, '"');
  }
  std::string_view view() const { return std::string_view(bytes_).substr(0, size_); }

 private:
  std::string bytes_;
  std::size_t size_;
};

struct CodexCounters {
  std::int64_t input = 0;
  std::int64_t cached = 0;
  std::int64_t output = 0;
};

// One record as Codex writes it; `limits` is the JSON of rate_limits, left out when empty.
inline std::string codexLine(std::string_view timestamp, const CodexCounters& counters, std::string_view limits = {}) {
  std::string line =
      "{\"timestamp\":\"" + std::string(timestamp) +
      "\",\"type\":\"event_msg\",\"payload\":{\"type\":\"token_count\",\"info\":{\"total_token_usage\":{"
      "\"input_tokens\":" +
      std::to_string(counters.input) + ",\"cached_input_tokens\":" + std::to_string(counters.cached) +
      ",\"output_tokens\":" + std::to_string(counters.output) +
      ",\"reasoning_output_tokens\":1,\"total_tokens\":" + std::to_string(counters.input + counters.output) +
      "},\"last_token_usage\":{\"total_tokens\":1},\"model_context_window\":258400}";
  if (!limits.empty()) line += ",\"rate_limits\":" + std::string(limits);
  return line + "}}\n";
}

struct ClaudeCounters {
  std::int64_t input = 0;
  std::int64_t creation = 0;
  std::int64_t read = 0;
  std::int64_t output = 0;
};

// One line of a reply as Claude Code writes it; `id` goes into requestId.
inline std::string claudeLine(std::string_view timestamp, std::string_view id, const ClaudeCounters& counters,
                              std::string_view text = "done") {
  return "{\"parentUuid\":null,\"isSidechain\":false,\"cwd\":\"/home/"
         "dev\",\"message\":{\"id\":\"msg_1\",\"type\":\"message\","
         "\"role\":\"assistant\",\"content\":[{\"type\":\"text\",\"text\":\"" +
         std::string(text) + "\"}],\"usage\":{\"input_tokens\":" + std::to_string(counters.input) +
         ",\"cache_creation_input_tokens\":" + std::to_string(counters.creation) +
         ",\"cache_read_input_tokens\":" + std::to_string(counters.read) +
         ",\"cache_creation\":{\"ephemeral_5m_input_tokens\":7},\"output_tokens\":" + std::to_string(counters.output) +
         "}},\"requestId\":\"" + std::string(id) + "\",\"type\":\"assistant\",\"uuid\":\"u\",\"timestamp\":\"" +
         std::string(timestamp) + "\"}\n";
}

inline void setModified(const std::filesystem::path& path, Date date) {
  const std::int64_t seconds = date.microseconds / 1'000'000;
  const timespec when{static_cast<time_t>(seconds), static_cast<long>(date.microseconds % 1'000'000 * 1000)};
  const timespec times[2] = {when, when};
  if (utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) throw std::runtime_error("utimensat failed");
}

// Opens like the real one, notes what was opened and fails where it is told to.
class RecordingOpener final : public FileOpener {
 public:
  tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) override {
    const std::lock_guard lock(mutex_);
    opened.push_back(path.filename().string());
    const auto failure = failures.find(path.filename().string());
    if (failure != failures.end()) return tl::unexpected(failure->second);
    return system_.open(path);
  }
  std::vector<std::string> takeOpened() {
    std::vector<std::string> result;
    result.swap(opened);
    return result;
  }

  std::vector<std::string> opened;      // file names
  std::map<std::string, int> failures;  // file name to errno

 private:
  std::mutex mutex_;
  SystemFileOpener system_;
};

inline AgentLogSource sourceAt(AgentLogProvider provider, const std::filesystem::path& root) {
  return {provider, AgentLogLocation{root, root}};
}

}  // namespace quillmeter::test
