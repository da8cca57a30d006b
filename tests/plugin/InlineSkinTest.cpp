#include <gtest/gtest.h>

#include <map>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "plugin/src/StowlineHelpScreen.h"

namespace stowline {
namespace {

struct Element {
  std::string name;
  std::multimap<std::string, std::string> attributes;
  bool operator==(const Element&) const = default;
};

const std::vector<Element> kElements = {
    {"screen",
     {{"name", "StowlineHelpScreen"}, {"position", "center,center"}, {"size", "650,250"}}},
    {"widget",
     {{"name", "messagetext"},
      {"position", "10,10"},
      {"size", "630,210"},
      {"font", "Regular;20"},
      {"halign", "center"},
      {"valign", "center"},
      {"transparent", "1"}}},
    {"widget",
     {{"source", "key_red"},
      {"render", "Label"},
      {"position", "40,213"},
      {"zPosition", "1"},
      {"size", "150,40"},
      {"font", "Regular;20"},
      {"halign", "left"},
      {"valign", "center"},
      {"transparent", "1"}}},
    {"widget",
     {{"source", "key_green"},
      {"render", "Label"},
      {"position", "225,213"},
      {"zPosition", "1"},
      {"size", "150,40"},
      {"font", "Regular;20"},
      {"halign", "left"},
      {"valign", "center"},
      {"transparent", "1"}}},
    {"ePixmap",
     {{"pixmap", "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_red.png"},
      {"position", "10,220"},
      {"size", "25,25"},
      {"alphatest", "on"}}},
    {"ePixmap",
     {{"pixmap",
       "/usr/lib/enigma2/python/Plugins/SystemPlugins/QORPanel/pictures/button_green.png"},
      {"position", "195,220"},
      {"size", "25,25"},
      {"alphatest", "on"}}},
};

Element elementOf(const pugi::xml_node& node) {
  Element element{node.name(), {}};
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    element.attributes.emplace(attribute.name(), attribute.value());
  }
  return element;
}

TEST(InlineSkin, IsAScreenWithFiveChildren) {
  pugi::xml_document skin;
  ASSERT_TRUE(skin.load_string(kStowlineHelpScreen.skin, pugi::parse_full));
  std::vector<Element> elements = {elementOf(skin.first_child())};
  for (const pugi::xml_node& child : skin.first_child()) {
    elements.push_back(elementOf(child));
    EXPECT_FALSE(child.first_child()) << child.name();
  }
  EXPECT_EQ(elements, kElements);
  EXPECT_FALSE(skin.first_child().next_sibling());
}

}  // namespace
}  // namespace stowline
