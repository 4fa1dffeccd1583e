#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/ActivationPolicy.h"
#include "platform/ApplicationIcons.h"
#include "platform/DesktopAppearance.h"
#include "platform/FolderPicker.h"
#include "platform/FolderProbe.h"
#include "platform/LoginItems.h"

namespace quillmeter {

// What a desktop offers to a program, as a test sets it.

class FakeLoginItems final : public LoginItems {
 public:
  LoginItemStatus status() override { return current; }
  tl::expected<void, std::string> registerProgram() override { return change(statusWhenRegistered); }
  tl::expected<void, std::string> unregisterProgram() override { return change(LoginItemStatus::notRegistered); }

  LoginItemStatus current = LoginItemStatus::notRegistered;
  LoginItemStatus statusWhenRegistered = LoginItemStatus::registered;
  std::optional<std::string> failure;  // the system's text; changes fail while it is there

 private:
  tl::expected<void, std::string> change(LoginItemStatus next) {
    if (failure) return tl::unexpected(*failure);
    current = next;
    return {};
  }
};

class FakeActivationPolicy final : public ActivationPolicy {
 public:
  bool setListed(bool isListed) override {
    if (refuses) return false;
    listed = isListed;
    return true;
  }
  void activate() override { ++activations; }
  bool listed = true;
  bool refuses = false;
  int activations = 0;
};

// Keeps the requests; each is answered by the test, or at once with the folder it starts in.
class FakeFolderPicker final : public FolderPicker {
 public:
  void pick(const FolderPickRequest& request, Completion completion) override {
    requests.push_back(request);
    if (acceptsAtOnce) return completion(request.startDirectory);
    completion_ = std::move(completion);
  }
  bool isOpen() const { return static_cast<bool>(completion_); }
  // Nothing: the user cancels.
  void answer(std::optional<std::filesystem::path> folder) {
    if (const auto completion = std::exchange(completion_, {})) completion(std::move(folder));
  }

  bool acceptsAtOnce = false;
  std::vector<FolderPickRequest> requests;

 private:
  Completion completion_;
};

class FakeApplicationIcons final : public ApplicationIcons {
 public:
  std::string iconName(std::string_view applicationId) override {
    const auto found = names.find(applicationId);
    return found == names.end() ? std::string() : found->second;
  }
  std::map<std::string, std::string, std::less<>> names;
};

class FakeDesktopAppearance final : public DesktopAppearance {
 public:
  AppearancePreferences current() const override { return preferences; }
  void setChangeHandler(std::function<void()> handler) override { changed_ = std::move(handler); }
  void change(const AppearancePreferences& next) {
    preferences = next;
    if (changed_) changed_();
  }
  AppearancePreferences preferences;

 private:
  std::function<void()> changed_;
};

// The real file system, but for the folders that a test makes unreadable.
class FakeFolderProbe final : public FolderProbe {
 public:
  bool exists(const std::filesystem::path& path) const override {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
  }
  bool isDirectory(const std::filesystem::path& path) const override {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
  }
  bool isReadable(const std::filesystem::path& path) const override {
    return exists(path) && !unreadable.contains(path);
  }
  bool isExecutableFile(const std::filesystem::path& path) const override {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    return std::filesystem::is_regular_file(status) &&
           (status.permissions() & std::filesystem::perms::owner_exec) != std::filesystem::perms::none;
  }
  std::optional<std::filesystem::path> canonical(const std::filesystem::path& path) const override {
    std::error_code error;
    auto result = std::filesystem::canonical(path, error);
    if (error) return std::nullopt;
    return result;
  }
  std::set<std::filesystem::path> unreadable;
};

}  // namespace quillmeter
