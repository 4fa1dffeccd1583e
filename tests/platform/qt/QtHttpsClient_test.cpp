#include "platform/qt/QtHttpsClient.h"

#include <QCoreApplication>
#include <QEvent>
#include <filesystem>
#include <iterator>
#include <optional>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/HttpsServer.h"
#include "update/AppUpdateChecker.h"

namespace quillmeter {
namespace {

using testing::HasSubstr;
using testing::Not;
using Result = tl::expected<HttpsResponse, HttpsFailure>;

constexpr double patientSeconds = 60;

class QtHttpsClientTest : public testing::Test {
 protected:
  // Ended transfers are deleted by an event loop that runs, which a test has not. Their threads count as finished before
  // the TLS library has freed what it keeps for each: a process that ends meanwhile seems to leak it.
  void TearDown() override {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    while (threadCount() > threadsBefore) std::this_thread::yield();
  }
  static std::ptrdiff_t threadCount() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return std::distance(begin(threads), end(threads));
  }
  HttpsRequest requestFor(const std::string& path) const {
    return {.url = server.url(path), .requestTimeoutSeconds = patientSeconds, .resourceTimeoutSeconds = patientSeconds};
  }
  static Result fetch(HttpsClient& client, const HttpsRequest& request) {
    std::optional<Result> result;
    std::unique_ptr<HttpsTransfer> transfer;
    transfer = client.get(request, [&](const Result& given) {
      result = given;
      transfer.reset();  // as who owns it does
    });
    EXPECT_FALSE(result) << "called before get() returned";
    while (!result) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return *result;
  }
  Result fetch(const std::string& path) { return fetch(client, requestFor(path)); }

  const std::ptrdiff_t threadsBefore = threadCount();
  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
  test::CertificateAuthority authority{"IP:127.0.0.1"};
  test::HttpsServer server{authority};
  QtHttpsClient client{{authority.authority()}};
};

TEST_F(QtHttpsClientTest, whateverStatusAServerAnswersIsAResponse) {
  for (const int status : {200, 201, 204, 304, 401, 403, 404, 410, 500, 503}) {
    const Result result = fetch("/status/" + std::to_string(status));
    ASSERT_TRUE(result) << status;
    EXPECT_EQ(result->status, status);
    EXPECT_EQ(result->body, status == 204 || status == 304 ? "" : "body") << status;
  }
  const Result redirect = fetch("/redirect");
  ASSERT_TRUE(redirect);
  EXPECT_EQ(redirect->status, 302) << "not followed";
}

TEST_F(QtHttpsClientTest, sendsItsHeadersAndRemembersNoCookie) {
  HttpsRequest request = requestFor("/echo");
  request.headers = {{"Accept", "application/json"}};
  const Result first = fetch(client, request);
  ASSERT_TRUE(first);
  EXPECT_THAT(first->body, HasSubstr("Accept: application/json"));
  EXPECT_THAT(first->body, HasSubstr("Accept-Encoding: identity"));
  const Result second = fetch(client, request);
  ASSERT_TRUE(second);
  EXPECT_THAT(second->body, Not(HasSubstr("Cookie")));
}

TEST_F(QtHttpsClientTest, aBodyIsBoundedWhetherItsLengthIsToldOrNot) {
  HttpsRequest request = requestFor("/exact");
  request.maximumBodyBytes = 65'536;
  const Result whole = fetch(client, request);
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->body.size(), 65'536U);
  request.maximumBodyBytes = 65'535;
  EXPECT_EQ(fetch(client, request), Result(tl::unexpect, HttpsFailure::tooLarge));
  EXPECT_EQ(fetch("/large"), Result(tl::unexpect, HttpsFailure::tooLarge));
}

TEST_F(QtHttpsClientTest, aBrokenExchangeIsNoResponse) {
  for (const char* path : {"/half", "/half-chunk", "/nonsense"}) {
    EXPECT_EQ(fetch(path), Result(tl::unexpect, HttpsFailure::transport)) << path;
  }
  EXPECT_EQ(fetch(client, {.url = "https://127.0.0.1:1/"}), Result(tl::unexpect, HttpsFailure::transport));
}

TEST_F(QtHttpsClientTest, silenceAndSlownessEndInTime) {
  HttpsRequest silent = requestFor("/silent");
  silent.requestTimeoutSeconds = 0.2;
  EXPECT_EQ(fetch(client, silent), Result(tl::unexpect, HttpsFailure::timedOut));
  HttpsRequest trickle = requestFor("/trickle");
  trickle.resourceTimeoutSeconds = 0.2;
  EXPECT_EQ(fetch(client, trickle), Result(tl::unexpect, HttpsFailure::timedOut));
}

TEST_F(QtHttpsClientTest, aCertificateThatIsNotTrustedOrNotTheHostsEndsIt) {
  QtHttpsClient stranger;
  EXPECT_EQ(fetch(stranger, requestFor("/status/200")), Result(tl::unexpect, HttpsFailure::transport));
  const test::CertificateAuthority forAnotherHost("DNS:quillmeter.example");
  const test::HttpsServer impostor(forAnotherHost);
  QtHttpsClient trusting({forAnotherHost.authority()});
  EXPECT_EQ(fetch(trusting, {.url = impostor.url("/status/200")}), Result(tl::unexpect, HttpsFailure::transport));
}

TEST_F(QtHttpsClientTest, onlyHttpsIsAsked) {
  for (const char* url :
       {"http://127.0.0.1/", "file:///etc/hostname", "https:///no-host", "ftp://127.0.0.1/", "", "::"}) {
    EXPECT_EQ(fetch(client, {.url = url}), Result(tl::unexpect, HttpsFailure::refusedUrl)) << url;
  }
}

TEST_F(QtHttpsClientTest, aTransferThatIsDestroyedIsNotHeardOfAgain) {
  bool heard = false;
  auto transfer = client.get(requestFor("/status/200"), [&heard](const Result&) { heard = true; });
  transfer.reset();
  auto refused = client.get({.url = "http://x/"}, [&heard](const Result&) { heard = true; });
  refused.reset();
  ASSERT_TRUE(fetch("/status/200"));
  EXPECT_FALSE(heard);
}

// Asks the test's server in place of the web host.
class RedirectedClient final : public HttpsClient {
 public:
  RedirectedClient(HttpsClient& client, const test::HttpsServer& server) : client_(client), server_(server) {}
  std::unique_ptr<HttpsTransfer> get(const HttpsRequest& request, Completion completion) override {
    HttpsRequest redirected = request;
    EXPECT_EQ(redirected.url, "https://quillmeter.example/updates/stable.json");
    redirected.url = server_.url("/updates/stable.json");
    return client_.get(redirected, std::move(completion));
  }

 private:
  HttpsClient& client_;
  const test::HttpsServer& server_;
};

TEST_F(QtHttpsClientTest, anUpdateCheckGoesThroughIt) {
  authority.publish(R"({"schemaVersion":1,"version":"9.0","build":7,"minimumSystemVersion":"5.0","releaseNotes":"说明",
                        "downloadURL":"https://quillmeter.example/downloads/Quillmeter-9.0.dmg"})");
  RedirectedClient redirected(client, server);
  AppUpdateChecker checker(redirected, {"1.0", 1}, "quillmeter.example", "6.1.0");
  checker.check();
  EXPECT_EQ(checker.progressText(), "正在检查更新…");
  while (checker.isChecking()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  ASSERT_TRUE(checker.result());
  EXPECT_EQ(checker.result()->title(), "发现新版本 9.0（7）");
  EXPECT_EQ(checker.result()->detail(), "说明");
}

}  // namespace
}  // namespace quillmeter
