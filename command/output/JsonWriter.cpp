#include "command/output/JsonWriter.h"

#include <nlohmann/json.hpp>
#include <ostream>

namespace output {

void JsonWriter::add(const std::string& name, const Json& value) {
  begin(name);
  out_ << value.dump();
}

void JsonWriter::addItem(const Json& value) {
  begin("");
  out_ << value.dump();
}

void JsonWriter::openObject(const std::string& name) {
  begin(name);
  out_ << '{';
  ends_ += '}';
  is_empty_ = true;
}

void JsonWriter::openList(const std::string& name) {
  begin(name);
  out_ << '[';
  ends_ += ']';
  is_empty_ = true;
}

void JsonWriter::close() {
  const char end = ends_.back();
  ends_.pop_back();
  if (!is_empty_) out_ << '\n' << std::string(2 * ends_.size(), ' ');
  out_ << end;
  if (ends_.empty()) out_ << '\n';
  is_empty_ = false;
}

/// Prints what stands before a part.
void JsonWriter::begin(const std::string& name) {
  if (!ends_.empty()) {
    out_ << (is_empty_ ? "\n" : ",\n") << std::string(2 * ends_.size(), ' ');
  }
  if (!name.empty()) out_ << Json(name).dump() << ": ";
  is_empty_ = false;
}

}  // namespace output
