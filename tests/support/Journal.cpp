#include "tests/support/Journal.h"

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

std::vector<std::string> describedAll(const host::Value::List& values) {
  std::vector<std::string> parts;
  for (const host::Value& value : values) parts.push_back(described(value));
  return parts;
}

}  // namespace

std::string Record::take() {
  std::string text;
  for (const std::string& operation : operations_) text += operation + "\n";
  operations_.clear();
  return text;
}

void FailingJournal::failAt(std::size_t index, host::Error error) {
  count_ = 0;
  at_.emplace(index, std::move(error));
}

void FailingJournal::failOn(const std::string& operation, host::Error error) {
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

std::string described(const host::Value& value) {
  if (value.text()) return quoted(*value.text());
  if (value.list()) return enclosed('(', describedAll(*value.list()), ')');
  return value.str();
}

std::string bracketed(const std::vector<std::string>& texts) {
  std::vector<std::string> parts;
  for (const std::string& text : texts) parts.push_back(quoted(text));
  return enclosed('[', parts, ']');
}

std::string bracketed(const host::Value::List& values) {
  return enclosed('[', describedAll(values), ']');
}

}  // namespace support
