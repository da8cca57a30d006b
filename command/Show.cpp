#include <unistd.h>

#include <iostream>
#include <stdexcept>

#include "command/Commands.h"
#include "command/backups/Kind.h"
#include "command/output/Progress.h"
#include "command/preview/JsonReport.h"
#include "command/preview/Preview.h"
#include "command/preview/TextReport.h"

namespace command {
namespace {

/// Reads the archive and lets a report print what there is to show. Raises std::runtime_error when
/// it is damaged.
template <typename Report>
void show(const ShowOptions& options, Report report) {
  preview::Preview preview = preview::look(
      {options.file, options.receiver, options.diff},
      [&report](const tarball::Member& member) { report.add(member); },
      output::bars(!options.quiet));
  const bool has_nothing = preview.members == 0 && !preview.damage.empty();
  if (!has_nothing || options.json) report.finish(preview);
  if (!preview.damage.empty()) throw std::runtime_error(preview.damage);
}

}  // namespace

void runShow(const ShowOptions& options) {
  if (backups::kindOf(options.file.filename().string()).is_list) {
    throw std::runtime_error("'" + options.file.string() +
                             "' is a list of packages, a line each, and no archive");
  }
  if (options.json) {
    show(options, preview::JsonReport(options.file, std::cout));
  } else {
    show(options, preview::TextReport(std::cout, isatty(STDOUT_FILENO) == 1));
  }
}

}  // namespace command
