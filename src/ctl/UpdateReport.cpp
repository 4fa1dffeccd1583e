#include "ctl/UpdateReport.h"

#include <algorithm>
#include <string_view>

#include <nlohmann/json.hpp>

#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {
namespace {

const char* nameOf(UpdateResult::Kind kind) {
  switch (kind) {
    case UpdateResult::Kind::upToDate:
      return "upToDate";
    case UpdateResult::Kind::newerVersion:
      return "newerVersion";
    case UpdateResult::Kind::needsNewerSystem:
      return "needsNewerSystem";
    case UpdateResult::Kind::failed:
      break;
  }
  return "failed";
}

void printJson(Console& console, const UpdateResult& result) {
  nlohmann::ordered_json json = {{"result", nameOf(result.kind)},
                                 {"title", result.title()},
                                 {"detail", result.detail()},
                                 {"currentVersion", result.running.marketingVersion},
                                 {"currentBuild", result.running.buildNumber}};
  if (result.kind == UpdateResult::Kind::newerVersion || result.kind == UpdateResult::Kind::needsNewerSystem) {
    json["version"] = result.manifest.version;
    json["build"] = result.manifest.build;
    json["minimumSystemVersion"] = result.manifest.minimumSystemVersion;
  }
  if (const auto url = result.downloadURL()) json["downloadURL"] = *url;
  console.printLine(json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

// Release notes are foreign text of several lines.
void printLines(Console& console, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    console.printLine(printable(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

ExitCode printUpdateResult(Console& console, const UpdateResult& result, bool json) {
  const bool failed = result.kind == UpdateResult::Kind::failed;
  if (json) {
    printJson(console, result);
  } else if (failed) {
    console.diagnose(result.title());
    console.diagnose(result.detail());
  } else {
    console.printLine(console.styled(printable(result.title()), TextStyle::bold));
    printLines(console, result.detail());
    if (const auto url = result.downloadURL()) console.printLine(*url);
  }
  return failed ? ExitCode::couldNot : ExitCode::done;
}

}  // namespace quillmeter::ctl
