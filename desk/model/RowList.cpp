#include "desk/model/RowList.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace desk {
namespace {

constexpr int kPage = 10;

}  // namespace

void RowList::setRows(Rows rows) {
  rows_ = std::make_shared<const Rows>(std::move(rows));
  select(selected_);
}

void RowList::select(int index) {
  selected_ = std::max(0, std::min(index, static_cast<int>(rows_->size()) - 1));
}

bool RowList::handleKey(const std::string& key) {
  if (key == "up") {
    select(selected_ - 1);
  } else if (key == "down") {
    select(selected_ + 1);
  } else if (key == "left") {
    select(selected_ - kPage);
  } else if (key == "right") {
    select(selected_ + kPage);
  } else {
    return false;
  }
  return true;
}

}  // namespace desk
