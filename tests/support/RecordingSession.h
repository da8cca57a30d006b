#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/include/Session.h"
#include "tests/support/Journal.h"

namespace support {

/// A session that opens nothing: it keeps the dialogs, and the test answers them.
class RecordingSession : public host::Session {
 public:
  explicit RecordingSession(Journal& journal) : journal_(journal) {}

  /// The dialogs and screens opened, oldest first.
  std::vector<host::Dialog> opened;

  /// Returns the last of them; raises std::out_of_range when there is none.
  const host::Dialog& lastOpened() const { return opened.at(opened.size() - 1); }

  /// Closes the dialog last opened with a callback: hands `result` to the callback.
  void answer(const host::Value& result = {});

  std::unique_ptr<host::OpenedDialog> open(const host::Dialog& dialog) override;
  std::unique_ptr<host::OpenedDialog> openWithCallback(const host::Answer& callback,
                                                       const host::Dialog& dialog) override;

 private:
  Journal& journal_;
  std::optional<host::Answer> callback_;
};

}  // namespace support
