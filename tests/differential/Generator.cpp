#include "tests/differential/Generator.h"

#include <algorithm>
#include <string_view>

#include "tests/support/archive/TarWriter.h"

namespace differential_test {
namespace {

using archive_test::block;
using archive_test::changed;
using archive_test::Header;
using archive_test::longPath;
using archive_test::longTarget;
using archive_test::record;
using Texts = std::vector<std::string>;

constexpr std::size_t kBlock = 512;

/// Paths that meet each other, some of them spelled in another way.
const Texts kPaths = {
    "keys/a",        "keys/b",          "keys/a/b",      "keys/a/c",        "keys/d/e",
    "keys/d",        "./keys/a",        "etc/hostname",  "etc/CCcam.cfg",   "etc/CCx/y",
    "keys/a b",      "keys/caf\xe9",    "etc/enigma2/s", "etc/enigma2/d/s", "keys/f/g/h",
    "keys/i",        "keys/j/k",        "keys/l",        "etc/CC1",         "etc/CC2",
    "etc/enigma2/t", "etc/enigma2/u/v", "keys/m",        "keys/n/o",        "keys/p"};
const Texts kHostilePaths = {"../x", "keys/../etc/shadow", "/keys/a", "etc/shadow", "keys/..",
                             ".",    "keys/a\nb",          "etc"};
const Texts kTargets = {
    "a", "keys/a",        "keys/b",   "./keys/a",     "../etc/hostname", "/keys",
    "b", "/etc/hostname", "keys/d/e", "etc/hostname", "keys//a",         "etc/CCcam.cfg"};
const Texts kHostileTargets = {"../../..",       "/etc/shadow", "../keys/a", "/keys/a",
                               "keys/../keys/a", "etc/shadow",  ""};
const Texts kKeys = {"path",
                     "linkpath",
                     "size",
                     "mtime",
                     "atime",
                     "uid",
                     "uname",
                     "comment",
                     "hdrcharset",
                     "GNU.sparse.name",
                     "GNU.sparse.major",
                     "GNU.sparse.minor",
                     "GNU.sparse.realsize",
                     "GNU.sparse.size",
                     "GNU.sparse.map",
                     "SCHILY.xattr.user.a",
                     "SCHILY.realsize",
                     "LIBARCHIVE.symlinktype",
                     "RHT.security.selinux"};

/// A field of a header, and what may stand there instead.
struct Odd {
  std::size_t at;
  Texts values;
};

const std::vector<Odd> kOdd = {
    {100, {"0100644", "7777777", "   644 ", std::string(8, '\0'), "0000755", "0004755", "0002755"}},
    {108, {std::string("\x80\0\0\0\0\x20\0\0", 8), std::string(8, '\xff'), "  1000 ", "0001750"}},
    {116, {std::string("\x80\0\0\0\0\x20\0\0", 8), std::string(8, '\0'), "0001750"}},
    {124,
     {std::string("\x80") + std::string(10, '\0') + "\x01", "00000001000", "000000000001",
      "          5 ", std::string(12, '\0'), std::string(12, '\xff'), "-0000000001"}},
    {136,
     {std::string(12, '\xff'), std::string(12, '\0'), "          5 ", "77777777777",
      std::string(11, '\xff') + "\x05"}},
    {157, {"keys/b", "/etc/shadow"}},
    {257,
     {std::string(8, '\0'), std::string("ustar\00000", 8), std::string("ustar  \0", 8), "ustar000",
      std::string("ustar\0\0\0", 8), "USTAR  "}},
    {265, {"root", std::string(32, 'u'), "nobody"}},
    {329, {"0000001", "xxxxxxx"}},
    {345, {"keys", "keys/", "..", "/", std::string(155, 'p'), std::string("keys\0x", 6)}},
    {476, {"00000000010", "tar"}},
    {500, {"x", std::string(12, ' ')}},
    {508, {std::string("tar\0", 4)}},
};

constexpr std::string_view kOddTypes(
    "\0"
    "1234567ADEIKLMNOSVXZgx",
    23);

}  // namespace

Generator::Generator(unsigned seed, unsigned round) {
  std::seed_seq numbers{seed, round};
  random_.seed(numbers);
}

bool Generator::chance(unsigned percent) {
  return upTo(99) < percent;
}

std::size_t Generator::upTo(std::size_t last) {
  return random_() % (last + 1);
}

std::vector<Item> Generator::receiver() {
  std::vector<Item> items = {{'d', "keys", ""}, {'d', "etc", ""}, {'f', "etc/shadow", "secret"}};
  if (chance(50)) items.push_back({'f', "keys/a", pick(Texts{"content", "old"})});
  if (chance(50)) items.push_back({'h', "keys/h", "etc/shadow"});
  if (chance(30)) items.push_back({'l', "keys/b", pick(Texts{"/etc/shadow", "a", "nowhere"})});
  if (chance(20)) {
    items.push_back({'d', "keys/d", ""});
    if (chance(50)) items.push_back({'f', "keys/d/e", "deep"});
  } else if (chance(10)) {
    items.push_back({'l', "keys/d", pick(Texts{"/etc", "../etc", "nowhere", "../etc/shadow"})});
  }
  if (chance(30)) items.push_back({'f', "etc/hostname", "receiver\n"});
  if (chance(30)) items.push_back({'d', "etc/enigma2", ""});
  return items;
}

std::string Generator::archive() {
  std::string tar;
  for (std::size_t left = upTo(6) + 1; left > 0; --left) tar += member();
  const std::size_t blocks = chance(97) ? 2 : upTo(3);
  tar += std::string(blocks * kBlock, '\0');
  if (chance(2)) tar += member();
  if (chance(1)) tar.resize(tar.size() - upTo(tar.size() - 1));
  return chance(3) ? damaged(std::move(tar)) : tar;
}

std::string Generator::compressed(const std::string& tar) {
  const std::size_t cut = chance(10) ? upTo(tar.size()) : tar.size();
  std::string packed = archive_test::gzipped(tar.substr(0, cut), 1);
  if (cut < tar.size()) packed += archive_test::gzipped(tar.substr(cut), 1);
  return chance(5) ? packed + std::string(upTo(600), '\0') : packed;
}

std::string Generator::path() {
  if (chance(2)) return pick(kHostilePaths);
  if (chance(3)) return "keys/" + std::string(90 + upTo(20), 'n');
  const std::string path = pick(kPaths);
  return paths_.insert(path).second || chance(10) ? path : this->path();
}

std::string Generator::target() {
  return chance(4) ? pick(kHostileTargets) : pick(kTargets);
}

/// Returns a long name of which the header's is the beginning, mostly.
std::string Generator::lengthened(std::string& name) {
  if (chance(5)) return path();
  std::string all = name + (chance(50) ? "/" : "");
  for (std::size_t left = upTo(3) + 1; left > 0; --left) all += std::string(upTo(260), 'l') + "/";
  if (!name.ends_with('/')) all += "e";
  name = all.substr(0, 100);
  return all;
}

/// Returns a member with what is said of it before.
std::string Generator::member() {
  constexpr std::string_view kTypes = "000000055511122";
  char type = chance(2) ? pick(kOddTypes) : pick(kTypes);
  if (type == '1' && files_.empty() && chance(90)) type = '0';
  Header header{.name = path(),
                .type = type,
                .mode = pick(std::vector<unsigned>{0644, 0600, 0755, 0444}),
                .is_gnu = chance(50)};
  if (type == '5') {
    header.mode = pick(std::vector<unsigned>{0755, 0755, 0700, 0700, 01777, 02755});
    if (chance(80)) header.name += "/";
  }
  if (type == '1' || type == '2' || chance(1)) header.link = target();
  if (type == '1' && !files_.empty() && chance(95)) {
    const File file = pick(files_);
    header.link = file.path;
    if (chance(95)) header.mode = file.mode;
  }
  std::string extensions;
  if (chance(12)) {
    if (chance(70)) extensions += longPath(lengthened(header.name));
    if (chance(type == '2' || type == '1' ? 50 : 2))
      extensions += longTarget(lengthened(header.link));
  } else if (chance(5)) {
    for (std::size_t left = upTo(2) + 1; left > 0; --left) extensions += extension();
  }
  if (type == '0' && extensions.empty()) files_.push_back({header.name, header.mode});
  const bool has_content = type == '0' ? chance(70) : chance(1);
  const std::string content(has_content ? upTo(700) + 1 : 0, pick(std::string_view("abc\0", 4)));
  header.size = content.size();
  std::string packed = block(header);
  if (chance(5)) packed = odd(std::move(packed));
  if (chance(1)) packed[upTo(kBlock - 1)] ^= '\1';
  return extensions + packed + archive_test::padded(content);
}

/// Returns any header that says something of what follows.
std::string Generator::extension() {
  const char type = pick(std::string_view("LLKKxxxxg"));
  const bool is_name = type == 'L' || type == 'K';
  std::string content = is_name ? path() + '\0' : records();
  if (chance(10)) content += is_name ? std::string("x\0", 2) : "x";
  Header header{.name = is_name ? "././@LongLink" : "PaxHeaders/a",
                .type = type,
                .size = content.size(),
                .is_gnu = is_name != chance(10)};
  if (chance(5)) header.name = path();
  std::string packed = block(header);
  if (chance(8)) packed = odd(std::move(packed));
  return packed + archive_test::padded(content);
}

std::string Generator::records() {
  std::string all;
  for (std::size_t left = upTo(2) + 1; left > 0; --left) {
    const std::string key = chance(50) ? pick(Texts{"mtime", "atime", "ctime"}) : pick(kKeys);
    std::string value = pick(Texts{"0", "1", "512", "1024", "x", "", "-1", "1700000000"});
    if (key.ends_with("time"))
      value = pick(Texts{"1700000000", "1700000000.25", "1700000000", "5"});
    if (key.ends_with("path") || key.ends_with("name")) value = chance(50) ? path() : target();
    std::string one = record(key, value);
    if (chance(3)) one[0] = pick(std::string_view("0129x "));
    all += one;
  }
  return all;
}

/// Returns the header with an odd value in one of its fields, or without its right checksum.
std::string Generator::odd(std::string header) {
  if (chance(10)) {
    header.replace(
        148, 8,
        pick(Texts{std::string("  1234\0 ", 8), std::string("0000000\0", 8), std::string(8, ' ')}));
    return header;
  }
  const Odd& field = pick(kOdd);
  std::string value = pick(field.values);
  value.resize(std::min(value.size(), kBlock - field.at));
  return changed(std::move(header), field.at, value);
}

/// Returns the archive with some bytes changed; of a header that is hit the checksum is put right.
std::string Generator::damaged(std::string tar) {
  for (std::size_t left = upTo(3) + 1; left > 0 && !tar.empty(); --left) {
    const std::size_t at = upTo(tar.size() - 1);
    tar[at] = static_cast<char>(random_());
    const std::size_t header = at / kBlock * kBlock;
    const bool is_header =
        header + kBlock <= tar.size() && tar.compare(header + 257, 5, "ustar") == 0;
    if (is_header && chance(80)) {
      tar.replace(header, kBlock, changed(tar.substr(header, kBlock), 0, ""));
    }
  }
  return tar;
}

}  // namespace differential_test
