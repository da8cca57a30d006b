#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "desk/tree/Files.h"
#include "desk/tree/ReceiverTree.h"

namespace desk {

/// How a command ended, and what it printed on either channel.
struct Outcome {
  int status;
  std::string output;
};

/// Everything below a directory by its path: its kind, its permissions and what it holds.
using Snapshot = std::map<std::string, std::string>;

/// `skipped` names the entries of `dir` itself that are left out.
Snapshot snapshot(const std::filesystem::path& dir, const std::vector<std::string>& skipped = {});

void writeFile(const std::filesystem::path& path, const std::string& content);

/// Runs the command by the tree's own shell, with the tree as the root directory.
Outcome runIn(const std::filesystem::path& tree, const std::string& command);

/// Whether this machine lets us run commands in a tree.
bool canRunIn(const std::filesystem::path& tree);

/// What a call that is expected to raise TreeError says.
template <typename Call>
std::string refusal(const Call& call) {
  try {
    call();
  } catch (const TreeError& error) {
    return error.what();
  }
  return "no refusal";
}

/// Gives every test a directory of its own.
class Directory : public testing::Test {
 protected:
  Directory();
  ~Directory() override;

  const std::filesystem::path dir_;
};

/// Gives every test a receiver tree whose tools can be run.
class Tree : public Directory {
 protected:
  void SetUp() override;

  Outcome run(const std::string& command) { return runIn(tree_, command); }

  const std::filesystem::path tree_ = dir_ / "tree";
};

}  // namespace desk
