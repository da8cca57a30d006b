#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "plugin/src/Setup.h"
#include "tests/support/Recorder.h"

namespace stowline {

using namespace support;
using host::operator""_t;
using host::Object;

/// A receiver in memory with the module loaded and its setting at the default, and the record of
/// what the module does with it from then on.
struct Receiver {
  Receiver() {
    load(host.module());
    record.take();
  }

  void setMedium(const std::string& root) { setting().value = root; }
  std::string medium() { return plain::textOf(setting().value); }

  Record record;
  FailingJournal journal{record};
  Recorder host{journal};

 private:
  /// The module's setting, past the journal.
  plain::ConfigText& setting() {
    Object node = host.named("config");
    for (const char* name : {"plugins", "qorpanel", "stowline", "backuprestorepath"}) {
      node = Object(plain::as<plain::Instance>(node)->attributes.at(name));
    }
    return *plain::as<plain::ConfigText>(node);
  }
};

struct ModuleTest : ::testing::Test, Receiver {};

/// An object of one of the module's classes.
class Made {
 public:
  explicit Made(Object object) : object_(std::move(object)) {}

  const Object& object() const { return object_; }

  /// Return an attribute as the framework's language writes it, such as "\"/media/hdd\"", and as
  /// its text, such as "/media/hdd"; `missing` when there is none.
  std::string attribute(const char* name, const std::string& missing = "missing") const {
    return node().attributes.contains(name) ? described(node().get(name)) : missing;
  }
  std::string str(const char* name, const std::string& missing = "missing") const {
    return node().attributes.contains(name) ? plain::nodeOf(node().get(name)).str() : missing;
  }

  void set(const char* name, const Object& value) const { node().set(name, value); }

  /// Calls an operation.
  Object call(const char* operation, host::Arguments arguments = {}) const {
    return node().invoke(operation, arguments);
  }

 private:
  plain::Instance& node() const { return *plain::as<plain::Instance>(object_); }

  Object object_;
};

/// One of the module's screens, which is open until this goes.
class Opened : public Made {
 public:
  template <class... Given>
  Opened(Receiver& receiver, const char* type, const Given&... given)
      : Made(receiver.host.named(type)({receiver.host.session(), given...})), screen_(object()) {}

  /// Opens the screen that the module has asked the session for.
  Opened(Receiver& receiver, const plain::Dialog& asked)
      : Opened(receiver, asked.name.c_str(), asked.arguments.at(0), asked.arguments.at(1)) {}

  void press(const std::string& action) const {
    if (!screen_.press(action)) throw std::out_of_range("no map binds " + action);
  }
  void finishLayout() const { screen_.screen().finishLayout(); }

  /// Tells who listens to the screen's package component of an event.
  void send(const char* event) const {
    const auto callbacks = plain::as<plain::IpkgComponent>(object()["ipkg"_t])->callbacks;
    for (const Object& each : *callbacks) each({plain::make<plain::Constant>(event), Object()});
  }

  /// Returns the text that a widget shows.
  std::string text(const char* key) const {
    return plain::textOf(screen_.widget<plain::TextWidget>(key).text);
  }

  plain::ListWidget& list(const char* key) const { return screen_.widget<plain::ListWidget>(key); }

  /// What the screen was closed with, as the language writes it; "open" while it is not closed.
  std::string result() const {
    return screen_.screen().result ? described(*screen_.screen().result) : "open";
  }

 private:
  plain::OpenScreen screen_;
};

}  // namespace stowline
