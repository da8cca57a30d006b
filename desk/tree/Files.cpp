#include "desk/tree/Files.h"

#include <archive.h>
#include <archive_entry.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace desk {
namespace {

namespace fs = std::filesystem;

using Writer = std::unique_ptr<archive, decltype(&archive_write_free)>;
using Reader = std::unique_ptr<archive, decltype(&archive_read_free)>;
using Entry = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

constexpr auto kExecutable = fs::perms(0755);
constexpr auto kPlain = fs::perms(0644);

/// Streams keep no reason for a failure; the system's last one is all there is.
[[noreturn]] void fail(const char* what, const fs::path& path) {
  throw fs::filesystem_error(what, path, std::error_code(errno, std::generic_category()));
}

void check(archive* handle, int result) {
  if (result != ARCHIVE_OK) throw std::runtime_error(archive_error_string(handle));
}

la_ssize_t append(archive* /*writer*/, void* target, const void* data, std::size_t size) {
  static_cast<std::string*>(target)->append(static_cast<const char*>(data), size);
  return static_cast<la_ssize_t>(size);
}

void addEntry(archive* handle, const File& file) {
  const Entry entry(archive_entry_new(), &archive_entry_free);
  archive_entry_set_pathname(entry.get(), file.path.c_str());
  archive_entry_set_filetype(entry.get(), AE_IFREG);
  archive_entry_set_perm(entry.get(), static_cast<mode_t>(file.executable ? kExecutable : kPlain));
  archive_entry_set_size(entry.get(), static_cast<la_int64_t>(file.content.size()));
  archive_entry_set_uname(entry.get(), "root");
  archive_entry_set_gname(entry.get(), "root");
  check(handle, archive_write_header(handle, entry.get()));
  archive_write_data(handle, file.content.data(), file.content.size());
}

std::string compress(const Files& files, int (*set_format)(archive*)) {
  std::string result;
  const Writer writer(archive_write_new(), &archive_write_free);
  check(writer.get(), archive_write_add_filter_gzip(writer.get()));
  check(writer.get(), archive_write_set_filter_option(writer.get(), "gzip", "timestamp", nullptr));
  check(writer.get(), set_format(writer.get()));
  check(writer.get(), archive_write_open(writer.get(), &result, nullptr, &append, nullptr));
  for (const File& file : files) addEntry(writer.get(), file);
  check(writer.get(), archive_write_close(writer.get()));
  return result;
}

std::string content(archive* handle) {
  std::string result;
  char block[16384];
  la_ssize_t size = 0;
  while ((size = archive_read_data(handle, block, sizeof block)) > 0)
    result.append(block, static_cast<std::size_t>(size));
  if (size < 0) throw std::runtime_error(archive_error_string(handle));
  return result;
}

}  // namespace

std::string inQuotes(const fs::path& path) {
  return std::string("'").append(path.string()).append("'");
}

void write(const fs::path& root, const Files& files) {
  for (const File& file : files) {
    const fs::path path = root / file.path;
    fs::create_directories(path.parent_path());
    fs::remove(path);  // never writes through a link that is in its place
    std::ofstream out(path, std::ios::binary);
    out << file.content;
    out.close();
    if (!out) fail("cannot write", path);
    fs::permissions(path, file.executable ? kExecutable : kPlain);
  }
}

std::string read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) fail("cannot read", path);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string pack(const Files& files) {
  return compress(files, &archive_write_set_format_ustar);
}

std::string gzip(const std::string& text) {
  return compress({{"text", text}}, &archive_write_set_format_raw);
}

Files unpack(std::string_view archive) {
  Files files;
  const Reader reader(archive_read_new(), &archive_read_free);
  check(reader.get(), archive_read_support_filter_gzip(reader.get()));
  check(reader.get(), archive_read_support_format_tar(reader.get()));
  check(reader.get(), archive_read_open_memory(reader.get(), archive.data(), archive.size()));
  archive_entry* entry = nullptr;
  int result = ARCHIVE_OK;
  while ((result = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK) {
    if (archive_entry_filetype(entry) != AE_IFREG) continue;
    const auto path = fs::path(archive_entry_pathname(entry)).lexically_normal();
    files.push_back({path, content(reader.get()), (archive_entry_perm(entry) & 0100) != 0});
  }
  if (result != ARCHIVE_EOF) check(reader.get(), result);
  return files;
}

}  // namespace desk
