#include "screentime/model/ActivityArchive.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quillmeter {
namespace {

const std::string goodSpan = R"({"start":1.5,"end":2,"app":{"id":"a","name":"A"}})";

bool loads(const std::string& json) {
  const auto archive = ActivityArchive::decode(json);
  return archive && archive->validate();
}

std::string archiveWith(const std::string& spans) {
  return R"({"version":1,"startedAt":0,"enabled":true,"spans":)" + spans + "}";
}

TEST(ActivityArchive, theWrittenFormIsOneObjectWithSecondsSince2001) {
  const std::vector<ActivitySpan> spans{
      {Date{978'307'200'000'000}, Date{978'307'201'500'000}, {"org.example.编辑", "文本 \"编辑\""}},
      {Date{978'307'205'000'001}, Date{978'307'206'000'000}, {"org.example.编辑", "文本 \"编辑\""}},
  };
  const ActivityArchiveView view{Date{978'307'199'750'000}, true, spans};
  EXPECT_EQ(*view.encode(), R"({"version":1,"startedAt":-0.25,"enabled":true,"spans":[)"
                            R"({"start":0,"end":1.5,"app":{"id":"org.example.编辑","name":"文本 \"编辑\""}},)"
                            R"({"start":5.000001,"end":6,"app":{"id":"org.example.编辑","name":"文本 \"编辑\""}}]})");
  EXPECT_EQ(*ActivityArchiveView{}.encode(), R"({"version":1,"enabled":false,"spans":[]})");
}

TEST(ActivityArchive, aSaveAndALoadKeepEveryMicrosecond) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> anyDate(Date::distantPast().microseconds,
                                                      Date::distantFuture().microseconds - 0xfffffff - 1);
  std::vector<ActivitySpan> spans;
  for (int count = 0; count < 5'000; ++count) {
    const Date start{anyDate(random)};
    spans.push_back({start,
                     Date{start.microseconds + 1 + (anyDate(random) & 0xfffffff)},
                     {std::to_string(count % 7), std::to_string(count % 3)}});
  }
  const Date startedAt{anyDate(random)};
  const auto archive = ActivityArchive::decode(*ActivityArchiveView{startedAt, true, spans}.encode());
  ASSERT_TRUE(archive);
  EXPECT_TRUE(archive->validate());
  EXPECT_EQ(*archive, (ActivityArchive{1, startedAt, true, spans}));
}

TEST(ActivityArchive, textThatIsNoUtf8IsWrittenReadable) {
  const std::vector<ActivitySpan> spans{{Date{0}, Date{1'000'000}, {"caf\xe9", "\xff"}}};
  const auto archive = ActivityArchive::decode(*ActivityArchiveView{Date{0}, true, spans}.encode());
  ASSERT_TRUE(archive);
  EXPECT_EQ(archive->spans[0].app, (ActivityApp{"caf\xEF\xBF\xBD", "\xEF\xBF\xBD"}));
}

TEST(ActivityArchive, whatAnyWriterMayWriteLoads) {
  for (const std::string& json : {
           std::string(R"({"version":1,"enabled":false,"spans":[]})"),
           std::string(R"({"version":1,"startedAt":null,"enabled":false,"spans":[]})"),
           std::string(R"( { "spans" : [ ] , "enabled" : true , "startedAt" : 7.85e8 , "version" : 1.0 } )"),
           archiveWith("[" + goodSpan + "," + goodSpan + "]"),
           archiveWith(R"([{"app":{"name":"","id":"","icon":{"id":[1,{"id":2}]}},"end":-1,"start":-2e3,"note":[[]]}])"),
           std::string(
               R"({"version":1,"enabled":true,"spans":[],"later":{"spans":[{"start":"x"}],"enabled":3},"more":null})"),
       }) {
    EXPECT_TRUE(loads(json)) << json;
  }
}

TEST(ActivityArchive, whatBreaksTheRulesDoesNotLoad) {
  for (const std::string& json : {
           std::string(),
           std::string("null"),
           std::string("[]"),
           std::string("1"),
           std::string("{}"),
           std::string(R"({"version":1)"),
           std::string(R"({"version":1,"enabled":true,"spans":[]}x)"),
           std::string(R"({"version":2,"enabled":true,"spans":[]})"),
           std::string(R"({"version":1.5,"enabled":true,"spans":[]})"),
           std::string(R"({"version":"1","enabled":true,"spans":[]})"),
           std::string(R"({"version":1,"enabled":1,"spans":[]})"),
           std::string(R"({"version":1,"enabled":true})"),
           std::string(R"({"version":1,"enabled":true,"spans":null})"),
           std::string(R"({"version":1,"enabled":true,"spans":{}})"),
           std::string(R"({"enabled":true,"spans":[]})"),
           std::string(R"({"version":1,"spans":[]})"),
           std::string(R"({"version":1,"startedAt":"2026","enabled":true,"spans":[]})"),
           std::string(R"({"version":1,"startedAt":1e999,"enabled":true,"spans":[]})"),
           std::string(R"({"version":1,"enabled":true,"spans":[)" + goodSpan +
                       "]}"),  // spans without the date of the first recording
           archiveWith("[1]"),
           archiveWith("[[]]"),
           archiveWith("[null]"),
           archiveWith(R"([{"start":1,"end":2}])"),
           archiveWith(R"([{"start":1,"app":{"id":"a","name":"A"}}])"),
           archiveWith(R"([{"start":1,"end":2,"app":{"id":"a"}}])"),
           archiveWith(R"([{"start":1,"end":2,"app":{"id":"a","name":null}}])"),
           archiveWith(R"([{"start":1,"end":2,"app":["a","A"]}])"),
           archiveWith(R"([{"start":"1","end":2,"app":{"id":"a","name":"A"}}])"),
           archiveWith("[" + goodSpan + R"(,{"start":2,"end":2,"app":{"id":"a","name":"A"}}])"),
           archiveWith(R"([{"start":3,"end":2,"app":{"id":"a","name":"A"}}])"),
           archiveWith("[{\"start\":1,\"end\":2,\"app\":{\"id\":\"\xff\",\"name\":\"A\"}}]"),
       }) {
    EXPECT_FALSE(loads(json)) << json;
  }
}

TEST(ActivityArchive, aSpanBelowAMicrosecondIsLeftOutAndTheRestLoads) {
  const auto archive = ActivityArchive::decode(
      archiveWith(R"([{"start":1.00000001,"end":1.00000002,"app":{"id":"a","name":"A"}},)" + goodSpan + "]"));
  ASSERT_TRUE(archive && archive->validate());
  EXPECT_EQ(archive->spans.size(), 1U);
}

TEST(ActivityArchive, absurdDatesAreHeldWithinTheCalendarAndDepthDoesNotMatter) {
  EXPECT_TRUE(loads(archiveWith(R"([{"start":-1e300,"end":1e300,"app":{"id":"a","name":"A"}}])")));
  const std::string deep = R"({"version":1,"enabled":true,"spans":[],"x":)" + std::string(200'000, '[');
  EXPECT_FALSE(loads(deep));
  EXPECT_TRUE(loads(deep + std::string(200'000, ']') + "}"));
}

}  // namespace
}  // namespace quillmeter
