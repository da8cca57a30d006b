#include "host/plain/Node.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace plain {
namespace {

struct None : Node {
  std::string className() const override { return "NoneType"; }
  std::string str() const override { return "None"; }
  bool isTrue() const override { return false; }
};

[[noreturn]] void raiseNoAttribute(const Node& node, std::string_view name) {
  throw Error("AttributeError",
              "'" + node.className() + "' object has no attribute '" + std::string(name) + "'");
}

std::string_view withoutSpace(std::string_view text) {
  constexpr const char* kSpace = " \t\n\r\v\f";
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

/// Returns the parts of `text` between single `separator`s.
Object split(std::string_view text, std::string_view separator) {
  std::vector<Object> parts;
  for (std::size_t end = 0; (end = text.find(separator)) != std::string_view::npos;) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return make<Sequence>(std::move(parts), false);
}

/// Returns the texts with `separator` between them.
std::string joined(const Object& texts, const std::string& separator) {
  std::string text;
  const char* before = "";
  for (const Object& each : host::Items(texts)) {
    text += before + textOf(each);
    before = separator.c_str();
  }
  return text;
}

std::string strOf(const Object& object) {
  return nodeOf(object).str();
}

/// Returns an argument by its place or by its keyword, null when it is not given.
const Argument* find(Arguments arguments, std::size_t place, std::string_view keyword) {
  std::size_t positional = 0;
  for (const Argument& each : arguments) {
    if (each.keyword ? each.keyword->characters() == keyword : positional++ == place) return &each;
  }
  return nullptr;
}

}  // namespace

Object Node::get(std::string_view name) {
  raiseNoAttribute(*this, name);
}

void Node::set(std::string_view name, const Object& /*value*/) {
  raiseNoAttribute(*this, name);
}

Object Node::call(Arguments /*arguments*/) {
  throw Error("TypeError", "'" + className() + "' object is not callable");
}

Object Node::item(const Object& /*key*/) {
  throw Error("TypeError", "'" + className() + "' object is not subscriptable");
}

void Node::setItem(const Object& /*key*/, const Object& /*value*/) {
  throw Error("TypeError", "'" + className() + "' object does not support item assignment");
}

Node& nodeOf(const Object& object) {
  static None none;
  return object.handle() ? *static_cast<Node*>(object.handle()) : none;
}

Object Node::bound(std::string_view name) {
  ++references;
  return make<Function>([self = Object::steal(this), name = std::string(name)](
                            Arguments arguments) { return nodeOf(self).invoke(name, arguments); });
}

Error::Error(const std::string& type, const std::string& message, int number)
    : host::Error(make<Exception>(type)),
      std::runtime_error(type + ": " + message),
      type_(type),
      message_(message),
      number_(number) {}

Error toError(const base::SystemError& error) {
  const int number = error.code().value();
  return {"OSError", "[Errno " + std::to_string(number) + "] " + error.what(), number};
}

std::string reasonOf(const std::exception& error) {
  const auto* const raised = dynamic_cast<const Error*>(&error);
  if (!raised) return error.what();
  const std::string& message = raised->message();
  if (!message.starts_with("[Errno ")) return message;
  return message.substr(message.find("] ") + 2);
}

bool Constant::equals(const Node& other) const {
  const auto* same = dynamic_cast<const Constant*>(&other);
  return same && same->name == name;
}

std::string Number::str() const {
  if (is_truth) return number != 0 ? "True" : "False";
  return std::to_string(number);
}

bool Number::equals(const Node& other) const {
  const auto* same = dynamic_cast<const Number*>(&other);
  return same && same->number == number;
}

bool String::equals(const Node& other) const {
  const auto* same = dynamic_cast<const String*>(&other);
  return same && same->characters == characters;
}

Object String::invoke(std::string_view name, Arguments arguments) {
  if (name == "strip") return withoutSpace(characters);
  if (name == "split") return split(characters, textOf(argument(arguments, 0)));
  if (name == "rstrip") {
    return characters.substr(0, characters.find_last_not_of(textOf(argument(arguments, 0))) + 1);
  }
  if (name == "join") return joined(argument(arguments, 0), characters);
  raiseNoAttribute(*this, name);
}

std::string Sequence::str() const {
  std::string text;
  for (const Object& each : items) text += (text.empty() ? "" : ", ") + strOf(each);
  return "[" + text + "]";
}

bool Sequence::equals(const Node& other) const {
  const auto* same = dynamic_cast<const Sequence*>(&other);
  return same && same->is_tuple == is_tuple &&
         std::ranges::equal(same->items, items,
                            [](const Object& left, const Object& right) { return left == right; });
}

Object Sequence::item(const Object& key) {
  const auto* number = as<Number>(key);
  if (!number || number->number < 0 || number->number >= static_cast<long long>(items.size())) {
    throw Error("IndexError", className() + " index out of range");
  }
  return items[static_cast<std::size_t>(number->number)];
}

Object Sequence::invoke(std::string_view name, Arguments arguments) {
  if (is_tuple) raiseNoAttribute(*this, name);
  if (name == "append") {
    items.push_back(argument(arguments, 0));
  } else if (name == "extend") {
    for (const Object& each : host::Items(argument(arguments, 0))) items.push_back(each);
  } else if (name == "sort") {
    std::ranges::stable_sort(items, {}, &textOf);
    if (argument(arguments, 1, "reverse").isTrue()) std::ranges::reverse(items);
  } else {
    raiseNoAttribute(*this, name);
  }
  return {};
}

Object Dictionary::item(const Object& key) {
  const auto found = items.find(textOf(key));
  if (found == items.end()) throw Error("KeyError", "'" + textOf(key) + "'");
  return found->second;
}

void Dictionary::setItem(const Object& key, const Object& value) {
  items[textOf(key)] = value;
}

const host::Operation* Instance::operation(std::string_view name) const {
  if (!type) return nullptr;
  const auto found = std::ranges::find(type->operations, name, &host::Operation::name);
  return found == type->operations.end() ? nullptr : &*found;
}

Object Instance::get(std::string_view name) {
  const auto found = attributes.find(name);
  if (found != attributes.end()) return found->second;
  const host::Operation* const known = operation(name);
  if (!known) raiseNoAttribute(*this, name);
  ++references;
  return make<Method>(*module, Object::steal(static_cast<Node*>(this)), *known);
}

void Instance::set(std::string_view name, const Object& value) {
  attributes.insert_or_assign(std::string(name), value);
}

void Instance::clear() {
  const auto going = std::move(attributes);
}

bool Method::equals(const Node& other) const {
  const auto* same = dynamic_cast<const Method*>(&other);
  return same && &same->operation == &operation && same->self.handle() == self.handle();
}

Object Method::call(Arguments arguments) {
  std::array<Object, std::extent_v<decltype(host::Operation::parameters)>> bound;
  std::size_t count = 0;
  for (; count < bound.size() && operation.parameters[count].name; ++count) {
    const host::Parameter& parameter = operation.parameters[count];
    const Argument* const given = find(arguments, count, parameter.name);
    if (!given && !parameter.default_value) {
      throw Error("TypeError", operation.name + std::string("() is called without its argument ") +
                                   parameter.name);
    }
    bound[count] = given ? given->value : host::defaultOf(parameter);
  }
  if (arguments.size() > count)
    throw Error("TypeError", operation.name + std::string("() is called with too many arguments"));
  return operation.run({module, self, bound.data()});
}

Object ClassObject::call(Arguments arguments) {
  Object made =
      type.base ? module[*type.base]({std::string_view(type.name)}) : make<Instance>(type.name);
  auto* const instance = as<Instance>(made);
  instance->module = &module;
  instance->type = &type;
  try {
    instance->get("__init__")(arguments);
  } catch (...) {
    instance->clear();
    throw;
  }
  return made;
}

Object function(Function::Run run) {
  return make<Function>(std::move(run));
}

Object instance(const char* class_name,
                std::initializer_list<std::pair<const char*, Object>> attributes) {
  Object made = make<Instance>(class_name);
  for (const auto& [name, value] : attributes) nodeOf(made).set(name, value);
  return made;
}

Object nothing(Arguments /*arguments*/) {
  return {};
}

Object argument(Arguments arguments, std::size_t place, std::string_view keyword) {
  const Argument* const given = find(arguments, place, keyword);
  return given ? given->value : Object();
}

const std::string& textOf(const Object& object) {
  const auto* string = as<String>(object);
  if (!string) throw Error("TypeError", "a text is required, not " + nodeOf(object).className());
  return string->characters;
}

const std::vector<Object>& itemsOf(const Object& object) {
  const auto* sequence = as<Sequence>(object);
  if (!sequence)
    throw Error("TypeError", "'" + nodeOf(object).className() + "' object is not iterable");
  return sequence->items;
}

Object listOf(const std::vector<std::string>& texts) {
  return make<Sequence>(std::vector<Object>(texts.begin(), texts.end()), false);
}

std::vector<std::string> textsOf(const Object& list) {
  std::vector<std::string> texts;
  for (const Object& text : itemsOf(list)) texts.push_back(textOf(text));
  return texts;
}

}  // namespace plain
