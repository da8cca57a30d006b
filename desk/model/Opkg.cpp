#include "desk/model/Opkg.h"

#include <iostream>
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

void IpkgComponent::addCallback(const host::IpkgCallback& callback) {
  callbacks_->push_back(callback);
}

void IpkgComponent::startCmd(host::IpkgCommand /*command*/) {
  // The module installs through the package screen alone: what it starts here is the feed's update.
  startOpkg(jobs_, observer_, {"update"}, [listeners = std::weak_ptr(callbacks_)](int exit_status) {
    const auto callbacks = listeners.lock();
    if (!callbacks) return;
    const auto event =
        exit_status == 0 ? host::IpkgEvent::EVENT_DONE : host::IpkgEvent::EVENT_ERROR;
    for (const host::IpkgCallback& callback : *callbacks) callback.call(event, {});
  });
}

}  // namespace desk
