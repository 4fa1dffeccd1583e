#include "agents/adapters/HermesUsageAdapter.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatabaseFixture.h"

namespace quillmeter {
namespace {

using test::AgentDatabase;
using test::TemporaryDirectory;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* start = "1790000000.25";
const Date startDate{1'790'000'000'250'000};

Date after(double seconds) {
  return Date::fromSeconds(startDate.seconds() + seconds);
}

TEST(Hermes, everyShapeOfTheSessionsTableIsRead) {
  struct Case {
    const char* columns;
    const char* values;
    AgentTokenMetrics metrics;
    Date activity;
  };
  const std::vector<Case> cases = {
      {"ended_at, input_tokens, output_tokens", "NULL, 10, 200", {210, 10, 200, 0, 0}, startDate},
      {"ended_at, input_tokens, output_tokens", "1790000010.25, 10, 200", {210, 10, 200, 0, 0}, after(10)},
      {"ended_at, last_activity_at, input_tokens, output_tokens",
       "1790000010.25, 1790000020.25, 10, 0",
       {10, 10, 0, 0, 0},
       after(20)},
      {"ended_at, last_activity_at, input_tokens, output_tokens",
       "1790000010.25, NULL, 10, 0",
       {10, 10, 0, 0, 0},
       after(10)},
      {"ended_at, input_tokens, output_tokens, cache_read_tokens", "NULL, 1, 20, 300", {321, 1, 20, 300, 0}, startDate},
      {"ended_at, input_tokens, output_tokens, cache_write_tokens",
       "NULL, 1, 20, 4000",
       {4021, 4001, 20, 0, 0},
       startDate},
      {"ended_at, input_tokens, output_tokens, cache_read_tokens, cache_write_tokens",
       "NULL, 1, 20, 300, 4000",
       {4321, 4001, 20, 300, 0},
       startDate},
      {"ended_at, input_tokens, output_tokens, cache_read_tokens, cache_write_tokens",
       "NULL, NULL, 20, NULL, NULL",
       {20, 0, 20, 0, 0},
       startDate},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.columns) + ": " + one.values);
    const TemporaryDirectory folder;
    AgentDatabase(folder.path() / "state.db", std::string("CREATE TABLE sessions(id TEXT, started_at REAL, ") +
                                                  one.columns + "); INSERT INTO sessions VALUES('s', " + start + ", " +
                                                  one.values + ");");
    HermesUsageAdapter adapter;
    const auto sessions = adapter.sessions(folder.path(), startDate);
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_EQ(sessions[0], (AdapterUsageSession{"s", {{"s", startDate, one.metrics}}, one.activity}));
  }
}

TEST(Hermes, activityDecidesWhatIsReturned) {
  const TemporaryDirectory folder;
  AgentDatabase(folder.path() / "state.db",
                "CREATE TABLE sessions(id, started_at, ended_at, last_activity_at, input_tokens, output_tokens);"
                "INSERT INTO sessions VALUES"
                "('longRunning', 1700000000, NULL, 1790000000.5, 1, 1), ('over', 1789999999, 1789999999, NULL, 1, 1),"
                "('atTheBound', 1790000000.25, NULL, NULL, 1, 1), ('unused', 1790000001, NULL, NULL, 0, 0),"
                "(5, 1790000001, NULL, NULL, 1, 1), (NULL, 1790000001, NULL, NULL, 1, 1),"
                "('undated', 'never', NULL, 1790000001, 1, 1), ('stale', 1790000009, 1790000000, NULL, 1, 1);");
  HermesUsageAdapter adapter;
  const auto sessions = adapter.sessions(folder.path(), startDate);
  ASSERT_THAT(sessions, SizeIs(2));
  EXPECT_EQ(sessions[0].id, "atTheBound");
  EXPECT_EQ(sessions[1].id, "longRunning");
  EXPECT_EQ(sessions[1].lastActivity(), after(0.25));
  EXPECT_EQ(sessions[1].events[0].date, Date{1'700'000'000'000'000});
  EXPECT_THAT(adapter.sessions(folder.path(), Date::distantPast()), SizeIs(4));
}

TEST(Hermes, whatCannotBeReadIsQuietlyNothing) {
  const TemporaryDirectory folder;
  HermesUsageAdapter adapter;
  EXPECT_THAT(adapter.sessions(folder.path() / "nowhere", startDate), IsEmpty());
  folder.write("state.db", std::string(200, 'x'));
  EXPECT_THAT(adapter.sessions(folder.path(), startDate), IsEmpty());
  folder.write("state.db", "");
  std::filesystem::remove(folder.path() / "state.db");
  AgentDatabase(folder.path() / "state.db",
                "CREATE TABLE sessions(id, started_at); INSERT INTO sessions VALUES('s', 1790000001);");
  EXPECT_THAT(adapter.sessions(folder.path(), startDate), IsEmpty());
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

}  // namespace
}  // namespace quillmeter
