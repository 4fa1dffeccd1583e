#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace quillmeter {

// What a folder picker shows. It picks one existing folder, shows hidden ones and creates none.
struct FolderPickRequest {
  std::string title;
  std::string message;
  std::string prompt;  // text of the confirming button
  std::filesystem::path startDirectory;
  friend bool operator==(const FolderPickRequest&, const FolderPickRequest&) = default;
};

// The system's folder picker. Main thread; does not block.
class FolderPicker {
 public:
  // The folder, or nothing when the user cancelled. Called once, on the main thread, possibly before pick() returns.
  using Completion = std::function<void(std::optional<std::filesystem::path>)>;
  virtual ~FolderPicker() = default;
  virtual void pick(const FolderPickRequest& request, Completion completion) = 0;
};

}  // namespace quillmeter
