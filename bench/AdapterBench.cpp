// What a scan costs when nothing changed (10,000 files of Pi and of WorkBuddy: none may be opened), and what reading a
// transcript that decompresses to 512 MiB needs in memory (under 60 MB at its peak, measured in a process of its own).
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <random>
#include <string>

#include "agents/adapters/CountingOpener.h"
#include "agents/adapters/OpenClawUsageAdapter.h"
#include "agents/adapters/PiSessionUsageAdapter.h"
#include "agents/adapters/WorkBuddyUsageAdapter.h"
#include "agents/adapters/ZstdWriter.h"
#include "platform/linux/CryptoSha256.h"
#include "support/TemporaryDirectory.h"

namespace {

using namespace quillmeter;
using test::CountingOpener;
using test::TemporaryDirectory;

constexpr int fileCount = 10'000;
constexpr int responsesPerFile = 10;

// A response that Pi and WorkBuddy both read, amid text of an ordinary length.
std::string responseLine(int id, std::size_t textBytes) {
  const std::string number = std::to_string(id);
  std::string line = R"({"type":"message","role":"assistant","id":")";
  line += number;
  line += R"(","timestamp":)" + std::to_string(1'700'000'000 + id);
  line += R"(,"message":{"role":"assistant","content":[{"type":"text","text":")";
  line.append(textBytes, 'a');
  line += R"("}],"usage":{"output":20,"cacheRead":300,"input":)";
  line += number;
  line += R"(,"input_tokens":)";
  line += number;
  return line += "}}}\n";
}

// Lines of 4 KiB of text that compresses about as well as prose; exactly 512 MiB.
void writeGiantTranscript(const std::filesystem::path& path) {
  constexpr std::size_t totalBytes = 536'870'912;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  test::ZstdWriter writer({.level = 1});
  std::mt19937 random(5);
  std::size_t written = 0;
  for (int id = 0; written < totalBytes; ++id) {
    std::string line = responseLine(id, 3800);
    for (std::size_t i = 150; i < 3800; i += 1 + random() % 12) line[i] = static_cast<char>('b' + random() % 20);
    if (written + line.size() > totalBytes) line.assign(totalBytes - written, ' ');
    written += line.size();
    writer.append(line);
    file << writer.take();
  }
  file << writer.finish();
}

// Reads the folder once in a child process, which starts with what this one has in memory: so this comes before all
// else. Gives its peak resident size in megabytes and the responses that it found.
struct ChildReport {
  double peakMegabytes = 0;
  std::size_t responses = 0;
  int unreadable = 0;
};
ChildReport readInChild(const std::filesystem::path& root) {
  int ends[2];
  ChildReport report;
  if (pipe(ends) != 0) return report;
  const pid_t child = fork();
  if (child == 0) {
    SystemFileOpener opener;
    CryptoSha256 sha256;
    SystemClock clock;
    OpenClawUsageAdapter adapter(opener, sha256, clock);
    for (const auto& session : adapter.sessions(root, Date::distantPast())) report.responses += session.events.size();
    report.unreadable = adapter.unreadableSourceCount();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    report.peakMegabytes = static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
    const auto sent = write(ends[1], &report, sizeof(report));
    _exit(sent == sizeof(report) ? 0 : 1);
  }
  close(ends[1]);
  if (read(ends[0], &report, sizeof(report)) != sizeof(report)) report = {};
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return report;
}

void giantTranscript(benchmark::State& state) {
  const TemporaryDirectory folder;
  const auto path = folder.path() / "main/sessions/giant.jsonl.zst";
  writeGiantTranscript(path);
  ChildReport report;
  for (auto _ : state) report = readInChild(folder.path());
  if (report.unreadable != 0 || report.responses < 100'000) state.SkipWithError("not read as a whole");
  state.counters["peakMB"] = report.peakMegabytes;
  state.counters["responses"] = static_cast<double>(report.responses);
  state.counters["storedMB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
}
BENCHMARK(giantTranscript)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

const TemporaryDirectory& tenThousandFiles() {
  static const TemporaryDirectory folder;
  if (!std::filesystem::exists(folder.path() / "p0")) {
    for (int file = 0; file < fileCount; ++file) {
      std::string text;
      for (int i = 0; i < responsesPerFile; ++i) text += responseLine(file * responsesPerFile + i, 500);
      folder.write("p" + std::to_string(file / 100) + "/session-" + std::to_string(file) + ".jsonl", text);
    }
  }
  return folder;
}

template <typename Adapter>
void unchangedFiles(benchmark::State& state) {
  const TemporaryDirectory& folder = tenThousandFiles();
  CountingOpener opener;
  Adapter adapter(opener);
  if (adapter.sessions(folder.path(), Date::distantPast()).size() != fileCount)
    state.SkipWithError("not all files read");
  const std::size_t opened = opener.opened.size();
  for (auto _ : state) benchmark::DoNotOptimize(adapter.sessions(folder.path(), Date::distantPast()));
  state.counters["opened"] = static_cast<double>(opener.opened.size() - opened);
}
BENCHMARK(unchangedFiles<PiSessionUsageAdapter>)->Unit(benchmark::kMillisecond);
BENCHMARK(unchangedFiles<WorkBuddyUsageAdapter>)->Unit(benchmark::kMillisecond);

template <typename Adapter>
void firstScan(benchmark::State& state) {
  const TemporaryDirectory& folder = tenThousandFiles();
  for (auto _ : state) {
    CountingOpener opener;
    Adapter adapter(opener);
    benchmark::DoNotOptimize(adapter.sessions(folder.path(), Date::distantPast()));
  }
}
BENCHMARK(firstScan<PiSessionUsageAdapter>)->Unit(benchmark::kMillisecond);
BENCHMARK(firstScan<WorkBuddyUsageAdapter>)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
