// A text as a tree that knows where each value stands, and keeps the entries of maps in their order.
// That is more than the library makes of it, whose maps have an order of their own.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <cstddef>
#include <vector>

#include "CheckedSource.h"

struct Node {
  enum Kind : unsigned char {
    Atom,    // nil, an integer or a string
    List,    // `parts` are the elements
    Map,     // `parts` are a key, its value, the next key, its value...
    Object,  // `parts` are the fields
  };

  Kind kind = Atom;
  std::size_t offset = 0;  // of its first byte in the text
  lvArg value;             // the atom itself; an object's class name
  std::vector<Node> parts;
};

// An atom that stands at `offset`.
Node makeAtom(lvArg const& value, std::size_t offset);

// Reads the next value from `source` into `node`; false at the end of the text. All fields of an
// object are there, and keys of a map are different from each other, as in the library.
bool readNode(Node& node, CheckedSource& source);

// Whether a node is the atom nil.
bool isNil(Node const& node);

// Takes the entries whose value is nil out of a map, for maps have none.
void dropNilEntries(Node& map);
