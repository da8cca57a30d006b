#include "host/dryrun/Host.h"

namespace dryrun {

Host::Host(System& system, const std::string& model, const std::string& settings)
    : plain::Host(system, settings_), system_(system), settings_(settings) {
  if (!model.empty()) setModel(model);
  bind("print", [this](host::Arguments given) {
    log_.push_back(plain::textOf(plain::argument(given, 0)));
    return host::Object();
  });
  setPackageManager([this](plain::IpkgComponent&, const host::Object&) { ++requests_; });
  session_ = plain::make<plain::Session>([this](const plain::Dialog&) {
    ++requests_;
    return plain::instance("Dialog", {{"setTitle", plain::function(&plain::nothing)}});
  });
}

}  // namespace dryrun
