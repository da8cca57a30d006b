#pragma once

#include <string>
#include <string_view>

#include "desk/protocol/Messages.h"

namespace desk {

/// The version of the messages. Both ends have to be of the same.
inline constexpr int kProtocolVersion = 1;

/// Return a frame or an event as one JSON object, as scripts and records hold it.
std::string jsonOf(const Frame& frame);
std::string jsonOf(const Event& event);

std::string jsonOf(const Request& request);

/// Raises ProtocolError.
Request parseRequest(std::string_view json);

/// Writes reports. Of a layer that the frame before had, too, the rows cross again only when they
/// have changed, and of a console's output what is new.
class ReportWriter {
 public:
  std::string jsonOf(const Report& report);

 private:
  Frame last_;
};

/// Reads what a ReportWriter has written, in the same order.
class ReportReader {
 public:
  /// Raises ProtocolError.
  Report parse(std::string_view json);

 private:
  Frame last_;
};

}  // namespace desk
