#pragma once

#include <array>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "desk/terminal/Television.h"

namespace desk::terminal {

using Lines = std::vector<std::string>;

/// When a test begins.
inline constexpr Time kStart{};

/// The terminal of most tests.
inline constexpr Size kTerminal = {64, 20};

/// Returns the lettering of a terminal that shows UTF-8.
Lettering utf8();

/// Returns the lettering of a terminal that knows ASCII alone.
Lettering ascii();

/// Returns the rows as a frame holds them. A list of pairs would be taken for an object.
Json rows(const std::vector<std::array<std::string, 2>>& texts);

/// Returns `count` rows, "row 0" and so on.
Json manyRows(int count);

/// Returns a frame of `count` such rows.
Json list(int count, int selected);

/// Returns `count` lines, "line 0" and so on, each with its line break.
std::string manyLines(int count);

/// Returns a frame with nothing in it but `more`.
Json frame(const Json& more = {});

/// Returns the rows of the canvas after a line break, each with one at its end.
std::string shown(const Canvas& canvas);

/// Returns what a television that shows nothing but `frame` looks like at its start.
std::string pictureOf(const Json& frame, Size size = kTerminal,
                      const Lettering& lettering = utf8());

/// Returns the canvas that `pictureOf` shows.
Canvas canvasOf(const Json& frame, Size size = kTerminal, const Lettering& lettering = utf8());

/// Returns what each box of the canvas holds: first "x,y WxH heading, note", then its lines that
/// are not blank, as "row text". The border is left out, unless something is drawn over it at an
/// end of the line.
std::vector<Lines> boxes(const Canvas& canvas);

/// Returns what the only box of a picture of `frame` holds.
Lines boxOf(const Json& frame, Size size = kTerminal, const Lettering& lettering = utf8());

/// Returns the row's cells that are drawn with `ink` as text, and a blank for every other.
std::string inInk(const Canvas& canvas, int row, Ink ink);

/// Returns what can be clicked, one "action x,y WxH" each.
Lines clicks(const Picture& picture);

/// Lets a failed test name the glyph.
void PrintTo(const Glyph& glyph, std::ostream* stream);

}  // namespace desk::terminal
