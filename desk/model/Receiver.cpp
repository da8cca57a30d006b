#include "desk/model/Receiver.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "host/native/ShownText.h"

namespace desk {
namespace {

constexpr std::string_view kSelect = "select:";
constexpr std::string_view kRow = "row:";

/// Returns what frames hold of the rows.
Json textsOf(const Rows& rows) {
  Json texts = Json::array();
  for (const Row& row : rows) texts.push_back({row.text, row.description});
  return texts;
}

/// Returns the path of each row's picture; null when none has one.
Json picturesOf(const Rows& rows) {
  if (std::ranges::all_of(rows, [](const Row& row) { return row.picture.empty(); })) return nullptr;
  Json pictures = Json::array();
  for (const Row& row : rows) pictures.push_back(row.picture);
  return pictures;
}

}  // namespace

Receiver::Receiver(Observer& observer)
    : observer_(observer), host_(jobs_, observer), session_(jobs_, observer) {}

void Receiver::open(const Application& application) {
  host_.setTranslations(application.translations);
  guarded([&] {
    application.load(host_.module());
    session_.open(
        ModuleScreen{.name = application.main_menu,
                     .type = host_.named(application.main_menu),
                     .arguments = {application.arguments.begin(), application.arguments.end()}});
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

std::shared_ptr<const Rows> Receiver::rows() const {
  const RowList* list = rowList();
  return list ? list->sharedRows() : nullptr;
}

Json Receiver::frame(const std::string& word, const Rows* shown_rows) const {
  Json frame = {{"key", word},           {"screen", ""}, {"title", ""}, {"widgets", Json::object()},
                {"rows", Json::array()}, {"selected", 0}};
  Layer* top = session_.top();
  if (!top) return frame;
  frame["screen"] = top->className();
  frame["title"] = native::shownText(top->title());
  if (const RowList* list = rowList()) {
    const bool are_shown = &list->rows() == shown_rows;
    frame["rows"] = are_shown ? Json() : textsOf(list->rows());
    frame["selected"] = list->selected();
    if (Json pictures = picturesOf(list->rows()); !pictures.is_null()) {
      frame["pictures"] = std::move(pictures);
    }
  }
  top->addTo(frame);
  return frame;
}

}  // namespace desk
