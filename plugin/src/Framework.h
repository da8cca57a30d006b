#pragma once

#include <initializer_list>
#include <optional>

#include "host/include/Module.h"

namespace stowline {

using host::Arguments;
using host::Call;
using host::dictionary;
using host::Items;
using host::list;
using host::Module;
using host::Object;
using host::Text;
using host::tuple;
using host::operator""_t;

/// Returns the translation of `text`: "_(text)".
Object translated(const Module& module, const Object& text);

/// Writes a line to standard output, which the host sends to its log. A character that the log's
/// encoding does not have is written as "\xNN", so that no file name stops the job that logs it.
void print(const Module& module, const Object& line);

/// Runs a command through the shell to its end.
void system(const Module& module, const Object& command);

/// Returns what a command prints, or what a file holds, as lines; each has its newline.
Object linesOfCommand(const Module& module, const Object& command);
Object linesOfFile(const Module& module, const Object& path);

/// Whether a path is there: by the framework's own function, and by the operating system's.
bool fileExists(const Module& module, const Object& path);
bool exists(const Module& module, const Object& path);

/// Registers a text source under `key`: "self[key] = StaticText(text)".
void addText(const Call& call, Text key, const Object& text);

/// Registers a translated text: "self[key] = StaticText(_(text))".
void addLabel(const Call& call, Text key, Text text);

/// Registers the title as a text source. A skin without one is tolerated, with a line in the log.
void addTitle(const Call& call);

/// A key and the name of the operation that it calls.
struct Key {
  Text key;
  Text operation;
};

/// Registers a map of keys under `widget`: "self[widget] = type(contexts, {key: operation},
/// priority)"; without a priority when that is 0, the framework's own default.
void addKeys(const Call& call, Text widget, Text type, Arguments contexts,
             std::initializer_list<Key> keys, int priority = 0);

/// How long the module's information and error boxes stay, in seconds.
inline constexpr int kBoxSeconds = 10;

/// Shows a box for some seconds: "session.open(MessageBox, _(text), MessageBox.KIND, timeout=10)".
/// Returns the box. With `callback`, the name of an operation, that is called when the box has
/// closed ("openWithCallback").
Object openBox(const Call& call, Text text, Text kind, std::optional<Text> callback = {});

/// Titles an open box with the module's name.
void setBoxTitle(const Module& module, const Object& dialog);

}  // namespace stowline
