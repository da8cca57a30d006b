#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace command {

/// What each command does, with its options as they were given. All of them print to the standard
/// streams, and raise plain::Error or another std::exception when they fail.

/// Where a command works.
struct TreeOptions {
  std::filesystem::path dir;  ///< a receiver tree; "": the receiver that this runs on
  bool no_enclosure = false;  ///< whether what runs in the tree may get out
};

struct AutoOptions {
  TreeOptions receiver;
  std::vector<std::string> jobs;
  bool json = false;
  bool quiet = false;
};
void runAuto(const AutoOptions& options);

/// Where the menu is shown.
enum class FrontEnd { terminal, script, browser };

struct DeskOptions {
  FrontEnd front_end = FrontEnd::terminal;
  TreeOptions receiver;
  std::string menu = "backup";
  std::string words;
  std::string frames = "text";
  std::filesystem::path trace;
  std::filesystem::path log;
  std::string theme;
  std::filesystem::path record;
  std::filesystem::path translations;
  std::filesystem::path skin;
  std::filesystem::path pictures;
  int port = 0;  ///< of the page; 0: any free one
};
void runDesk(const DeskOptions& options);

/// The program's first argument when the desk starts it again as its GUI.
inline constexpr const char* kGui = "gui";

/// Runs that GUI; `arguments` are those after the first. Never returns.
[[noreturn]] void runGui(std::span<char*> arguments);

struct DoctorOptions {
  TreeOptions receiver;
  bool json = false;
  bool quiet = false;
};
void runDoctor(const DoctorOptions& options);

struct ListOptions {
  std::filesystem::path medium;
  std::string model;  ///< "": that of the receiver that this runs on, if it is one
  bool json = false;
};
void runList(const ListOptions& options);

struct ShowOptions {
  std::filesystem::path file;
  std::optional<std::filesystem::path> receiver;
  bool diff = false;
  bool json = false;
  bool quiet = false;
};
void runShow(const ShowOptions& options);

struct VerifyOptions {
  std::vector<std::filesystem::path> files;
  bool json = false;
  bool quiet = false;
};
void runVerify(const VerifyOptions& options);

}  // namespace command
