#include "command/archive/Verify.h"

#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "base/Escape.h"
#include "base/SystemError.h"
#include "command/Commands.h"
#include "command/backups/Kind.h"
#include "command/backups/VerifyFile.h"
#include "command/output/Progress.h"
#include "command/output/Table.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;

/// A backup that was read to its end, or could not be read.
struct Verified {
  std::filesystem::path file;
  const backups::Kind* kind;
  std::string error;  ///< why it could not be read; "" when it could
  tarball::Verdict verdict;

  bool isSound() const { return error.empty() && verdict.sound(); }
};

void print(std::ostream& out, const char* title, const std::vector<tarball::Finding>& findings,
           std::uint64_t count) {
  for (const tarball::Finding& finding : findings) {
    out << "  " << title << finding.what;
    if (!finding.member.empty()) out << ": " << base::escapeControls(finding.member);
    out << "\n";
  }
  if (count > findings.size()) {
    out << "  " << title << "and " << count - findings.size() << " more\n";
  }
}

Json jsonOf(const std::vector<tarball::Finding>& findings) {
  Json all = Json::array();
  for (const tarball::Finding& finding : findings) {
    all.push_back({{"what", finding.what},
                   {"member", finding.member.empty() ? Json() : Json(finding.member)}});
  }
  return all;
}

/// Reads a backup to its end. `begin` hears how far an archive has been read.
Verified verifyOne(const std::filesystem::path& file, const tarball::BeginProgress& begin) {
  Verified verified{
      .file = file, .kind = &backups::kindOf(file.filename().string()), .error = {}, .verdict = {}};
  std::error_code unknown;
  const std::filesystem::file_status status = std::filesystem::status(file, unknown);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    verified.error = "it is no regular file";
    return verified;
  }
  try {
    verified.verdict = backups::verifyFile(file.string(), *verified.kind, begin);
  } catch (const base::SystemError& error) {
    verified.error = error.what();
  }
  return verified;
}

/// Prints what was found, for people.
void print(std::ostream& out, const Verified& verified) {
  const tarball::Verdict& verdict = verified.verdict;
  out << base::escapeControls(verified.file.string()) << ": ";
  if (!verified.error.empty()) {
    out << "cannot be read: " << base::escapeControls(verified.error) << "\n";
    return;
  }
  out << (verified.isSound() ? "sound" : "NOT SOUND") << ", " << verified.kind->word << ", "
      << output::counted(verdict.members, verified.kind->is_list ? "package" : "member") << ", "
      << output::sizeText(static_cast<long long>(verdict.unpacked)) << "\n";
  print(out, "", verdict.findings, verdict.found);
  print(out, "note: ", verdict.notes, verdict.noted);
}

/// Returns the same for programs.
Json jsonOf(const Verified& verified) {
  const tarball::Verdict& verdict = verified.verdict;
  return {
      {"file", base::escapeInvalidUtf8(verified.file.string())},
      {"kind", verified.kind->word},
      {"sound", verified.isSound()},
      {"error", verified.error.empty() ? Json() : Json(base::escapeInvalidUtf8(verified.error))},
      {"members", verdict.members},
      {"unpacked", verdict.unpacked},
      {"findings", jsonOf(verdict.findings)},
      {"findings_total", verdict.found},
      {"notes", jsonOf(verdict.notes)},
      {"notes_total", verdict.noted}};
}

}  // namespace

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

}  // namespace command
