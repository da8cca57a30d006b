#include "SkinFile.h"

#include <string>

#include "SampleSkin.h"
#include "native/Reading.h"

namespace desk::drawing {
SkinFile readSkin(const std::filesystem::path& file) {
  SkinFile result{.skin = {}, .directory = file.parent_path(), .notices = {}};
  try {
    result.skin = parseSkin(file.empty() ? kSampleSkin : native::readFile(file), result.notices);
  } catch (const SkinError& error) {
    throw SkinError(file.string() + ": " + error.what());
  }
  return result;
}

}  // namespace desk::drawing
