// The module's own work on many names, on a host that costs next to nothing. What a host hands out
// is made ready outside of the measured time.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/MemoryHost.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Media.h"
#include "plugin/src/Packages.h"
#include "plugin/src/StowlineRestore.h"

namespace bench {
namespace {

using Lines = MemoryHost::Lines;

constexpr const char* kDirectory = "/media/hdd/qor-stowline";

/// Returns START, a number of six digits and END for each number below `count`, in no order, but in
/// the same one each time.
Lines names(const std::string& start, int count, const std::string& end) {
  Lines result;
  for (int number = 0; number < count; ++number) {
    result.push_back(start + std::to_string(100000 + number) + end);
  }
  std::ranges::shuffle(result, std::mt19937(1));
  return result;
}

/// Makes the host ready for the next round, outside of the measured time.
void prepare(benchmark::State& state, MemoryHost& host, const std::map<std::string, Lines>& next) {
  state.PauseTiming();
  host.next = next;
  state.ResumeTiming();
}

/// Ends the benchmark with an error unless the module has done what it is measured for.
void require(benchmark::State& state, bool done) {
  if (!done) state.SkipWithError("the module did not do the work that was to be measured");
}

/// The restore list over a directory of COUNT archives of this receiver.
void restoreList(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const std::map<std::string, Lines> next = {
      {kDirectory, names("settings_20240305_", count, "_solo2.tar.gz")}};
  MemoryHost host;
  MemoryPeer peer;
  MemorySession session;
  stowline::StowlineRestore screen(host, peer, session, "settingrestore", "/plugin");
  for (auto _ : state) {
    prepare(state, host, next);
    screen.fill_list();
  }
  require(state, screen.flist.size() == static_cast<std::size_t>(count));
}
BENCHMARK(restoreList)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// Housekeeping over COUNT scheduled settings archives, of which all but three are deleted.
void houseKeeping(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const std::map<std::string, Lines> next = {
      {kDirectory, names("settings_20240305_", count, "_solo2.auto.tar.gz")}};
  MemoryHost host;
  stowline::BackupActions actions(host);
  for (auto _ : state) {
    prepare(state, host, next);
    actions.houseKeeping();
  }
  // Every path exists on this host, so each archive's two companions go as well.
  require(state, host.removed == 3 * (count - 3) * static_cast<long long>(state.iterations()));
}
BENCHMARK(houseKeeping)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

/// The user's files among COUNT entries of a skin's folder, half of them in the package's list of
/// COUNT lines.
void userFiles(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const std::string folder = "/usr/share/enigma2/vfd_skin";
  const std::string list = "/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list";
  Lines entries = names("skin_vfd_", count / 2, "_own.xml");
  std::ranges::copy(names("skin_vfd_", count / 2, ".xml"), std::back_inserter(entries));
  const std::map<std::string, Lines> next = {{folder, entries},
                                             {list, names(folder + "/skin_vfd_", count, ".xml\n")}};
  MemoryHost host;
  stowline::BackupActions actions(host);
  std::size_t found = 0;
  for (auto _ : state) {
    prepare(state, host, next);
    found = actions.saveVFDSkinUserFiles().size();
  }
  require(state, found == static_cast<std::size_t>(count / 2));
}
BENCHMARK(userFiles)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond);

/// The installation of a plugin list of COUNT lines where three fifths are installed.
void pluginList(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const std::string package = "enigma2-plugin-extensions-";
  Lines installed = names(package, count, "\n");
  installed.resize(static_cast<std::size_t>(count) * 3 / 5);
  MemoryHost host;
  MemoryPeer peer;
  MemorySession session;
  stowline::StowlineRestore screen(host, peer, session, "plugininstall", "/plugin");
  screen.val = std::string(kDirectory) + "/pluginlist.lst";
  const std::map<std::string, Lines> next = {
      {stowline::kInstalledPlugins, installed},
      {"cat " + screen.val.str(), names(package, count, "\n")}};
  for (auto _ : state) {
    prepare(state, host, next);
    screen.installPlugins();
  }
  require(state, screen.cmdList.size() == static_cast<std::size_t>(count) * 2 / 5);
}
BENCHMARK(pluginList)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond);

/// The media of a mount table of COUNT lines, half of them below /media, with a hundred shares
/// below an automount root.
void mountTable(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Lines table = names("/dev/sda /media/disk", count / 2, " ext4 rw 0 0\n");
  std::ranges::copy(names("tmpfs /run/", count - count / 2, " tmpfs rw 0 0\n"),
                    std::back_inserter(table));
  const std::map<std::string, Lines> next = {{"/media/net/autofs", names("share", 100, "")},
                                             {"/proc/mounts", table}};
  MemoryHost host;
  std::size_t found = 0;
  for (auto _ : state) {
    prepare(state, host, next);
    found = stowline::mountedMedia(host.os()).size();
  }
  require(state, found == static_cast<std::size_t>(count / 2));
}
BENCHMARK(mountTable)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bench
