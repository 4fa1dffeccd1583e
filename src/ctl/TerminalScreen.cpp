#include "ctl/TerminalScreen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace quillmeter::ctl {
namespace {

// Lines are never wrapped: one that is too long for a terminal that shrank meanwhile must not scroll the rest away.
constexpr std::string_view enterSequence = "\x1b[?1049h\x1b[?25l\x1b[?7l";
constexpr std::string_view leaveSequence = "\x1b[0m\x1b[?7h\x1b[?25h\x1b[?1049l";
constexpr std::string_view clearSequence = "\x1b[0m\x1b[H\x1b[2J";
constexpr std::string_view clearToEndOfLine = "\x1b[K";
constexpr int leavePatienceMilliseconds = 200;

}  // namespace

TerminalScreen::TerminalScreen(int input, int output) : input_(input), output_(output) {}

void TerminalScreen::enter() {
  if (entered_) return;
  entered_ = true;
  termios modes{};
  if (::tcgetattr(input_, &modes) == 0) {
    modesBefore_ = modes;
    modes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    modes.c_cc[VMIN] = 1;
    modes.c_cc[VTIME] = 0;
    ::tcsetattr(input_, TCSANOW, &modes);
  }
  isAlternate_ = false;
  invalidate();
}

void TerminalScreen::leave() {
  if (!entered_) return;
  entered_ = false;
  if (isAlternate_) output_.finishWith(leaveSequence, leavePatienceMilliseconds);
  if (modesBefore_) ::tcsetattr(input_, TCSANOW, &*modesBefore_);
  modesBefore_.reset();
}

ScreenSize TerminalScreen::size() const {
  winsize size{};
  if (::ioctl(output_.descriptor(), TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
  return {size.ws_col, size.ws_row};
}

bool TerminalScreen::show(const std::vector<std::string>& lines) {
  frame_.clear();
  if (!isAlternate_) frame_ += enterSequence;
  if (isBlank_) frame_ += clearSequence;
  const std::size_t count = std::max(lines.size(), shown_.size());
  for (std::size_t row = 0; row < count; ++row) {
    const std::string_view before = row < shown_.size() ? std::string_view(shown_[row]) : std::string_view();
    const std::string_view now = row < lines.size() ? std::string_view(lines[row]) : std::string_view();
    if (before == now) continue;
    frame_ += "\x1b[" + std::to_string(row + 1) + ";1H";
    // Before the text: behind a line of full width it would take its last character.
    if (!isBlank_) frame_ += clearToEndOfLine;
    frame_ += now;
  }
  if (frame_.empty()) return true;
  if (!output_.offer(frame_)) return false;
  shown_ = lines;
  isBlank_ = false;
  isAlternate_ = true;
  return true;
}

}  // namespace quillmeter::ctl
