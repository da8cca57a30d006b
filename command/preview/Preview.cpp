#include "command/preview/Preview.h"

#include "command/archive/Damaged.h"
#include "command/preview/Forecast.h"

namespace preview {
namespace {

using TakeMember = std::function<void(const tarball::Member&)>;

/// Reads an archive to its end, or as far as it is not damaged. `damage` takes note of the first
/// damage of all archives.
void readMembers(tarball::Reader& reader, const std::string& name, const TakeMember& take,
                 std::string& damage) {
  try {
    while (const auto member = reader.next()) take(*member);
  } catch (const tarball::Damaged& damaged) {
    if (damage.empty()) damage = name + ": " + damaged.what();
  }
}

/// Takes a member that is restored.
void restoreMember(const tarball::Member& member, tarball::Reader& reader, Forecast& forecast,
                   std::optional<Differences>& differences) {
  Content content(reader);
  const Change& change = forecast.take(member, content);
  if (differences) differences->take(change, content);
}

}  // namespace

Preview look(const Request& request, const TakeMember& take, const tarball::BeginProgress& begin) {
  Preview preview;
  std::optional<Forecast> forecast;
  std::vector<std::string> restored;  // the archive and its companions, or none
  if (request.receiver) {
    Restore& restore = preview.restore.emplace(
        Restore{*request.receiver, rehearse(request.file, *request.receiver), {}, {}});
    if (request.differences) restore.differences.emplace(restore.receiver);
    forecast.emplace(base::Root(restore.receiver), restore.rehearsal.plan);
    restored = restore.rehearsal.plan.archives;
  }
  tarball::Reader reader(request.file.string(), begin);
  const auto takeFirst = [&](const tarball::Member& member) {
    ++preview.members;
    take(member);
    if (!restored.empty()) restoreMember(member, reader, *forecast, preview.restore->differences);
  };
  readMembers(reader, request.file.string(), takeFirst, preview.damage);
  preview.unpacked = reader.unpacked();
  for (std::size_t at = 1; at < restored.size(); ++at) {
    const std::string& name = restored[at];
    tarball::Reader companion(preview.restore->rehearsal.medium.open(name), name, begin);
    const auto takeNext = [&](const tarball::Member& member) {
      restoreMember(member, companion, *forecast, preview.restore->differences);
    };
    readMembers(companion, name, takeNext, preview.damage);
  }
  if (forecast) preview.restore->changes = forecast->finish();
  return preview;
}

}  // namespace preview
