#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/include/Error.h"
#include "host/include/Value.h"

namespace support {

/// Takes note of every operation of a host before it has any effect.
class Journal {
 public:
  virtual ~Journal() = default;
  virtual void note(const std::string& operation) = 0;
};

/// Keeps the operations, one line each.
class Record : public Journal {
 public:
  void note(const std::string& operation) override { operations_.push_back(operation); }

  const std::vector<std::string>& operations() const { return operations_; }

  /// Returns the operations as text, each with its newline, and forgets them.
  std::string take();

 private:
  std::vector<std::string> operations_;
};

/// Hands every operation on and raises an error at the chosen ones.
class FailingJournal : public Journal {
 public:
  explicit FailingJournal(Journal& journal) : journal_(journal) {}

  /// Raises `error` at the operation number `index` from now on, counted from 0, once.
  void failAt(std::size_t index, host::Error error);

  /// Raises `error` at every operation that reads `operation`.
  void failOn(const std::string& operation, host::Error error);

  void note(const std::string& operation) override;

 private:
  Journal& journal_;
  std::size_t count_ = 0;
  std::optional<std::pair<std::size_t, host::Error>> at_;
  std::map<std::string, host::Error> on_;
};

/// Returns `text` in quotes, with quotes, backslashes, newlines, carriage returns and tabs escaped.
std::string quoted(const std::string& text);

/// Returns `value` as a line shows it: texts in quotes, lists as tuples, objects in their own form.
std::string described(const host::Value& value);

/// Return the items in square brackets.
std::string bracketed(const std::vector<std::string>& texts);
std::string bracketed(const host::Value::List& values);

}  // namespace support
