#pragma once

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <variant>
#include <vector>

#include <tl/expected.hpp>

#include "agents/ClaudeLogParser.h"
#include "agents/CodexLogParser.h"
#include "agents/LogFile.h"

namespace quillmeter {

// One file that has to be read in a scan.
struct LogParseJob {
  enum class Format { codexTail, codexTimeline, claude };

  Format format = Format::claude;
  const LogFile* file = nullptr;
  // What became of it: the parsed file of its format, or an errno.
  std::variant<int, CachedCodexFile, CachedClaudeFile> result = EINPROGRESS;

  // Bytes to read, roughly: what the work is shared out by.
  std::int64_t workBytes() const;
};

// Counts what the workers have done; read from any thread.
struct LogParseProgress {
  std::atomic<std::int64_t> filesDone = 0;
  std::atomic<std::int64_t> filesTotal = 0;
  std::atomic<std::int64_t> bytesDone = 0;
  std::atomic<std::int64_t> bytesTotal = 0;
};

// Runs all jobs, each file by one worker: on the caller's thread alone while there is little to read, else on up to
// `maximumThreads` threads, which end before this returns. Whatever the number of workers, each result stands in its
// job.
void runLogParseJobs(std::vector<LogParseJob>& jobs, FileOpener& opener, int maximumThreads,
                     LogParseProgress& progress);

}  // namespace quillmeter
