#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

namespace output {

/// A JSON object that is printed member by member, the items of a list a line each, so that a long
/// list is never in memory.
class JsonObject {
 public:
  using Json = nlohmann::ordered_json;

  explicit JsonObject(std::ostream& out) : out_(out) { out_ << "{"; }

  /// Prints a member.
  void add(const std::string& name, const Json& value) {
    begin(name);
    out_ << value.dump();
  }

  /// Prints a list; `each` is called with what prints an item of it.
  template <class Each>
  void addList(const std::string& name, const Each& each) {
    begin(name);
    bool is_empty = true;
    each([&](const Json& item) {
      out_ << (is_empty ? "[\n    " : ",\n    ") << item.dump();
      is_empty = false;
    });
    out_ << (is_empty ? "[]" : "\n  ]");
  }

  /// Prints the end of the object, after which nothing is added.
  void close() { out_ << "\n}\n"; }

 private:
  void begin(const std::string& name) {
    out_ << (is_empty_ ? "\n  " : ",\n  ") << Json(name).dump() << ": ";
    is_empty_ = false;
  }

  std::ostream& out_;
  bool is_empty_ = true;
};

}  // namespace output
