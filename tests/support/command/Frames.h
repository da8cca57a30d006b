#pragma once

#include <string>
#include <vector>

#include "tests/support/command/Receiver.h"

namespace command_test {

/// The frames that the stand-in shows, each as it follows the word `key`.

Json menuFrame(const std::string& key, const std::string& flavour, int selected,
               const std::string& medium = "/media/hdd/");
Json listFrame(const std::string& key, const std::vector<std::string>& rows, int selected = 0,
               const std::string& green = "Install");
Json boxFrame(const std::string& key, const std::string& type, const std::string& title,
              const std::string& text);
Json questionFrame(const std::string& key, const std::string& title, const std::string& text);
Json choiceFrame(const std::string& key, const std::vector<std::string>& rows);
Json consoleFrame(const std::string& key, const std::string& text, bool running);
Json confirmationFrame(const std::string& key, const std::string& archive);
Json closedFrame(const std::string& key);

/// A package as the package screen shows it.
struct ShownPackage {
  std::string name;
  std::string state;
};

Json packagesFrame(const std::string& key, const std::vector<ShownPackage>& packages,
                   bool running = false);

/// The box that follows the choice of a medium without a usable backup directory.
Json notWriteableFrame(const std::string& key);

}  // namespace command_test
