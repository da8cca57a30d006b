#pragma once

#include <memory>
#include <string>

#include "host/include/Dialogs.h"
#include "host/include/Method.h"

namespace host {

/// A dialog that a session has opened. Letting go of it leaves the dialog open.
class OpenedDialog {
 public:
  virtual ~OpenedDialog() = default;
  virtual void setTitle(const std::string& title) = 0;
};

/// The GUI session: puts screens and dialogs on top of each other. Both operations return at once
/// and raise what the opened screen's constructor raises.
class Session {
 public:
  virtual ~Session() = default;

  virtual std::unique_ptr<OpenedDialog> open(const Dialog& dialog) = 0;

  /// As open; when the dialog has closed, `callback` is called with its close result.
  virtual std::unique_ptr<OpenedDialog> openWithCallback(const Answer& callback,
                                                         const Dialog& dialog) = 0;
};

}  // namespace host
