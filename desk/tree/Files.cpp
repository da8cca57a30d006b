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

using Reader = std::unique_ptr<archive, decltype(&archive_read_free)>;
using Writer = std::unique_ptr<archive, decltype(&archive_write_free)>;

[[noreturn]] void fail(const char* what, const fs::path& path, int error) {
  throw fs::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

void check(archive* handle, int result) {
  if (result != ARCHIVE_OK) throw std::runtime_error(archive_error_string(handle));
}

}  // namespace

std::string inQuotes(const fs::path& path) {
  return std::string("'").append(path.string()).append("'");
}

void write(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  fs::remove(path);  // never writes through a link that is in its place
  std::ofstream out(path, std::ios::binary);
  out << content;
  out.close();
  // Streams keep no reason for a failure; the system's last one is all there is.
  if (!out) fail("cannot write", path, errno);
  fs::permissions(path, fs::perms(0644));
}

std::string read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) fail("cannot read", path, errno);
  return {std::istreambuf_iterator<char>(in), {}};
}

void unpack(std::string_view packed, const fs::path& root) {
  const Reader reader(archive_read_new(), &archive_read_free);
  check(reader.get(), archive_read_support_filter_gzip(reader.get()));
  check(reader.get(), archive_read_support_format_tar(reader.get()));
  check(reader.get(), archive_read_open_memory(reader.get(), packed.data(), packed.size()));
  const Writer disk(archive_write_disk_new(), &archive_write_free);
  archive_write_disk_set_options(disk.get(), ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_UNLINK);
  archive_entry* entry = nullptr;
  int result = ARCHIVE_OK;
  while ((result = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK) {
    const fs::path path = root / archive_entry_pathname(entry);
    archive_entry_copy_pathname(entry, path.c_str());
    if (archive_read_extract2(reader.get(), entry, disk.get()) != ARCHIVE_OK)
      fail("cannot write", path, archive_errno(reader.get()));
  }
  if (result != ARCHIVE_EOF) check(reader.get(), result);
  check(disk.get(), archive_write_close(disk.get()));
}

}  // namespace desk
