#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "host/include/Module.h"
#include "host/plain/Error.h"

namespace plain {

using host::Argument;
using host::Arguments;
using host::Object;
using host::Text;

/// What an Object refers to on a host without an interpreter. What an object cannot do raises
/// host::Error of the class that the framework's language has for it ("AttributeError",
/// "TypeError").
class Node {
 public:
  Node() = default;
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  virtual ~Node() = default;

  virtual std::string className() const = 0;
  virtual std::string str() const { return "<" + className() + ">"; }
  virtual bool isTrue() const { return true; }
  virtual bool equals(const Node& other) const { return this == &other; }

  /// An attribute, an operation of it among them.
  virtual Object get(std::string_view name);
  virtual void set(std::string_view name, const Object& value);

  /// The call of the object, and of its operation `name`.
  virtual Object call(Arguments arguments);
  virtual Object invoke(std::string_view name, Arguments arguments) { return get(name)(arguments); }

  /// Returns its operation `name`, for get() of a node that has one.
  Object bound(std::string_view name);

  virtual Object item(const Object& key);
  virtual void setItem(const Object& key, const Object& value);

  int references = 1;
};

/// Returns what `object` refers to, good as long as a reference is.
Node& nodeOf(const Object& object);

/// Returns that as a `T`, null when it is none.
template <class T>
T* as(const Object& object) {
  Node& node = nodeOf(object);
  if constexpr (!std::is_final_v<T>) return dynamic_cast<T*>(&node);
  return typeid(node) == typeid(T) ? static_cast<T*>(&node) : nullptr;  // far cheaper
}

/// Makes an object of a new node.
template <class T, class... Parts>
Object make(Parts&&... parts) {
  return Object::steal(static_cast<Node*>(new T(std::forward<Parts>(parts)...)));
}

/// What an Error keeps of itself for the module.
struct Exception : Node {
  explicit Exception(std::string type_) : type(std::move(type_)) {}
  std::string className() const override { return type; }

  const std::string type;
};

/// A constant of the framework, by its name: "SCOPE_PLUGINS".
struct Constant : Node {
  explicit Constant(std::string name_) : name(std::move(name_)) {}
  std::string className() const override { return "int"; }
  std::string str() const override { return name; }
  bool equals(const Node& other) const override;

  const std::string name;
};

/// A truth value or an integer. They compare by their number.
struct Number : Node {
  Number(long long number_, bool is_truth_) : number(number_), is_truth(is_truth_) {}
  std::string className() const override { return is_truth ? "bool" : "int"; }
  std::string str() const override;
  bool isTrue() const override { return number != 0; }
  bool equals(const Node& other) const override;

  const long long number;
  const bool is_truth;
};

struct String final : Node {
  explicit String(std::string characters_) : characters(std::move(characters_)) {}
  std::string className() const override { return "str"; }
  std::string str() const override { return characters; }
  bool isTrue() const override { return !characters.empty(); }
  bool equals(const Node& other) const override;
  Object invoke(std::string_view name, Arguments arguments) override;

  const std::string characters;
};

/// A list, or a tuple, which nobody changes.
struct Sequence : Node {
  Sequence(std::vector<Object> items_, bool is_tuple_)
      : items(std::move(items_)), is_tuple(is_tuple_) {}
  Sequence(Arguments items_, bool is_tuple_) : is_tuple(is_tuple_) {
    for (const Argument& item : items_) items.push_back(item.value);
  }
  std::string className() const override { return is_tuple ? "tuple" : "list"; }
  std::string str() const override;
  bool isTrue() const override { return !items.empty(); }
  bool equals(const Node& other) const override;
  Object item(const Object& key) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  std::vector<Object> items;
  const bool is_tuple;
};

/// A mapping from texts.
struct Dictionary : Node {
  std::string className() const override { return "dict"; }
  bool isTrue() const override { return !items.empty(); }
  Object item(const Object& key) override;
  void setItem(const Object& key, const Object& value) override;

  std::map<std::string, Object> items;
};

/// Something that can be called.
struct Function : Node {
  using Run = std::function<Object(Arguments arguments)>;
  explicit Function(Run run_) : run(std::move(run_)) {}
  std::string className() const override { return "function"; }
  Object call(Arguments arguments) override { return run(arguments); }

  Run run;
};

/// How far a list has been gone through.
struct Iteration : Node {
  explicit Iteration(Object sequence_) : sequence(std::move(sequence_)) {}
  std::string className() const override { return "iterator"; }

  const Object sequence;
  std::size_t next = 0;
};

/// An object whose attributes are its own: the names of a module, a screen, an engine. One of a
/// class of the module has its operations too.
struct Instance : Node {
  explicit Instance(std::string class_name) : class_name_(std::move(class_name)) {}
  std::string className() const override { return class_name_; }
  Object get(std::string_view name) override;
  void set(std::string_view name, const Object& value) override;

  /// Lets go of all that it refers to, some of which may refer to it.
  virtual void clear();

  std::map<std::string, Object, std::less<>> attributes;
  const host::Module* module = nullptr;
  const host::Class* type = nullptr;

 private:
  const host::Operation* operation(std::string_view name) const;

  std::string class_name_;
};

/// A class of the framework: its call makes an object of it, its attributes are its constants.
struct Type : Instance {
  Type(std::string name_, Function::Run make_)
      : Instance("type"), name(std::move(name_)), make(std::move(make_)) {}
  std::string str() const override { return name; }
  Object call(Arguments arguments) override { return make(arguments); }

  const std::string name;
  const Function::Run make;
};

/// The names of a module.
struct Names : Instance {
  Names() : Instance("module") {}

  /// Binds a name of a unit. A plain host has them all before the module is loaded.
  virtual void bind(const host::Binding& /*binding*/) {}
};

/// A function of the module, or an operation that is bound to its object.
struct Method : Node {
  Method(const host::Module& module_, Object self_, const host::Operation& operation_)
      : module(module_), self(std::move(self_)), operation(operation_) {}
  std::string className() const override { return "method"; }
  bool equals(const Node& other) const override;
  Object call(Arguments arguments) override;

  const host::Module& module;
  const Object self;
  const host::Operation& operation;
};

/// A class of the module: its call makes an object of it. One that derives from a class of the
/// framework is made by that, called with the name of the class.
struct ClassObject : Node {
  ClassObject(const host::Module& module_, const host::Class& type_)
      : module(module_), type(type_) {}
  std::string className() const override { return "type"; }
  std::string str() const override { return type.name; }
  Object call(Arguments arguments) override;

  const host::Module& module;
  const host::Class& type;
};

/// Make a function, and an object with these attributes.
Object function(Function::Run run);
Object instance(const char* class_name,
                std::initializer_list<std::pair<const char*, Object>> attributes);

/// A function that does nothing.
Object nothing(Arguments arguments);

/// Returns an argument by its place or by its keyword; nothing when it is not given.
Object argument(Arguments arguments, std::size_t place, std::string_view keyword = {});

/// Returns the characters of a text. Raises Error ("TypeError") when it is none.
const std::string& textOf(const Object& object);

/// Returns the items of a list or tuple. Raises Error ("TypeError") when it is none.
const std::vector<Object>& itemsOf(const Object& object);

/// Return a new list of texts, and the texts of a list.
Object listOf(const std::vector<std::string>& texts);
std::vector<std::string> textsOf(const Object& list);

}  // namespace plain
