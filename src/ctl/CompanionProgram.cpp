#include "ctl/CompanionProgram.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "base/L10n.h"

namespace quillmeter::ctl {
namespace {

std::string companionPath(const std::string& program) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const std::filesystem::path beside = folder / program;
  if (::access(beside.c_str(), X_OK) == 0) return beside;
  return folder.parent_path() / QUILLMETER_LIBEXEC_FOLDER / program;
}

}  // namespace

ExitCode becomeCompanion(Console& console, const std::string& program, const std::vector<std::string>& arguments) {
  const std::string path = companionPath(program);
  std::vector<std::string> texts = {program};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  ::execv(path.c_str(), pointers.data());
  return console.failure(L10n::format(QM_TR("无法启动 %@"), {path}) + " (" + std::strerror(errno) + ")");
}

}  // namespace quillmeter::ctl
