#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace output {

/// Prints one JSON object part by part, so that a long list is never in memory. Members of objects
/// and items of lists stand on a line each. Nothing is printed before the first part.
class JsonWriter {
 public:
  using Json = nlohmann::ordered_json;

  /// `out` outlives this.
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  /// Print a member of the innermost open object, or an item of the innermost open list.
  void add(const std::string& name, const Json& value);
  void addItem(const Json& value);

  /// Begin such a member, to which the next parts belong. The outermost object has no name.
  void openObject(const std::string& name = "");
  void openList(const std::string& name);

  /// Ends the innermost open object or list.
  void close();

 private:
  void begin(const std::string& name);

  std::ostream& out_;
  std::string ends_;  ///< of all that is open, the innermost last
  bool is_empty_ = true;
};

}  // namespace output
