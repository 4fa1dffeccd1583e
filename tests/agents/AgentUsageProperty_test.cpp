// Generated homes whose usage is known by construction, seen from several time zones.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "AgentLogs.h"
#include "base/Calendar.h"

namespace quillmeter {
namespace {

using test::date;

struct Usage {
  Date date;
  AgentTokenMetrics metrics;
};

struct GeneratedFile {
  AgentLogProvider provider = AgentLogProvider::codex;
  std::string path;
  std::string bytes;
  Date modifiedAt;
  std::vector<Usage> usage;
};

std::string folderOf(const Calendar& calendar, Date when) {
  const CalendarDay day = calendar.components(when).day;
  char text[32];
  std::snprintf(text, sizeof(text), "%04d/%02d/%02d", day.year, day.month, day.day);
  return text;
}

class HomeGenerator {
 public:
  HomeGenerator(unsigned seed, const Calendar& calendar, Date now) : random_(seed), calendar_(calendar), now_(now) {}

  std::vector<GeneratedFile> files() {
    std::vector<GeneratedFile> files;
    for (int i = 0; i < 25; ++i) files.push_back(codex(i));
    for (int i = 0; i < 25; ++i) files.push_back(claude(i));
    return files;
  }

 private:
  std::int64_t below(std::int64_t bound) { return std::uniform_int_distribution<std::int64_t>(0, bound - 1)(random_); }

  // Moments of one session: most last an hour or so, some go over days; the start is mostly in this month.
  std::vector<Date> moments() {
    const std::int64_t minute = 60'000'000;
    const std::int64_t step = below(3) == 0 ? 600 * minute : 7 * minute;
    Date when{now_.microseconds - below(34 * 24 * 60) * minute - below(minute) / 1000 * 1000};
    std::vector<Date> result;
    for (std::int64_t count = below(12); count > 0 && when <= now_; --count) {
      result.push_back(when);
      when.microseconds += (1 + below(step) / 1000) * 1000;
    }
    return result;
  }
  std::string noise() {
    return R"({"type":"response_item","payload":{"text":")" + std::string(static_cast<std::size_t>(below(3000)), 'n') +
           "\"}}\n";
  }

  GeneratedFile codex(int number) {
    GeneratedFile file;
    test::CodexCounters counters;
    Date began{now_.microseconds - below(1'000'000'000'000)};
    const std::vector<Date> dates = moments();
    if (!dates.empty()) began = dates.front();
    file.modifiedAt = began;
    for (const Date when : dates) {
      const std::int64_t cached = below(1000);
      const test::CodexCounters step{cached + below(500), cached, below(300)};
      counters = {counters.input + step.input, counters.cached + step.cached, counters.output + step.output};
      const std::string line = test::codexLine(formatIso8601(when), counters);
      file.bytes += noise() + line + (below(3) == 0 ? line : std::string());
      file.usage.push_back({when, {step.input + step.output, step.input - step.cached, step.output, step.cached, 0}});
      file.modifiedAt = when;
    }
    file.path = "codex/" + folderOf(calendar_, began) + "/rollout-" + std::to_string(number) + ".jsonl";
    return file;
  }

  GeneratedFile claude(int number) {
    GeneratedFile file;
    file.provider = AgentLogProvider::claude;
    file.path = "claude/-project-" + std::to_string(number % 4) + "/" + std::to_string(number) + ".jsonl";
    file.modifiedAt = now_;
    int reply = 0;
    for (const Date when : moments()) {
      const test::ClaudeCounters counters{below(300), below(400), below(5000), below(200)};
      const std::string line = test::claudeLine(formatIso8601(when), std::to_string(reply++), counters);
      for (std::int64_t copies = 1 + below(3); copies > 0; --copies) file.bytes += noise() + line;
      const std::int64_t input = counters.input + counters.creation;
      file.usage.push_back({when, {input + counters.read + counters.output, input, counters.output, counters.read, 0}});
      file.modifiedAt = when;
    }
    return file;
  }

  std::mt19937 random_;
  const Calendar& calendar_;
  Date now_;
};

AgentTokenMetrics usageBetween(const GeneratedFile& file, Date from, Date to) {
  AgentTokenMetrics sum;
  for (const Usage& usage : file.usage) {
    if (usage.date >= from && usage.date < to) sum += usage.metrics;
  }
  return sum;
}

class GeneratedHome : public testing::TestWithParam<std::pair<const char*, unsigned>> {
 protected:
  static constexpr Weekday sunday = 0;

  void store(const test::TemporaryDirectory& folder, const std::vector<GeneratedFile>& files) {
    for (const GeneratedFile& file : files) test::setModified(folder.write(file.path, file.bytes), file.modifiedAt);
  }
  AgentUsageSnapshot scan(AgentUsageCollector& collector, const test::TemporaryDirectory& folder) {
    return collector.collect({test::sourceAt(AgentLogProvider::codex, folder.path() / "codex"),
                              test::sourceAt(AgentLogProvider::claude, folder.path() / "claude")},
                             now_);
  }
  // The usage of the files that a scan of this month lists.
  AgentTokenMetrics expected(const std::vector<GeneratedFile>& files, Date from, Date to, bool countSessions) {
    const Date month = calendar_.startOfMonth(now_);
    AgentTokenMetrics sum;
    for (const GeneratedFile& file : files) {
      const Date since =
          file.provider == AgentLogProvider::codex ? *calendar_.adding(-1, CalendarUnit::day, month) : month;
      if (file.modifiedAt < since) continue;
      AgentTokenMetrics usage = usageBetween(file, from, to);
      if (countSessions) usage = usage.countingSessionWhenUsed();
      sum += usage;
    }
    return sum;
  }

  Calendar calendar_ = Calendar::forZone(GetParam().first, sunday).value();
  Date now_ = date("2026-11-12T06:20:00Z");
  SystemFileOpener opener_;
};

TEST_P(GeneratedHome, comesOutAsItWasMade) {
  test::TemporaryDirectory folder;
  const auto files = HomeGenerator(GetParam().second, calendar_, now_).files();
  store(folder, files);
  AgentUsageCollector collector(opener_, calendar_, {});
  const AgentUsageSnapshot snapshot = scan(collector, folder);
  const Date never = Date::distantFuture();
  const Date month = calendar_.startOfMonth(now_);
  EXPECT_EQ(snapshot.todayMetrics, expected(files, calendar_.startOfDay(now_), never, true));
  EXPECT_EQ(snapshot.weekMetrics, expected(files, calendar_.startOfWeek(now_), never, true));
  EXPECT_EQ(snapshot.monthMetrics, expected(files, month, never, true));
  EXPECT_EQ(snapshot.monthMetrics, snapshot.providers.at(0).monthMetrics + snapshot.providers.at(1).monthMetrics);
  for (const auto& [series, unit] :
       {std::pair{snapshot.hourlyUsage, CalendarUnit::hour}, std::pair{snapshot.weeklyUsage, CalendarUnit::day},
        std::pair{snapshot.monthlyUsage, CalendarUnit::day}}) {
    for (const AgentUsageBucket& bucket : series) {
      const Date end = *calendar_.adding(1, unit, bucket.start);
      EXPECT_EQ(bucket.metrics, expected(files, std::max(bucket.start, month), std::max(end, month), false))
          << formatIso8601(bucket.start);
    }
  }
}

TEST_P(GeneratedHome, givesTheSameHoweverItIsScanned) {
  test::TemporaryDirectory folder;
  auto files = HomeGenerator(GetParam().second, calendar_, now_).files();
  store(folder, files);
  AgentUsageCollector collector(opener_, calendar_, {});
  const AgentUsageSnapshot snapshot = scan(collector, folder);
  EXPECT_EQ(scan(collector, folder), snapshot);
  // A hole behind each file makes enough to read for several threads to start.
  for (const GeneratedFile& file : files) {
    std::filesystem::resize_file(folder.path() / file.path, file.bytes.size() + 1'000'000);
    test::setModified(folder.path() / file.path, file.modifiedAt);
  }
  for (const int threads : {1, 3}) {
    AgentUsageCollector fresh(opener_, calendar_, {});
    fresh.setMaximumThreads(threads);
    EXPECT_EQ(scan(fresh, folder), snapshot);
  }
  // Written in another order, the folder lists its files in another order.
  std::filesystem::remove_all(folder.path() / "codex");
  std::filesystem::remove_all(folder.path() / "claude");
  std::reverse(files.begin(), files.end());
  store(folder, files);
  AgentUsageCollector fresh(opener_, calendar_, {});
  EXPECT_EQ(scan(fresh, folder), snapshot);
}

TEST_P(GeneratedHome, appendedLinesChangeOnlyWhatTheySay) {
  test::TemporaryDirectory folder;
  auto files = HomeGenerator(GetParam().second, calendar_, now_).files();
  store(folder, files);
  AgentUsageCollector collector(opener_, calendar_, {});
  scan(collector, folder);
  for (GeneratedFile& file : files) {
    if (file.provider != AgentLogProvider::claude) continue;
    const AgentTokenMetrics before = scan(collector, folder).todayMetrics;
    const bool countedToday = usageBetween(file, calendar_.startOfDay(now_), Date::distantFuture()).totalTokens > 0;
    file.bytes += test::claudeLine(formatIso8601(now_), "appended", {1, 2, 3, 4}) + "{\"half a line\":";
    test::setModified(folder.write(file.path, file.bytes), now_);
    const AgentUsageSnapshot after = scan(collector, folder);
    EXPECT_EQ(after.todayMetrics, before + (AgentTokenMetrics{10, 3, 4, 3, countedToday ? 0 : 1})) << file.path;
    AgentUsageCollector fresh(opener_, calendar_, {});
    EXPECT_EQ(scan(fresh, folder), after);
  }
}

INSTANTIATE_TEST_SUITE_P(, GeneratedHome,
                         testing::Values(std::pair{"UTC", 1u}, std::pair{"Asia/Shanghai", 2u},
                                         std::pair{"America/New_York", 3u}, std::pair{"Asia/Kolkata", 4u},
                                         std::pair{"Pacific/Kiritimati", 5u}, std::pair{"Australia/Adelaide", 6u}));

}  // namespace
}  // namespace quillmeter
