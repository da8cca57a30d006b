#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace output {

/// Text in columns, each as wide as its widest cell, for a terminal or a pipe.
class Table {
 public:
  /// A column: its heading, and whether its cells stand at its right edge.
  struct Column {
    std::string heading;
    bool is_number = false;
  };

  explicit Table(std::vector<Column> columns);

  /// Adds a row with one cell a column. There may be many rows; no cell holds a NUL.
  void add(const std::vector<std::string>& cells);

  /// Prints the headings and the rows, a line each.
  void print(std::ostream& out) const;

 private:
  void printLine(std::ostream& out, const std::string& row) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
  std::vector<std::string> rows_;  ///< the headings first; a NUL behind each cell
};

/// Returns a number of things, of the word for one: "1 backup", "2 backups".
std::string counted(std::uint64_t count, const std::string& word);

/// Returns a number of bytes for people, in units of 1024: "812 B", "12.3 KiB".
std::string sizeText(long long bytes);

}  // namespace output
