/// Writes what the module does on its host in each of its uses, as JSON, for the tests in the
/// interpreter.

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/plugin/flows/Flows.h"

namespace {

using Json = nlohmann::ordered_json;

Json linesOf(const std::string& text) {
  Json lines = Json::array();
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Json described(const stowline::Flow& flow) {
  Json result = {{"name", flow.name},
                 {"operations", linesOf(flow.operations)},
                 {"caught", Json::object()},
                 {"states", Json::array()}};
  for (const auto& caught : flow.caught) result["caught"][caught.operation] = linesOf(caught.then);
  for (const auto& from : flow.states) result["states"].push_back({from.operation, from.state});
  if (const auto state = flow.endState()) result["end"] = *state;
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Json flows = Json::array();
  for (const stowline::Flow& flow : stowline::allFlows()) flows.push_back(described(flow));
  std::ofstream file(argv[1]);
  file << flows.dump(1) << "\n";
  return file.flush() ? 0 : 1;
}
