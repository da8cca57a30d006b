#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "desk/terminal/Television.h"

namespace desk::terminal {

using Lines = std::vector<std::string>;

/// When a test begins.
inline constexpr Time kStart{};

/// How things stand then.
inline constexpr Moment kAtStart{.now = kStart};

/// The terminal of most tests.
inline constexpr Size kTerminal = {64, 20};

/// Returns the lettering of a terminal that shows UTF-8.
Lettering utf8();

/// Returns the lettering of a terminal that knows ASCII alone.
Lettering ascii();

/// Returns rows as a layer holds them.
SharedRows rows(Rows rows);

/// Returns `count` rows, "row 0" and so on.
SharedRows manyRows(int count);

/// Returns a list of `count` such rows.
LayerView list(int count, int selected);

/// Returns `count` lines, "line 0" and so on, each with its line break.
std::string manyLines(int count);

/// Returns a frame of one screen or dialog, "Screen" where it has no name.
Frame frame(LayerView layer = {});

/// Returns the rows of the canvas after a line break, each with one at its end.
std::string shown(const Canvas& canvas);

/// Returns what a television that shows nothing but `layer` looks like at its start.
std::string pictureOf(const LayerView& layer, Size size = kTerminal,
                      const Lettering& lettering = utf8());

/// Returns the canvas that `pictureOf` shows.
Canvas canvasOf(const LayerView& layer, Size size = kTerminal, const Lettering& lettering = utf8());

/// Returns what each box of the canvas holds: first "x,y WxH heading, note", then its lines that
/// are not blank, as "row text". The border is left out, unless something is drawn over it at an
/// end of the line.
std::vector<Lines> boxes(const Canvas& canvas);

/// Returns what the only box of a picture of `layer` holds.
Lines boxOf(const LayerView& layer, Size size = kTerminal, const Lettering& lettering = utf8());

/// Returns the row's cells that are drawn with `ink` as text, and a blank for every other.
std::string inInk(const Canvas& canvas, int row, Ink ink);

/// Returns what can be clicked, one "action x,y WxH" each.
Lines clicks(const Picture& picture);

/// Lets a failed test name the glyph.
void PrintTo(const Glyph& glyph, std::ostream* stream);

}  // namespace desk::terminal
