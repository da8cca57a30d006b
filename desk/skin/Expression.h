#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace desk {

/// A text that is no expression.
class ExpressionError : public std::runtime_error {
 public:
  ExpressionError(const std::string& what, std::size_t offset)
      : std::runtime_error(what), offset(offset) {}

  const std::size_t offset;  ///< of the byte at which it goes wrong
};

/// What the template of a list is written in, a small part of Python's expressions: numbers,
/// strings, names, "a|b", lists and tuples, dictionaries whose keys are strings, and calls.
struct Expression {
  enum class Kind { number, text, name, list, dictionary, call };

  Kind kind;
  std::size_t offset;  ///< of its first byte
  long long number = 0;
  std::string text = {};               ///< a string, a name, or what is called
  std::vector<Expression> items = {};  ///< of a list, a tuple, or names joined by "|"
  std::vector<std::pair<std::string, Expression>> named = {};  ///< a dictionary's, or given by name

  /// Returns the part under this key or name, null for none.
  const Expression* find(std::string_view name) const;
};

/// Reads an expression. Raises ExpressionError.
Expression parseExpression(std::string_view text);

}  // namespace desk
