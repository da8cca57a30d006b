#include "desk/model/Session.h"

#include <utility>

#include "desk/model/Boxes.h"
#include "desk/model/ConsoleLayer.h"
#include "desk/model/IpkgLayer.h"
#include "desk/model/ScreenLayer.h"

namespace desk {
namespace {

template <class... Cases>
struct Visitor : Cases... {
  using Cases::operator()...;
};

template <class... Cases>
Visitor(Cases...) -> Visitor<Cases...>;

class LayerHandle : public host::OpenedDialog {
 public:
  explicit LayerHandle(Layer& layer) : layer_(layer) {}
  void setTitle(const std::string& title) override { layer_.shown_title = title; }

 private:
  Layer& layer_;
};

}  // namespace

Session::~Session() {
  cutTo(0);
}

std::unique_ptr<host::OpenedDialog> Session::open(const host::Dialog& dialog) {
  return push(dialog, std::nullopt);
}

std::unique_ptr<host::OpenedDialog> Session::openWithCallback(const host::Answer& callback,
                                                              const host::Dialog& dialog) {
  return push(dialog, callback);
}

std::unique_ptr<host::OpenedDialog> Session::push(const host::Dialog& dialog,
                                                  std::optional<host::Answer> callback) {
  std::unique_ptr<Layer> layer = make(dialog);
  Layer& opened = *layer;
  const std::size_t height = stack_.size();
  stack_.push_back({std::move(layer), std::move(callback)});
  try {
    opened.finishLayout();
  } catch (...) {
    cutTo(height);
    throw;
  }
  return std::make_unique<LayerHandle>(opened);
}

/// Takes layers off the top until `height` are left: a dialog refers to the screen beneath it.
void Session::cutTo(std::size_t height) {
  while (stack_.size() > height) stack_.pop_back();
}

std::unique_ptr<Layer> Session::make(const host::Dialog& dialog) {
  using Made = std::unique_ptr<Layer>;
  return std::visit(
      Visitor{
          [](const host::MessageBox& box) -> Made {
            return std::make_unique<MessageBoxLayer>(box);
          },
          [](const host::ChoiceBox& box) -> Made { return std::make_unique<ChoiceBoxLayer>(box); },
          [this](const host::Console& console) -> Made {
            return std::make_unique<ConsoleLayer>(console, jobs_, observer_);
          },
          [this](const host::Ipkg& ipkg) -> Made {
            return std::make_unique<IpkgLayer>(ipkg, jobs_, observer_);
          },
          [this](const host::ScreenClass& screen_class) -> Made {
            return std::make_unique<ScreenLayer>(screen_class, *this);
          },
      },
      dialog);
}

void Session::removeTop() {
  const Opened closed = std::move(stack_.back());
  stack_.pop_back();
  if (closed.callback) closed.callback->call(*closed.layer->result());
}

}  // namespace desk
