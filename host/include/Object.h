#pragma once

#include <memory>
#include <string>

namespace host {

/// Something that only the host can look into: a picture, a channel reference, an interpreter's
/// object. The module keeps it and hands it back.
class Object {
 public:
  virtual ~Object() = default;

  /// Whether the object compares equal to true. Most do not; a host whose objects have a
  /// comparison of their own answers with it.
  virtual bool equalsTrue() const { return false; }

  /// The object's text form.
  virtual std::string str() const { return "<object>"; }
};

using ObjectRef = std::shared_ptr<const Object>;

}  // namespace host
