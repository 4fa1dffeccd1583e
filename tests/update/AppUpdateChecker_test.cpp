#include "update/AppUpdateChecker.h"

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace quillmeter {
namespace {

class ScriptedHttpsClient final : public HttpsClient {
 public:
  struct Transfer final : HttpsTransfer {
    explicit Transfer(int& live) : live_(live) { ++live_; }
    ~Transfer() override { --live_; }
    int& live_;
  };
  std::unique_ptr<HttpsTransfer> get(const HttpsRequest& asked, Completion completion) override {
    ++requests;
    request = asked;
    answer = std::move(completion);
    return std::make_unique<Transfer>(live);
  }
  HttpsRequest request;
  Completion answer;
  int requests = 0;
  int live = 0;
};

std::string manifestJson(const std::string& version, int build, const std::string& minimum) {
  return R"({"schemaVersion":1,"version":")" + version + R"(","build":)" + std::to_string(build) +
         R"(,"minimumSystemVersion":")" + minimum +
         R"(","downloadURL":"https://quillmeter.example/downloads/Quillmeter-9.dmg","releaseNotes":"Faster."})";
}

class AppUpdateCheckerTest : public testing::Test {
 protected:
  const UpdateResult& checkAgainst(const tl::expected<HttpsResponse, HttpsFailure>& response) {
    checker.check();
    client.answer(response);
    return *checker.result();
  }
  ScriptedHttpsClient client;
  AppUpdateChecker checker{client, AppVersion{"1.5.7", 11}, "quillmeter.example", "13.6.1"};
};

TEST_F(AppUpdateCheckerTest, asksOnceForTheManifestAndEndsTheTransfer) {
  checker.check();
  checker.check();
  EXPECT_EQ(client.requests, 1);
  EXPECT_EQ(checker.progressText(), "正在检查更新…");
  EXPECT_EQ(client.request.url, "https://quillmeter.example/updates/stable.json");
  ASSERT_EQ(client.request.headers.size(), 1U);
  EXPECT_EQ(client.request.headers[0].second, "application/json");
  EXPECT_EQ(client.request.requestTimeoutSeconds, 15);
  EXPECT_EQ(client.request.resourceTimeoutSeconds, 20);
  client.answer(HttpsResponse{200, manifestJson("1.5.7", 11, "13.0")});
  EXPECT_FALSE(checker.isChecking());
  EXPECT_EQ(client.live, 0);
  checker.check();
  EXPECT_EQ(client.requests, 2);
}

TEST_F(AppUpdateCheckerTest, tellsNewerUpToDateAndNeedsANewerSystem) {
  const UpdateResult same = checkAgainst(HttpsResponse{200, manifestJson("1.5.7", 11, "99")});
  EXPECT_EQ(same.title(), "已是最新版本");
  EXPECT_EQ(same.detail(), "当前版本：1.5.7 (11)");
  EXPECT_FALSE(same.downloadURL());
  const UpdateResult newer = checkAgainst(HttpsResponse{200, manifestJson("1.5.7", 12, "13.6.1")});
  EXPECT_EQ(newer.title(), "发现新版本 1.5.7（12）");
  EXPECT_EQ(newer.detail(), "Faster.");
  EXPECT_EQ(newer.downloadURL(), "https://quillmeter.example/downloads/Quillmeter-9.dmg");
  const UpdateResult system = checkAgainst(HttpsResponse{200, manifestJson("2", 1, "14.0")});
  EXPECT_EQ(system.title(), "新版需要更新的 macOS");
  EXPECT_EQ(system.detail(), "需要 macOS 14.0 或更新版本。");
  EXPECT_FALSE(system.downloadURL());
}

TEST_F(AppUpdateCheckerTest, everyFailureIsTheSameResult) {
  const std::string good = manifestJson("2", 1, "1");
  std::string foreign = good;
  foreign.replace(foreign.find("quillmeter.example"), 18, "stranger.example");
  for (const tl::expected<HttpsResponse, HttpsFailure>& response :
       {tl::expected<HttpsResponse, HttpsFailure>(HttpsResponse{204, good}),
        {HttpsResponse{304, good}},
        {HttpsResponse{301, good}},
        {HttpsResponse{404, good}},
        {HttpsResponse{200, ""}},
        {HttpsResponse{200, foreign}},
        {tl::unexpected(HttpsFailure::transport)},
        {tl::unexpected(HttpsFailure::timedOut)}}) {
    const UpdateResult& result = checkAgainst(response);
    EXPECT_EQ(result.title(), "无法检查更新");
    EXPECT_EQ(result.detail(), "请检查网络连接，稍后重试，也可前往官网下载最新版。");
  }
}

}  // namespace
}  // namespace quillmeter
