#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"
#include "host/include/Session.h"

namespace desk {

/// The stack of screens and dialogs. A closed one goes when the event that closed it has been
/// handled; its callback is called then.
class Session : public host::Session {
 public:
  Session(Jobs& jobs, Observer& observer) : jobs_(jobs), observer_(observer) {}
  ~Session() override;

  std::unique_ptr<host::OpenedDialog> open(const host::Dialog& dialog) override;
  std::unique_ptr<host::OpenedDialog> openWithCallback(const host::Answer& callback,
                                                       const host::Dialog& dialog) override;

  /// Returns the layer on top, null when everything is closed.
  Layer* top() const { return stack_.empty() ? nullptr : stack_.back().layer.get(); }

  /// Whether the layer on top has closed and is to go.
  bool topHasClosed() const { return top() && top()->result(); }

  /// Takes the closed layer off the top and calls its callback, which may open and close others.
  /// Raises what the callback raises.
  void removeTop();

 private:
  struct Opened {
    std::unique_ptr<Layer> layer;
    std::optional<host::Answer> callback;
  };

  std::unique_ptr<host::OpenedDialog> push(const host::Dialog& dialog,
                                           std::optional<host::Answer> callback);
  void cutTo(std::size_t height);
  std::unique_ptr<Layer> make(const host::Dialog& dialog);

  Jobs& jobs_;
  Observer& observer_;
  std::vector<Opened> stack_;
};

}  // namespace desk
