#include "command/preview/Preview.h"

#include <utility>

#include "command/archive/Damaged.h"
#include "command/preview/Forecast.h"

namespace preview {
namespace {

/// Reads an archive to its end or to what is wrong with it. Returns that.
std::string readMembers(tarball::Reader& reader, const std::string& name, const TakeMember& take) {
  try {
    while (const auto member = reader.next()) take(*member, reader);
  } catch (const tarball::Damaged& damage) {
    return name + ": " + damage.what();
  }
  return "";
}

}  // namespace

std::string readArchives(const std::filesystem::path& file, const Restore& restore,
                         const TakeMember& take, const tarball::BeginProgress& begin) {
  std::string damage;
  for (const std::string& archive : restore.rehearsal.plan.archives) {
    const std::string name = archive == restore.rehearsal.archive ? file.string() : archive;
    tarball::Reader reader =
        archive == restore.rehearsal.archive
            ? tarball::Reader(name, begin)
            : tarball::Reader(restore.rehearsal.medium.open(archive), name, begin);
    const std::string its_damage = readMembers(reader, name, take);
    if (damage.empty()) damage = its_damage;
  }
  return damage;
}

namespace {

/// Reads what the archive holds.
void readFile(Preview& preview, const tarball::BeginProgress& begin) {
  tarball::Reader reader(preview.file.string(), begin);
  preview.damage =
      readMembers(reader, preview.file.string(),
                  [&](const tarball::Member& member, auto&) { preview.members.push_back(member); });
  preview.unpacked = reader.unpacked();
}

/// Finds out what the restore changes.
void readChanges(Preview& preview, Restore& restore, const tarball::BeginProgress& begin) {
  const base::Root receiver(restore.receiver);
  Forecast forecast(receiver, restore.rehearsal.plan);
  const std::string damage = readArchives(
      preview.file, restore,
      [&](const tarball::Member& member, auto& reader) { forecast.take(member, reader); }, begin);
  if (preview.damage.empty()) preview.damage = damage;
  restore.changes = forecast.finish();
}

}  // namespace

Preview look(const std::filesystem::path& file,
             const std::optional<std::filesystem::path>& receiver,
             const tarball::BeginProgress& begin) {
  Preview preview{.file = file, .members = {}, .restore = {}, .damage = {}};
  if (receiver) {
    Rehearsal rehearsal = rehearse(file, *receiver);
    preview.restore.emplace(Restore{*receiver, std::move(rehearsal), std::vector<Change>()});
  }
  readFile(preview, begin);
  if (preview.restore) readChanges(preview, *preview.restore, begin);
  return preview;
}

}  // namespace preview
