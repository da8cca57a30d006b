#include "tests/support/command/Receiver.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace command_test {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> readLines(const fs::path& path) {
  return fs::exists(path) ? linesOf(readFile(path)) : std::vector<std::string>();
}

std::vector<Json> parsed(const std::string& output) {
  std::vector<Json> lines;
  for (const std::string& line : linesOf(output)) lines.push_back(Json::parse(line));
  return lines;
}

std::vector<Json> having(const std::vector<Json>& lines, const char* key) {
  std::vector<Json> result;
  std::ranges::copy_if(lines, std::back_inserter(result),
                       [key](const Json& line) { return line.contains(key); });
  return result;
}

void requireSuccess(const Outcome& outcome) {
  if (outcome.status != 0) throw std::runtime_error(outcome.errors);
}

}  // namespace

std::vector<Json> Play::frames() const {
  return having(lines, "screen");
}

std::vector<Json> Play::events() const {
  return having(lines, "event");
}

Receiver::Receiver(const std::string& model) {
  requireSuccess(run({kStowline, "receiver", "new", tree(), "--model", model}));
}

void Receiver::makeScript(const std::string& path, const std::string& body) const {
  write(path, "#!/bin/sh\n" + body);
  fs::permissions(at(path), fs::perms(0755));
}

void Receiver::replaceTool(const std::string& path, const std::string& body) const {
  if (!exists(path + ".real")) fs::rename(at(path), at(path + ".real"));
  makeScript(path, body);
}

Outcome Receiver::runHere(const std::string& command, const std::vector<std::string>& options,
                          const std::vector<std::string>& wrapper) const {
  std::vector<std::string> argv = withoutLeakCheck(wrapper);
  for (const std::string& word :
       {std::string(kStowline), command, std::string("--receiver"), tree().string()}) {
    argv.push_back(word);
  }
  argv.insert(argv.end(), options.begin(), options.end());
  return run(argv);
}

void Receiver::flash() const {
  requireSuccess(run({kStowline, "receiver", "flash", tree()}));
}

std::vector<std::string> Receiver::playArguments(const std::string& menu,
                                                 const std::string& words) const {
  return {kStowline,    "desk",
          "--receiver", tree(),
          "--menu",     menu,
          "--frames",   "json",
          "--log",      outside() / "log",
          "--trace",    outside() / "trace",
          "--play",     words};
}

Play Receiver::play(const std::string& menu, const std::string& words,
                    const std::vector<std::string>& wrapper) const {
  fs::remove(outside() / "log");
  fs::remove(outside() / "trace");
  std::vector<std::string> argv = wrapper;
  std::ranges::copy(playArguments(menu, words), std::back_inserter(argv));
  const Outcome outcome = run(argv);
  return {outcome.status, parsed(outcome.output), outcome.errors, readLines(outside() / "log"),
          readLines(outside() / "trace")};
}

std::string Receiver::backup(const std::string& prefix, const std::string& suffix) const {
  std::vector<std::string> names = namesIn(at(kBackups));
  std::erase_if(names, [&](const std::string& name) {
    return !name.starts_with(prefix) || !name.ends_with(suffix);
  });
  if (names.size() != 1) {
    throw std::runtime_error(std::to_string(names.size()) + " files " + prefix + "*" + suffix);
  }
  return names.front();
}

void Receiver::renameBackup(const std::string& from, const std::string& to) const {
  fs::rename(at(inBackups(from)), at(inBackups(to)));
}

std::vector<pid_t> Receiver::processes() const {
  std::vector<pid_t> found;
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    std::error_code ended;
    const bool in_it = fs::equivalent(entry.path() / "root", tree(), ended);
    std::ifstream file(entry.path() / "cmdline");
    std::ostringstream words;  // stays empty when the process ends while it is read
    words << file.rdbuf();
    if (in_it || words.str().find(tree()) != std::string::npos) found.push_back(std::stoi(name));
  }
  return found;
}

void Receiver::waitForProcesses() const {
  while (!processes().empty()) std::this_thread::yield();
}

}  // namespace command_test
