#include "desk/skin/Expression.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace desk {
namespace {

/// How deep parts lie within one another at most.
constexpr int kDeepest = 20;

bool isLetter(char character) {
  return std::isalpha(static_cast<unsigned char>(character)) != 0 || character == '_';
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Reads an expression from left to right.
class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  Expression parseWhole() {
    Expression whole = parse();
    skipBlanks();
    if (at_ < text_.size()) fail("is not understood");
    return whole;
  }

 private:
  /// An expression, or several that "|" joins.
  Expression parse() {
    if (++depth_ > kDeepest) fail("lies too deep");
    Expression first = parseOne();
    if (next() == '|') {
      Expression joined{.kind = Expression::Kind::list, .offset = first.offset};
      joined.items.push_back(std::move(first));
      while (take('|')) joined.items.push_back(parseOne());
      first = std::move(joined);
    }
    --depth_;
    return first;
  }

  Expression parseOne() {
    const char character = next();
    if (character == '[') return parseList(']');
    if (character == '(') return parseList(')');
    if (character == '{') return parseDictionary();
    if (character == '"' || character == '\'') return parseText(character);
    if (isDigit(character) || character == '-') return parseNumber();
    if (isLetter(character)) return parseName();
    fail("is not understood");
  }

  Expression parseList(char end) {
    Expression list = begin(Expression::Kind::list);
    ++at_;
    while (!take(end)) {
      list.items.push_back(parse());
      requireSeparator(end);
    }
    return list;
  }

  Expression parseDictionary() {
    Expression dictionary = begin(Expression::Kind::dictionary);
    ++at_;
    while (!take('}')) {
      const char quote = next();
      if (quote != '"' && quote != '\'') fail("is no key");
      std::string key = parseText(quote).text;
      require(':');
      dictionary.named.emplace_back(std::move(key), parse());
      requireSeparator('}');
    }
    return dictionary;
  }

  Expression parseText(char quote) {
    Expression text = begin(Expression::Kind::text);
    const std::size_t end = text_.find(quote, at_ + 1);
    if (end == std::string_view::npos) fail("begins a text without an end");
    text.text = text_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    return text;
  }

  Expression parseNumber() {
    Expression number = begin(Expression::Kind::number);
    const bool is_hexadecimal = text_.substr(at_).starts_with("0x");
    const char* first = text_.data() + at_ + (is_hexadecimal ? 2 : 0);
    const char* last = text_.data() + text_.size();
    const auto [end, error] = std::from_chars(first, last, number.number, is_hexadecimal ? 16 : 10);
    if (error != std::errc()) fail("begins no number");
    at_ = static_cast<std::size_t>(end - text_.data());
    return number;
  }

  Expression parseName() {
    Expression name = begin(Expression::Kind::name);
    while (at_ < text_.size() && (isLetter(text_[at_]) || isDigit(text_[at_]))) {
      name.text += text_[at_++];
    }
    if (!take('(')) return name;
    name.kind = Expression::Kind::call;
    while (!take(')')) {
      Expression argument = parse();
      if (argument.kind == Expression::Kind::name && take('=')) {
        name.named.emplace_back(argument.text, parse());
      } else {
        name.items.push_back(std::move(argument));
      }
      requireSeparator(')');
    }
    return name;
  }

  Expression begin(Expression::Kind kind) const { return {.kind = kind, .offset = at_}; }

  void skipBlanks() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) ++at_;
  }

  /// Returns the next character that is no blank, a null character at the end.
  char next() {
    skipBlanks();
    return at_ < text_.size() ? text_[at_] : '\0';
  }

  bool take(char wanted) {
    if (next() != wanted) return false;
    ++at_;
    return true;
  }

  void require(char wanted) {
    if (!take(wanted)) fail(std::string("stands where '") + wanted + "' should");
  }

  /// Takes the comma before the next part; there may be one before `end`, too.
  void requireSeparator(char end) {
    if (!take(',') && next() != end) fail(std::string("stands where ',' or '") + end + "' should");
  }

  [[noreturn]] void fail(const std::string& what) const {
    if (at_ >= text_.size()) throw ExpressionError("it ends too soon", text_.size());
    throw ExpressionError(std::string("'") + text_[at_] + "' " + what, at_);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

const Expression* Expression::find(std::string_view name) const {
  const auto found = std::ranges::find(named, name, &std::pair<std::string, Expression>::first);
  return found == named.end() ? nullptr : &found->second;
}

Expression parseExpression(std::string_view text) {
  return Parser(text).parseWhole();
}

}  // namespace desk
