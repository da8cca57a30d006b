#include "tests/command/preview/Told.h"

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <utility>

#include "command/preview/Change.h"
#include "command/preview/Forecast.h"
#include "tests/support/archive/Archives.h"
#include "tests/support/archive/TarWriter.h"

namespace preview_test {
namespace {

std::string textOf(const std::optional<preview::State>& state) {
  if (!state) return "nothing";
  if (isFile(state)) return std::to_string(state->size);
  return preview::wordOf(state->type) + (state->link.empty() ? "" : " " + state->link);
}

/// Returns the permissions where they are what changes.
std::string modesOf(const preview::Change& change) {
  const auto& [before, after] = std::pair(change.before, change.after);
  if (!before || !after || before->type != after->type || before->mode == after->mode) return "";
  std::ostringstream text;
  text << ", " << std::oct << before->mode << " -> " << after->mode;
  return text.str();
}

Lines linesOf(const preview::Changes& changes) {
  Lines lines;
  for (const preview::Change& change : changes) {
    lines.push_back(std::string(preview::wordOf(change.action)) + " " + change.path + ": " +
                    textOf(change.before) + " -> " + textOf(change.after) + modesOf(change));
  }
  return lines;
}

}  // namespace

Files::Files() {
  makeDirectory("");
}

void Files::makeReceiver() const {
  for (const char* made : {"/proc", "/proc/stb", "/proc/stb/info", "/etc", "/media", "/media/hdd",
                           "/media/hdd/qor-stowline"}) {
    makeDirectory(made);
  }
  write("/proc/stb/info/model", "solo2\n");
}

void Files::write(const std::string& path, const std::string& content, unsigned mode) const {
  directory_.write("receiver" + path, content);
  chmod(at(path).c_str(), mode);
}

void Files::makeDirectory(const std::string& path) const {
  directory_.makeDirectory("receiver" + path);
  chmod(at(path).c_str(), 0755);
}

void Files::makeLink(const std::string& path, const std::string& target) const {
  std::filesystem::create_symlink(target, at(path));
}

void Files::makeHardLink(const std::string& path, const std::string& target) const {
  std::filesystem::create_hard_link(at(target), at(path));
}

void Files::writeOutside(const std::string& name, const std::string& content) const {
  directory_.write(name, content);
}

Lines Files::told(const preview::Plan& plan, const std::vector<std::string>& archives) const {
  preview::Forecast forecast(base::Root(path()), plan);
  for (const std::string& archive : archives) {
    tarball::Reader reader(std::make_unique<archive_test::Bytes>(archive));
    while (const auto member = reader.next()) {
      preview::Content content(reader);
      forecast.take(*member, content);
    }
  }
  return linesOf(forecast.finish());
}

std::string tarOf(const std::vector<std::string>& members) {
  std::string tar;
  for (const std::string& member : members) tar += member;
  return tar + archive_test::kEndMark;
}

}  // namespace preview_test
