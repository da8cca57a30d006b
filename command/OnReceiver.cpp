#include "command/OnReceiver.h"

#include <iostream>
#include <stdexcept>
#include <string>

#include "host/native/Enclosure.h"
#include "host/plain/Model.h"
#ifdef STOWLINE_STAND_IN
#include "desk/tree/ReceiverTree.h"
#include "desk/tree/TreeLock.h"
#endif

namespace command {
namespace {

#ifdef STOWLINE_STAND_IN
constexpr const char* kInstead = ": name a receiver tree with --receiver DIR";

void enter(const TreeOptions& receiver) {
  desk::requireTree(receiver.dir);
  static const desk::TreeLock lock(receiver.dir);
  warnIfNotEnclosed(receiver);
  native::enterEnclosure(receiver.dir, !receiver.no_enclosure);
}
#else
constexpr const char* kInstead = "";

void enter(const TreeOptions& /*receiver*/) {}
#endif

}  // namespace

void warnIfNotEnclosed(const TreeOptions& receiver) {
  if (!receiver.no_enclosure) return;
  std::cerr << "stowline: warning: the receiver is not enclosed: what runs in it can get out, so "
               "use no media of strangers\n";
}

void moveOntoReceiver(const TreeOptions& receiver) {
  if (!receiver.dir.empty()) {
    enter(receiver);
  } else if (!std::filesystem::exists(plain::kModelFile)) {
    throw std::runtime_error(std::string("this is no receiver, it has no ") + plain::kModelFile +
                             kInstead);
  }
  native::setReceiverEnvironment();
}

}  // namespace command
