#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "base/Escape.h"
#include "desk/drawing/Drawing.h"

namespace {

/// What a receiver shows of a screen: texts in its widgets, and a list of three rows.
desk::Frame frameOf(const char* screen, const char* list) {
  using namespace desk;
  const Rows rows = {{"A row with a text", "and a description", "/there.png"},
                     {"Another", "", "/missing.png"},
                     {"A third", "and its description"}};
  return {.layers = {
              {.screen = screen,
               .title = "A title",
               .rows = std::make_shared<const Rows>(rows),
               .selected = 1,
               .content = ScreenContent{
                   .texts = {{"title", "A title"}, {"key_red", "Exit"}, {"status", "two\nlines"}},
                   .list = list}}}};
}

std::optional<std::string> findPicture(const std::string& path) {
  return path == "/there.png" ? std::optional<std::string>("there") : std::nullopt;
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

/// Reads the input as a skin, and draws its screens: whatever it is, a picture is well-formed XML.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  desk::drawing::SkinFile file{.skin = {}, .directory = "/nowhere", .notices = {}};
  try {
    file.skin = desk::parseSkin({reinterpret_cast<const char*>(data), size}, file.notices);
  } catch (const desk::SkinError&) {
    return 0;
  }
  desk::drawing::Drawing drawing(std::move(file), findPicture);
  for (const auto& [screen, list] :
       {std::pair{"Stowline", "menu"}, {"StowlineRestore", "filelist"}}) {
    const std::string picture = drawing.draw(frameOf(screen, list), std::nullopt);
    require(pugi::xml_document().load_string(picture.c_str()));
    require(base::escapeForXml(picture) == picture);
  }
  return 0;
}
