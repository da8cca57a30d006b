#include "desk/model/Receiver.h"

#include <algorithm>
#include <exception>

namespace desk {

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

bool Receiver::handle(const Word& word) {
  switch (word.kind) {
    case Word::Kind::select:
      return selectText(word.argument());
    case Word::Kind::row:
      return selectRow(std::stoul(word.argument()));
    case Word::Kind::key:
      guarded([&] {
        if (Layer* const top = session_.top()) top->handleKey(word.text);
      });
      break;
    case Word::Kind::timeout:
      guarded([this] {
        if (Layer* const top = session_.top()) top->letTimeOutPass();
      });
      break;
    case Word::Kind::opening:
    case Word::Kind::wait:
    case Word::Kind::frame:
      break;
  }
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
    plain::raising(step);
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

bool Receiver::selectRow(unsigned long index) {
  RowList* list = rowList();
  if (!list || index >= list->rows().size()) return false;
  list->select(static_cast<int>(index));
  return true;
}

}  // namespace desk
