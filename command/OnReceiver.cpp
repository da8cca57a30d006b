#include "command/OnReceiver.h"

#include <stdexcept>
#include <string>

#include "host/native/Enclosure.h"
#include "host/plain/Model.h"
#ifdef STOWLINE_STAND_IN
#include "desk/tree/ReceiverTree.h"
#endif

namespace command {
namespace {

#ifdef STOWLINE_STAND_IN
constexpr const char* kInstead = ": name a receiver tree with --receiver DIR";

void enter(const std::filesystem::path& tree) {
  desk::requireTree(tree);
  native::enterTree(tree);
}
#else
constexpr const char* kInstead = "";

void enter(const std::filesystem::path& /*tree*/) {}
#endif

}  // namespace

void moveOntoReceiver(const std::filesystem::path& tree) {
  if (!tree.empty()) {
    enter(tree);
  } else if (!std::filesystem::exists(plain::kModelFile)) {
    throw std::runtime_error(std::string("this is no receiver, it has no ") + plain::kModelFile +
                             kInstead);
  }
  native::setReceiverEnvironment();
}

}  // namespace command
