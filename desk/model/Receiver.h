#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desk/model/Host.h"
#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"
#include "desk/model/Session.h"

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

  /// Handles one word: a key of the remote control, "timeout", "frame" (nothing happens),
  /// "select:TEXT" or "row:INDEX". Returns false when no row contains TEXT or has that index.
  bool handle(const std::string& word);

  /// Returns what a viewer sees, after `word`; with null for its rows where `shown_rows` are still
  /// the rows.
  Json frame(const std::string& word, const Rows* shown_rows = nullptr) const;

  /// Returns the rows of the screen on top, null when it has no list.
  std::shared_ptr<const Rows> rows() const;

  /// Reports what the running jobs have done since.
  void reportJobs();

  Jobs& jobs() { return jobs_; }

 private:
  void settle();
  void guarded(const std::function<void()>& step);
  RowList* rowList() const;
  bool selectText(const std::string& text);
  bool selectRow(const std::string& index);

  Observer& observer_;
  Jobs jobs_;
  Host host_;
  Session session_;
};

}  // namespace desk
