#pragma once

#include <memory>

#include "host/include/Object.h"

namespace host {

/// The channel selection of the running television picture.
class ServiceList {
 public:
  virtual ~ServiceList() = default;
  virtual ObjectRef getRoot() = 0;
  virtual ObjectRef getCurrentSelection() = 0;
  virtual void setRoot(const ObjectRef& root) = 0;
  virtual void setCurrentSelection(const ObjectRef& service) = 0;
};

/// The tuner tables and the channel database. Every operation may raise Error.
class ChannelDatabase {
 public:
  virtual ~ChannelDatabase() = default;

  /// Reads the tuners' transponder tables again (`nimmanager`).
  virtual void readTransponders() = 0;

  /// Reads the channel list files again (`eDVBDB`).
  virtual void reloadServicelist() = 0;

  /// Reads the bouquet files again (`eDVBDB`).
  virtual void reloadBouquets() = 0;

  /// Returns the channel selection of `InfoBar.instance`, null while there is no such instance.
  virtual std::shared_ptr<ServiceList> infoBarServicelist() = 0;
};

}  // namespace host
