#include "command/preview/Preview.h"

#include <ranges>

#include "command/archive/Damaged.h"
#include "command/preview/Forecast.h"

namespace preview {
namespace {

using TakeMember = std::function<void(const tarball::Member&)>;

/// Reads an archive to its end or to what is wrong with it. Returns that.
std::string readMembers(tarball::Reader& reader, const std::string& name, const TakeMember& take) {
  try {
    while (const auto member = reader.next()) take(*member);
  } catch (const tarball::Damaged& damage) {
    return name + ": " + damage.what();
  }
  return "";
}

/// Finds out what a restore does while its archives are read.
class Watch {
 public:
  explicit Watch(Restore& restore)
      : restore_(restore), forecast_(base::Root(restore.receiver), restore.rehearsal.plan) {}

  void take(const tarball::Member& member, tarball::Reader& reader) {
    Content content(reader);
    const Change& change = forecast_.take(member, content);
    if (restore_.differences) restore_.differences->take(change, content);
  }

  /// Reads what is restored along with the archive, which was the first. Returns what is wrong with
  /// the first that is damaged.
  std::string finish(const tarball::BeginProgress& begin) {
    std::string damage;
    for (const std::string& name : restore_.rehearsal.plan.archives | std::views::drop(1)) {
      tarball::Reader reader(restore_.rehearsal.medium.open(name), name, begin);
      const std::string its_damage =
          readMembers(reader, name, [&](const tarball::Member& member) { take(member, reader); });
      if (damage.empty()) damage = its_damage;
    }
    restore_.changes = forecast_.finish();
    return damage;
  }

 private:
  Restore& restore_;
  Forecast forecast_;
};

}  // namespace

Preview look(const Request& request, const TakeMember& take, const tarball::BeginProgress& begin) {
  Preview preview;
  std::optional<Watch> watch;
  bool is_restored = false;
  if (request.receiver) {
    Restore& restore = preview.restore.emplace(
        Restore{*request.receiver, rehearse(request.file, *request.receiver), {}, {}});
    if (request.differences) restore.differences.emplace(restore.receiver);
    watch.emplace(restore);
    is_restored = !restore.rehearsal.plan.archives.empty();
  }
  tarball::Reader reader(request.file.string(), begin);
  preview.damage = readMembers(reader, request.file.string(), [&](const tarball::Member& member) {
    ++preview.members;
    take(member);
    if (is_restored) watch->take(member, reader);
  });
  preview.unpacked = reader.unpacked();
  const std::string damage = watch ? watch->finish(begin) : "";
  if (preview.damage.empty()) preview.damage = damage;
  return preview;
}

}  // namespace preview
