#pragma once

#include <string>
#include <string_view>

#include "ctl/ExitCode.h"

namespace quillmeter::ctl {

enum class TextStyle { plain, bold, dim, accent, warning };

// The two output streams of the tool: data on standard output, diagnostics on standard error. Output is UTF-8 whatever
// the process locale is. Data is collected and written in large pieces; what a write meets decides the exit code in
// finish(). Owned by main and lent to the commands; one thread.
class Console {
 public:
  // Learns whether the descriptors are terminals; NO_COLOR and TERM=dumb switch colour off. Broken pipes come back as
  // errors from here on instead of ending the process.
  Console(int outputDescriptor, int errorDescriptor);
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // Takes the numbers 0 to 2 when the caller left them closed, so that no file of ours can get one of them.
  static void occupyStandardDescriptors();

  void print(std::string_view text);
  void printLine(std::string_view text = {});
  // Writes what was printed so far, before the tool waits for something.
  void flush();
  // One sentence on standard error, behind the tool's name. What was said last is not said again.
  void diagnose(std::string_view sentence);
  // diagnose(), and the code to return.
  [[nodiscard]] ExitCode failure(std::string_view sentence);
  [[nodiscard]] ExitCode wrongUse(std::string_view sentence);

  // A line on standard error that the next one replaces; an empty one takes it away. Only on a terminal.
  void showProgress(std::string_view line);
  bool showsProgress() const { return errorIsTerminal_; }

  bool outputIsTerminal() const { return outputIsTerminal_; }
  // Cells of a line: the terminal's, 80 elsewhere.
  int columns() const;
  // `text` in `style` when colour is on.
  std::string styled(std::string_view text, TextStyle style) const;

  // Writes what is left. `code` unless standard output failed: a reader that left ends the tool quietly, any other
  // error is named and gives couldNot.
  [[nodiscard]] ExitCode finish(ExitCode code);

 private:
  int outputDescriptor_;
  int errorDescriptor_;
  bool outputIsTerminal_;
  bool errorIsTerminal_;
  bool colored_;
  bool progressShown_ = false;
  int writeError_ = 0;  // errno of the first write that failed
  std::string pending_;
  std::string lastDiagnosis_;
};

}  // namespace quillmeter::ctl
