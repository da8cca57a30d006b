#include "command/output/Table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

namespace output {
namespace {

/// Returns how many characters the UTF-8 text has.
std::size_t lengthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

}  // namespace

void Table::print(std::ostream& out) const {
  std::vector<std::string> headings;
  std::vector<std::size_t> widths;
  for (const Column& column : columns_) {
    headings.push_back(column.heading);
    widths.push_back(lengthOf(column.heading));
  }
  for (const auto& cells : rows_) {
    for (std::size_t at = 0; at < cells.size(); ++at) {
      widths[at] = std::max(widths[at], lengthOf(cells[at]));
    }
  }
  printLine(out, headings, widths);
  for (const auto& cells : rows_) printLine(out, cells, widths);
}

void Table::printLine(std::ostream& out, const std::vector<std::string>& cells,
                      const std::vector<std::size_t>& widths) const {
  std::string line;
  for (std::size_t at = 0; at < cells.size(); ++at) {
    const std::string blanks(widths[at] - lengthOf(cells[at]), ' ');
    if (at > 0) line += "  ";
    line += columns_[at].is_number ? blanks + cells[at] : cells[at] + blanks;
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
