#pragma once

#include <memory>
#include <string>

#include "host/include/ChannelDatabase.h"
#include "host/include/OperatingSystem.h"

namespace desk {

/// The channel database of the stand-in: reads the channel files of the receiver and tells its log
/// what it has found.
class Channels : public host::ChannelDatabase {
 public:
  explicit Channels(host::OperatingSystem& os);
  ~Channels() override;

  /// Raises host::Error ("OSError") when the satellite table cannot be read.
  void readTransponders() override;
  void reloadServicelist() override;
  void reloadBouquets() override;
  std::shared_ptr<host::ServiceList> infoBarServicelist() override;

 private:
  class Selection;

  host::OperatingSystem& os_;
  std::shared_ptr<Selection> selection_;
};

}  // namespace desk
