#pragma once

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/include/Object.h"

namespace host {

/// A value that other code may hand in or take out: a dialog's answer, a job's result, an item of a
/// list row. Tuples and lists are both `List`; copies of a value share theirs, which nobody
/// changes. Beware of `List{x}` with an `x` that is a List itself: compilers differ on whether it
/// copies or nests.
class Value {
 public:
  using List = std::vector<Value>;

  /// Nothing.
  Value() = default;
  Value(const Value&) = default;
  Value(Value&&) noexcept = default;
  ~Value() = default;

  /// What was held before goes when the new value is in place: an object that goes may look.
  Value& operator=(Value other) noexcept {
    std::swap(data_, other.data_);
    return *this;
  }

  Value(bool truth) : data_(truth) {}
  Value(int integer) : data_(static_cast<long long>(integer)) {}
  Value(long long integer) : data_(integer) {}
  Value(double number) : data_(number) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(List items) : data_(std::make_shared<const List>(std::move(items))) {}

  /// An object; a null one is nothing.
  Value(ObjectRef object) {
    if (object) data_ = std::move(object);
  }

  bool isNothing() const { return std::holds_alternative<std::monostate>(data_); }

  /// The truth value, integer or number held, or null when the value is none.
  const bool* truth() const { return std::get_if<bool>(&data_); }
  const long long* integer() const { return std::get_if<long long>(&data_); }
  const double* number() const { return std::get_if<double>(&data_); }

  /// The text held, or null when the value is no text.
  const std::string* text() const { return std::get_if<std::string>(&data_); }

  /// The items held, or null when the value is no list.
  const List* list() const {
    const auto* items = std::get_if<Items>(&data_);
    return items ? items->get() : nullptr;
  }

  /// The object held, or null when the value is none.
  ObjectRef object() const {
    const auto* object = std::get_if<ObjectRef>(&data_);
    return object ? *object : nullptr;
  }

  /// Whether the value compares equal to true: true itself and the numbers 1 and 1.0 do; any other
  /// number, nothing, texts and lists, empty or not, do not.
  bool equalsTrue() const;

  /// The value's text form for a log line or a file name: a text as it stands, "None" for nothing.
  std::string str() const;

  friend bool operator==(const Value& value, const Value& other) {
    if (value.list() && other.list()) return *value.list() == *other.list();
    return value.data_ == other.data_;
  }

 private:
  using Items = std::shared_ptr<const List>;

  std::variant<std::monostate, bool, long long, double, std::string, Items, ObjectRef> data_;
};

inline bool Value::equalsTrue() const {
  if (truth()) return *truth();
  if (integer()) return *integer() == 1;
  if (number()) return *number() == 1.0;
  if (const auto held = object()) return held->equalsTrue();
  return false;
}

inline std::string Value::str() const {
  if (isNothing()) return "None";
  if (truth()) return *truth() ? "True" : "False";
  if (integer()) return std::to_string(*integer());
  if (number()) return std::to_string(*number());
  if (const auto held = object()) return held->str();
  if (text()) return *text();
  const Items items = std::get<Items>(data_);  // an item may replace this value when it is asked
  std::string joined;
  for (const Value& item : *items) joined += (joined.empty() ? "" : ", ") + item.str();
  return "[" + joined + "]";
}

}  // namespace host
