#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
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

}  // namespace

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

}  // namespace command
