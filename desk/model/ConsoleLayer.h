#pragma once

#include <cstdint>
#include <string>

#include "desk/model/Dialogs.h"
#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"

namespace desk {

/// Runs shell commands one after the other and shows the end of their output. Closes by ok or exit,
/// once the last one has ended.
class ConsoleLayer : public Layer {
 public:
  ConsoleLayer(Console console, Jobs& jobs, Observer& observer);

  void handleKey(const std::string& key) override;
  Content content() const override;

 private:
  void runNext();
  void addOutput(const std::string& bytes);
  void addText(const std::string& text);

  Console console_;
  Jobs& jobs_;
  Observer& observer_;
  std::size_t next_ = 0;
  bool running_ = true;
  std::string unread_;  ///< the bytes of a character that has not come whole
  std::string output_;
  std::uint64_t dropped_ = 0;  ///< how many bytes came before that
};

}  // namespace desk
