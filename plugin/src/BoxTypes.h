#pragma once

namespace stowline {

/// The models whose tag in a name keeps it to receivers of that model, in the order in which the
/// tags are looked for.
inline constexpr const char* kBoxTypes[] = {"solo",  "duo",  "uno",    "ultimo",
                                            "solo2", "duo2", "solose", "zero"};

}  // namespace stowline
