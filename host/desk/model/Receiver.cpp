#include "Receiver.h"

#include <algorithm>
#include <exception>

#include "ShownText.h"

namespace desk {
namespace {

constexpr const char* kSelect = "select:";

}  // namespace

Receiver::Receiver(Observer& observer)
    : observer_(observer), host_(jobs_, observer), session_(jobs_, observer) {}

void Receiver::open(const Application& application) {
  guarded([&] {
    application.load(host_);
    session_.open(application.main_menu(host_));
  });
}

bool Receiver::handle(const std::string& word) {
  if (word.starts_with(kSelect)) return selectRow(word.substr(std::string(kSelect).size()));
  Layer* top = session_.top();
  if (!top || word == "frame") return true;
  guarded([&] {
    if (word == "timeout") {
      top->letTimeOutPass();
    } else {
      top->handleKey(word);
    }
  });
  settle();
  return true;
}

void Receiver::reportJobs() {
  guarded([this] { jobs_.report(); });
  settle();
}

void Receiver::settle() {
  while (session_.topHasClosed()) guarded([this] { session_.removeTop(); });
}

void Receiver::guarded(const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    observer_.onError(error.what());
  }
}

bool Receiver::selectRow(const std::string& text) {
  RowList* list = session_.top() ? session_.top()->rowList() : nullptr;
  if (!list) return false;
  const auto found = std::ranges::find_if(
      list->rows(), [&](const Row& row) { return row.text.find(text) != std::string::npos; });
  if (found == list->rows().end()) return false;
  list->select(static_cast<int>(found - list->rows().begin()));
  return true;
}

Json Receiver::frame(const std::string& word) const {
  Json frame = {{"key", word},           {"screen", ""}, {"title", ""}, {"widgets", Json::object()},
                {"rows", Json::array()}, {"selected", 0}};
  Layer* top = session_.top();
  if (!top) return frame;
  frame["screen"] = top->className();
  frame["title"] = shownText(top->shown_title);
  if (const RowList* list = top->rowList()) {
    for (const Row& row : list->rows()) frame["rows"].push_back({row.text, row.description});
    frame["selected"] = list->selected();
  }
  top->addTo(frame);
  return frame;
}

}  // namespace desk
