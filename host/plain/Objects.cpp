/// What host::Object means by plain objects.

#include <algorithm>
#include <utility>

#include "host/plain/Node.h"

namespace host {

using plain::as;
using plain::itemsOf;
using plain::make;
using plain::nodeOf;
using plain::textOf;

namespace {

long long numberOf(const Object& object) {
  const auto* number = as<plain::Number>(object);
  if (!number)
    throw plain::Error("TypeError", "a number is required, not " + nodeOf(object).className());
  return number->number;
}

}  // namespace

Object::Object(bool truth) : Object(make<plain::Number>(truth, true)) {}

Object::Object(int number) : Object(make<plain::Number>(number, false)) {}

Object::Object(std::string_view text) : Object(make<plain::String>(std::string(text))) {}

Object::Object(Text text) : Object(text.characters()) {}

Object::Object(const Object& other) noexcept : handle_(other.handle_) {
  if (handle_) ++nodeOf(*this).references;
}

Object::~Object() {
  if (handle_ && --nodeOf(*this).references == 0) delete &nodeOf(*this);
}

bool Object::isNone() const {
  return !handle_;
}

bool Object::isTrue() const {
  return nodeOf(*this).isTrue();
}

bool operator==(const Object& left, const Object& right) {
  return nodeOf(left).equals(nodeOf(right));
}

bool operator==(const Object& left, std::string_view text) {
  const auto characters = left.characters();
  return characters && *characters == text;
}

bool operator<(const Object& left, const Object& right) {
  return numberOf(left) < numberOf(right);
}

bool operator>=(const Object& left, const Object& right) {
  return numberOf(left) >= numberOf(right);
}

Object Object::get(Text name) const {
  return nodeOf(*this).get(name.characters());
}

void Object::set(Text name, const Object& value) const {
  plain::raising([&] { nodeOf(*this).set(name.characters(), value); });
}

Object Object::operator()(Arguments arguments) const {
  return plain::raising([&] { return nodeOf(*this).call(arguments); });
}

Object Object::call(Text name, Arguments arguments) const {
  return plain::raising([&] { return nodeOf(*this).invoke(name.characters(), arguments); });
}

Object Object::item(const Object& key) const {
  return nodeOf(*this).item(key);
}

void Object::setItem(const Object& key, const Object& value) const {
  nodeOf(*this).setItem(key, value);
}

int Object::size() const {
  return static_cast<int>(itemsOf(*this).size());
}

Object operator+(const Object& left, const Object& right) {
  return make<plain::String>(textOf(left) + textOf(right));
}

/// Knows "%s" alone.
Object operator%(const Object& format, const Object& values) {
  const std::string& text = textOf(format);
  const auto* tuple = as<plain::Sequence>(values);
  std::vector<Object> left = tuple && tuple->is_tuple ? tuple->items : std::vector<Object>{values};
  std::reverse(left.begin(), left.end());
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%') {
      result += text[at];
      continue;
    }
    if (left.empty() || text.substr(at, 2) != "%s")
      throw plain::Error("TypeError", "the values do not fit the format: " + text);
    result += nodeOf(left.back()).str();
    left.pop_back();
    ++at;
  }
  if (!left.empty())
    throw plain::Error("TypeError", "not all arguments converted during string formatting");
  return make<plain::String>(std::move(result));
}

Object Object::str() const {
  return nodeOf(*this).str();
}

Object Object::escaped() const {
  return *this;
}

bool Object::isIn(const Object& container) const {
  if (const auto text = container.characters()) return container.contains(textOf(*this));
  return std::ranges::any_of(itemsOf(container), [&](const Object& item) { return item == *this; });
}

bool Object::contains(std::string_view part) const {
  return textOf(*this).find(part) != std::string::npos;
}

bool Object::startsWith(std::string_view prefix) const {
  return textOf(*this).starts_with(prefix);
}

bool Object::endsWith(std::string_view suffix) const {
  return textOf(*this).ends_with(suffix);
}

bool Object::startsWith(const Object& prefix) const {
  return startsWith(std::string_view(textOf(prefix)));
}

bool Object::endsWith(const Object& suffix) const {
  return endsWith(std::string_view(textOf(suffix)));
}

void Object::append(const Object& item) const {
  nodeOf(*this).invoke("append", {item});
}

std::optional<std::string_view> Object::characters() const {
  const auto* string = as<plain::String>(*this);
  if (!string) return std::nullopt;
  return string->characters;
}

Object list(Arguments items) {
  return make<plain::Sequence>(items, false);
}

Object tuple(Arguments items) {
  return make<plain::Sequence>(items, true);
}

Object dictionary(std::initializer_list<std::pair<Object, Object>> items) {
  Object made = make<plain::Dictionary>();
  for (const auto& [key, value] : items) made.setItem(key, value);
  return made;
}

Items::Items(const Object& object) : iterator_(make<plain::Iteration>(object)) {}

Items::Iterator& Items::Iterator::operator++() {
  auto& iteration = *as<plain::Iteration>(iterator_);
  const std::vector<Object>& items = itemsOf(iteration.sequence);
  done_ = iteration.next >= items.size();
  item_ = done_ ? Object() : items[iteration.next++];
  return *this;
}

bool Error::is(Text name) const {
  return nodeOf(exception_).className() == name.characters();
}

Object Module::operator[](Text name) const {
  const auto& names = as<plain::Names>(names_)->attributes;
  const auto found = names.find(name.characters());
  if (found == names.end())
    throw plain::Error("NameError", "name '" + std::string(name.characters()) + "' is not defined");
  return found->second;
}

void Module::bind(const Binding& binding) const {
  as<plain::Names>(names_)->bind(binding);
}

void Module::define(const Operation& function) const {
  nodeOf(names_).set(function.name, make<plain::Method>(*this, Object(), function));
}

void Module::define(const Class& type) const {
  nodeOf(names_).set(type.name, make<plain::ClassObject>(*this, type));
}

}  // namespace host
