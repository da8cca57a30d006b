#include "tests/support/archive/TarWriter.h"

#include <zlib.h>

#include <cstdio>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace archive_test {
namespace {

constexpr std::size_t kBlock = 512;

std::string octal(std::uint64_t number, std::size_t width) {
  char text[32];
  std::snprintf(text, sizeof text, "%0*llo", static_cast<int>(width),
                static_cast<unsigned long long>(number));
  return text;
}

void put(std::string& block, std::size_t at, const std::string& field) {
  block.replace(at, field.size(), field);
}

}  // namespace

const std::string kEndMark(2 * kBlock, '\0');

std::string block(const Header& header) {
  std::string block(kBlock, '\0');
  put(block, 0, header.name.substr(0, 100));
  put(block, 100, octal(header.mode, 7));
  put(block, 108, octal(0, 7));
  put(block, 116, octal(0, 7));
  put(block, 124, octal(header.size, 11));
  put(block, 136, octal(1700000000, 11));
  put(block, 157, header.link.substr(0, 100));
  put(block, 257, header.is_gnu ? std::string("ustar  \0", 8) : std::string("ustar\00000", 8));
  return changed(block, 156, std::string(1, header.type));
}

std::string changed(std::string header, std::size_t at, const std::string& bytes) {
  put(header, at, bytes);
  put(header, 148, std::string(8, ' '));
  const auto add = [](unsigned sum, char byte) { return sum + static_cast<unsigned char>(byte); };
  put(header, 148, octal(std::accumulate(header.begin(), header.end(), 0U, add), 6) + '\0');
  return header;
}

std::string padded(std::string content) {
  content.resize((content.size() + kBlock - 1) / kBlock * kBlock);
  return content;
}

std::string member(Header header, const std::string& content) {
  header.size = content.size();
  return block(header) + padded(content);
}

std::string longPath(const std::string& path) {
  return member({.name = "././@LongLink", .type = 'L', .is_gnu = true}, path + '\0');
}

std::string longTarget(const std::string& target) {
  return member({.name = "././@LongLink", .type = 'K', .is_gnu = true}, target + '\0');
}

std::string record(const std::string& key, const std::string& value) {
  const std::string rest = " " + key + "=" + value + "\n";
  std::size_t length = rest.size();
  while (length != rest.size() + std::to_string(length).size()) {
    length = rest.size() + std::to_string(length).size();
  }
  return std::to_string(length) + rest;
}

std::string extended(const std::string& records) {
  return member({.name = "PaxHeaders/member", .type = 'x'}, records);
}

std::string gzipped(const std::string& bytes, int level) {
  z_stream stream{};
  if (deflateInit2(&stream, level, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("cannot compress");
  }
  std::string packed(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  const int result = deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw std::runtime_error("cannot compress");
  return packed;
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t round = 0; round < times; ++round) all += text;
  return all;
}

}  // namespace archive_test
