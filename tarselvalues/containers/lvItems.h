// lvItems: a list in a for loop.
//
//   for (lvArg const& item : lvItems(list)) { ... }
//
// `list` is a cell or handle with a list or a sorted list; anything else has no items.
//
// Ownership: range and loop each hold a counted reference to the list, so that it may be a
//            temporary, and a loop may be left at any place.
// Threads:   one thread at a time for the list and all its cursors together.
// Errors:    out of memory for the cursor is std::bad_alloc.
// Cost:      one cursor for each loop, and one copied cell for each item.
// Changes:   a loop whose list changes goes on as the list's cursor does (see the list's header),
//            in a sorted list with the next position. It never reads what is gone.
#pragma once

#include <memory>

#include "tarselvalues/containers/lvSortedList.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/core/lvArg.h"

class lvItems {
 public:
  // The items of the list in `list`.
  explicit lvItems(lvArg const& list) : held_(list) {}

  // Where every loop ends.
  struct End {};

  // Where a loop stands. Made for for loops: it cannot be copied.
  class Iterator {
   public:
    // Stands on the first item of the list in `list`.
    explicit Iterator(lvArg const& list) : held_(list), sorted_(nullptr) {
      if (lviList const* const elements = lvVector(held_).getList()) {
        cursor_.reset(elements->getListEnumerator());
      } else {
        sorted_ = lvSortedList(held_).getSortedList();
      }
      isOnItem_ = step();
    }

    // Borrows the item until the next step.
    lvArg const& operator*() const { return item_; }
    // Steps to the next item.
    Iterator& operator++() {
      isOnItem_ = step();
      return *this;
    }
    // Whether there is an item.
    bool operator!=(End /*end*/) const { return isOnItem_; }

   private:
    bool step() {
      if (cursor_ != nullptr && cursor_->gotoNext()) {
        item_ = cursor_->getValue();
        return true;
      }
      if (sorted_ != nullptr && next_ < sorted_->getSize()) {
        item_ = sorted_->get(next_++);
        return true;
      }
      return false;
    }

    lvArg held_;
    std::unique_ptr<lviRealListEnumerator> cursor_;  // of a list
    lviSortedList const* sorted_;                    // or this
    int next_ = 0;                                   // position in `sorted_`
    lvArg item_;
    bool isOnItem_ = false;
  };

  // Returns a loop's start.
  Iterator begin() const { return Iterator(held_); }
  // Returns a loop's end.
  End end() const { return {}; }

 private:
  lvArg held_;
};
