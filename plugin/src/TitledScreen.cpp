#include "TitledScreen.h"

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

void TitledScreen::setKeyLabel(const std::string& key, const std::string& text) {
  peer().setItem(key, host().components().makeStaticText(translated(text)));
}

std::string TitledScreen::translated(const std::string& text) const {
  return host().translate(text);
}

}  // namespace stowline
