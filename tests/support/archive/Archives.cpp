#include "tests/support/archive/Archives.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/archive/TarWriter.h"

namespace archive_test {
namespace {

const char* nameOf(tarball::Type type) {
  switch (type) {
    case tarball::Type::kFile:
      return "file";
    case tarball::Type::kDirectory:
      return "directory";
    case tarball::Type::kSymbolicLink:
      return "symbolic link";
    case tarball::Type::kHardLink:
      return "hard link";
    case tarball::Type::kDevice:
      return "device";
    case tarball::Type::kFifo:
      return "FIFO";
    case tarball::Type::kOther:
      return "other";
  }
  return "unknown type";
}

std::string octal(unsigned number) {
  char text[16];
  std::snprintf(text, sizeof text, "%o", number);
  return text;
}

}  // namespace

void shell(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error("failed: " + command);
}

Lines listed(tarball::Reader& reader) {
  Lines lines;
  while (const auto member = reader.next()) {
    std::string line = std::string(nameOf(member->type)) + " " + octal(member->mode) + " " +
                       std::to_string(member->uid) + ":" + std::to_string(member->gid) + " " +
                       std::to_string(member->size) + " " + std::to_string(member->modified) + " " +
                       member->path;
    if (!member->link.empty()) line += " -> " + member->link;
    line += ": ";
    for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) line += bytes;
    lines.push_back(line);
  }
  return lines;
}

std::string_view Bytes::read() {
  const std::string_view piece = std::string_view(bytes_).substr(at_, piece_);
  at_ += piece.size();
  return piece;
}

ArchiveFile::ArchiveFile(const std::string& bytes) : file_(memfd_create("archive", MFD_CLOEXEC)) {
  for (std::string_view rest = bytes; !rest.empty();) {
    const ssize_t count = write(file_.number(), rest.data(), rest.size());
    if (count <= 0) throw std::runtime_error("cannot write an archive");
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
}

Lines ArchiveFile::listed() const {
  tarball::Reader reader(path());
  return archive_test::listed(reader);
}

std::string ArchiveFile::damage() const {
  tarball::Reader reader(path());
  try {
    while (reader.next()) {
    }
  } catch (const tarball::Damaged& damage) {
    return damage.what();
  }
  return "";
}

Lines ArchiveFile::verdict() const {
  tarball::Reader reader(path());
  return linesOf(tarball::verify(reader, {.places = places()}));
}

const tarball::Places& places() {
  static const tarball::Places places({"/etc/enigma2/*", "/etc/CC*", "/etc/hostname", "/keys"},
                                      {"etc/enigma2/*.tv", "keys/old"});
  return places;
}

Lines linesOf(const tarball::Verdict& verdict) {
  Lines lines;
  const auto add = [&lines](const tarball::Finding& finding, const std::string& prefix) {
    lines.push_back(prefix + finding.what + (finding.member.empty() ? "" : ": " + finding.member));
  };
  for (const tarball::Finding& finding : verdict.findings) add(finding, "");
  if (const auto more = verdict.found - verdict.findings.size()) {
    lines.push_back(std::to_string(more) + " more");
  }
  for (const tarball::Finding& note : verdict.notes) add(note, "note: ");
  if (const auto more = verdict.noted - verdict.notes.size()) {
    lines.push_back("note: " + std::to_string(more) + " more");
  }
  return lines;
}

std::string smallArchive() {
  const support::TemporaryDirectory directory;
  directory.makeDirectory("etc");
  directory.write("etc/hostname", "receiver\n");
  directory.write("etc/CCcam.cfg", "SERVER PORT: 12000\n");
  directory.makeLink("etc/CClink", "hostname");
  shell("cd " + directory.path() +
        " && tar --owner=0 --group=0 --mode=644 --mtime=@1700000000 -czf archive etc/hostname "
        "etc/CCcam.cfg etc/CClink");
  return directory.read("archive");
}

}  // namespace archive_test
