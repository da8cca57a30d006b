#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

/// A receiver tree: a directory that holds what the module touches on a receiver. Its tools run
/// inside it, as root after a chroot, as an ordinary user in a user namespace.
namespace desk {

/// Why a directory cannot be laid out, flashed or used. what() is one line for the user: what is
/// wrong and what to do about it.
class TreeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Returns the models that a receiver can be of.
std::vector<std::string> models();

/// Lays out a receiver of the model `model` that has been in use for a while in `dir`, which must
/// not exist or be empty. Raises TreeError when it cannot; then nothing is left in `dir`.
void layOut(const std::filesystem::path& dir, const std::string& model);

/// Puts the receiver tree `dir` back to factory state; its model and its /media stay as they are,
/// and nothing outside `dir` is touched. Raises TreeError when `dir` is no receiver tree, is in use
/// or cannot be written; a flash that broke off can be repeated, and until then the tree counts as
/// incomplete.
void flash(const std::filesystem::path& dir);

/// Raises TreeError unless `dir` is a complete receiver tree with its tools.
void requireTree(const std::filesystem::path& dir);

}  // namespace desk
