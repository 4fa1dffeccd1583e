#include "ctl/RecordCommand.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <unistd.h>
#include <CLI/CLI.hpp>

#include "base/L10n.h"

namespace quillmeter::ctl {
namespace {

// Beside this program, as it is built, or where it is installed.
std::filesystem::path recorderProgram() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const std::filesystem::path beside = folder / "quillmeter-record";
  if (access(beside.c_str(), X_OK) == 0) return beside;
  return folder.parent_path() / QUILLMETER_LIBEXEC_FOLDER / "quillmeter-record";
}

}  // namespace

void RecordCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("record", QM_TR("开启屏幕使用时间记录，并在前台记录到结束"));
  command->add_option("--archive", archive_, QM_TR("写入这个记录文件"))->type_name("FILE");
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode RecordCommand::run() {
  const std::string program = recorderProgram().string();
  const std::string archive = archive_.empty() ? defaultArchive_.string() : archive_;
  execl(program.c_str(), "quillmeter-record", archive.c_str(), language_.c_str(), nullptr);
  return context_.console.failure(L10n::format(QM_TR("无法启动 %@"), {program}) + " (" + std::strerror(errno) + ")");
}

}  // namespace quillmeter::ctl
