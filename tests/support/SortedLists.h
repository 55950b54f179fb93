// Sorted lists to look at and to make, and one that is not the library's own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lviSortedList.h"

namespace test {

using SortedLayout = lvLayoutAccess<lvrSortedArrayList>;

// What a sorted list is made with.
constexpr unsigned WithDuplicates = 1;
constexpr unsigned WithoutDuplicates = 0;

// The elements in their order, "1 2 nil ".
inline std::string elementsOf(lviSortedList const& list) {
  std::string elements;
  for (int i = 0; i < list.getSize(); ++i) {
    elements += brief(list.get(i)) + " ";
  }
  return elements;
}

// Whether all cells behind the elements are nil. A list without an array has none.
inline bool isRestNil(lvrSortedArrayList const& list) {
  lvArg const* const cells = SortedLayout::array(list);
  int const end = cells != nullptr ? SortedLayout::capacity(list) : 0;
  return std::all_of(cells + std::min(list.getSize(), end), cells + end,
                     [](lvArg const& cell) { return cell.isNil(); });
}

// A list with these integers.
class SortedArray : public Held<lvrSortedArrayList> {
 public:
  explicit SortedArray(unsigned duplicates, std::initializer_list<int> values = {})
      : Held(duplicates) {
    for (int const value : values) {
      (*this)->add(integer(value));
    }
  }
};

// The same with other elements.
inline lvrSortedArrayList& addEach(lvrSortedArrayList& list, std::vector<lvArg> const& values) {
  for (lvArg const& value : values) {
    list.add(value);
  }
  return list;
}

inline std::vector<lvArg> integers(std::initializer_list<int> values) {
  std::vector<lvArg> cells;
  for (int const value : values) {
    cells.push_back(integer(value));
  }
  return cells;
}

// A sorted list that is not the library's own: the elements that it is given, in their order, and a
// size that need not be true. It keeps account of its cursors.
class OwnSortedList : public lviSortedList {
 public:
  explicit OwnSortedList(std::vector<lvArg> elements)
      : OwnSortedList(std::move(elements), HonestSize) {}
  OwnSortedList(std::vector<lvArg> elements, int size, Kind kind = ListKind)
      : elements_(std::move(elements)), size_(size == HonestSize ? count() : size) {
    setKind(kind);
  }

  int getSize() const override { return size_; }
  int add(lvArg const& /*value*/) override { return 0; }
  bool addAll(lviSortedList const& /*other*/) override { return false; }
  void clear() override {}
  bool contains(lvArg const& /*value*/) const override { return false; }
  bool containsAll(lviSortedList const& /*other*/) const override { return false; }
  bool equals(lviSortedList const& /*other*/) const override { return false; }
  lvArg get(int index) const override { return at(index); }
  int indexOf(lvArg const& /*value*/) const override { return -1; }
  bool isEmpty() const override { return size_ == 0; }
  lviRealSortedListIterator* getSortedListIterator(int position) override {
    return new Iterator(*this, position);
  }
  lviRealSortedListEnumerator* getSortedListEnumerator(int position) const override {
    return new Enumerator(*this, position);
  }
  int lastIndexOf(lvArg const& /*value*/) const override { return -1; }
  int reserved14() override { return 0; }
  int reserved15() override { return 0; }
  lvArg reserved16() override { return lvArg(); }
  lvArg reserved17() override { return lvArg(); }

  int cursorsMade() const { return made_; }
  int cursorsAlive() const { return alive_; }

 private:
  static constexpr int HonestSize = -1;

  class Enumerator : public lviRealSortedListEnumerator {
   public:
    Enumerator(OwnSortedList const& list, int position)
        : list_(list), index_(std::min(position, list.count())), isStarted_(position >= 1) {
      ++list_.made_;
      ++list_.alive_;
    }
    ~Enumerator() override { --list_.alive_; }
    bool hasNext() const override { return index_ + (isStarted_ ? 1 : 0) < list_.count(); }
    bool hasPrevious() const override { return index_ > 0; }
    lvArg next() override {
      if (!hasNext()) {
        return lvArg();
      }
      index_ += isStarted_ ? 1 : 0;
      isStarted_ = true;
      return list_.at(index_);
    }
    int nextIndex() const override { return index_ + 1; }
    lvArg previous() override { return index_ > 0 ? list_.at(--index_) : lvArg(); }
    int previousIndex() const override { return index_ - 1; }

   private:
    OwnSortedList const& list_;
    int index_;
    bool isStarted_;
  };

  class Iterator : public lviRealSortedListIterator {
   public:
    Iterator(OwnSortedList const& list, int position) : walk_(list, position) {}
    bool hasNext() const override { return walk_.hasNext(); }
    bool hasPrevious() const override { return walk_.hasPrevious(); }
    lvArg next() override { return walk_.next(); }
    int nextIndex() const override { return walk_.nextIndex(); }
    lvArg previous() override { return walk_.previous(); }
    int previousIndex() const override { return walk_.previousIndex(); }
    void add(lvArg const& /*value*/) override {}
    void remove() override {}
    void set(lvArg const& /*value*/) override {}

   private:
    Enumerator walk_;
  };

  int count() const { return static_cast<int>(elements_.size()); }
  lvArg at(int index) const {
    return index >= 0 && index < count() ? elements_[static_cast<std::size_t>(index)] : lvArg();
  }

  std::vector<lvArg> elements_;
  int size_;
  mutable int made_ = 0;
  mutable int alive_ = 0;
};

}  // namespace test
