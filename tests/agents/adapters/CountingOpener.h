#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/FileOpener.h"

namespace quillmeter::test {

// Opens as the system does, remembers what was asked for, and fails where it is told to.
class CountingOpener final : public FileOpener {
 public:
  tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) override {
    opened.push_back(path.filename().native());
    if (beforeOpening) beforeOpening(path);
    if (const auto failure = failures.find(opened.back()); failure != failures.end())
      return tl::unexpected(failure->second);
    return system_.open(path);
  }

  std::vector<std::string> opened;      // file names, in order
  std::map<std::string, int> failures;  // file name to errno
  std::function<void(const std::filesystem::path&)> beforeOpening;

 private:
  SystemFileOpener system_;
};

}  // namespace quillmeter::test
