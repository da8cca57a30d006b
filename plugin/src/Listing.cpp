#include "plugin/src/Listing.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace stowline {

using host::operator""_t;

namespace {

/// Returns the first box type that is a tag of a name, "_TYPE.", an empty text when none is. The
/// dot keeps "_solo." from being found in "_solo2.".
std::string_view tagOf(std::string_view name) {
  const auto* first = std::end(kBoxTypes);
  for (std::size_t dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
    const std::size_t begin = name.rfind('_', dot);
    if (begin == name.npos) continue;
    first = std::find(std::begin(kBoxTypes), first, name.substr(begin + 1, dot - begin - 1));
  }
  return first == std::end(kBoxTypes) ? "" : *first;
}

/// The same for what is no plain text.
std::string_view tagOf(const host::Object& name) {
  for (const std::string_view box : kBoxTypes) {
    if (name.contains("_" + std::string(box) + ".")) return box;
  }
  return "";
}

}  // namespace

bool isForBox(const host::Object& name, const host::Object& own) {
  const auto characters = name.characters();
  const std::string_view box = characters ? tagOf(*characters) : tagOf(name);
  return box.empty() || own == box;
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
