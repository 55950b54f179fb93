// Elements and keys that do what they are told when they are compared, hashed or released.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <utility>

#include "support/Objects.h"
#include "tarselvalues/core/lvrString.h"

namespace test {

// What an item does. While one does something, neither it nor another does anything more.
class Act {
 public:
  using Action = std::function<void()>;

  Act& operator=(Action action) {
    action_ = std::move(action);
    return *this;
  }

  // Touches nothing of the item after the action, which may have been its end.
  void operator()() const {
    if (action_ && !isActing_) {
      Action const action = action_;
      Acting const acting;
      action();
    }
  }

 private:
  struct Acting {
    Acting() { isActing_ = true; }
    ~Acting() { isActing_ = false; }
    Acting(Acting const&) = delete;
    Acting& operator=(Acting const&) = delete;
  };

  static inline bool isActing_ = false;

  Action action_;
};

// A string that acts. It has its answer first, and acts then.
class ActingText : public lvrString {
 public:
  explicit ActingText(std::string const& text) {
    setStringData(text.data(), static_cast<int>(text.size()), CopyAndOwn);
  }

  int equiv(lvReferencable const& other) const override {
    int const answer = lvrString::equiv(other);
    onEquiv();
    return answer;
  }
  unsigned int hashCode() const override {
    unsigned const answer = lvrString::hashCode();
    onHash();
    return answer;
  }
  int compareTo(lvReferencable const& other) const override {
    int const answer = lvrString::compareTo(other);
    onCompare();
    return answer;
  }

  Act onEquiv;
  Act onHash;
  Act onCompare;
};

// An object with a place in the order of such objects, and that place as its hash.
class ActingRank : public lvReferencable {
 public:
  explicit ActingRank(int rank) : rank_(rank) {}

  unsigned int hashCode() const override {
    unsigned const answer = static_cast<unsigned>(rank_);
    onHash();
    return answer;
  }
  int compareTo(lvReferencable const& other) const override {
    auto const* const ranked = dynamic_cast<ActingRank const*>(&other);
    int const answer = ranked != nullptr ? rank_ - ranked->rank_ : lvReferencable::compareTo(other);
    onCompare();
    return answer;
  }

  int rank() const { return rank_; }

  Act onHash;
  Act onCompare;

 private:
  int rank_;
};

// A cell with the only reference to a new item.
inline lvArg ranked(int rank) { return *new ActingRank(rank); }

// A container that only a cell holds.
template <class Container>
class OnlyHeld {
 public:
  template <class... Arguments>
  explicit OnlyHeld(Arguments... arguments) : container_(new Watched(isGone_, arguments...)) {
    cell_ = lvArg(*container_);
  }

  Container* operator->() const { return container_; }
  Container& operator*() const { return *container_; }

  // Empties the cell, in the middle of an operation: the container must still be there then.
  Act::Action lettingGo() {
    return [this] {
      cell_.setNil();
      EXPECT_FALSE(isGone_);
    };
  }
  // A cell with the only reference to an element that empties the cell when it goes.
  lvArg letsGo() {
    return acting([this] { cell_.setNil(); });
  }
  // The same in an operation that keeps the container to its end.
  lvArg letsGoTooEarly() { return acting(lettingGo()); }
  bool isGone() const { return isGone_; }

 private:
  class Watched : public Container {
   public:
    template <class... Arguments>
    explicit Watched(bool& isGone, Arguments... arguments)
        : Container(arguments...), isGone_(isGone) {}
    ~Watched() override { isGone_ = true; }

   private:
    bool& isGone_;
  };

  bool isGone_ = false;
  Container* container_;
  lvArg cell_;
};

// What throws when it runs for the n-th time.
class ThrowsAt {
 public:
  explicit ThrowsAt(int n) : left_(n) {}
  void operator()() {
    if (--left_ == 0) {
      throw std::bad_alloc();
    }
  }

 private:
  int left_;
};

// The rank of what a cell holds; -1 for anything else.
inline int rankOf(lvArg const& cell) {
  auto const* const item = dynamic_cast<ActingRank const*>(cell.getReferencable());
  return item != nullptr ? item->rank() : -1;
}

}  // namespace test
