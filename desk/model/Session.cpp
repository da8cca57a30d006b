#include "desk/model/Session.h"

#include <utility>

#include "base/Escape.h"
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

}  // namespace

Session::Session(Jobs& jobs, Observer& observer)
    : jobs_(jobs),
      observer_(observer),
      object_(plain::make<plain::Session>([this](const plain::Dialog& asked) {
        Layer& opened = open(dialogOf(asked), asked.callback);
        const auto setTitle = [&opened](host::Arguments given) {
          return opened.setTitle(plain::textOf(plain::argument(given, 0))), host::Object();
        };
        return plain::instance("Dialog", {{"setTitle", plain::function(setTitle)}});
      })) {}

Session::~Session() {
  cutTo(0);
}

Layer& Session::open(const Dialog& dialog, const host::Object& callback) {
  std::unique_ptr<Layer> layer = make(dialog);
  Layer& opened = *layer;
  const std::size_t height = stack_.size();
  stack_.push_back({++opened_, std::move(layer), callback});
  try {
    opened.finishLayout();
  } catch (...) {
    cutTo(height);
    throw;
  }
  return opened;
}

/// Takes layers off the top until `height` are left: a dialog refers to the screen beneath it.
void Session::cutTo(std::size_t height) {
  while (stack_.size() > height) stack_.pop_back();
}

std::unique_ptr<Layer> Session::make(const Dialog& dialog) {
  using Made = std::unique_ptr<Layer>;
  return std::visit(
      Visitor{
          [](const MessageBox& box) -> Made { return std::make_unique<MessageBoxLayer>(box); },
          [](const ChoiceBox& box) -> Made { return std::make_unique<ChoiceBoxLayer>(box); },
          [this](const Console& console) -> Made {
            return std::make_unique<ConsoleLayer>(console, jobs_, observer_);
          },
          [this](const Ipkg& ipkg) -> Made {
            return std::make_unique<IpkgLayer>(ipkg, jobs_, observer_);
          },
          [this](const ModuleScreen& screen) -> Made {
            return std::make_unique<ScreenLayer>(screen, object_);
          },
      },
      dialog);
}

std::vector<LayerView> Session::views() const {
  std::vector<LayerView> views;
  for (const auto& [id, layer, callback] : stack_) {
    const RowList* const list = layer->rowList();
    views.push_back({.id = id,
                     .screen = layer->className(),
                     .title = base::escapeInvalidUtf8(layer->title()),
                     .rows = list ? list->sharedRows() : noRows(),
                     .selected = list ? static_cast<std::size_t>(list->selected()) : 0,
                     .content = layer->content()});
  }
  return views;
}

void Session::removeTop() {
  Opened closed = std::move(stack_.back());
  stack_.pop_back();
  const host::Object result = *closed.layer->result();
  if (!closed.callback.isNone()) closed.callback({result});
}

}  // namespace desk
