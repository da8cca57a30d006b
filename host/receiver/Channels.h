#pragma once

#include <memory>

#include "host/include/ChannelDatabase.h"
#include "host/receiver/Names.h"

namespace receiver {

/// The running channel selection.
class ServiceList : public host::ServiceList {
 public:
  explicit ServiceList(Reference object) : object_(std::move(object)) {}

  host::ObjectRef getRoot() override;
  host::ObjectRef getCurrentSelection() override;
  void setRoot(const host::ObjectRef& root) override;
  void setCurrentSelection(const host::ObjectRef& service) override;

 private:
  Reference object_;
};

/// The framework's tuner tables, channel database and channel selection.
class Channels : public host::ChannelDatabase {
 public:
  explicit Channels(const Names& names) : names_(names) {}

  void readTransponders() override;
  void reloadServicelist() override;
  void reloadBouquets() override;
  std::shared_ptr<host::ServiceList> infoBarServicelist() override;

 private:
  Reference database() const;

  const Names& names_;
};

}  // namespace receiver
