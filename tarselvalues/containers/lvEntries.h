// lvEntries: a map in a for loop.
//
//   for (auto const& [key, value] : lvEntries(map)) { ... }
//
// `map` is a cell or handle with a map; anything else, a stack too, has no entries.
//
// Ownership: range and loop each hold a counted reference to the map, so that it may be a
//            temporary, and a loop may be left at any place.
// Threads:   one thread at a time for the map and all its cursors together.
// Errors:    out of memory for the cursor is std::bad_alloc.
// Cost:      one cursor for each loop, and two copied cells for each entry.
// Changes:   a loop whose map changes goes on as the map's cursor does (see the map's header). It
//            never reads what is gone.
#pragma once

#include <memory>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/lvArg.h"

// An entry of a map, copied.
struct lvEntry {
  lvArg key;    // a copy of the key
  lvArg value;  // a copy of the value under it
};

class lvEntries {
 public:
  // The entries of the map in `map`.
  explicit lvEntries(lvArg const& map) : held_(map) {}

  // Where every loop ends.
  struct End {};

  // Where a loop stands. Made for for loops: it cannot be copied.
  class Iterator {
   public:
    // Stands on the first entry of the map in `map`.
    explicit Iterator(lvArg const& map) : held_(map) {
      if (lviMap const* const entries = lvHashMap(held_).getMap()) {
        cursor_.reset(entries->getEnumerator());
      }
      isOnEntry_ = step();
    }

    // Borrows the entry until the next step.
    lvEntry const& operator*() const { return entry_; }
    // Steps to the next entry.
    Iterator& operator++() {
      isOnEntry_ = step();
      return *this;
    }
    // Whether there is an entry.
    bool operator!=(End /*end*/) const { return isOnEntry_; }

   private:
    bool step() {
      if (cursor_ == nullptr || !cursor_->next()) {
        return false;
      }
      entry_.key = cursor_->getKey();
      entry_.value = cursor_->getValue();
      return true;
    }

    lvArg held_;
    std::unique_ptr<lviRealMapEnumerator> cursor_;
    lvEntry entry_;
    bool isOnEntry_ = false;
  };

  // Returns a loop's start.
  Iterator begin() const { return Iterator(held_); }
  // Returns a loop's end.
  End end() const { return {}; }

 private:
  lvArg held_;
};
