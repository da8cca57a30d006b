#include "command/backups/Engine.h"

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/look/Host.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Setup.h"

namespace backups {
namespace {

using Patterns = std::vector<std::string>;

/// What a command that writes an archive names: "tar czf ARCHIVE PLACE ... --exclude MEMBER ...".
struct Named {
  Patterns places;
  Patterns exclusions;
};

Named namedBy(const std::string& command) {
  std::istringstream words(command);
  std::string word;
  words >> word >> word >> word;  // what comes before the first place
  Named named;
  while (words >> word) {
    if (word == "--exclude" && words >> word) {
      named.exclusions.push_back(word);
    } else {
      named.places.push_back(word);
    }
  }
  return named;
}

/// Takes note of how the skins' user files begin, and says that there are none.
class UserFiles : public host::Overrides {
 public:
  std::optional<host::Value> callOverride(std::string_view name,
                                          const host::Value::List& arguments) override {
    if (name != "saveUserFiles") return std::nullopt;
    for (const host::Value& start : *arguments.at(1).list()) patterns.push_back(start.str() + "*");
    return host::Value(host::Value::List());
  }

  Patterns patterns;
};

}  // namespace

EnginePlaces askEngine() {
  look::System system(std::nullopt);
  look::Host host(system, "any", "");
  stowline::load(host);
  stowline::BackupActions engine(host);
  UserFiles user_files;
  engine.setOverrides(user_files);
  engine.createSettingFile();
  const Named settings = namedBy(system.takeCommands().back());
  engine.createConfigFile();
  const Named configuration = namedBy(system.takeCommands().back());
  Patterns all = user_files.patterns;
  for (const Named& named : {settings, configuration}) {
    all.insert(all.end(), named.places.begin(), named.places.end());
  }
  return {.settings = {settings.places, settings.exclusions},
          .configuration = {configuration.places, configuration.exclusions},
          .user_files = {user_files.patterns, {}},
          .any = {all, {}},
          .patterns = all};
}

}  // namespace backups
