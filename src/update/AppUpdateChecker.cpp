#include "update/AppUpdateChecker.h"

#include <utility>

#include "base/L10n.h"

namespace quillmeter {

std::string UpdateResult::title() const {
  switch (kind) {
    case Kind::upToDate:
      return QM_TR("已是最新版本");
    case Kind::newerVersion:
      return L10n::format(QM_TR("发现新版本 %@（%@）"), {manifest.version, std::to_string(manifest.build)});
    case Kind::needsNewerSystem:
      return QM_TR("新版需要更新的 macOS");
    case Kind::failed:
      break;
  }
  return QM_TR("无法检查更新");
}

std::string UpdateResult::detail() const {
  switch (kind) {
    case Kind::upToDate:
      return L10n::format(QM_TR("当前版本：%@"), {running.diagnosticDisplay()});
    case Kind::newerVersion:
      return manifest.releaseNotes;
    case Kind::needsNewerSystem:
      return L10n::format(QM_TR("需要 macOS %@ 或更新版本。"), {manifest.minimumSystemVersion});
    case Kind::failed:
      break;
  }
  return QM_TR("请检查网络连接，稍后重试，也可前往官网下载最新版。");
}

std::optional<std::string> UpdateResult::downloadURL() const {
  if (kind != Kind::newerVersion) return std::nullopt;
  return manifest.downloadURL;
}

AppUpdateChecker::AppUpdateChecker(HttpsClient& client, AppVersion running, std::string webHost,
                                   std::string systemVersion)
    : client_(client),
      running_(std::move(running)),
      webHost_(std::move(webHost)),
      systemVersion_(std::move(systemVersion)) {}

void AppUpdateChecker::check() {
  if (isChecking()) return;
  const HttpsRequest request{.url = "https://" + webHost_ + "/updates/stable.json",
                             .headers = {{"Accept", "application/json"}}};
  transfer_ = client_.get(request, [this](const tl::expected<HttpsResponse, HttpsFailure>& response) {
    result_ = evaluate(response);
    const auto ended = std::exchange(transfer_, nullptr);
    observers_.notify();
  });
  observers_.notify();
}

std::optional<std::string> AppUpdateChecker::progressText() const {
  if (!isChecking()) return std::nullopt;
  return QM_TR("正在检查更新…");
}

UpdateResult AppUpdateChecker::evaluate(const tl::expected<HttpsResponse, HttpsFailure>& response) const {
  using Kind = UpdateResult::Kind;
  if (!response || response->status != 200) return {Kind::failed, running_, {}};
  auto manifest = UpdateManifest::decode(response->body);
  if (!manifest || manifest->validate(webHost_)) return {Kind::failed, running_, {}};
  if (!manifest->isNewer(running_)) return {Kind::upToDate, running_, {}};
  const Kind kind = manifest->supports(systemVersion_) ? Kind::newerVersion : Kind::needsNewerSystem;
  return {kind, running_, std::move(*manifest)};
}

}  // namespace quillmeter
