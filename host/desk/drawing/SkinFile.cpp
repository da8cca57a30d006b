#include "SkinFile.h"

#include <fcntl.h>

#include <cerrno>
#include <string>

#include "SampleSkin.h"
#include "native/Descriptor.h"
#include "native/OsError.h"
#include "native/Reading.h"

namespace desk::drawing {
namespace {

std::string contentOf(const std::filesystem::path& file) {
  const native::Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!descriptor) throw native::osError(errno, file);
  return native::readAll(descriptor.number(), file);
}

}  // namespace

SkinFile readSkin(const std::filesystem::path& file) {
  SkinFile result{.skin = {}, .directory = file.parent_path(), .notices = {}};
  try {
    result.skin = parseSkin(file.empty() ? kSampleSkin : contentOf(file), result.notices);
  } catch (const SkinError& error) {
    throw SkinError(file.string() + ": " + error.what());
  }
  return result;
}

}  // namespace desk::drawing
