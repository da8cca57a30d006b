#include "desk/model/Opkg.h"

#include <iostream>
#include <memory>
#include <utility>

namespace desk {

void startOpkg(Jobs& jobs, Observer& observer, const std::vector<std::string>& arguments,
               Jobs::OnEnd on_end) {
  std::vector<std::string> argv = {"opkg"};
  argv.insert(argv.end(), arguments.begin(), arguments.end());
  std::string command;
  for (const std::string& word : argv) command += (command.empty() ? "" : " ") + word;
  observer.onCommand(command);
  jobs.start(
      argv, [](const std::string& text) { std::cout << text << std::flush; }, std::move(on_end));
}

void bindPackageManager(plain::Host& host, Jobs& jobs, Observer& observer) {
  // The module installs through the package screen alone: what it starts here is the feed's update.
  host.setPackageManager([&](plain::IpkgComponent& component, const host::Object& /*command*/) {
    startOpkg(jobs, observer, {"update"},
              [listeners = std::weak_ptr(component.callbacks)](int exit_status) {
                const auto callbacks = listeners.lock();
                if (!callbacks) return;
                const char* const event = exit_status == 0 ? "EVENT_DONE" : "EVENT_ERROR";
                for (const host::Object& callback : *callbacks)
                  callback({plain::make<plain::Constant>(event), host::Object()});
              });
  });
}

}  // namespace desk
