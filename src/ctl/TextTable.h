#pragma once

#include <string>
#include <vector>

#include "ctl/Console.h"
#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {

struct TableCell {
  std::string text;
  TextStyle style = TextStyle::plain;
};

// Rows in columns that line up by display width, two spaces apart, without lines. Columns are as wide as their widest
// cell; the last cell of a row may run on.
class TextTable {
 public:
  explicit TextTable(std::vector<Alignment> alignments) : alignments_(std::move(alignments)) {}

  // The head row, in dim letters.
  void addHead(const std::vector<std::string>& titles);
  void addRow(std::vector<TableCell> cells);
  void print(Console& console) const;

 private:
  std::vector<Alignment> alignments_;
  std::vector<std::vector<TableCell>> rows_;
};

}  // namespace quillmeter::ctl
