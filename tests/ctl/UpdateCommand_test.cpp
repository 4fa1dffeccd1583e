#include <sys/mount.h>

#include <cerrno>
#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ctl/ToolRun.h"
#include "platform/linux/KernelVersion.h"
#include "support/HttpsServer.h"
#include "support/PrivateNetwork.h"
#include "update/model/WebHost.h"

namespace quillmeter::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::string downloadURL = "https://" + std::string(productWebHost()) + "/downloads/Quillmeter-99.0.dmg";
const std::string manifest =
    R"({"schemaVersion":1,"version":"99.0","build":7,"minimumSystemVersion":"2.6","releaseNotes":"First\nSecond",
        "downloadURL":")" +
    downloadURL + "\"}";

// Puts `source` in the place of `target` for this process and its children.
void bindOver(const std::filesystem::path& source, const char* target) {
  ASSERT_EQ(::mount(source.c_str(), target, nullptr, MS_BIND, nullptr), 0) << target << ": " << std::strerror(errno);
}

TEST(UpdateCommand, withoutANetworkItCannotCheck) {
  inPrivateNetwork([] {
    const ToolResult result = ToolRun().run({"update"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("无法检查更新"), HasSubstr("请检查网络连接，稍后重试，也可前往官网下载最新版。")));
    const auto json = nlohmann::json::parse(ToolRun().run({"update", "--json"}).out, nullptr, false);
    EXPECT_EQ(json.value("result", ""), "failed");
  });
}

// The whole way, in a network where the web host is this machine and the system trusts the test's authority.
TEST(UpdateCommand, asksTheWebHostAndShowsTheNewerVersion) {
  inPrivateNetwork([] {
    const std::string host(productWebHost());
    ASSERT_EQ(::unshare(CLONE_NEWNS), 0);
    ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    ip({"link set lo up"});
    const TemporaryDirectory system;
    const CertificateAuthority authority("DNS:" + host);
    authority.publish(manifest);
    system.write("certs/authority.pem", authority.authority());
    bindOver(system.write("hosts", "127.0.0.1 " + host + "\n"), "/etc/hosts");
    bindOver(system.path() / "certs", "/etc/ssl/certs");
    const HttpsServer server(authority, "443");

    ToolRun tool;
    tool.environment["LSAN_OPTIONS"] =
        "suppressions=" QUILLMETER_TEST_DATA "/sanitizers/openssl.supp:print_suppressions=0";
    const ToolResult result = tool.run({"update"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "发现新版本 99.0（7）\nFirst\nSecond\n" + downloadURL + "\n");
    const auto json = nlohmann::json::parse(tool.run({"update", "--json"}).out, nullptr, false);
    EXPECT_EQ(json.value("result", ""), "newerVersion");
    EXPECT_EQ(json.value("build", 0), 7);
  });
}

TEST(KernelVersion, isThreeNumbersOfWhateverReleaseText) {
  const std::pair<const char*, const char*> cases[] = {{"6.1.0-18-amd64", "6.1.0"},
                                                       {"6.18", "6.18.0"},
                                                       {"5.15.167.4-wsl", "5.15.167"},
                                                       {"6.2-rc1", "6.2.0"},
                                                       {"", "0.0.0"}};
  for (const auto& [release, version] : cases) EXPECT_EQ(kernelVersionIn(release), version);
}

}  // namespace
}  // namespace quillmeter::test
