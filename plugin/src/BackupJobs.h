#pragma once

#include "host/include/Value.h"

namespace stowline {

/// The three jobs of the backup menu. A result that equals true is a success, any other a failure.
class BackupJobs {
 public:
  virtual ~BackupJobs() = default;
  virtual host::Value createSettingFile() = 0;
  virtual host::Value createConfigFile() = 0;
  virtual host::Value createPluginList() = 0;
};

}  // namespace stowline
