#include "plugin/src/TitledScreen.h"

#include <exception>

namespace stowline {

void TitledScreen::setTitleAttribute(const std::string& text) {
  title = text;
  peer().setAttribute("title", title);
}

void TitledScreen::setTitleWidget() {
  try {
    peer().setItem("title", host().components().makeStaticText(title));
  } catch (const std::exception&) {
    host().print("self[\"title\"] was not found in skin");
  }
}

void TitledScreen::setKeyLabel(std::string_view key, std::string_view text) {
  peer().setItem(key, host().components().makeStaticText(translated(text)));
}

std::string TitledScreen::translated(std::string_view text) const {
  return host().translate(text);
}

}  // namespace stowline
