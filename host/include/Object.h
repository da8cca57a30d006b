#pragma once

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace host {

/// What is kept of a text that the source writes: one for each, with the host's own form of it.
struct KeptText {
  std::string_view characters;  ///< with a null byte behind them
  void* object = nullptr;
};

/// A text that the source writes: a name or any other. "title"_t is one.
class Text {
 public:
  constexpr explicit Text(KeptText& kept) : kept_(&kept) {}
  constexpr std::string_view characters() const { return kept_->characters; }
  constexpr KeptText& kept() const { return *kept_; }

 private:
  KeptText* kept_;
};

template <std::size_t Size>
struct Literal {
  constexpr Literal(const char (&text)[Size]) {
    for (std::size_t i = 0; i < Size; ++i) value[i] = text[i];
  }
  char value[Size]{};
};

template <Literal text>
inline constinit KeptText kKeptText{{text.value, sizeof text.value - 1}};

template <Literal text>
constexpr Text operator""_t() {
  return Text(kKeptText<text>);
}

class Attribute;
struct Argument;
using Arguments = std::initializer_list<Argument>;

/// An owned reference to an object of the host: nothing, a truth value, a number, a text, a list, a
/// widget, a screen. What is done with it means what the same expression means in the framework's
/// language, whatever the object is, and raises what that raises (Error). The host that a program
/// links defines it: by the interpreter's objects in the GUI, by plain ones elsewhere.
class Object {
 public:
  /// Nothing ("None").
  Object() = default;
  Object(bool truth);
  Object(int number);
  Object(Text text);
  Object(const void* pointer) = delete;  // it would be taken for a truth value
  Object(std::string_view text);
  Object(const std::string& text) : Object(std::string_view(text)) {}
  Object(const Object& other) noexcept;
  Object(Object&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Object& operator=(Object other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Object();

  bool isNone() const;

  /// Whether it counts as true: "if object".
  bool isTrue() const;

  /// Compare as "==", "<" and ">=" do.
  friend bool operator==(const Object& left, const Object& right);
  friend bool operator==(const Object& left, std::string_view text);
  friend bool operator==(const Object& left, Text text) { return left == text.characters(); }
  friend bool operator==(const Object& left, std::same_as<bool> auto truth) {
    return left == Object(truth);
  }
  friend bool operator<(const Object& left, const Object& right);
  friend bool operator>=(const Object& left, const Object& right);

  /// The attribute `name`, to be read, set or called: "object.name".
  Attribute operator[](Text name) const;

  /// Returns the attribute `name`, read at once: what follows may change it or fail.
  Object get(Text name) const;
  void set(Text name, const Object& value) const;

  /// Calls it: "object(arguments)".
  Object operator()(Arguments arguments = {}) const;

  /// Calls its operation `name`: "object.name(arguments)".
  Object call(Text name, Arguments arguments) const;

  /// Return and set the item `key`: "object[key]".
  Object item(const Object& key) const;
  void setItem(const Object& key, const Object& value) const;

  /// "len(object)".
  int size() const;

  /// "left + right" and "format % values".
  friend Object operator+(const Object& left, const Object& right);
  friend Object operator%(const Object& format, const Object& values);

  /// "str(object)".
  Object str() const;

  /// Returns a text whose characters that are no ASCII are written as "\xNN", a byte each.
  Object escaped() const;

  /// "object in container".
  bool isIn(const Object& container) const;

  /// "part in object", of texts.
  bool contains(std::string_view part) const;

  /// "object.startswith(prefix)" and "object.endswith(suffix)".
  bool startsWith(std::string_view prefix) const;
  bool startsWith(Text prefix) const { return startsWith(prefix.characters()); }
  bool startsWith(const Object& prefix) const;
  bool endsWith(std::string_view suffix) const;
  bool endsWith(Text suffix) const { return endsWith(suffix.characters()); }
  bool endsWith(const Object& suffix) const;

  /// "object.append(item)".
  void append(const Object& item) const;

  /// Returns its characters when it is a text of no derived class, good as long as it lives.
  std::optional<std::string_view> characters() const;

  /// For the host: what it keeps of the object; null for nothing. steal() takes over a reference,
  /// release() hands one over.
  void* handle() const { return handle_; }
  static Object steal(void* handle) {
    Object object;
    object.handle_ = handle;
    return object;
  }
  void* release() { return std::exchange(handle_, nullptr); }

 private:
  void* handle_ = nullptr;
};

/// An attribute of an object that is still to be read, set or called.
class Attribute {
 public:
  Attribute(Object owner, Text name) : owner_(std::move(owner)), name_(name) {}

  operator Object() const { return owner_.get(name_); }
  Attribute(const Attribute&) = default;
  void operator=(const Object& value) const { owner_.set(name_, value); }
  void operator=(const Attribute& value) const { *this = Object(value); }
  void operator+=(const Object& value) const { owner_.set(name_, owner_.get(name_) + value); }
  Object operator()(Arguments arguments = {}) const;

  Attribute operator[](Text name) const { return {owner_.get(name_), name}; }
  Object get(Text name) const { return owner_.get(name_).get(name); }

 private:
  Object owner_;
  Text name_;
};

/// An argument of a call, by position or by `keyword`.
struct Argument {
  template <class Value>
  Argument(const Value& value_) : value(value_) {}
  template <class Value>
  Argument(Text keyword_, const Value& value_) : value(value_), keyword(keyword_) {}

  Object value;
  std::optional<Text> keyword;
};

inline Attribute Object::operator[](Text name) const {
  return {*this, name};
}

inline Object Attribute::operator()(Arguments arguments) const {
  return owner_.call(name_, arguments);
}

/// Return a new list or tuple of the items, or a new dictionary of the keys, each with its value.
Object list(Arguments items = {});
Object tuple(Arguments items);
Object dictionary(std::initializer_list<std::pair<Object, Object>> items);

/// The items of an object, in turn: "for item in object".
class Items {
 public:
  explicit Items(const Object& object);

  struct End {};
  class Iterator {
   public:
    explicit Iterator(const Object& iterator) : iterator_(iterator) { ++*this; }
    const Object& operator*() const { return item_; }
    Iterator& operator++();
    bool operator==(End) const { return done_; }

   private:
    const Object& iterator_;
    Object item_;
    bool done_ = false;
  };
  Iterator begin() const { return Iterator(iterator_); }
  End end() const { return {}; }

 private:
  Object iterator_;
};

/// What an operation raises.
class Error {
 public:
  explicit Error(Object exception) : exception_(std::move(exception)) {}

  /// Whether it is of the built-in class of exceptions `name`.
  bool is(Text name) const;

  /// The exception, as its host keeps it.
  const Object& object() const { return exception_; }

 private:
  Object exception_;
};

}  // namespace host
