#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/plain/Error.h"

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
  void failAt(std::size_t index, plain::Error error);

  /// Raises `error` at every operation that reads `operation`.
  void failOn(const std::string& operation, plain::Error error);

  void note(const std::string& operation) override;

 private:
  Journal& journal_;
  std::size_t count_ = 0;
  std::optional<std::pair<std::size_t, plain::Error>> at_;
  std::map<std::string, plain::Error> on_;
};

/// Returns `text` in quotes, with quotes, backslashes, newlines, carriage returns and tabs escaped.
std::string quoted(const std::string& text);

/// Returns `object` as the framework's language writes it: texts in quotes, a function or class by
/// its name.
std::string described(const host::Object& object);

/// Returns the arguments of a call so, without brackets.
std::string described(host::Arguments arguments);

}  // namespace support
