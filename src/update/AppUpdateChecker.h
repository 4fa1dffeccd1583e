#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Observers.h"
#include "platform/HttpsClient.h"
#include "update/model/UpdateManifest.h"

namespace quillmeter {

// How a check ended. Texts are looked up when they are read, so that they follow a change of language.
struct UpdateResult {
  enum class Kind { upToDate, newerVersion, needsNewerSystem, failed };

  Kind kind = Kind::failed;
  AppVersion running;
  UpdateManifest manifest;  // of newerVersion and needsNewerSystem

  std::string title() const;
  std::string detail() const;
  // Of a newer version only.
  std::optional<std::string> downloadURL() const;
};

// Fetches the release manifest when asked, checks it and compares it with the running program. Downloads and installs
// nothing. One for the program, main thread; the request runs asynchronously and its result is applied on the main
// thread.
class AppUpdateChecker {
 public:
  // `client` outlives the checker; `systemVersion` is the running system's "major.minor.patch".
  AppUpdateChecker(HttpsClient& client, AppVersion running, std::string webHost, std::string systemVersion);

  // Ignored during a check.
  void check();

  bool isChecking() const { return transfer_ != nullptr; }
  // "正在检查更新…" during a check.
  std::optional<std::string> progressText() const;
  const std::optional<UpdateResult>& result() const { return result_; }
  [[nodiscard]] Subscription onChange(std::function<void()> changed) { return observers_.add(std::move(changed)); }

 private:
  UpdateResult evaluate(const tl::expected<HttpsResponse, HttpsFailure>& response) const;

  HttpsClient& client_;
  const AppVersion running_;
  const std::string webHost_;
  const std::string systemVersion_;
  std::unique_ptr<HttpsTransfer> transfer_;
  std::optional<UpdateResult> result_;
  Observers<> observers_;
};

}  // namespace quillmeter
