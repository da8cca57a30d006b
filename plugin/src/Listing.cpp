#include "plugin/src/Listing.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace stowline {

using host::operator""_t;

namespace {

/// Returns the word of a name that is the first of the box types as a tag: "_TYPE.". The dot keeps
/// "_solo." from being found in "_solo2.".
const char* tagOf(std::string_view name) {
  const auto* first = std::end(kBoxTypes);
  for (std::size_t begin = name.find('_'); begin != name.npos; begin = name.find('_', begin + 1)) {
    const std::size_t end = name.find_first_of("_.", begin + 1);
    if (end == name.npos || name[end] != '.') continue;
    first = std::find(std::begin(kBoxTypes), first, name.substr(begin + 1, end - begin - 1));
  }
  return first == std::end(kBoxTypes) ? nullptr : *first;
}

/// The same for what is no plain text.
const char* tagOf(const host::Object& name) {
  for (const char* box : kBoxTypes) {
    if (name.contains(std::string("_") + box + ".")) return box;
  }
  return nullptr;
}

}  // namespace

bool isForBox(const host::Object& name, const host::Object& own) {
  const auto characters = name.characters();
  const char* const box = characters ? tagOf(*characters) : tagOf(name);
  return !box || own == std::string_view(box);
}

constexpr ListedKind kListedKinds[] = {
    {"plugininstall"_t, "pluginlist"_t, ".lst"_t},
    {"settingrestore"_t, "settings"_t, ".tar.gz"_t},
    {"configrestore"_t, "configuration"_t, ".tar.gz"_t},
    {"personalscript"_t, "backup"_t, ".sh"_t},
    {"personalscript"_t, "restore"_t, ".sh"_t},
};

bool isListed(const ListedKind& kind, const host::Object& name) {
  return name.startsWith(kind.prefix) && name.endsWith(kind.suffix);
}

}  // namespace stowline
