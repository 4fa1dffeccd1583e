#include "agents/LogFile.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillmeter {

namespace {

bool isJSONLines(std::string_view name) {
  constexpr std::string_view extension = ".jsonl";
  if (name.size() <= extension.size()) return false;  // ".jsonl" is a hidden file without extension
  const std::string_view tail = name.substr(name.size() - extension.size());
  return std::equal(tail.begin(), tail.end(), extension.begin(), [](char byte, char lower) {
    return byte == lower || (byte >= 'A' && byte <= 'Z' && byte - 'A' + 'a' == lower);
  });
}

}  // namespace

LogListing recentJSONLFiles(const std::filesystem::path& root, Date since) {
  LogListing listing;
  WalkOutcome outcome = walkDirectory(root, WalkOptions{}, isJSONLines, [&listing, since](const WalkedFile& file) {
    if (file.modifiedAt < since) return;
    listing.files.push_back({file.path.native(), file.modifiedAt, file.size});
  });
  listing.unlistedFolders = outcome.unlistedFolders;
  listing.namedFolders = std::move(outcome.named);
  std::sort(listing.files.begin(), listing.files.end(), [](const LogFile& a, const LogFile& b) {
    return a.modifiedAt != b.modifiedAt ? a.modifiedAt > b.modifiedAt : a.path < b.path;
  });
  return listing;
}

}  // namespace quillmeter
