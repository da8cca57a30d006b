#include "plugin/src/Framework.h"

namespace stowline {
namespace {

/// Reads a file object to its end and closes it. An error of the reading is the one to raise,
/// whatever the closing says.
Object linesOf(const Object& file) {
  Object lines;
  try {
    lines = file["readlines"_t]();
  } catch (const host::Error&) {
    try {
      file["close"_t]();
    } catch (const host::Error&) {
    }
    throw;
  }
  file["close"_t]();
  return lines;
}

}  // namespace

Object translated(const Module& module, const Object& text) {
  return module["_"_t]({text});
}

void print(const Module& module, const Object& line) {
  try {
    module["print"_t]({line});
  } catch (const host::Error& error) {
    if (!error.is("UnicodeError"_t)) throw;
    module["print"_t]({line.escaped()});
  }
}

void system(const Module& module, const Object& command) {
  module["system"_t]({command});
}

Object linesOfCommand(const Module& module, const Object& command) {
  return linesOf(module["popen"_t]({command}));
}

Object linesOfFile(const Module& module, const Object& path) {
  return linesOf(module["open"_t]({path}));
}

bool fileExists(const Module& module, const Object& path) {
  return module["fileExists"_t]({path}).isTrue();
}

bool exists(const Module& module, const Object& path) {
  return module["os_path"_t]["exists"_t]({path}).isTrue();
}

void addLabel(const Call& call, Text key, Text text) {
  const Object type = call.module["StaticText"_t];
  call.self.setItem(key, type({translated(call.module, text)}));
}

void addText(const Call& call, Text key, const Object& text) {
  call.self.setItem(key, call.module["StaticText"_t]({text}));
}

void addTitle(const Call& call) {
  try {
    addText(call, "title"_t, call.self["title"_t]);
  } catch (const host::Error&) {
    print(call.module, "self[\"title\"] was not found in skin"_t);
  }
}

void addKeys(const Call& call, Text widget, Text type, Arguments contexts,
             std::initializer_list<Key> keys, int priority) {
  const Object map = call.module[type];
  const Object names = list(contexts);
  const Object actions = dictionary({});
  for (const Key& key : keys) actions.setItem(key.key, call.self[key.operation]);
  call.self.setItem(widget,
                    priority == 0 ? map({names, actions}) : map({names, actions, priority}));
}

Object openBox(const Call& call, Text text, Text kind, std::optional<Text> callback) {
  const auto& [module, self, given] = call;
  const Object open = self["session"_t].get(callback ? "openWithCallback"_t : "open"_t);
  const Object called = callback ? self.get(*callback) : Object();
  const Object box = module["MessageBox"_t];
  const Object shown = translated(module, text);
  const Object type = module["MessageBox"_t].get(kind);
  return callback ? open({called, box, shown, type, {"timeout"_t, kBoxSeconds}})
                  : open({box, shown, type, {"timeout"_t, kBoxSeconds}});
}

void setBoxTitle(const Module& module, const Object& dialog) {
  dialog.get("setTitle"_t)({translated(module, "QOR Stowline"_t)});
}

}  // namespace stowline
