#include "Receiver.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <utility>

#include "ShownText.h"

namespace desk {
namespace {

constexpr std::string_view kSelect = "select:";
constexpr std::string_view kRow = "row:";

/// Adds the rows and the cursor to `frame`, and where a row has a picture, the pictures of all.
void addRows(Json& frame, const RowList& list) {
  Json pictures = Json::array();
  bool has_picture = false;
  for (const Row& row : list.rows()) {
    frame["rows"].push_back({row.text, row.description});
    pictures.push_back(row.picture);
    has_picture = has_picture || !row.picture.empty();
  }
  frame["selected"] = list.selected();
  if (has_picture) frame["pictures"] = std::move(pictures);
}

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
  if (word.starts_with(kSelect)) return selectText(word.substr(kSelect.size()));
  if (word.starts_with(kRow)) return selectRow(word.substr(kRow.size()));
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

RowList* Receiver::rowList() const {
  return session_.top() ? session_.top()->rowList() : nullptr;
}

bool Receiver::selectText(const std::string& text) {
  RowList* list = rowList();
  if (!list) return false;
  const auto found = std::ranges::find_if(
      list->rows(), [&](const Row& row) { return row.text.find(text) != std::string::npos; });
  if (found == list->rows().end()) return false;
  list->select(static_cast<int>(found - list->rows().begin()));
  return true;
}

bool Receiver::selectRow(const std::string& index) {
  RowList* list = rowList();
  const auto row = std::strtoul(index.c_str(), nullptr, 10);
  if (!list || row >= list->rows().size()) return false;
  list->select(static_cast<int>(row));
  return true;
}

Json Receiver::frame(const std::string& word) const {
  Json frame = {{"key", word},           {"screen", ""}, {"title", ""}, {"widgets", Json::object()},
                {"rows", Json::array()}, {"selected", 0}};
  Layer* top = session_.top();
  if (!top) return frame;
  frame["screen"] = top->className();
  frame["title"] = shownText(top->shown_title);
  if (const RowList* list = rowList()) addRows(frame, *list);
  top->addTo(frame);
  return frame;
}

}  // namespace desk
