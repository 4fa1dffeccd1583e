#include "platform/linux/XdgLoginItems.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <utility>

#include "base/AtomicFile.h"

namespace quillmeter {
namespace {

constexpr std::size_t mostEntryBytes = 65'536;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

// Whether an entry starts its program: one of an application that neither is hidden nor was switched off.
bool startsProgram(std::string_view entry) {
  bool isInGroup = false;
  bool hasCommand = false;
  while (!entry.empty()) {
    const std::size_t end = std::min(entry.find('\n'), entry.size());
    const std::string_view line = trimmed(entry.substr(0, end));
    entry.remove_prefix(std::min(end + 1, entry.size()));
    if (line.starts_with('[')) isInGroup = line == "[Desktop Entry]";
    const std::size_t separator = line.find('=');
    if (!isInGroup || line.starts_with('#') || separator == std::string_view::npos) continue;
    const std::string_view key = trimmed(line.substr(0, separator));
    const std::string_view value = trimmed(line.substr(separator + 1));
    if (key == "Hidden" && value == "true") return false;
    if (key == "X-GNOME-Autostart-enabled" && value == "false") return false;
    if (key == "Exec" && !value.empty()) hasCommand = true;
  }
  return hasCommand;
}

// A text as a value of an entry.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\\\";
    } else if (c == '\n') {
      result += "\\n";
    } else {
      result += c;
    }
  }
  return result;
}

// One argument of a command: quoted, and its percent signs kept from being field codes.
std::string quotedArgument(std::string_view argument) {
  std::string result = "\"";
  for (const char c : argument) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) result += '\\';
    result += c;
    if (c == '%') result += c;
  }
  return result + '"';
}

std::string entryFor(const std::vector<std::string>& command) {
  std::string exec;
  for (const std::string& argument : command) exec += (exec.empty() ? "" : " ") + quotedArgument(argument);
  std::string entry = "[Desktop Entry]\nType=Application\nName=Quillmeter\nIcon=com.kesto.Quillmeter\n";
  entry += "Exec=" + escaped(exec) + "\n";
  if (!command.empty()) entry += "TryExec=" + escaped(command.front()) + "\n";  // not tried once it is uninstalled
  return entry + "Terminal=false\nX-GNOME-Autostart-enabled=true\n";
}

}  // namespace

XdgLoginItems::XdgLoginItems(const std::filesystem::path& configHome, std::vector<std::string> command)
    : command_(std::move(command)) {
  if (configHome.is_absolute()) entry_ = configHome / "autostart" / entryName;
}

LoginItemStatus XdgLoginItems::status() {
  if (entry_.empty()) return LoginItemStatus::unavailable;
  std::string text(mostEntryBytes, '\0');
  std::ifstream file(entry_, std::ios::binary);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return startsProgram(text) ? LoginItemStatus::registered : LoginItemStatus::notRegistered;
}

tl::expected<void, std::string> XdgLoginItems::registerProgram() {
  const auto written = writeFileAtomically(entry_, entryFor(command_), {.fileMode = 0644});
  if (!written) return tl::unexpected(std::string(std::strerror(written.error())));
  return {};
}

tl::expected<void, std::string> XdgLoginItems::unregisterProgram() {
  if (::unlink(entry_.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR) return {};
  return tl::unexpected(std::string(std::strerror(errno)));
}

}  // namespace quillmeter
