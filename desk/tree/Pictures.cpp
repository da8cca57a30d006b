#include "desk/tree/Pictures.h"

#include <random>

namespace desk {
namespace {

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift & 0xff);
  return bytes;
}

std::uint32_t crc32(const std::string& data) {
  std::uint32_t crc = 0xffffffff;
  for (const char byte : data) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xedb88320 : 0);
  }
  return ~crc;
}

std::uint32_t adler32(const std::string& data) {
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (const char byte : data) {
    a = (a + static_cast<unsigned char>(byte)) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

std::string chunk(const std::string& type, const std::string& data) {
  return bigEndian(static_cast<std::uint32_t>(data.size())) + type + data +
         bigEndian(crc32(type + data));
}

/// The data as a zlib stream of one stored block, which holds at most 65535 bytes.
std::string stored(const std::string& data) {
  const auto size = static_cast<unsigned>(data.size());
  std::string stream = "\x78\x01\x01";
  for (const unsigned value : {size & 0xff, size >> 8 & 0xff, ~size & 0xff, ~size >> 8 & 0xff})
    stream += static_cast<char>(value);
  return stream + data + bigEndian(adler32(data));
}

}  // namespace

std::string disc(unsigned size, Rgb colour) {
  std::string pixels;
  const int radius = static_cast<int>(size) / 2;
  for (int y = -radius; y < static_cast<int>(size) - radius; ++y) {
    pixels += '\0';  // each line begins with its filter: none
    for (int x = -radius; x < static_cast<int>(size) - radius; ++x) {
      const bool is_inside = x * x + y * y < radius * radius;
      pixels += bigEndian(is_inside ? colour << 8 | 0xff : 0);
    }
  }
  const std::string eight_bit_rgba("\x08\x06\x00\x00\x00", 5);
  return "\x89PNG\r\n\x1a\n" + chunk("IHDR", bigEndian(size) + bigEndian(size) + eight_bit_rgba) +
         chunk("IDAT", stored(pixels)) + chunk("IEND", "");
}

std::string noise(unsigned seed, std::size_t size) {
  std::mt19937 random(seed);
  std::string bytes;
  while (bytes.size() < size) bytes += static_cast<char>(random() & 0xff);
  return bytes;
}

}  // namespace desk
