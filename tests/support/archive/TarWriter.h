#pragma once

#include <cstdint>
#include <string>

namespace archive_test {

/// The fields of a tar header that tests are about.
struct Header {
  std::string name = {};
  char type = '0';
  unsigned mode = 0644;
  std::uint64_t size = 0;
  std::string link = {};
  bool is_gnu = false;  ///< whether it is in GNU tar's format instead of ustar
};

/// Returns the block of a header, with its checksum.
std::string block(const Header& header);

/// Returns the header with other bytes from `at` on, and with the checksum of what it is then.
std::string changed(std::string header, std::size_t at, const std::string& bytes);

/// Returns `content` with zeros up to a whole number of blocks.
std::string padded(std::string content);

/// Returns a member: its header, which says the size of `content`, and the content.
std::string member(Header header, const std::string& content = "");

/// Returns the headers by which GNU tar gives the member that follows a long path, and a long link
/// target.
std::string longPath(const std::string& path);
std::string longTarget(const std::string& target);

/// Returns a record of an extended header.
std::string record(const std::string& key, const std::string& value);

/// Returns an extended header of such records, which is about the member that follows.
std::string extended(const std::string& records);

/// The two blocks of zeros at the end of a tar archive.
extern const std::string kEndMark;

/// Returns `bytes` as gzip data, compressed as well as zlib does at this level; 0 stores them.
std::string gzipped(const std::string& bytes, int level = 6);

/// Returns `text` so many times.
std::string repeated(const std::string& text, std::size_t times);

}  // namespace archive_test
