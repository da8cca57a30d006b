#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "command/Commands.h"
#include "command/Verdicts.h"
#include "command/backups/VerifyFile.h"
#include "command/output/Progress.h"
#include "command/output/Table.h"

namespace command {
namespace {

struct VerifyOptions {
  std::vector<std::filesystem::path> files;
  bool json = false;
  bool quiet = false;
};

void runVerify(const VerifyOptions& options) {
  Json all = Json::array();
  std::size_t unsound = 0;
  for (const std::filesystem::path& file : options.files) {
    const Verified verified = verifyOne(file, output::bars(!options.quiet));
    if (!verified.isSound()) ++unsound;
    if (options.json) {
      all.push_back(jsonOf(verified));
    } else if (!options.quiet || !verified.isSound()) {
      print(std::cout, verified);
    }
  }
  if (options.json) std::cout << all.dump(2) << "\n";
  if (unsound > 0) {
    throw std::runtime_error(std::to_string(unsound) + " of " +
                             std::to_string(options.files.size()) + " not sound");
  }
}

}  // namespace

void addVerify(CLI::App& stowline) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App* verify = stowline.add_subcommand(
      "verify", "Read backups to their end and say whether they can be restored without harm.");
  CLI::Option* files = verify->add_option("FILE", options->files, "the backups");
  verify->add_flag("--json", options->json, "print JSON");
  verify->add_flag("--quiet", options->quiet, "print only what is not sound, and no progress");
  verify->callback([=] {
    require({files});
    runVerify(*options);
  });
}

}  // namespace command
