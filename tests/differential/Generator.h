#pragma once

#include <initializer_list>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace differential_test {

/// Something that lies on a receiver before an archive is unpacked there.
struct Item {
  char type;         ///< 'd'irectory, 'f'ile, 'l'ink or 'h'ard link
  std::string path;  ///< relative to the root
  std::string text;  ///< of a file, its content; of a link, its target
};

/// Makes receivers and tar archives for them by chance: mostly such as backups are, with odd header
/// fields, extensions, orders, repeats and damage among them. The same numbers make the same ones.
class Generator {
 public:
  Generator(unsigned seed, unsigned round);

  std::vector<Item> receiver();

  /// Returns a tar archive, and one compressed: as one gzip member or more.
  std::string archive();
  std::string compressed(const std::string& tar);

 private:
  bool chance(unsigned percent);
  std::size_t upTo(std::size_t last);
  template <class Items>
  auto pick(const Items& items) {
    return items[upTo(items.size() - 1)];
  }
  std::string path();
  std::string target();
  std::string lengthened(std::string& name);
  std::string member();
  std::string extension();
  std::string records();
  std::string odd(std::string header);
  std::string damaged(std::string tar);

  struct File {
    std::string path;
    unsigned mode;
  };

  std::mt19937 random_;
  std::set<std::string> paths_;  ///< of the archive so far
  std::vector<File> files_;      ///< of the archive so far, without extensions
};

}  // namespace differential_test
