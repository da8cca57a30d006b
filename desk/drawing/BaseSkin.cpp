#include "desk/drawing/BaseSkin.h"

#include <algorithm>

namespace desk::drawing {
namespace {

/// In pixels of a picture of 1280x720.
constexpr const char* kBase = R"(
<skin>
  <output id="0"><resolution xres="1280" yres="720" bpp="32"/></output>
  <screen name="MessageBox" position="center,center" size="860,360">
    <widget name="type" position="20,30" size="80,100" font="Regular;72" halign="center" valign="center" transparent="1"/>
    <widget name="text" position="120,20" size="720,220" font="Regular;26" valign="center" transparent="1"/>
    <widget name="list" position="120,246" size="720,84" font="Regular;26" itemHeight="42" transparent="1"/>
    <widget name="timeout" position="20,316" size="90,34" font="Regular;22" halign="center" valign="center" transparent="1"/>
  </screen>
  <screen name="ChoiceBox" position="center,center" size="860,500">
    <widget name="text" position="20,14" size="820,76" font="Regular;26" valign="center" transparent="1"/>
    <widget name="list" position="20,100" size="820,378" font="Regular;26" itemHeight="42" transparent="1"/>
  </screen>
  <screen name="Console" position="center,center" size="1120,580">
    <widget name="text" position="20,14" size="1080,510" font="Regular;20" transparent="1"/>
    <widget name="status" position="20,538" size="1080,32" font="Regular;22" halign="right" valign="center" transparent="1"/>
  </screen>
  <screen name="Ipkg" position="center,center" size="1000,520">
    <widget name="list" position="20,14" size="960,440" transparent="1">
      <convert type="TemplatedMultiContent">
        {"template": [
          MultiContentEntryText(pos=(10,0), size=(700,44), font=0, flags=RT_VALIGN_CENTER, text=1),
          MultiContentEntryText(pos=(720,0), size=(220,44), font=0, flags=RT_HALIGN_RIGHT|RT_VALIGN_CENTER, text=2)],
         "fonts": [gFont("Regular", 24)], "itemHeight": 44}
      </convert>
    </widget>
    <widget name="status" position="20,474" size="960,34" font="Regular;22" halign="right" valign="center" transparent="1"/>
  </screen>
</skin>)";

/// How pixels become others.
struct Scale {
  double x;
  double y;

  int along(int pixels) const { return rounded(pixels * x); }
  int down(int pixels) const { return rounded(pixels * y); }

  SkinArea area(const SkinArea& area) const {
    return {along(area.x), down(area.y), along(area.width), down(area.height)};
  }

  SkinFont font(const SkinFont& font) const {
    return {font.name, std::max(1, rounded(font.size * std::min(x, y)))};
  }

 private:
  static int rounded(double pixels) { return static_cast<int>(pixels + 0.5); }
};

/// Returns a row's height; a row has one.
int scaledRow(int height, const Scale& scale) {
  return std::max(1, scale.down(height));
}

ListTemplate scaled(ListTemplate rows, const Scale& scale) {
  rows.row_height = scaledRow(rows.row_height, scale);
  for (RowEntry& entry : rows.entries) {
    entry.area = scale.area(entry.area);
    entry.layout.font = scale.font(entry.layout.font);
  }
  return rows;
}

SkinScreen scaled(SkinScreen screen, const Scale& scale) {
  screen.area = scale.area(screen.area);
  for (SkinElement& element : screen.elements) {
    const SkinArea area = element.area;
    element.area = scale.area(area);
    element.layout.font = scale.font(element.layout.font);
    if (element.row_height) {
      const int rows = area.height / *element.row_height;
      element.row_height = scaledRow(*element.row_height, scale);
      element.area.height = std::max(element.area.height, rows * *element.row_height);
    }
    if (element.rows) element.rows = scaled(*element.rows, scale);
  }
  return screen;
}

}  // namespace

Skin baseSkin(int width, int height) {
  Notices none;
  Skin skin = parseSkin(kBase, none);
  const Scale scale = {static_cast<double>(width) / skin.settings.width,
                       static_cast<double>(height) / skin.settings.height};
  for (auto& [name, screen] : skin.screens) screen = scaled(screen, scale);
  skin.settings.width = width;
  skin.settings.height = height;
  return skin;
}

}  // namespace desk::drawing
