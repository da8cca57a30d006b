#include "command/output/Table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

namespace output {
namespace {

/// Returns how many characters the UTF-8 text has.
std::size_t lengthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

}  // namespace

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)), widths_(columns_.size()) {
  std::vector<std::string> headings;
  for (const Column& column : columns_) headings.push_back(column.heading);
  add(headings);
}

void Table::add(const std::vector<std::string>& cells) {
  std::string row;
  for (std::size_t at = 0; at < cells.size(); ++at) {
    widths_[at] = std::max(widths_[at], lengthOf(cells[at]));
    row += cells[at] + '\0';
  }
  rows_.push_back(row);
}

void Table::print(std::ostream& out) const {
  for (const std::string& row : rows_) printLine(out, row);
}

void Table::printLine(std::ostream& out, const std::string& row) const {
  std::string line;
  std::size_t start = 0;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    const std::string cell = row.substr(start, row.find('\0', start) - start);
    start += cell.size() + 1;
    const std::string blanks(widths_[at] - lengthOf(cell), ' ');
    if (at > 0) line += "  ";
    line += columns_[at].is_number ? blanks + cell : cell + blanks;
  }
  out << line.substr(0, line.find_last_not_of(' ') + 1) << "\n";
}

std::string counted(std::uint64_t count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::string sizeText(long long bytes) {
  if (bytes < 1024) return std::to_string(bytes) + " B";
  double amount = static_cast<double>(bytes) / 1024;
  const char* unit = "KiB";
  for (const char* larger : {"MiB", "GiB", "TiB"}) {
    // What would be shown as 1024.0 is one of the next unit.
    if (amount < 1023.95) break;
    amount /= 1024;
    unit = larger;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f %s", amount, unit);
  return text.data();
}

}  // namespace output
