#include "command/doctor/Doctor.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Escape.h"
#include "command/Commands.h"
#include "command/OnReceiver.h"
#include "command/output/Progress.h"
#include "command/output/Table.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;
using doctor::Check;
using doctor::State;

void printJson(const std::vector<Check>& checks) {
  Json json = Json::array();
  for (const Check& check : checks) {
    json.push_back({{"name", check.name},
                    {"state", wordOf(check.state)},
                    {"detail", base::escapeInvalidUtf8(check.detail)}});
  }
  std::cout << Json{{"checks", json}}.dump(2) << "\n";
}

void printTable(const std::vector<Check>& checks, bool is_quiet) {
  output::Table table({{"CHECK"}, {"STATE"}, {"FOUND"}});
  bool has_rows = false;
  for (const Check& check : checks) {
    if (is_quiet && check.state == State::ok) continue;
    table.add({check.name, wordOf(check.state), base::escapeControls(check.detail)});
    has_rows = true;
  }
  if (has_rows) table.print(std::cout);
}

}  // namespace

void runDoctor(const DoctorOptions& options) {
  try {
    moveOntoReceiver(options.receiver);
  } catch (const std::exception& error) {
    if (options.json) printJson({{"receiver", State::failed, error.what()}});
    throw;
  }
  const std::vector<Check> checks = doctor::examine(output::bars(!options.quiet));
  if (options.json) {
    printJson(checks);
  } else {
    printTable(checks, options.quiet);
  }
  const auto failed = std::ranges::count(checks, State::failed, &Check::state);
  if (failed > 0)
    throw std::runtime_error(std::to_string(failed) +
                             (failed == 1 ? " check has failed" : " checks have failed"));
}

}  // namespace command
