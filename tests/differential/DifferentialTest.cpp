#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Escape.h"
#include "base/Root.h"
#include "base/SystemError.h"
#include "command/archive/Paths.h"
#include "command/archive/Verify.h"
#include "command/preview/Forecast.h"
#include "tests/differential/Generator.h"
#include "tests/differential/Unpacker.h"
#include "tests/support/Environment.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/archive/Archives.h"

namespace differential_test {
namespace {

using archive_test::Bytes;
using tarball::Type;

std::string relative(const std::string& path) {
  return tarball::joined(tarball::componentsOf(path));
}

/// What is said of a sound archive before it is unpacked.
class Prediction {
 public:
  Prediction(const std::string& tar, const std::string& root, const Tree& before)
      : receiver_(root), tree_(before) {
    tarball::Reader reader(std::make_unique<Bytes>(tar));
    preview::Forecast forecast{base::Root(root), preview::Plan()};
    while (const auto member = reader.next()) {
      preview::Content content(reader);
      forecast.take(*member, content);
      contents_.push_back(*content.text());
    }
    for (const preview::Change& change : forecast.finish()) apply(change);
  }

  /// Returns what there will be, nothing where it is said that programs may differ.
  const std::optional<Tree>& tree() const { return tree_; }

 private:
  void apply(const preview::Change& change) {
    using preview::Action;
    if (change.action == Action::blocked || change.action == Action::unreadable) tree_.reset();
    if (!tree_) return;
    const std::string path = relative(change.path);
    for (std::size_t slash = path.find('/'); slash != path.npos;
         slash = path.find('/', slash + 1)) {
      tree_->try_emplace(path.substr(0, slash), "d 755");
    }
    char mode[8];
    std::snprintf(mode, sizeof mode, "%o", change.after->mode);
    switch (change.after->type) {
      case Type::kFile:
        (*tree_)[path] = std::string("f ") + mode + " " + contents_[change.member - 1];
        break;
      case Type::kDirectory:
        (*tree_)[path] = std::string("d ") + mode;
        break;
      case Type::kSymbolicLink:
        (*tree_)[path] = "l " + change.after->link;
        break;
      default:
        (*tree_)[path] = "= " + located(relative(change.after->link));
    }
  }

  /// Returns where a path leads on the receiver.
  std::string located(const std::string& path) const {
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos) return path;
    const auto directory = receiver_.realPath("/" + path.substr(0, slash));
    return directory ? relative(*directory + path.substr(slash)) : path;
  }

  base::Root receiver_;
  std::optional<Tree> tree_;
  std::vector<std::string> contents_;
};

/// Returns the tree with each file's content at the first of its paths.
Tree inOrder(const Tree& tree) {
  Tree files;  // by the path that has the content: the first path
  Tree ordered;
  for (const auto& [path, text] : tree) {
    std::string owner = path;
    std::string said = text;
    for (int depth = 0; said.starts_with("= ") && depth < 8; ++depth) {
      owner = said.substr(2);
      const auto found = tree.find(owner);
      said = found == tree.end() ? "?" : found->second;
    }
    const auto [first, is_first] = files.try_emplace(owner, path);
    ordered[path] = is_first ? said : "= " + first->second;
  }
  return ordered;
}

/// The tar programs, and for each of them a receiver of its own, in a mount namespace of this
/// process.
class Differential : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "archives are unpacked as root only";
    if (unshare(CLONE_NEWNS) != 0 ||
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", directory_.path().c_str(), "tmpfs", 0, nullptr) != 0) {
      GTEST_SKIP() << "no mount namespace can be had here";
    }
    const std::vector<std::vector<std::string>> programs = {{"/usr/bin/tar", "--warning=none"},
                                                            {"/usr/bin/busybox", "tar"},
                                                            {"/usr/bin/toybox", "tar"},
                                                            {"/usr/bin/bsdtar", "--fflags"}};
    for (const std::vector<std::string>& program : programs) {
      const std::string root = directory_ / std::to_string(unpackers_.size());
      std::filesystem::create_directory(root);
      unpackers_.push_back(std::make_unique<Unpacker>(root, program));
    }
  }

  void TearDown() override {
    unpackers_.clear();
    umount2(directory_.path().c_str(), MNT_DETACH);
  }

  /// Returns what is wrong, "" for nothing.
  std::string tryOut(const std::string& tar, const std::string& packed,
                     const std::vector<Item>& receiver) {
    tarball::Reader reader(archive_test::ArchiveFile(packed).path());
    if (!tarball::verify(reader, {.places = archive_test::places()}).sound()) return "";
    ++sound_;
    directory_.write("archive", packed);
    for (const auto& unpacker : unpackers_) unpacker->reset(receiver);
    const Unpacker& first = *unpackers_.front();
    const Prediction prediction(tar, first.root().string(), first.tree());
    if (!prediction.tree()) return "";
    ++predicted_;
    const Tree expected = inOrder(*prediction.tree());
    std::string wrong;
    for (const auto& unpacker : unpackers_) {
      const std::string failure = unpacker->unpack(directory_ / "archive");
      const Tree tree = unpacker->tree();
      if (isRefusal(failure)) {
        ++refused_;
        continue;
      }
      if (failure.empty() && tree == expected) continue;
      wrong += unpacker->name() + ": " + failure + differences(expected, tree);
    }
    return wrong;
  }

  /// Whether a program has refused a member for a link of the receiver, and said so. Where a
  /// directory is missing, toybox takes the rest of a path for one in the directory above.
  static bool isRefusal(const std::string& failure) {
    return failure.find("bad symlink\n") != failure.npos ||
           failure.find("Cannot extract through symlink") != failure.npos;
  }

  static std::string differences(const Tree& expected, const Tree& tree) {
    std::string text = "\n";
    for (const auto& [path, what] : expected) {
      const auto found = tree.find(path);
      if (found != tree.end() && found->second == what) continue;
      text += "  predicted " + path + ": " + what + "\n";
    }
    for (const auto& [path, what] : tree) {
      const auto found = expected.find(path);
      if (found != expected.end() && found->second == what) continue;
      text += "  unpacked  " + path + ": " + what + "\n";
    }
    return text;
  }

  support::TemporaryDirectory directory_;
  std::vector<std::unique_ptr<Unpacker>> unpackers_;
  unsigned sound_ = 0;
  unsigned predicted_ = 0;
  unsigned refused_ = 0;
};

/// Returns the headers, byte by byte, without the zeros.
std::string headersOf(const std::string& tar) {
  std::string text;
  for (std::size_t at = 0; at + 512 <= tar.size(); at += 512) {
    const std::string block = tar.substr(at, 512);
    if (block.compare(257, 5, "ustar") != 0) continue;
    for (std::size_t byte = 0; byte < block.size(); ++byte) {
      if (block[byte] == '\0') continue;
      if (byte == 0 || block[byte - 1] == '\0') text += " " + std::to_string(byte) + ":";
      text += base::escapeControls(block.substr(byte, 1));
    }
    text += "\n";
  }
  return text;
}

std::string listing(const std::string& tar) {
  tarball::Reader reader(std::make_unique<Bytes>(tar));
  std::string text;
  for (const std::string& line : archive_test::listed(reader))
    text += base::escapeControls(line.substr(0, 120)) + "\n";
  return text;
}

TEST_F(Differential, EveryTarUnpacksASoundArchiveAsItIsPredicted) {
  const unsigned rounds = support::numberOf("STOWLINE_ARCHIVES", 1000);
  const unsigned seed = support::numberOf("STOWLINE_SEED", 1);
  for (unsigned round = 0; round < rounds; ++round) {
    Generator generator(seed, round);
    const std::vector<Item> receiver = generator.receiver();
    const std::string tar = generator.archive();
    const std::string wrong = tryOut(tar, generator.compressed(tar), receiver);
    if (!wrong.empty())
      ADD_FAILURE() << "seed " << seed << ", round " << round << "\n"
                    << wrong << listing(tar) << headersOf(tar);
  }
  std::printf(
      "%u archives, %u of them sound; %u not unpacked, for something on the receiver blocks a "
      "member; "
      "%u times a program refused a member\n",
      rounds, sound_, sound_ - predicted_, refused_);
  EXPECT_GT(predicted_, rounds / 10);
}

}  // namespace
}  // namespace differential_test
