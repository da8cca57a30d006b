#pragma once

#include <functional>
#include <string>
#include <vector>

#include "desk/model/Host.h"
#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"
#include "desk/model/Session.h"
#include "desk/protocol/Frame.h"

namespace desk {

/// The module that the stand-in receiver runs: what loads it, the name of the class of its main
/// menu with the arguments that follow the session, and the translations of its texts.
struct Application {
  std::function<void(const host::Module&)> load;
  std::string main_menu;
  std::vector<std::string> arguments = {};
  Translations translations = {};
};

/// The stand-in receiver without a display: takes keys, gives frames. What a key handler or a
/// callback raises is told to the observer as an error; the screen stays.
class Receiver {
 public:
  explicit Receiver(Observer& observer);

  /// Loads the module and opens its main menu.
  void open(const Application& application);

  /// Handles one word but "wait", which is for whoever waits for the jobs. Returns false when it
  /// selects a row that is not there.
  bool handle(const Word& word);

  /// Returns what a viewer sees after `word`.
  Frame frame(const Word& word) const { return {.word = word, .layers = session_.views()}; }

  /// Reports what the running jobs have done since.
  void reportJobs();

  Jobs& jobs() { return jobs_; }

 private:
  void settle();
  void guarded(const std::function<void()>& step);
  RowList* rowList() const;
  bool selectText(const std::string& text);
  bool selectRow(unsigned long index);

  Observer& observer_;
  Jobs jobs_;
  Host host_;
  Session session_;
};

}  // namespace desk
