// lviStack: cells, last in, first out.
//
// Every stack promises: what is not there reads as nil and changes nothing; each call takes the
// references it keeps.
// Threads: one thread at a time per stack.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviStack {
 public:
  // For derived classes.
  lviStack() = default;
  lviStack(lviStack const&) = delete;
  lviStack& operator=(lviStack const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Puts `value` on top. Returns 0 or a negative error number.
  virtual int push(lvArg const& value) = 0;
  // Removes the top and returns it; nil if there is none.
  virtual lvArg pop() = 0;
  // Replaces the top and returns the previous one; nil, with nothing changed, if there is none.
  virtual lvArg poke(lvArg const& value) = 0;
  // Borrows the element `depth` places below the top, until the stack changes; the constant nil if
  // there is none.
  virtual lvArg const& peek(int depth) const = 0;
  // Returns the number of elements.
  virtual int getSize() const = 0;
  // Whether there are no elements.
  virtual bool isEmpty() const = 0;
  virtual ~lviStack();
};
