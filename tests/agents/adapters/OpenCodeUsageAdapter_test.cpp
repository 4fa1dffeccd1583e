#include "agents/adapters/OpenCodeUsageAdapter.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatabaseFixture.h"

namespace quillmeter {
namespace {

using test::AgentDatabase;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* messageTable =
    "CREATE TABLE message(id TEXT PRIMARY KEY, session_id TEXT, time_created INTEGER, time_updated INTEGER, data "
    "TEXT);";
constexpr std::int64_t noon = 1'790'000'000'000;  // ms
const Date bound{(noon - 1000) * 1000};

std::string answer(const std::string& tokens, const std::string& time = R"({"created":1,"completed":1790000000000})") {
  return R"({"role":"assistant","time":)" + time + R"(,"tokens":)" + tokens + "}";
}

std::string quoted(const std::string& text) {
  std::string sql = "'";
  for (const char c : text) sql.append(c == '\'' ? "''" : std::string(1, c));
  return sql + "'";
}

std::string insertion(const std::string& id, const std::string& session, const std::string& data,
                      std::int64_t updated = noon, std::int64_t created = noon) {
  return "INSERT INTO message(id, session_id, time_created, time_updated, data) VALUES(" + id + ", " + session + ", " +
         std::to_string(created) + ", " + std::to_string(updated) + ", " + quoted(data) + ");";
}

class OpenCode : public testing::Test {
 protected:
  std::vector<AdapterUsageSession> scan(Date since = bound) { return adapter_.sessions(folder_.path(), since); }
  std::filesystem::path path() const { return folder_.path() / "opencode.db"; }

  TemporaryDirectory folder_;
  SystemFileOpener opener_;
  OpenCodeUsageAdapter adapter_{opener_};
};

TEST_F(OpenCode, tokensBecomeMetrics) {
  struct Case {
    const char* tokens;
    AgentTokenMetrics metrics;  // zero: no event
  };
  const std::vector<Case> cases = {
      {R"({"total":999,"input":1,"output":20,"reasoning":300,"cache":{"write":4000,"read":50000}})",
       {54321, 4001, 320, 50000, 0}},
      {R"({"input":"12","output":3.9,"reasoning":-5,"cache":{"read":1e3}})", {1015, 12, 3, 1000, 0}},
      {R"({"input":7,"cache":null})", {7, 7, 0, 0, 0}},
      {R"({"input":7,"cache":[1]})", {7, 7, 0, 0, 0}},
      {R"({"input":0,"output":0,"reasoning":0,"cache":{"write":0,"read":0}})", {}},
      {R"({"total":500})", {}},
      {R"({})", {}},
      {R"([1,2])", {}},
      {R"("text")", {}},
      {R"(null)", {}},
      {R"(17)", {}},
  };
  std::string sql = messageTable;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    sql += insertion(quoted("m" + std::to_string(i)), quoted("s" + std::to_string(i)), answer(cases[i].tokens));
  }
  AgentDatabase(path(), sql);
  const auto sessions = scan();
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].tokens);
    const auto found =
        std::find_if(sessions.begin(), sessions.end(), [&](const auto& s) { return s.id == "s" + std::to_string(i); });
    ASSERT_EQ(found != sessions.end(), cases[i].metrics != AgentTokenMetrics());
    if (found == sessions.end()) continue;
    EXPECT_EQ(found->metrics(), cases[i].metrics);
  }
  EXPECT_EQ(adapter_.unreadableSourceCount(), 0);
}

TEST_F(OpenCode, completionThenCreationThenTheColumnDateAMessage) {
  const std::string tokens = R"({"input":1})";
  AgentDatabase(path(),
                messageTable + insertion("'m1'", "'s'", answer(tokens, R"({"created":5,"completed":1790000000123})")) +
                    insertion("'m2'", "'s'", answer(tokens, R"({"created":1790000000456})")) +
                    insertion("'m3'", "'s'", answer(tokens, R"({"created":null})"), noon, noon + 789) +
                    insertion("'m4'", "'s'", answer(tokens, R"({"completed":"2026-09-21T14:13:20.5Z"})")) +
                    insertion("'m5'", "'s'", answer(tokens, R"({"completed":"soon","created":1790000000456})")));
  const auto sessions = scan();
  ASSERT_THAT(sessions, SizeIs(1));
  std::vector<std::int64_t> dates;
  for (const auto& event : sessions[0].events) dates.push_back(event.date.microseconds - noon * 1000);
  EXPECT_THAT(dates, ElementsAre(123'000, 456'000, 789'000, 500'000));
}

TEST_F(OpenCode, aTouchedSessionComesWholeAndAnUntouchedOneNot) {
  const auto old = answer(R"({"input":1})", R"({"completed":1700000000000})");
  const auto recent = answer(R"({"input":10})");
  AgentDatabase(path(), messageTable + insertion("'a1'", "'touched'", old, noon - 90'000) +
                            insertion("'a2'", "'touched'", recent, noon) +
                            insertion("'b1'", "'untouched'", old, noon - 1001) +
                            insertion("'c1'", "'atTheBound'", recent, noon - 1000) +
                            insertion("'d1'", "'onlyRenamed'", old, noon));
  const auto sessions = scan();
  ASSERT_THAT(sessions, SizeIs(2));
  EXPECT_EQ(sessions[0].id, "atTheBound");
  EXPECT_EQ(sessions[1].id, "touched");
  EXPECT_THAT(sessions[1].events, SizeIs(2));
  EXPECT_EQ(sessions[1].lastActivity(), Date{noon * 1000});
  EXPECT_THAT(scan(Date::distantPast()), SizeIs(4));
}

TEST_F(OpenCode, rowsThatAreNoAnswersAreSkippedOneByOne) {
  const std::string tokens = R"({"input":1})";
  AgentDatabase(path(), messageTable + insertion("'user'", "'s'", R"({"role":"user","tokens":{"input":1}})") +
                            insertion("'broken'", "'s'", R"({"role":"assistant","tokens":{"input":1})") +
                            insertion("'none'", "'s'", R"({"role":"assistant"})") + insertion("'text'", "'s'", "") +
                            "INSERT INTO message VALUES('null', 's', 1, 1790000000000, NULL);" +
                            "INSERT INTO message VALUES('blob', 's', 1, 1790000000000, x'00ff');" +
                            insertion("NULL", "'s'", answer(tokens)) +
                            insertion("'noSession'", "NULL", answer(tokens)) +
                            insertion("'good'", "'s'", answer(tokens)));
  // An id without affinity keeps the type that it was given.
  TemporaryDirectory numeric;
  AgentDatabase(numeric.path() / "opencode.db",
                "CREATE TABLE message(id, session_id, time_created, time_updated, data);" +
                    insertion("5", "'s'", answer(tokens)) + insertion("'m'", "6", answer(tokens)) +
                    insertion("'m'", "'s'", answer(tokens)));
  for (const auto& root : {folder_.path(), numeric.path()}) {
    const auto sessions = adapter_.sessions(root, bound);
    ASSERT_THAT(sessions, SizeIs(1));
    EXPECT_THAT(sessions[0].events, SizeIs(1));
    EXPECT_EQ(adapter_.unreadableSourceCount(), 0);
  }
}

TEST_F(OpenCode, theFirstCompleteMessageTableIsUsed) {
  const std::string columns = "(id TEXT, session_id TEXT, time_created INTEGER, time_updated INTEGER, data TEXT";
  const std::string row = ", 1790000000000, 1790000000000, '" + answer(R"({"input":1})") + "'";
  const std::string untyped = R"('{"time":{"completed":1790000000000},"tokens":{"input":1}}')";
  struct Case {
    const char* what;
    std::string sql;
    std::vector<std::string> ids;
    int unreadable;
  };
  const std::vector<Case> cases = {
      {"both, the second one empty",
       "CREATE TABLE message" + columns + "); CREATE TABLE session_message" + columns + ", type TEXT);" +
           "INSERT INTO message VALUES('m', 's'" + row + ");",
       {"m"},
       0},
      {"both, the first one empty",
       "CREATE TABLE message" + columns + "); CREATE TABLE session_message" + columns + ", type TEXT);" +
           "INSERT INTO session_message VALUES('n', 's'" + row + ", 'assistant');",
       {},
       0},
      {"the first one of another shape",
       "CREATE TABLE message(id, session_id, data, time_created); CREATE TABLE session_message" + columns +
           ", type TEXT);" + "INSERT INTO session_message VALUES('n', 's'" + row + ", 'assistant'), ('u', 's'" + row +
           ", 'user');" + "INSERT INTO session_message VALUES('o', 's', 1, 1790000000000, " + untyped +
           ", 'assistant');",
       {"n", "o"},
       0},
      {"without type the role decides",
       "CREATE TABLE session_message" + columns + "); INSERT INTO session_message VALUES('n', 's'" + row +
           "), ('o', 's', 1, 1790000000000, " + untyped + ");",
       {"n"},
       0},
      {"a type in the first table does not",
       "CREATE TABLE message" + columns + ", type TEXT); INSERT INTO message VALUES('m', 's'" + row + ", 'user');",
       {"m"},
       0},
      {"no table", "CREATE TABLE other(id);", {}, 1},
      {"a view that never ends",
       "CREATE VIEW message AS WITH RECURSIVE c(id) AS (SELECT 1 UNION ALL SELECT id + 1 FROM c)"
       " SELECT id, id AS session_id, '{}' AS data, id AS time_created, id AS time_updated FROM c;",
       {},
       1},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    std::filesystem::remove(path());
    AgentDatabase(path(), one.sql);
    std::vector<std::string> ids;
    for (const auto& session : scan()) {
      for (const auto& event : session.events) ids.push_back(event.id);
    }
    EXPECT_EQ(ids, one.ids);
    EXPECT_EQ(adapter_.unreadableSourceCount(), one.unreadable);
  }
}

TEST_F(OpenCode, anUnreadableDatabaseCountsAndHidesTheOldFiles) {
  folder_.write("storage/message/s/m.json",
                R"({"role":"assistant","time":{"created":1790000000000},"tokens":{"input":1}})");
  EXPECT_THAT(scan(), SizeIs(1));
  for (const char* bytes :
       {"", "no database at all, but long enough to be looked at, which takes one hundred bytes at least....."}) {
    folder_.write("opencode.db", bytes);
    EXPECT_THAT(scan(), IsEmpty());
    EXPECT_EQ(adapter_.unreadableSourceCount(), 1);
  }
  std::filesystem::remove(path());
  EXPECT_THAT(scan(), SizeIs(1));
  EXPECT_EQ(adapter_.unreadableSourceCount(), 0);
}

TEST_F(OpenCode, aStatementThatFailsHalfwayKeepsItsRowsAndCounts) {
  AgentDatabase(path(),
                messageTable + insertion("'m'", "'s'", answer(R"({"input":1})")) +
                    "INSERT INTO message VALUES('z', 's', 1, 1790000000000, CAST(zeroblob(40000000) AS TEXT));");
  ASSERT_THAT(scan(), SizeIs(1));
  EXPECT_EQ(adapter_.unreadableSourceCount(), 1);
}

TEST_F(OpenCode, messageFilesOfOlderVersionsAreRead) {
  const std::string tokens = R"("tokens":{"input":1,"output":2,"reasoning":3,"cache":{"write":4,"read":5}})";
  const auto file = [&](const std::string& name, const std::string& json) {
    folder_.write("storage/message/" + name, json);
  };
  file("ses_a/msg_1.json",
       R"({"id":"m1","sessionID":"a","role":"assistant","time":{"created":1,"completed":1790000000000},)" + tokens +
           "}");
  file("ses_a/msg_2.json", R"({"id":7,"role":"assistant","time":{"created":1790000000000},)" + tokens + "}");
  file("ses_b/msg_3.json",
       R"({"id":"m3","role":"assistant","time":{"completed":null,"created":1790000001},)" + tokens + "}\n");
  file("ses_c/old.json", R"({"role":"assistant","time":{"completed":1700000000000},)" + tokens + "}");
  file("ses_a/user.json", R"({"role":"user","time":{"created":1790000000000},)" + tokens + "}");
  file("ses_a/list.json", "[1]");
  file("ses_a/torn.json", R"({"role":"assistant","time":{"created":1790000000000},)" + tokens);
  file("ses_a/empty.json", "");
  file("ses_a/undated.json", R"({"role":"assistant",)" + tokens + "}");
  file("ses_a/zero.json", R"({"role":"assistant","time":{"created":1790000000000},"tokens":{"input":0}})");
  file("ses_a/other.txt", R"({"role":"assistant","time":{"created":1790000000000},)" + tokens + "}");
  file("ses_a/huge.json",
       R"({"role":"assistant","time":{"created":1790000000000},)" + tokens + "}" + std::string(16'777'216, ' '));
  std::filesystem::create_symlink(folder_.path() / "storage/message/ses_a/msg_1.json",
                                  folder_.path() / "storage/message/ses_b/link.json");

  const auto sessions = scan();
  ASSERT_THAT(sessions, SizeIs(3));
  EXPECT_EQ(sessions[0], (AdapterUsageSession{"a", {{"m1", Date{noon * 1000}, {15, 5, 5, 5, 0}}}, std::nullopt}));
  EXPECT_EQ(sessions[1],
            (AdapterUsageSession{"ses_a", {{"msg_2.json", Date{noon * 1000}, {15, 5, 5, 5, 0}}}, std::nullopt}));
  EXPECT_EQ(sessions[2],
            (AdapterUsageSession{"ses_b", {{"m3", Date{noon * 1000 + 1'000'000}, {15, 5, 5, 5, 0}}}, std::nullopt}));
  EXPECT_EQ(adapter_.unreadableSourceCount(), 0);
  EXPECT_THAT(adapter_.sessions(folder_.path() / "nowhere", bound), IsEmpty());
}

}  // namespace
}  // namespace quillmeter
