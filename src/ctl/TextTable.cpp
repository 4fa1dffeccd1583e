#include "ctl/TextTable.h"

#include <algorithm>

namespace quillmeter::ctl {

void TextTable::addHead(const std::vector<std::string>& titles) {
  std::vector<TableCell> cells;
  for (const std::string& title : titles) cells.push_back({title, TextStyle::dim});
  addRow(std::move(cells));
}

void TextTable::addRow(std::vector<TableCell> cells) {
  for (TableCell& cell : cells) cell.text = printable(cell.text);
  rows_.push_back(std::move(cells));
}

void TextTable::print(Console& console) const {
  std::vector<int> widths(alignments_.size(), 0);
  for (const auto& row : rows_) {
    for (std::size_t column = 0; column < std::min(row.size(), widths.size()); ++column) {
      widths[column] = std::max(widths[column], displayWidth(row[column].text));
    }
  }
  for (const auto& row : rows_) {
    std::size_t count = std::min(row.size(), widths.size());
    while (count > 0 && row[count - 1].text.empty()) --count;
    std::string line;
    for (std::size_t column = 0; column < count; ++column) {
      const TableCell& cell = row[column];
      const bool runsOn = column + 1 == count && alignments_[column] == Alignment::left;
      const std::string fill(static_cast<std::size_t>(widths[column] - displayWidth(cell.text)), ' ');
      if (column > 0) line += "  ";
      if (alignments_[column] == Alignment::right) line += fill;
      line += console.styled(cell.text, cell.style);
      if (alignments_[column] == Alignment::left && !runsOn) line += fill;
    }
    console.printLine(line);
  }
}

}  // namespace quillmeter::ctl
