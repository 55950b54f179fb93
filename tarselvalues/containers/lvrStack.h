// lvrStack: a stack in a growable array.
//
// Deliberate: its kind is that of the maps, so a cell that holds a stack carries MapType. Code that
// tells maps by the tag takes a stack for one; lvHashMap::getMap() is null on it.
//
// Limits:    65535 elements. push() answers -12 to the next one and changes nothing; a capacity
//            asked for beyond that is cut to it.
// Growth:    by half, plus ten: from n full cells to n * 3 / 2 + 10. Never shrinks by itself. The
//            elements are moved into the new array and the old one is freed.
// Ownership: the stack holds references to its elements.
// Threads:   one thread at a time per stack.
// Errors:    out of memory is std::bad_alloc and leaves the stack as it was.
// Callbacks: elements that are hashed or released may change the stack, or drop its last reference.
//            A hash counts what is gone by then as nil. Whatever an element throws leaves the stack
//            as it was.
// Life:      finalize() frees everything.
// Layout:    on 32-bit ARM: elements 40, alloced 44, count 46, flags 48, hashCache 52, size 56.
#pragma once

#include <cstdint>

#include "tarselvalues/containers/lviStack.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lvrStack : public lvReferencable, public lviStack {
 public:
  // What stackEvent() is told about.
  enum Action {
    PushAction,  // push()
    PopAction,   // pop()
    PokeAction,  // poke()
  };

  // The most elements that a stack holds.
  static constexpr int MaxSize = 65535;

  // Makes an empty stack with room for `size` elements; a negative `size` allocates nothing yet.
  explicit lvrStack(int size);

  // Returns a new stack with room for 7 elements. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "Stack". Any thread.
  static lvString const& getStaticClassDesc();

  // 1 for this very stack only.
  int equiv(lvReferencable const& other) const override;
  // Hash of the elements, bottom first, cached until the next push() or pop().
  // Deliberate: poke() keeps the cache, so a stack whose top was replaced may have the hash it had.
  unsigned int hashCode() const override;
  lvString const& getClassDesc() const override;
  // As releaseData().
  int finalize() override;
  ~lvrStack() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  lvArg poke(lvArg const& value) override;
  // Answers what setAlloced() does if that is negative.
  int push(lvArg const& value) override;
  lvArg pop() override;
  lvArg const& peek(int depth) const override;
  int getSize() const override;
  // Sets the capacity to `capacity`, or to the number of elements if that is more; a negative one
  // cuts it to fit. Returns the capacity now in force. Makes a new array even when nothing changes.
  virtual int setAlloced(int capacity);
  // Whether getSize() answers 0.
  bool isEmpty() const override;
  // Does nothing. A hook that no operation of the stack calls.
  virtual void stackEvent(Action action, int index, lvArg const& value);

  // Releases all elements and frees the array. Returns 0.
  int releaseData();

 private:
  template <class T>
  friend struct lvLayoutAccess;

  TARSELVALUES_INTERNAL void pushInto(lvArg& behind, lvArg const& value);

  lvArg* elements;
  std::uint16_t alloced;
  std::uint16_t count;
  mutable std::uint16_t flags;
  mutable std::uint32_t hashCache;
};
