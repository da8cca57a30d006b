#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "desk/drawing/Pictures.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk::drawing {
namespace {

struct PicturesTest : testing::Test {
  /// Returns the content of a picture without what makes it one; "none" where there is none.
  std::string at(const std::string& path) {
    const auto picture = pictures.at(path);
    return picture ? picture->content.substr(4) : "none";
  }

  support::TemporaryDirectory receiver;
  Pictures pictures{receiver.path(), 100};
};

TEST_F(PicturesTest, FileIsReadOnceForAScreenWhetherItIsThereOrNot) {
  receiver.write("a.gif", "GIF8 first");
  EXPECT_EQ(at("/a.gif"), " first");
  EXPECT_EQ(at("/b.gif"), "none");
  receiver.write("a.gif", "GIF8 second");
  receiver.write("b.gif", "GIF8 new");
  EXPECT_EQ(at("/a.gif"), " first");
  EXPECT_EQ(at("/b.gif"), "none");
  pictures.changeScreen();
  EXPECT_EQ(at("/a.gif"), " second");
  EXPECT_EQ(at("/b.gif"), " new");
}

TEST_F(PicturesTest, NameStaysWithAContentAndIsKnownForAScreenMore) {
  receiver.write("a.gif", "GIF8 first");
  const auto first = pictures.at("/a.gif");
  EXPECT_EQ(pictures.named(first->name), first);
  pictures.changeScreen();
  EXPECT_EQ(pictures.at("/a.gif"), first);
  receiver.write("a.gif", "GIF8 second");
  pictures.changeScreen();
  const auto second = pictures.at("/a.gif");
  EXPECT_NE(second->name, first->name);
  EXPECT_EQ(pictures.named(first->name), first);
  pictures.changeScreen();
  EXPECT_EQ(pictures.named(first->name), nullptr);
  EXPECT_EQ(pictures.named(second->name), second);
}

TEST_F(PicturesTest, WhatIsTooMuchForAScreenIsMissing) {
  receiver.write("a.gif", "GIF8" + std::string(50, 'a'));
  receiver.write("b.gif", "GIF8" + std::string(50, 'b'));
  EXPECT_EQ(at("/a.gif"), std::string(50, 'a'));
  EXPECT_EQ(at("/b.gif"), "none");
  pictures.changeScreen();
  EXPECT_EQ(at("/b.gif"), std::string(50, 'b'));
}

TEST_F(PicturesTest, WhatIsNoPictureIsMissing) {
  receiver.write("passwd", "root:x:0:0");
  EXPECT_EQ(at("/passwd"), "none");
  EXPECT_EQ(at("/"), "none");
}

}  // namespace
}  // namespace desk::drawing
