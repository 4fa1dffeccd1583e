#include "agents/LogParseJob.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace quillmeter {

namespace {

// Below this a further thread costs more than it saves.
constexpr std::int64_t bytesPerThread = 8'388'608;
constexpr std::int64_t usualTailBytes = 65'536;

// One thread's share: its own parsers, made when the first file of their format comes.
class Worker {
 public:
  Worker(std::vector<LogParseJob>& jobs, const std::vector<std::size_t>& order, std::atomic<std::size_t>& next,
         FileOpener& opener, LogParseProgress& progress)
      : jobs_(jobs), order_(order), next_(next), opener_(opener), progress_(progress) {}

  void run() {
    for (std::size_t turn = next_++; turn < order_.size(); turn = next_++) {
      LogParseJob& job = jobs_[order_[turn]];
      if (job.format == LogParseJob::Format::claude) {
        if (!claude_) claude_.emplace(opener_);
        keep(job, claude_->parse(*job.file));
      } else {
        if (!codex_) codex_.emplace(opener_);
        keep(job, codex_->parse(*job.file, job.format == LogParseJob::Format::codexTimeline));
      }
      progress_.bytesDone += job.workBytes();
      ++progress_.filesDone;
    }
  }

 private:
  template <typename Parsed>
  static void keep(LogParseJob& job, tl::expected<Parsed, int> parsed) {
    if (parsed) {
      job.result = std::move(*parsed);
    } else {
      job.result = parsed.error();
    }
  }

  std::vector<LogParseJob>& jobs_;
  const std::vector<std::size_t>& order_;
  std::atomic<std::size_t>& next_;
  FileOpener& opener_;
  LogParseProgress& progress_;
  std::optional<ClaudeLogParser> claude_;
  std::optional<CodexLogParser> codex_;
};

}  // namespace

std::int64_t LogParseJob::workBytes() const {
  return format == Format::codexTail ? std::min(file->size, usualTailBytes) : file->size;
}

void runLogParseJobs(std::vector<LogParseJob>& jobs, FileOpener& opener, int maximumThreads,
                     LogParseProgress& progress) {
  // The largest files first, so that no thread is left alone with one at the end.
  std::vector<std::size_t> order(jobs.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&jobs](std::size_t a, std::size_t b) { return jobs[a].workBytes() > jobs[b].workBytes(); });
  std::int64_t work = 0;
  for (const LogParseJob& job : jobs) work += job.workBytes();
  progress.filesDone = 0;
  progress.bytesDone = 0;
  progress.filesTotal = static_cast<std::int64_t>(jobs.size());
  progress.bytesTotal = work;

  const auto wanted =
      std::min<std::int64_t>({maximumThreads, static_cast<std::int64_t>(jobs.size()), 1 + work / bytesPerThread});
  std::atomic<std::size_t> next = 0;
  const auto run = [&] { Worker(jobs, order, next, opener, progress).run(); };
  std::vector<std::jthread> helpers;
  for (std::int64_t i = 1; i < wanted; ++i) {
    try {
      helpers.emplace_back(run);
    } catch (const std::system_error&) {  // no more threads to be had: those that run do the work
      break;
    }
  }
  run();
}

}  // namespace quillmeter
