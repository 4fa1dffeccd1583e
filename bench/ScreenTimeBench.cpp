#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "screentime/ActivityArchiveFile.h"
#include "screentime/model/ActivityTimelineGroup.h"

// What recording costs: the save every half minute, the start, and the pages that show a week.

namespace quillmeter {
namespace {

// A busy user: spans of some seconds each, spread over the days before `end`, of a dozen applications.
std::vector<ActivitySpan> makeSpans(int count, double days, Date end) {
  std::vector<ActivitySpan> spans;
  spans.reserve(static_cast<std::size_t>(count));
  const auto step = static_cast<std::int64_t>(days * 86'400e6 / count);
  for (int index = 0; index < count; ++index) {
    const Date start{end.microseconds - step * (count - index)};
    const std::string number = std::to_string(index * 7 % 12);
    spans.push_back({start,
                     Date{start.microseconds + step - 1'234},
                     {"org.example.application" + number, "Application " + number}});
  }
  return spans;
}

const Date sunday = Date::fromWholeSeconds(1'763'856'000);  // 2025-11-23 00:00:00 UTC

void encodeArchive(benchmark::State& state) {
  const auto spans = makeSpans(static_cast<int>(state.range(0)), 1, sunday);
  for (auto _ : state) benchmark::DoNotOptimize(ActivityArchiveView{sunday, true, spans}.encode());
}
BENCHMARK(encodeArchive)->Arg(5'000)->Arg(150'000)->Unit(benchmark::kMillisecond);

void decodeArchive(benchmark::State& state) {
  const auto bytes =
      *ActivityArchiveView{sunday, true, makeSpans(static_cast<int>(state.range(0)), 1, sunday)}.encode();
  for (auto _ : state) benchmark::DoNotOptimize(ActivityArchive::decode(bytes));
}
BENCHMARK(decodeArchive)->Arg(5'000)->Arg(150'000)->Unit(benchmark::kMillisecond);

// With both fsyncs; the CPU column is what counts.
void saveArchive(benchmark::State& state) {
  const auto folder = std::filesystem::temp_directory_path() / ("quillmeter-bench-" + std::to_string(getpid()));
  const auto spans = makeSpans(static_cast<int>(state.range(0)), 1, sunday);
  {
    ActivityArchiveFile file(folder / "activity.json");
    if (file.claim() != ArchiveOutcome::done) state.SkipWithError("no right to write");
    for (auto _ : state) {
      if (file.save({sunday, true, spans}) != ArchiveOutcome::done) state.SkipWithError("save failed");
    }
  }
  std::filesystem::remove_all(folder);
}
BENCHMARK(saveArchive)->Arg(5'000)->Unit(benchmark::kMillisecond);

void summarizeWeek(benchmark::State& state) {
  const Calendar calendar = *Calendar::forZone("Europe/Berlin", 1);
  const auto spans = makeSpans(100'000, static_cast<double>(state.range(0)), sunday);
  const Date start = calendar.startOfWeek(Date{sunday.microseconds - 86'400'000'000});
  const DateInterval week{start, *calendar.adding(7, CalendarUnit::day, start)};
  for (auto _ : state) benchmark::DoNotOptimize(ActivitySummary::make(spans, week, false, calendar));
}
BENCHMARK(summarizeWeek)->ArgName("days")->Arg(7)->Arg(30)->Unit(benchmark::kMillisecond);

void timelineOfWeek(benchmark::State& state) {
  const Calendar calendar = *Calendar::forZone("Europe/Berlin", 1);
  const auto spans = makeSpans(100'000, 7, sunday);
  const Date start = calendar.startOfWeek(Date{sunday.microseconds - 86'400'000'000});
  const auto summary =
      ActivitySummary::make(spans, {start, *calendar.adding(7, CalendarUnit::day, start)}, false, calendar);
  for (auto _ : state) benchmark::DoNotOptimize(ActivityTimelineGroup::make(summary));
}
BENCHMARK(timelineOfWeek)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmeter

BENCHMARK_MAIN();
