#pragma once

#include <string>
#include <string_view>

#include "host/include/Binding.h"
#include "host/include/ChannelDatabase.h"
#include "host/include/Components.h"
#include "host/include/Config.h"
#include "host/include/Error.h"
#include "host/include/OperatingSystem.h"

namespace host {

/// The directories that resolveFilename knows.
enum class Scope { SCOPE_PLUGINS };

/// All that lies outside the module. One object for the GUI's whole life, used on its one thread.
class Host {
 public:
  virtual ~Host() = default;

  /// Binds a host name at load. Raises Error when the host does not have it.
  virtual void bind(const Binding& binding) = 0;

  virtual OperatingSystem& os() = 0;
  virtual Components& components() = 0;
  virtual Config& config() = 0;
  virtual ChannelDatabase& channels() = 0;

  /// Returns the translation of `text` (`_`), the text itself when there is none.
  virtual std::string translate(std::string_view text) = 0;

  /// Writes `line` and a newline to standard output, which the host sends to its log.
  virtual void print(const std::string& line) = 0;

  /// Whether the file `path` exists (`fileExists` of Tools.Directories).
  virtual bool fileExists(const std::string& path) = 0;

  /// Returns the absolute path of `relative` (empty: the framework is given none) below the
  /// directory of `scope`.
  virtual std::string resolveFilename(Scope scope, const std::string& relative) = 0;

  /// Returns the receiver's model, asked afresh (`HardwareInfoVu().get_device_name()`).
  virtual std::string deviceName() = 0;

  /// Empties the plugin registry (`plugins.clearPluginList`).
  virtual void clearPluginList() = 0;

  /// Fills the plugin registry from `directory` (`plugins.readPluginList`).
  virtual void readPluginList(const std::string& directory) = 0;
};

}  // namespace host
