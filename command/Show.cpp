#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "command/Commands.h"
#include "command/backups/FileKind.h"
#include "command/output/Progress.h"
#include "command/preview/Differences.h"
#include "command/preview/JsonReport.h"
#include "command/preview/TextReport.h"

namespace command {
namespace {

struct ShowOptions {
  std::filesystem::path file;
  std::optional<std::filesystem::path> receiver;
  bool diff = false;
  bool json = false;
  bool quiet = false;
};

void showJson(const preview::Preview& preview, bool diff) {
  nlohmann::ordered_json json = preview::jsonOf(preview);
  if (diff) {
    nlohmann::ordered_json& differences = json["restore"]["differences"];
    differences = nlohmann::ordered_json::array();
    preview::findDifferences(preview, [&](const preview::Difference& difference) {
      differences.push_back(preview::jsonOf(difference));
    });
  }
  std::cout << json.dump(2) << "\n";
}

void showText(const preview::Preview& preview, bool diff) {
  preview::printText(preview, std::cout);
  if (!diff) return;
  std::cout << "\n";
  preview::findDifferences(
      preview, [escape = isatty(STDOUT_FILENO) == 1](const preview::Difference& difference) {
        preview::printText(difference, escape, std::cout);
      });
}

void runShow(const ShowOptions& options) {
  if (backups::kindOf(options.file.filename().string()) == backups::FileKind::plugin_list) {
    throw std::runtime_error("'" + options.file.string() +
                             "' is a list of packages, a line each, and no archive");
  }
  const preview::Preview preview =
      preview::look(options.file, options.receiver, output::bars(!options.quiet));
  const bool has_nothing = preview.members.empty() && !preview.damage.empty();
  if (has_nothing && !options.json) throw std::runtime_error(preview.damage);
  if (options.json) {
    showJson(preview, options.diff);
  } else {
    showText(preview, options.diff);
  }
  if (!preview.damage.empty()) throw std::runtime_error(preview.damage);
}

}  // namespace

void addShow(CLI::App& stowline) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App* show = stowline.add_subcommand(
      "show", "Show what an archive holds, and what a restore of it would do on a receiver.");
  CLI::Option* file = show->add_option("FILE", options->file, "the archive");
  CLI::Option* against =
      show->add_option(
              "--against", options->receiver,
              "the directory of the receiver's files, \"/\" on a receiver; it is only read")
          ->type_name("DIR");
  show->add_flag("--diff", options->diff, "show the differences of text files, too")
      ->needs(against);
  show->add_flag("--json", options->json, "print JSON");
  show->add_flag("--quiet", options->quiet, "show no progress");
  show->callback([=] {
    require({file});
    runShow(*options);
  });
}

}  // namespace command
