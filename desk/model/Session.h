#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "desk/model/Dialogs.h"
#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"

namespace desk {

/// The stack of screens and dialogs. A closed one goes when the event that closed it has been
/// handled; its callback is called then.
class Session {
 public:
  Session(Jobs& jobs, Observer& observer);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Opens a dialog on top. `callback`: what its result goes to, nothing for nobody. Raises what
  /// opening raises; nothing has been opened then.
  Layer& open(const Dialog& dialog, const host::Object& callback = {});

  /// Returns the session as the module sees it. It is not used when this one is gone.
  const host::Object& object() const { return object_; }

  /// Returns what a viewer sees of the layers, the one on top last.
  std::vector<LayerView> views() const;

  /// Returns the layer on top, null when everything is closed.
  Layer* top() const { return stack_.empty() ? nullptr : stack_.back().layer.get(); }

  /// Whether the layer on top has closed and is to go.
  bool topHasClosed() const { return top() && top()->result(); }

  /// Takes the closed layer off the top and calls its callback, which may open and close others.
  /// Raises what the callback raises.
  void removeTop();

 private:
  struct Opened {
    std::uint64_t id;
    std::unique_ptr<Layer> layer;
    host::Object callback;
  };

  void cutTo(std::size_t height);
  std::unique_ptr<Layer> make(const Dialog& dialog);

  Jobs& jobs_;
  Observer& observer_;
  host::Object object_;
  std::vector<Opened> stack_;
  std::uint64_t opened_ = 0;  ///< so many layers have been opened
};

}  // namespace desk
