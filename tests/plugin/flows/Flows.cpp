#include "tests/plugin/flows/Flows.h"

#include "tests/plugin/flows/Expected.h"

namespace stowline {

void defineStatus(Receiver& receiver, const Opened& screen) {
  screen.set("setStatus", plain::function([&receiver](host::Arguments given) {
               receiver.journal.note("self.setStatus(" + described(given) + ")");
               return Object();
             }));
}

std::vector<Caught> both(std::vector<Caught> first, const std::vector<Caught>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::vector<Caught> withoutDirectory(const std::string& then) {
  return {{"os_path.exists(" + quoted(expected::kDirectory) + ")", then}};
}

std::vector<Caught> withoutNewDirectory(const std::string& then) {
  return both(withoutDirectory(then),
              {{"os.makedirs(" + quoted(expected::kDirectory) + ")", then}});
}

std::vector<Caught> withoutTitle(const std::string& title, const std::string& operations) {
  const std::string made = "StaticText(" + quoted(title) + ")";
  const std::string registered = "self[\"title\"] = " + made;
  const std::string then = expected::print("self[\"title\"] was not found in skin") +
                           operations.substr(operations.find(registered) + registered.size() + 1);
  return {{made, then}, {registered, then}};
}

std::vector<Flow> allFlows() {
  std::vector<Flow> flows;
  for (const auto& group : {engineFlows(), menuFlows(), restoreFlows()}) {
    flows.insert(flows.end(), group.begin(), group.end());
  }
  return flows;
}

}  // namespace stowline
