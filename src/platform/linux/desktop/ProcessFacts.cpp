#include "platform/linux/desktop/ProcessFacts.h"

#include <fstream>
#include <iterator>
#include <string_view>

#include <unistd.h>

#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

std::string readText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text(65'536, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

std::optional<std::int64_t> bootTime(const std::filesystem::path& procRoot) {
  std::ifstream file(procRoot / "stat");
  std::string line;
  while (std::getline(file, line)) {
    std::string_view rest = line;
    if (takeWord(rest) == "btime") return numberFrom<std::int64_t>(takeWord(rest));
  }
  return std::nullopt;
}

}  // namespace

std::optional<double> processLaunchTime(const std::filesystem::path& procRoot, std::int64_t processId) {
  constexpr int fieldsBeforeStart = 19;  // between the name in brackets, which may hold blanks, and field 22
  const std::string stat = readText(procRoot / std::to_string(processId) / "stat");
  const std::size_t nameEnd = stat.rfind(')');
  if (nameEnd == std::string::npos) return std::nullopt;
  std::string_view rest = std::string_view(stat).substr(nameEnd + 1);
  for (int field = 0; field < fieldsBeforeStart; ++field) takeWord(rest);
  const auto ticks = numberFrom<std::int64_t>(takeWord(rest));
  const auto boot = bootTime(procRoot);
  if (!ticks || !boot) return std::nullopt;
  return static_cast<double>(*boot) + static_cast<double>(*ticks) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

std::optional<std::string> processName(const std::filesystem::path& procRoot, std::int64_t processId) {
  std::string name = readText(procRoot / std::to_string(processId) / "comm");
  while (name.ends_with('\n')) name.pop_back();
  if (name.empty()) return std::nullopt;
  return name;
}

}  // namespace quillmeter
