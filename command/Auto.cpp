#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "command/Commands.h"
#include "command/OnReceiver.h"
#include "command/output/Progress.h"
#include "command/output/Table.h"
#include "command/scheduled/ScheduledBackup.h"
#include "host/native/ShownText.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;

void printText(const scheduled::Report& report) {
  for (const scheduled::JobReport& job : report.jobs) {
    for (const scheduled::Written& written : job.written) {
      std::cout << job.job << ": " << native::shownLine(written.file) << ", ";
      if (written.error.empty()) {
        std::cout << output::sizeText(static_cast<long long>(written.size)) << ", sound\n";
      } else {
        std::cout << native::shownLine(written.error) << "\n";
      }
      if (written.verdict.noted > 0) {
        std::cout << "  " << written.verdict.noted << " notes, see stowline verify\n";
      }
    }
  }
  for (const std::string& file : report.deleted) {
    std::cout << "deleted: " << native::shownLine(file) << "\n";
  }
}

Json jsonOf(const scheduled::Report& report) {
  Json json = {{"ok", report.failure.empty()}};
  json["failure"] = report.failure.empty() ? Json() : Json(native::shownText(report.failure));
  json["files"] = Json::array();
  for (const scheduled::JobReport& job : report.jobs) {
    for (const scheduled::Written& written : job.written) {
      const std::string error = native::shownText(written.error);
      json["files"].push_back({{"job", job.job},
                               {"file", native::shownText(written.file)},
                               {"size", written.size},
                               {"members", written.verdict.members},
                               {"unpacked", written.verdict.unpacked},
                               {"sound", error.empty()},
                               {"error", error.empty() ? Json() : Json(error)},
                               {"notes_total", written.verdict.noted}});
    }
  }
  json["deleted"] = Json::array();
  for (const std::string& file : report.deleted) {
    json["deleted"].push_back(native::shownText(file));
  }
  return json;
}

}  // namespace

void runAuto(const AutoOptions& options) {
  moveOntoReceiver(options.receiver);
  const scheduled::Report report = scheduled::run(options.jobs, output::bars(!options.quiet));
  if (options.json) {
    std::cout << jsonOf(report).dump(2) << "\n";
  } else if (!options.quiet) {
    printText(report);
  }
  if (!report.failure.empty()) {
    const char* kept = report.deleted.empty() ? "nothing old was deleted: " : "";
    throw std::runtime_error(kept + native::shownLine(report.failure));
  }
}

}  // namespace command
