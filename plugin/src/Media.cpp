#include "plugin/src/Media.h"

#include "plugin/src/Set.h"

namespace stowline {
namespace {

Object listed(const Module& module, const Object& directory) {
  return module["listdir"_t]({directory});
}

bool canBeListed(const Module& module, const Object& directory) {
  try {
    listed(module, directory);
  } catch (const host::Error&) {
    return false;
  }
  return true;
}

Set excludedDirectories(const Module& module) {
  Set excluded;
  for (const Text root : kAutomountRoots) {
    excluded.add(root);
    if (!exists(module, root)) continue;
    for (const Object& name : Items(listed(module, root))) {
      const Object share = Object(root) + "/"_t + name;
      if (exists(module, share) && !canBeListed(module, share)) excluded.add(share);
    }
  }
  return excluded;
}

}  // namespace

constexpr Text kAutomountRoots[] = {"/media/net/autofs"_t, "/media/net/autonet"_t};

std::vector<Object> mountedMedia(const Module& module) {
  const Set excluded = excludedDirectories(module);
  std::vector<Object> media;
  for (const Object& line : Items(linesOfFile(module, "/proc/mounts"_t))) {
    const Object fields = line["split"_t]({" "_t});
    if (fields.size() < 2) continue;
    const Object mounted = fields.item(1);
    if (mounted.startsWith("/media/"_t) && mounted != "/media/net"_t &&
        !excluded.contains(mounted)) {
      media.push_back(mounted);
    }
  }
  return media;
}

}  // namespace stowline
