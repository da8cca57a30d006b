#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/Escape.h"
#include "command/Commands.h"
#include "command/OnReceiver.h"
#include "command/output/Progress.h"
#include "command/output/Table.h"
#include "command/scheduled/ScheduledBackup.h"
#include "host/plain/Error.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;

void printText(const scheduled::Report& report) {
  for (const scheduled::JobReport& job : report.jobs) {
    for (const scheduled::Written& written : job.written) {
      std::cout << job.job << ": " << base::escapeControls(written.file) << ", ";
      if (written.error.empty()) {
        std::cout << output::sizeText(static_cast<long long>(written.size)) << ", sound\n";
      } else {
        std::cout << base::escapeControls(written.error) << "\n";
      }
      if (written.verdict.noted > 0) {
        std::cout << "  " << written.verdict.noted << " notes, see stowline verify\n";
      }
    }
  }
  for (const std::string& file : report.deleted) {
    std::cout << "deleted: " << base::escapeControls(file) << "\n";
  }
}

Json jsonOf(const scheduled::Report& report) {
  Json json = {{"ok", report.failure.empty()}};
  json["failure"] = report.failure.empty() ? Json() : Json(base::escapeInvalidUtf8(report.failure));
  json["files"] = Json::array();
  for (const scheduled::JobReport& job : report.jobs) {
    for (const scheduled::Written& written : job.written) {
      const std::string error = base::escapeInvalidUtf8(written.error);
      json["files"].push_back({{"job", job.job},
                               {"file", base::escapeInvalidUtf8(written.file)},
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
    json["deleted"].push_back(base::escapeInvalidUtf8(file));
  }
  return json;
}

}  // namespace

void runAuto(const AutoOptions& options) {
  scheduled::Report report;
  try {
    moveOntoReceiver(options.receiver);
    report = scheduled::run(options.jobs, output::bars(!options.quiet));
  } catch (const std::exception& error) {
    report.failure = plain::reasonOf(error);
  }
  if (options.json) {
    std::cout << jsonOf(report).dump(2) << "\n";
  } else if (!options.quiet) {
    printText(report);
  }
  if (report.failure.empty()) return;
  const bool has_kept = !report.jobs.empty() && report.deleted.empty();
  throw std::runtime_error((has_kept ? "nothing old was deleted: " : "") +
                           base::escapeControls(report.failure));
}

}  // namespace command
