#pragma once

#include <optional>
#include <string>

#include "desk/model/RowList.h"
#include "desk/protocol/Frame.h"
#include "host/plain/Node.h"

namespace desk {

/// A screen or dialog on the session's stack.
class Layer {
 public:
  explicit Layer(std::string class_name) : class_name_(std::move(class_name)) {}
  virtual ~Layer() = default;
  Layer(const Layer&) = delete;
  Layer& operator=(const Layer&) = delete;

  const std::string& className() const { return class_name_; }

  /// The title that a viewer sees, as it was set.
  virtual std::string title() const { return title_; }
  virtual void setTitle(const std::string& title) { title_ = title; }

  /// Completes the layout, once the layer is on top. Raises what the screen's own hooks raise.
  virtual void finishLayout() {}

  /// Handles a key of the remote control. Raises what the screen's own handler raises.
  virtual void handleKey(const std::string& key) = 0;

  /// Lets the time-out of the layer pass, if it has one.
  virtual void letTimeOutPass() {}

  /// The rows with the cursor, null when the layer has no list.
  virtual RowList* rowList() { return nullptr; }

  /// Returns what only this kind of layer shows.
  virtual Content content() const = 0;

  /// Marks the layer as closed, with `result` for its opener.
  void close(const host::Object& result) {
    if (!result_) result_ = result;
  }

  /// The close result, once the layer is closed.
  virtual const std::optional<host::Object>& result() const { return result_; }

 private:
  std::string class_name_;
  std::string title_;
  std::optional<host::Object> result_;
};

}  // namespace desk
