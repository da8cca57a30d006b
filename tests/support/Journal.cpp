#include "tests/support/Journal.h"

#include "host/plain/Node.h"

namespace support {
namespace {

/// Returns the parts with commas between, between `open` and `close`.
std::string enclosed(char open, const std::vector<std::string>& parts, char close) {
  std::string text(1, open);
  for (const std::string& part : parts) {
    if (text.size() > 1) text += ", ";
    text += part;
  }
  text += close;
  return text;
}

}  // namespace

std::string Record::take() {
  std::string text;
  for (const std::string& operation : operations_) text += operation + "\n";
  operations_.clear();
  return text;
}

void FailingJournal::failAt(std::size_t index, plain::Error error) {
  count_ = 0;
  at_.emplace(index, std::move(error));
}

void FailingJournal::failOn(const std::string& operation, plain::Error error) {
  on_.insert_or_assign(operation, std::move(error));
}

void FailingJournal::note(const std::string& operation) {
  journal_.note(operation);
  if (at_ && count_++ == at_->first) throw at_->second;
  if (const auto failure = on_.find(operation); failure != on_.end()) throw failure->second;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char byte : text) {
    switch (byte) {
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      case '"':
      case '\\':
        result += '\\';
        [[fallthrough]];
      default:
        result += byte;
    }
  }
  return result + '"';
}

std::string described(const host::Object& object) {
  if (object.isNone()) return "None";
  if (const auto text = object.characters()) return quoted(std::string(*text));
  if (const auto* sequence = plain::as<plain::Sequence>(object)) {
    std::vector<std::string> parts;
    for (const host::Object& item : sequence->items) parts.push_back(described(item));
    return sequence->is_tuple ? enclosed('(', parts, ')') : enclosed('[', parts, ']');
  }
  if (const auto* dictionary = plain::as<plain::Dictionary>(object)) {
    std::vector<std::string> parts;
    for (const auto& [key, value] : dictionary->items)
      parts.push_back(quoted(key) + ": " + described(value));
    return enclosed('{', parts, '}');
  }
  if (const auto* method = plain::as<plain::Method>(object)) return method->operation.name;
  return plain::nodeOf(object).str();
}

std::string described(host::Arguments arguments) {
  std::string text;
  for (const host::Argument& argument : arguments) {
    if (!text.empty()) text += ", ";
    if (argument.keyword) text += std::string(argument.keyword->characters()) + "=";
    text += described(argument.value);
  }
  return text;
}

}  // namespace support
