#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>
#include <vector>

#include "plugin/src/StowlineHelpScreen.h"

namespace stowline {
namespace {

using Attributes = std::map<std::string, std::string>;

struct Element {
  std::string name;
  Attributes attributes;
};

const Element kElements[] = {
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

/// Returns the tags of the skin, in order, and checks that only white space lies between them.
std::vector<std::string> tagsOf(const std::string& skin) {
  const std::regex tag("<[^<>]*>");
  EXPECT_EQ(std::regex_replace(skin, tag, "").find_first_not_of(" \t\n"), std::string::npos);
  return {std::sregex_token_iterator(skin.begin(), skin.end(), tag), std::sregex_token_iterator()};
}

Attributes attributesOf(const std::string& tag) {
  const std::regex attribute("\\s(\\w+)=\"([^\"]*)\"");
  Attributes attributes;
  for (std::sregex_iterator match(tag.begin(), tag.end(), attribute), end; match != end; ++match) {
    EXPECT_TRUE(attributes.emplace((*match)[1], (*match)[2]).second) << "twice: " << match->str();
  }
  EXPECT_TRUE(std::regex_match(std::regex_replace(tag, attribute, ""), std::regex("<\\w+\\s*/?>")));
  return attributes;
}

TEST(InlineSkin, IsAScreenWithFiveChildren) {
  const std::vector<std::string> tags = tagsOf(std::string(StowlineHelpScreen::skin));
  ASSERT_EQ(tags.size(), std::size(kElements) + 1);
  for (std::size_t i = 0; i < std::size(kElements); ++i) {
    SCOPED_TRACE(tags[i]);
    EXPECT_TRUE(tags[i].starts_with("<" + kElements[i].name + " "));
    EXPECT_EQ(tags[i].ends_with("/>"), i > 0);
    EXPECT_EQ(attributesOf(tags[i]), kElements[i].attributes);
  }
  EXPECT_EQ(tags.back(), "</screen>");
}

TEST(InlineSkin, HasNoElementForTheTitle) {
  EXPECT_EQ(StowlineHelpScreen::skin.find("title"), std::string_view::npos);
}

}  // namespace
}  // namespace stowline
