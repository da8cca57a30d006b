#pragma once

#include <string>
#include <vector>

#include "desk/model/Dialogs.h"
#include "desk/model/Jobs.h"
#include "desk/model/Layer.h"
#include "desk/model/Observer.h"

namespace desk {

/// Installs packages one after the other, whatever becomes of each. Closes by ok or exit, once the
/// last one is done.
class IpkgLayer : public Layer {
 public:
  IpkgLayer(const Ipkg& ipkg, Jobs& jobs, Observer& observer);

  void handleKey(const std::string& key) override;
  Content content() const override;

 private:
  void runNext();

  std::vector<Package> packages_;
  std::size_t next_ = 0;
  bool running_ = true;
  Jobs& jobs_;
  Observer& observer_;
};

}  // namespace desk
