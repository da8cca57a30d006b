#pragma once

#include <string_view>
#include <unordered_set>
#include <utility>

#include "host/include/Object.h"

namespace stowline {

/// A list in which objects are looked for as "object in list" does, but fast while all are plain
/// texts.
class Set {
 public:
  /// Begins with the items of `list`, to which add() adds.
  explicit Set(host::Object list = host::list()) : list_(std::move(list)) {
    for (const host::Object& item : host::Items(list_)) index(item);
  }

  void add(const host::Object& object) {
    list_.append(object);
    index(object);
  }

  bool contains(const host::Object& object) const {
    const auto characters = object.characters();
    const bool is_indexed = characters && only_texts_ && list_.size() == size_;
    return is_indexed ? texts_.contains(*characters) : object.isIn(list_);
  }

 private:
  void index(const host::Object& object) {
    ++size_;
    const auto characters = object.characters();
    if (!characters) {
      only_texts_ = false;
    } else {
      texts_.insert(*characters);
      kept_.append(object);
    }
  }

  host::Object list_;
  host::Object kept_ = host::list();  ///< what `texts_` views belong to, whoever changes the list
  std::unordered_set<std::string_view> texts_;
  bool only_texts_ = true;
  int size_ = 0;  ///< of the list, as far as it has been indexed
};

}  // namespace stowline
