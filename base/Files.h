#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Descriptor.h"

namespace base {

/// Reads the open file `descriptor` to its end. `path` names it in an error. Raises SystemError.
std::string readAll(int descriptor, const std::string& path);

/// Reads the file `path` to its end. Raises SystemError.
std::string readFile(const std::string& path);

/// Reads at most `size` bytes of the open file `descriptor` into `bytes`, less only where the file
/// ends. Returns how many. `path` names it in an error. Raises SystemError.
std::size_t readSome(int descriptor, char* bytes, std::size_t size, const std::string& path);

/// Reads the open file `descriptor` to its end; nothing where that has more than `most` bytes.
/// `path` names it in an error. Raises SystemError.
std::optional<std::string> readAtMost(int descriptor, std::size_t most, const std::string& path);

/// Writes all of `bytes` into the open file `descriptor`. `path` names it in an error. Raises
/// SystemError.
void writeAll(int descriptor, std::string_view bytes, const std::string& path);

/// Cuts `text` behind every newline.
std::vector<std::string> linesOf(const std::string& text);

/// Returns the names in the open directory, without "." and "..", in the directory's own order.
/// `path` names it in an error. Raises SystemError.
std::vector<std::string> namesIn(Descriptor directory, const std::string& path);

}  // namespace base
