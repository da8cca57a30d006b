#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "command/archive/Places.h"
#include "command/archive/Reader.h"

namespace tarball {

/// Something that is to be said of an archive.
struct Finding {
  std::string what;    ///< such as "absolute path"
  std::string member;  ///< the member's path as it can be shown; empty when it is about no member

  bool operator==(const Finding&) const = default;
};

/// The most findings, and the most notes, that a verdict names.
inline constexpr std::size_t kMostFindings = 100;

/// What there is to say of an archive.
struct Verdict {
  std::vector<Finding> findings;  ///< why it must not be restored
  std::uint64_t found = 0;        ///< how many there are, with those that are not named
  std::vector<Finding> notes;     ///< what is odd about it, and does no harm
  std::uint64_t noted = 0;        ///< how many there are, with those that are not named
  std::uint64_t members = 0;
  std::uint64_t unpacked = 0;  ///< bytes
  bool is_damaged = false;     ///< whether it cannot be read to its end

  bool sound() const { return found == 0; }
};

/// What an archive may hold. Members are meant by their paths, which have no "/" before them.
struct Rules {
  Places places;
  std::vector<std::string> written = {};   ///< what the restore writes itself when all is unpacked
  std::vector<std::string> linked = {};    ///< those that may also be links to volatile files
  std::vector<std::string> reserved = {};  ///< what the restore uses for itself meanwhile
};

/// Reads an archive to its end and looks whether it can be restored without harm: nothing in it is
/// damaged, it has only such members as a backup of these places has, none of them is in the way of
/// another, and none reaches anything but these places. Damage is the last of the findings, for
/// nothing is read after it. Raises base::SystemError.
Verdict verify(Reader& reader, const Rules& rules);

}  // namespace tarball
