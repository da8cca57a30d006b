#pragma once

#include <string_view>

#include "host/include/Object.h"

namespace stowline {

/// The models whose tag in a name keeps it to receivers of that model, in the order in which the
/// tags are looked for.
inline constexpr std::string_view kBoxTypes[] = {"solo",  "duo",  "uno",    "ultimo",
                                                 "solo2", "duo2", "solose", "zero"};

/// Whether a backup named `name` is for a receiver of the model `own`. The first tag found decides;
/// names without one are for all.
bool isForBox(const host::Object& name, const host::Object& own);

/// What a restore list of the type `restoretype` shows: names that begin and end so.
struct ListedKind {
  host::Text restoretype;
  host::Text prefix;
  host::Text suffix;
};

extern const ListedKind kListedKinds[5];

/// Whether a list of the kind shows the name, on a receiver that it is for.
bool isListed(const ListedKind& kind, const host::Object& name);

/// Archives below this size, in bytes, are ignored without a word: they are not worth restoring.
inline constexpr int kSmallestArchive = 10000;

}  // namespace stowline
