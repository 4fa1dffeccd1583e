#include <cerrno>

#include <gmock/gmock.h>

#include "agents/adapters/OpenClawFixture.h"
#include "agents/adapters/TranscriptFileName.h"

namespace quillmeter {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

TEST(TranscriptFileName, theSessionIsReadFromPlainRotatedAndCompressedNames) {
  const struct {
    const char* name;
    const char* session;  // null: no transcript
    bool compressed;
  } cases[] = {
      {"abc.jsonl", "abc", false},
      {"abc.jsonl.zst", "abc", true},
      {"a.b.jsonl", "a.b", false},
      {"abc.jsonl.reset.2025-01-02T03-04-05.678Z", "abc", false},
      {"abc.jsonl.reset.2025-01-02T03-04-05Z", "abc", false},
      {"abc.jsonl.deleted.2025-01-02T03-04-05.678Z", "abc", false},
      {"abc.jsonl.deleted.2025-01-02T03-04-05.678Z.0123456789abcdef0123456789abcdef.zst", "abc", true},
      {"abc.jsonl.reset.2025-01-02T03-04-05Z.0123456789abcdef0123456789abcdef", "abc", false},
      {"abc.jsonl.reset.2025-01-02T03-04-05Z.jsonl", "abc.jsonl.reset.2025-01-02T03-04-05Z", false},
      {"abc.jsonl.reset.2025-01-02T03-04-05Z.0123456789ABCDEF0123456789ABCDEF", nullptr, false},
      {"abc.jsonl.reset.2025-01-02T03-04-05Z.0123", nullptr, false},
      {"abc.jsonl.reset.2025-01-02T03-04-05.67Z", nullptr, false},
      {"abc.jsonl.reset.2025-01-02 03-04-05Z", nullptr, false},
      {"abc.jsonl.moved.2025-01-02T03-04-05Z", nullptr, false},
      {"abc.jsonl.0123456789abcdef0123456789abcdef", nullptr, false},
      {"abc.jsonl.lock", nullptr, false},
      {"abc.jsonl.zst.zst", nullptr, false},
      {"abc.JSONL", nullptr, false},
      {"abc.trajectory.jsonl", nullptr, false},
      {"abc.trajectory-path.jsonl", nullptr, false},
      {"abc.checkpoint.1.jsonl", nullptr, false},
      {"abc.checkpoints.jsonl", "abc.checkpoints", false},
      {".jsonl", nullptr, false},
      {".jsonl.zst", nullptr, false},
      {"sessions.json", nullptr, false},
      {"", nullptr, false},
  };
  for (const auto& [name, session, compressed] : cases) {
    const auto parsed = TranscriptFileName::from(name);
    ASSERT_EQ(parsed.has_value(), session != nullptr) << name;
    if (!parsed) continue;
    EXPECT_EQ(parsed->sessionID, session) << name;
    EXPECT_EQ(parsed->compressed, compressed) << name;
  }
}

TEST(TranscriptFileName, aColdFileIsNamedByItsDigestAlone) {
  const std::string digest(64, 'a');
  EXPECT_TRUE(isColdFileName(digest + ".jsonl.zst"));
  for (const std::string& name :
       {digest + "a.jsonl.zst", digest.substr(1) + ".jsonl.zst", digest + ".jsonl", std::string(64, 'A') + ".jsonl.zst",
        "../" + digest + ".jsonl.zst", "/" + digest.substr(1) + ".jsonl.zst", std::string()}) {
    EXPECT_FALSE(isColdFileName(name)) << name;
  }
}

std::vector<AdapterUsageEvent> eventsOf(const std::vector<std::string>& lines) {
  TranscriptReader reader;
  TranscriptUsage usage;
  for (const std::string& line : lines) reader.event(line, {}, usage);
  return usage.takeEvents();
}

TEST(TranscriptUsage, equalAnswersWithoutResponseIdAreNumbered) {
  const auto events = eventsOf({answer("", 7), answer("r", 7), answer("", 7), answer("", 8)});
  ASSERT_EQ(events.size(), 4U);
  EXPECT_EQ(events[0].id, "anonymous:1700000000.0:7:0:0:0:7:1");
  EXPECT_EQ(events[1].id, "response:r");
  EXPECT_EQ(events[2].id, "anonymous:1700000000.0:7:0:0:0:7:2");
  EXPECT_EQ(events[3].id, "anonymous:1700000000.0:8:0:0:0:8:1");
}

TEST(TranscriptUsage, onlyAnswersWithUsageAndDateCount) {
  const auto message = [](const std::string& fields) { return R"({"type":"message","message":{)" + fields + "}}"; };
  const std::string role = R"("role":"assistant","timestamp":1,)";
  const struct {
    std::string line;
    std::optional<AgentTokenMetrics> metrics;
  } cases[] = {
      {message(role + R"("usage":{"input":1,"output":2,"cacheRead":3,"cacheWrite":4,"totalTokens":99})"),
       AgentTokenMetrics{10, 5, 2, 3, 0}},
      {message(role + R"("usage":{"input":0,"totalTokens":99})"), AgentTokenMetrics{99, 0, 0, 0, 0}},
      {message(role + R"("usage":{"input":-5,"output":"6"})"), AgentTokenMetrics{6, 0, 6, 0, 0}},
      {message(role + R"("usageReport":{"state":"complete"},"usage":{"input":1})"), AgentTokenMetrics{1, 1, 0, 0, 0}},
      {message(role + R"("usageReport":{"state":"unavailable"},"usage":{"input":1})"), std::nullopt},
      {message(role + R"("usage":{"input":0,"totalTokens":0})"), std::nullopt},
      {message(role + R"("usage":[1])"), std::nullopt},
      {message(R"("role":"user","timestamp":1,"usage":{"input":1})"), std::nullopt},
      {message(R"("role":"assistant","usage":{"input":1})"), std::nullopt},
      {R"({"type":"custom","message":{"role":"assistant","timestamp":1,"usage":{"input":1}}})", std::nullopt},
      {R"({"type":"message","message":"usage"})", std::nullopt},
      {R"({"type":"message","message":{"role":"assistant","timestamp":1,"usage":{"input":1}})", std::nullopt},
  };
  for (const auto& [line, metrics] : cases) {
    const auto events = eventsOf({line});
    ASSERT_EQ(events.size(), metrics ? 1U : 0U) << line;
    if (metrics) {
      EXPECT_EQ(events[0].metrics, *metrics) << line;
    }
  }
}

TEST(TranscriptUsage, theDateIsTheMessagesElseTheLinesElseTheFallback) {
  TranscriptReader reader;
  const auto dateOf = [&](const std::string& line, const UsageValue& fallback) {
    TranscriptUsage usage;
    reader.event(line, fallback, usage);
    return usage.events().empty() ? -1 : static_cast<std::int64_t>(usage.events()[0].date.seconds());
  };
  const std::string head = R"({"type":"message",)";
  const std::string usage = R"("message":{"role":"assistant","usage":{"input":1})";
  EXPECT_EQ(dateOf(head + R"("timestamp":200,)" + usage + R"(,"timestamp":100}})", std::int64_t{300}), 100);
  EXPECT_EQ(
      dateOf(head + R"("timestamp":"1970-01-01T00:03:20Z",)" + usage + R"(,"timestamp":"soon"}})", std::int64_t{300}),
      200);
  EXPECT_EQ(dateOf(head + usage + "}}", std::int64_t{300}), 300);
  EXPECT_EQ(dateOf(head + usage + "}}", {}), -1);
}

TEST_F(OpenClawTest, everyTranscriptOfASessionIsReadAndCopiesCountOnce) {
  writeSession("abc.jsonl", answer("3", 100) + "\n" + answer("3", 100) + "\n" + answer("", 5) + "\n" + answer("", 5));
  writeSession("abc.jsonl.reset.2025-01-02T03-04-05.678Z",
               answer("1", 1) + "\n" + answer("2", 10) + "\n" + answer("", 5) + "\n");
  writeSession("abc.jsonl.deleted.2025-01-02T03-04-05.678Z.0123456789abcdef0123456789abcdef.zst",
               zstdFrame(answer("2", 10) + "\n" + answer("3", 100)));
  writeSession("other.jsonl.zst", zstdFrame(answer("3", 1000)));
  writeSession("abc.trajectory.jsonl", answer("t", 50'000));
  writeSession("cold/" + std::string(64, 'a') + ".jsonl.zst", zstdFrame(answer("c", 50'000)));
  folder.write("main/abc.jsonl", answer("no", 50'000));
  folder.write("second/sessions/abc.jsonl", answer("4", 10'000));
  folder.write("stray.jsonl", answer("no", 50'000));
  fs::create_symlink(folder.path() / "stray.jsonl", folder.path() / "main/sessions/link.jsonl");
  EXPECT_EQ(scan(), (Totals{{"abc", 10'121}, {"other", 1000}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawTest, sessionsWithoutActivitySinceTheBoundAreLeftOutAsAWhole) {
  writeSession("old.jsonl", answer("1", 1, "1000000000"));
  writeSession("new.jsonl", answer("1", 1, "1000000000") + "\n" + answer("2", 2, "1700000000"));
  EXPECT_EQ(scan(Date::fromWholeSeconds(1'700'000'000)), (Totals{{"new", 3}}));
  EXPECT_EQ(scan(Date::fromWholeSeconds(1'700'000'001)), (Totals{}));
}

TEST_F(OpenClawTest, aFileIsOpenedAgainOnlyWhenItChanged) {
  writeSession("a.jsonl", answer("1", 1));
  writeSession("b.jsonl.zst", zstdFrame(answer("1", 2)));
  scan();
  EXPECT_THAT(opener.opened, ElementsAre("a.jsonl", "b.jsonl.zst"));
  opener.opened.clear();
  EXPECT_EQ(scan(), (Totals{{"a", 1}, {"b", 2}}));
  EXPECT_THAT(opener.opened, IsEmpty());
  writeSession("a.jsonl", answer("1", 1) + "\n" + answer("2", 4));
  fs::remove(folder.path() / "main/sessions/b.jsonl.zst");
  EXPECT_EQ(scan(), (Totals{{"a", 5}}));
  EXPECT_THAT(opener.opened, ElementsAre("a.jsonl"));
  adapter.clearCache();
  opener.opened.clear();
  scan();
  EXPECT_THAT(opener.opened, ElementsAre("a.jsonl"));
}

TEST_F(OpenClawTest, aFileThatCannotBeReadIsCountedAndItsLinesAreDropped) {
  const std::string frame = zstdFrame(answer("1", 1) + "\n" + answer("2", 2) + "\n");
  writeSession("truncated-frame.jsonl.zst", frame + frame.substr(0, frame.size() / 2));
  writeSession("no-zstd.jsonl.zst", answer("1", 1));
  writeSession("denied.jsonl", answer("1", 1));
  writeSession("good.jsonl", answer("1", 1));
  opener.failures["denied.jsonl"] = EACCES;
  EXPECT_EQ(scan(), (Totals{{"good", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 3);
  // What is broken stays counted but is not decoded again; what was refused is tried again.
  opener.opened.clear();
  EXPECT_EQ(scan(), (Totals{{"good", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 3);
  EXPECT_THAT(opener.opened, ElementsAre("denied.jsonl"));
  opener.failures.clear();
  writeSession("truncated-frame.jsonl.zst", frame + frame);
  EXPECT_EQ(scan(), (Totals{{"denied", 1}, {"good", 1}, {"truncated-frame", 3}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 1);
}

TEST_F(OpenClawTest, aTranscriptBeyondItsLimitIsUnreadable) {
  OpenClawLimits limits;
  limits.transcriptBytes = 1000;
  OpenClawUsageAdapter reader(opener, sha256, clock, limits);
  const auto padded = [](std::size_t bytes) {
    const std::string line = answer("1", 1) + "\n";
    return line + std::string(bytes - line.size(), ' ');
  };
  writeSession("exact.jsonl.zst", zstdFrame(padded(1000)));
  writeSession("beyond.jsonl.zst", zstdFrame(padded(1001)));
  writeSession("plain.jsonl", padded(5000));
  EXPECT_EQ(scanWith(reader), (Totals{{"exact", 1}, {"plain", 1}}));
  EXPECT_EQ(reader.unreadableSourceCount(), 1);
}

TEST_F(OpenClawTest, aFileRenamedBetweenListingAndOpeningIsFoundUnderItsNewName) {
  const fs::path path = writeSession("abc.jsonl", answer("1", 1));
  writeSession("aaa.jsonl", answer("1", 2));
  opener.beforeOpening = [&](const fs::path& opened) {
    if (opened == path && fs::exists(path)) fs::rename(path, path.native() + ".reset.2025-01-02T03-04-05.678Z");
  };
  EXPECT_EQ(scan(), (Totals{{"aaa", 2}, {"abc", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawTest, aFileRemovedBetweenListingAndOpeningIsNoFailure) {
  const fs::path path = writeSession("abc.jsonl", answer("1", 1));
  opener.beforeOpening = [&](const fs::path&) { fs::remove(path); };
  EXPECT_EQ(scan(), (Totals{}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawTest, aRootThatIsMissingOrEmptyHasNothingToCount) {
  EXPECT_TRUE(adapter.sessions(folder.path() / "absent", Date::distantPast()).empty());
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
  EXPECT_EQ(scan(), (Totals{}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

}  // namespace
}  // namespace quillmeter
