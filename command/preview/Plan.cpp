#include "command/preview/Plan.h"

#include "command/backups/RestoreScreen.h"

namespace preview {

void Plan::unpack(const std::string& archive) {
  (backups::isShellWord(archive) ? archives : torn).push_back(archive);
}

}  // namespace preview
