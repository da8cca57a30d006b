#include "OnReceiver.h"

#include <stdexcept>
#include <string>

#include "native/Enclosure.h"
#include "native/Model.h"
#include "tree/ReceiverTree.h"

namespace command {

void moveOntoReceiver(const std::filesystem::path& tree) {
  if (!tree.empty()) {
    desk::requireTree(tree);
    native::enterTree(tree);
  } else if (!std::filesystem::exists(native::kModelFile)) {
    throw std::runtime_error(std::string("this is no receiver, it has no ") + native::kModelFile +
                             ": name a receiver tree with --receiver DIR");
  }
  native::setReceiverEnvironment();
}

}  // namespace command
