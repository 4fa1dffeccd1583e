// How close the line scanner comes to the bare reading of the same bytes, and to what a line-by-line loop costs.
// Bytes per second are of processor time. The file lies in the page cache: the first pass of each benchmark warms it.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "base/FileDescriptor.h"
#include "base/LineScanner.h"
#include "base/MarkerSearch.h"

namespace quillmeter {
namespace {

constexpr std::size_t fileBytes = 256 * 1'048'576;
const std::string marker = "\"token_count\"";

// Lines as an agent writes them: mostly prose and code inside JSON strings, 100 bytes to 20 kB long; every `every`th is
// marked.
std::string sampleText(std::size_t bytes, unsigned every) {
  const std::string words[] = {"\"type\":\"message\",",
                               "the ",
                               "function ",
                               "return ",
                               "\\n  ",
                               "\"content\":[{\"text\":\"",
                               "token ",
                               "count ",
                               "_",
                               "{}; ",
                               "日志 ",
                               "\"role\":\"user\","};
  std::mt19937 random(1);
  std::string text;
  text.reserve(bytes + 32'768);
  for (unsigned line = 0; text.size() < bytes; ++line) {
    const std::size_t end = text.size() + 100 + random() % (random() % 10 == 0 ? 20'000 : 1'500);
    text += "{\"timestamp\":\"2026-11-21T03:04:05.678Z\",";
    if (every != 0 && line % every == 0) text += "\"payload\":{\"type\":\"token_count\"},";
    while (text.size() < end) text += words[random() % std::size(words)];
    text += "\"}\n";
  }
  return text;
}

class SampleFile {
 public:
  explicit SampleFile(unsigned every) {
    std::string name = "/tmp/quillmeter-bench-XXXXXX";
    FileDescriptor file(::mkstemp(name.data()));
    path_ = name;
    const std::string text = sampleText(fileBytes, every);
    std::ofstream(path_, std::ios::binary) << text;
    size_ = text.size();
  }
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;
  ~SampleFile() { ::unlink(path_.c_str()); }

  const std::string& path() const { return path_; }
  std::size_t size() const { return size_; }

 private:
  std::string path_;
  std::size_t size_ = 0;
};

const SampleFile& sampleFile(std::int64_t every) {
  static const SampleFile unmarked(0);
  static const SampleFile marked(5);
  return every == 0 ? unmarked : marked;
}

void finish(benchmark::State& state, const SampleFile& file) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}

void plainRead(benchmark::State& state) {
  const SampleFile& file = sampleFile(state.range(0));
  const auto buffer = std::make_unique<char[]>(LineScanner::blockBytes);
  for (auto _ : state) {
    const FileDescriptor input(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC));
    while (::read(input.get(), buffer.get(), LineScanner::blockBytes) > 0) benchmark::DoNotOptimize(buffer[0]);
  }
  finish(state, file);
}

void lineScanner(benchmark::State& state) {
  const SampleFile& file = sampleFile(state.range(0));
  LineScanner scanner(marker, state.range(1) != 0);
  std::size_t lines = 0;
  for (auto _ : state) {
    const FileDescriptor input(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC));
    scanner.scan(input.get(), [&](const ScannedLine&) { return ++lines > 0; });
  }
  benchmark::DoNotOptimize(lines);
  finish(state, file);
}

void getLine(benchmark::State& state) {
  const SampleFile& file = sampleFile(state.range(0));
  std::size_t lines = 0;
  for (auto _ : state) {
    std::ifstream input(file.path(), std::ios::binary);
    std::string line;
    while (std::getline(input, line)) {
      if (line.find(marker) != std::string::npos) ++lines;
    }
  }
  benchmark::DoNotOptimize(lines);
  finish(state, file);
}

// The search alone, over a block that stays in the cache.
template <typename Search>
void searchBlock(benchmark::State& state, const Search& search) {
  const std::string block = sampleText(LineScanner::blockBytes, 0);
  for (auto _ : state) benchmark::DoNotOptimize(search(block));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(block.size()));
}

void markerSearch(benchmark::State& state) {
  const MarkerSearch search(state.range(0) == 0   ? "\"token_count\""
                            : state.range(0) == 1 ? "\"assistant\""
                                                  : "\"usage\"");
  searchBlock(state, [&](const std::string& block) { return search.find(block); });
}

void libraryMemmem(benchmark::State& state) {
  const std::string needle = state.range(0) == 0   ? "\"token_count\""
                             : state.range(0) == 1 ? "\"assistant\""
                                                   : "\"usage\"";
  searchBlock(state, [&](const std::string& block) {
    return memmem(block.data(), block.size(), needle.data(), needle.size());
  });
}

// every: 0 no marked line, 5 each fifth; count: whether line numbers are kept.
BENCHMARK(plainRead)->ArgName("every")->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(lineScanner)
    ->ArgNames({"every", "count"})
    ->Args({0, 0})
    ->Args({5, 0})
    ->Args({5, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(getLine)->ArgName("every")->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(markerSearch)->ArgName("marker")->DenseRange(0, 2);
BENCHMARK(libraryMemmem)->ArgName("marker")->DenseRange(0, 2);

}  // namespace
}  // namespace quillmeter

BENCHMARK_MAIN();
