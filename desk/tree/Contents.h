#pragma once

#include <filesystem>
#include <string>

namespace desk {

/// Each lays its part of a receiver's files below `tree`, over what is there. All may raise
/// std::filesystem::filesystem_error.

/// A receiver of the model `model` right after a flash, but for its tools and media.
void layFactoryFiles(const std::filesystem::path& tree, const std::string& model);

/// What a user has set up and installed since.
void layUsedFiles(const std::filesystem::path& tree);

/// The media, with what the user keeps on the hard disk.
void layMedia(const std::filesystem::path& tree);

}  // namespace desk
