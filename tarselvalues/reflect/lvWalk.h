// lvWalk(): visits a value and everything in it, once each, whatever refers to whatever.
//
//   int integers = 0;
//   lvWalk(value, [&](lvArg const& visited, lvWalkPlace const&) {
//     integers += visited.getType() == lvArg::IntType ? 1 : 0;
//     return lvWalkVisitor::GoOn;
//   });
//
// A value is visited before what it holds: a list before its elements, from the first (a stack:
// from the top), a map before each key and the value under it, an object before the fields of its
// registered class. Strings, class descriptors, and objects without a registered class hold
// nothing. What several cells refer to is visited for each of them, but gone into only the first
// time; lvWalkPlace::meeting tells which, and so a value that contains itself ends too.
//
// Ownership: the walk holds every object that it has met until it ends, so that the visitor may
//            change or release anything: the walk goes on then as a cursor does, and in an lvrVector
//            and a sorted list with the next position.
// Threads:   one thread at a time for the value and all that is in it.
// Errors:    out of memory is std::bad_alloc. That, and what the visitor or a container of the
//            program throws, passes through; nothing is leaked.
// Cost:      four changes of count for each object, and a few more for one that may hold something;
//            two blocks of memory that grow as they must, and a cursor for each map and for each list
//            that is neither an lvrVector nor sorted. The depth of the value is no burden on the
//            native stack.
// Derived:   of a class derived from lvrVector, getSize() and at() are asked, as the serializer does;
//            lvItems uses its cursor.
#pragma once

#include <type_traits>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

// Where a visited value stands. Good until the visitor returns.
struct lvWalkPlace {
  // What the value is to its holder.
  enum Role : unsigned char {
    Root,     // what the walk began with; it has no holder
    Element,  // of a list or stack
    Key,      // of a map
    Value,    // of a map
    Field,    // of an object
  };
  // How the object in the value was met. A value without object is always met the first time.
  enum Meeting : unsigned char {
    First,  // not yet in this walk
    Again,  // in another place, which has been left by now: it is shared
    Cycle,  // it is one of those that hold this very place
  };

  Role role;            // what the value is to its holder
  Meeting meeting;      // how its object was met
  int depth;            // how many values hold this one; 0 for the root
  int index;            // position among the elements, entries or fields of its holder, from 0
  lvArg const* holder;  // the list, map or object; null for the root
  lvArg const* key;     // of the entry, for Value; null otherwise
};

// What a walk calls.
class TARSELVALUES_API lvWalkVisitor {
 public:
  // How to proceed.
  enum Answer : unsigned char {
    GoOn,  // into the value, if it holds something and was met for the first time
    Skip,  // past it; it is not gone into where it is met again either
    Stop,  // not at all: lvWalk() returns at once
  };

  // For derived classes.
  lvWalkVisitor() = default;
  lvWalkVisitor(lvWalkVisitor const&) = delete;
  lvWalkVisitor& operator=(lvWalkVisitor const&) = delete;

  virtual ~lvWalkVisitor();
  // A value. One thread at a time.
  virtual Answer visit(lvArg const& value, lvWalkPlace const& place) = 0;
  // All of a value that was gone into has been visited. Skip is as good as GoOn; here: GoOn.
  // One thread at a time.
  virtual Answer leave(lvArg const& value, lvWalkPlace const& place);
};

// Walks `root`. Returns true when all was visited, false when the visitor answered Stop.
TARSELVALUES_API bool lvWalk(lvArg const& root, lvWalkVisitor& visitor);

// The same with a function in place of visit(). One thread at a time.
template <class Visit, class = std::enable_if_t<std::is_invocable_r_v<
                           lvWalkVisitor::Answer, Visit&, lvArg const&, lvWalkPlace const&>>>
bool lvWalk(lvArg const& root, Visit visit) {
  class Caller : public lvWalkVisitor {
   public:
    explicit Caller(Visit& called) : called_(called) {}
    Answer visit(lvArg const& value, lvWalkPlace const& place) override {
      return called_(value, place);
    }

   private:
    Visit& called_;
  };
  Caller caller(visit);
  return lvWalk(root, static_cast<lvWalkVisitor&>(caller));
}
