#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace desk {

/// Texts by those that they translate.
using Translations = std::map<std::string, std::string, std::less<>>;

/// Reads a catalogue as msgfmt(1) makes it (GNU gettext's manual, "The Format of GNU MO Files"), of
/// either byte order. Plural forms beyond the first are left out. Raises std::runtime_error when
/// `bytes` is no catalogue.
Translations parseCatalogue(std::string_view bytes);

}  // namespace desk
