#include "ctl/TerminalFolderPicker.h"

#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>

#include "base/L10n.h"
#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {
namespace {

constexpr std::size_t mostLineBytes = 65'536;

// A line without blanks around it; absent at the end of the input. Byte by byte: what comes behind the line is the next
// question's.
std::optional<std::string> readLine(int input) {
  std::string line;
  for (char letter = 0; line.size() < mostLineBytes;) {
    const ssize_t count = ::read(input, &letter, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    if (letter == '\n') break;
    line += letter;
  }
  constexpr const char* blanks = " \t\r";
  const std::size_t begin = line.find_first_not_of(blanks);
  if (begin == std::string::npos) return std::string();
  return line.substr(begin, line.find_last_not_of(blanks) - begin + 1);
}

}  // namespace

void TerminalFolderPicker::pick(const FolderPickRequest& request, Completion completion) {
  console_.printLine();
  console_.printLine(console_.styled(request.title, TextStyle::bold));
  console_.printLine(request.message);
  console_.print(L10n::format(QM_TR("文件夹（回车：%@；q：取消）："), {printable(request.startDirectory.string())}));
  console_.flush();
  const std::optional<std::string> line = readLine(input_);
  if (!line) console_.printLine();  // the cursor still stands behind the question
  if (!line || *line == "q") return completion(std::nullopt);
  if (line->empty()) return completion(request.startDirectory);
  if (line->starts_with("~/")) return completion(home_ / line->substr(2));
  completion(std::filesystem::path(*line));
}

}  // namespace quillmeter::ctl
