#include "desk/drawing/SkinFile.h"

#include <string>

#include "base/Files.h"
#include "desk/drawing/skin_hd.h"

namespace desk::drawing {
SkinFile readSkin(const std::filesystem::path& file) {
  SkinFile result{.skin = {}, .directory = file.parent_path(), .notices = {}};
  try {
    result.skin = parseSkin(file.empty() ? std::string(embedded::skin_hd) : base::readFile(file),
                            result.notices);
  } catch (const SkinError& error) {
    throw SkinError(file.string() + ": " + error.what());
  }
  return result;
}

}  // namespace desk::drawing
