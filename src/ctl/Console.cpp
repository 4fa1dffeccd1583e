#include "ctl/Console.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "base/L10n.h"
#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {
namespace {

constexpr std::size_t flushBytes = 65'536;
constexpr int defaultColumns = 80;

bool environmentAllowsColor() {
  const char* noColor = std::getenv("NO_COLOR");
  if (noColor != nullptr && *noColor != '\0') return false;
  const char* term = std::getenv("TERM");
  return term != nullptr && *term != '\0' && std::string_view(term) != "dumb";
}

const char* sequenceOf(TextStyle style) {
  switch (style) {
    case TextStyle::plain:
      return "";
    case TextStyle::bold:
      return "\x1b[1m";
    case TextStyle::dim:
      return "\x1b[2m";
    case TextStyle::accent:
      return "\x1b[36m";
    case TextStyle::warning:
      return "\x1b[33m";
  }
  return "";
}

}  // namespace

Console::Console(int outputDescriptor, int errorDescriptor)
    : outputDescriptor_(outputDescriptor),
      errorDescriptor_(errorDescriptor),
      outputIsTerminal_(::isatty(outputDescriptor) == 1),
      errorIsTerminal_(::isatty(errorDescriptor) == 1),
      colored_(outputIsTerminal_ && environmentAllowsColor()) {
  std::signal(SIGPIPE, SIG_IGN);
}

void Console::occupyStandardDescriptors() {
  for (int fd = 0; fd <= 2; ++fd) {
    if (::fcntl(fd, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free number is `fd`. The wrong direction on purpose: using the stream fails as on a closed one.
    if (::open("/dev/null", fd == 0 ? O_WRONLY : O_RDONLY) == -1) return;
  }
}

void Console::print(std::string_view text) {
  pending_ += text;
  if (pending_.size() >= flushBytes) flush();
}

void Console::printLine(std::string_view text) {
  print(text);
  print("\n");
}

void Console::diagnose(std::string_view sentence) {
  if (sentence == lastDiagnosis_) return;
  lastDiagnosis_ = sentence;
  showProgress({});
  // What was printed before stands before the diagnostic where both go to one place.
  flush();
  std::string line = "quillmeterctl: ";
  line += printable(sentence);
  line += '\n';
  writeAll(errorDescriptor_, line);
}

ExitCode Console::failure(std::string_view sentence) {
  diagnose(sentence);
  return ExitCode::couldNot;
}

ExitCode Console::wrongUse(std::string_view sentence) {
  diagnose(sentence);
  return ExitCode::wrongUse;
}

void Console::showProgress(std::string_view line) {
  if (!errorIsTerminal_ || (line.empty() && !progressShown_)) return;
  std::string bytes = "\r\x1b[K";
  bytes += truncatedToWidth(printable(line), columns() - 1);
  writeAll(errorDescriptor_, bytes);
  progressShown_ = !line.empty();
}

int Console::columns() const {
  const int fd = outputIsTerminal_ ? outputDescriptor_ : errorIsTerminal_ ? errorDescriptor_ : -1;
  winsize size{};
  if (fd >= 0 && ::ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return defaultColumns;
}

std::string Console::styled(std::string_view text, TextStyle style) const {
  std::string result(text);
  if (colored_ && style != TextStyle::plain && !result.empty()) result = sequenceOf(style) + result + "\x1b[0m";
  return result;
}

void Console::flush() {
  if (writeError_ == 0 && !pending_.empty()) writeError_ = writeAll(outputDescriptor_, pending_);
  pending_.clear();
}

ExitCode Console::finish(ExitCode code) {
  showProgress({});
  flush();
  if (writeError_ == 0) return code;
  if (writeError_ == EPIPE) return ExitCode::readerGone;
  return failure(L10n::format(QM_TR("无法写入标准输出：%@。"), {std::strerror(writeError_)}));
}

}  // namespace quillmeter::ctl
