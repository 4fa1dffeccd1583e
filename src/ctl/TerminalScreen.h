#pragma once

#include <termios.h>

#include <optional>
#include <string>
#include <vector>

#include "ctl/NonblockingOutput.h"

namespace quillmeter::ctl {

struct ScreenSize {
  int columns = 80;
  int rows = 24;
  friend bool operator==(const ScreenSize&, const ScreenSize&) = default;
};

// The whole terminal while a live view is shown: its alternate screen without cursor, keys without echo. A frame costs
// one write, of the lines that differ from those on the screen, and none when nothing does; a terminal that does not
// take it misses the frame. What was there before comes back with leave() and with the destructor. One thread.
class TerminalScreen {
 public:
  // `input` may be no terminal: then there are no keys.
  TerminalScreen(int input, int output);
  ~TerminalScreen() { leave(); }
  TerminalScreen(const TerminalScreen&) = delete;
  TerminalScreen& operator=(const TerminalScreen&) = delete;

  void enter();
  void leave();
  // Draws everything with the next frame: after a change of size, or when something else wrote on the terminal.
  void invalidate() { shown_.clear(), isBlank_ = true; }
  // As the terminal has it now; 80 x 24 where it does not tell.
  ScreenSize size() const;
  // False when the terminal did not take it. `lines` fit the size.
  bool show(const std::vector<std::string>& lines);

  NonblockingOutput& output() { return output_; }

 private:
  int input_;
  NonblockingOutput output_;
  bool entered_ = false;
  std::optional<termios> modesBefore_;
  bool isAlternate_ = false;  // the terminal was told to change over, with the first frame that it took
  std::vector<std::string> shown_;
  bool isBlank_ = true;  // what stands on the screen is unknown
  std::string frame_;    // kept, so that a frame allocates nothing
};

}  // namespace quillmeter::ctl
