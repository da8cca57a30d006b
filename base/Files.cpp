#include "base/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "base/SystemError.h"

namespace base {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

std::string readAll(int descriptor, const std::string& path) {
  std::string text;
  std::array<char, 65536> buffer{};
  for (;;) {
    const std::size_t count = readSome(descriptor, buffer.data(), buffer.size(), path);
    text.append(buffer.data(), count);
    if (count < buffer.size()) return text;
  }
}

std::string readFile(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) throw SystemError(errno, path);
  return readAll(file.number(), path);
}

std::size_t readSome(int descriptor, char* bytes, std::size_t size, const std::string& path) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = read(descriptor, bytes + done, size - done);
    if (count == 0) break;
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      throw SystemError(errno, path);
    }
  }
  return done;
}

std::optional<std::string> readAtMost(int descriptor, std::size_t most, const std::string& path) {
  std::string content(most + 1, '\0');
  content.resize(readSome(descriptor, content.data(), content.size(), path));
  if (content.size() > most) return std::nullopt;
  content.shrink_to_fit();
  return content;
}

void writeAll(int descriptor, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw SystemError(errno, path);
    }
  }
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> result;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t newline = text.find('\n', start);
    const std::size_t end = newline == std::string::npos ? text.size() : newline + 1;
    result.push_back(text.substr(start, end - start));
    start = end;
  }
  return result;
}

std::vector<std::string> namesIn(Descriptor directory, const std::string& path) {
  const std::unique_ptr<DIR, CloseDirectory> entries(fdopendir(directory.number()));
  if (!entries) throw SystemError(errno, path);
  directory.release();
  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(entries.get());
    if (!entry) break;
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      names.emplace_back(entry->d_name);
    }
  }
  if (errno != 0) throw SystemError(errno, path);
  return names;
}

}  // namespace base
