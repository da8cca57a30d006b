#pragma once

#include <cstdint>
#include <string>

namespace desk {

/// A colour, as 0xRRGGBB.
using Rgb = std::uint32_t;

/// Returns a PNG picture of `size` by `size` pixels: a disc of the colour, and nothing around it.
std::string disc(unsigned size, Rgb colour);

/// Returns `size` bytes of noise that no compression shrinks; equal seeds give equal noise.
std::string noise(unsigned seed, std::size_t size);

}  // namespace desk
