// Lists and maps, written down with what they hold.
//
//   lvHashMap const device = lvMapBuilder()
//                                .put("name", "pump room")
//                                .put("ports", lvListOf(502, 503))
//                                .map();
//
// Elements and values are whatever lvToCell() takes: integers, truth values, texts, cells, handles.
// Braces never make a cell, a list or a map: they could mean a list of one element as well as that
// element.
//
// Ownership: the handle that is returned holds the list or map, and that what was put in.
// Threads:   one thread at a time per builder.
// Errors:    out of memory is std::bad_alloc. What a container does not take is left out (a list
//            takes 65,535 elements); isWhole() tells.
#pragma once

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/core/lvCell.h"
#include "tarselvalues/core/lvString.h"

// Makes a vector. A copy of the builder adds to the same one.
class lvListBuilder {
 public:
  // Appends an element. Returns the builder.
  template <class Element>
  lvListBuilder& add(Element const& element) {
    isWhole_ = list_->insert(lvToCell(element), -1) && isWhole_;
    return *this;
  }

  // Whether the list has taken all that was added.
  bool isWhole() const { return isWhole_; }
  // Returns the list, which later calls of add() still change.
  lvVector list() const { return list_; }

 private:
  lvVector list_{0};
  bool isWhole_ = true;
};

// Returns a vector with these elements. Any thread.
template <class... Elements>
lvVector lvListOf(Elements const&... elements) {
  lvListBuilder builder;
  (builder.add(elements), ...);
  return builder.list();
}

// Makes a hash map. Keys that are texts are interned. A copy of the builder puts into the same map.
class lvMapBuilder {
 public:
  // For a map of so many buckets. One of none takes nothing; a negative number counts as none.
  explicit lvMapBuilder(int buckets = lvrHashMap::DefaultHashSize)
      : map_(buckets < 0 ? 0 : buckets) {}

  // Stores a value under a key, in place of the one that it had. Nil is not stored: the key is
  // missing then. Returns the builder.
  template <class Key, class Value>
  lvMapBuilder& put(Key const& key, Value const& value) {
    isWhole_ = map_->put(lvToKey(key), lvToCell(value)) == 0 && isWhole_;
    return *this;
  }

  // Whether the map has taken all that was put.
  bool isWhole() const { return isWhole_; }
  // Returns the map, which later calls of put() still change.
  lvHashMap map() const { return map_; }

 private:
  lvHashMap map_;
  bool isWhole_ = true;
};
