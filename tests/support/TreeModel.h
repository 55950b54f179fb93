// Value trees as plain data, at random, and what becomes of them: a slow model of the serializer.
#pragma once

#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/FieldObjects.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "support/WriterModel.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"

namespace test {

struct Tree {
  enum Kind { Nil, Integer, Text, Vector, Map, Object, Refused };

  Kind kind = Nil;
  int number = 0;              // of an object: how many of its fields can be read
  std::string bytes;           // of an object: the key of its class, or the name that is written
  std::vector<Tree> children;  // of a map: a key and a value in turn
  int variant = 0;             // of several, with which kind of object a value is made
};

inline std::string described(Tree const& tree) {
  std::vector<std::string> pieces;
  for (std::size_t i = 0; i < tree.children.size(); i += tree.kind == Tree::Map ? 2 : 1) {
    pieces.push_back(described(tree.children[i]));
    if (tree.kind == Tree::Map) {
      pieces.back() += "=" + described(tree.children[i + 1]);
    }
  }
  switch (tree.kind) {
    case Tree::Integer:
      return std::to_string(tree.number);
    case Tree::Text:
      return describedText(tree.bytes);
    case Tree::Vector:
      return "[" + joined(pieces) + "]";
    case Tree::Map:
      return describedEntries(pieces);
    case Tree::Object:
      return "*" + tree.bytes + "{" + joined(pieces) + "}";
    default:
      return "nil";
  }
}

// A value that the serializer refuses with this error.
inline lvArg refusedValue(int error, int variant) {
  switch (error) {
    case lvArgDest::SOURCE_ERROR_NOT_A_MAP:
      return variant == 0 ? newStackLike() : lvArg(*lvrStack::defaultCtorMethod());
    case lvArgDest::SOURCE_ERROR_NOT_A_VECTOR:
      return variant == 0   ? newListLike()
             : variant == 1 ? lvArg(*lvrDLList::defaultCtorMethod())
                            : lvArg(*lvrSortedArrayList::defaultCtorMethod());
    default:
      return variant == 0   ? newPlainObject()
             : variant == 1 ? lvArg(*new KeylessObject)
                            : objectOf("Bogus");
  }
}

inline lvArg newMapOf(int variant) {
  return variant == 0 ? lvArg(lvHashMap(3)) : lvArg(*lvrTupleSet::defaultCtorMethod());
}

inline lvArg valueOf(Tree const& tree) {
  switch (tree.kind) {
    case Tree::Integer:
      return integer(tree.number);
    case Tree::Text:
      return string(tree.bytes);
    case Tree::Vector: {
      lvVector vector(-1);
      for (Tree const& child : tree.children) {
        vector->insert(valueOf(child), -1);
      }
      return vector;
    }
    case Tree::Map: {
      lvHashMap map(newMapOf(tree.variant));
      for (std::size_t i = 0; i < tree.children.size(); i += 2) {
        map->put(valueOf(tree.children[i]), valueOf(tree.children[i + 1]));
      }
      return map;
    }
    case Tree::Object: {
      std::vector<lvArg> fields;
      for (Tree const& child : tree.children) {
        fields.push_back(valueOf(child));
      }
      return objectOf(tree.bytes, fields);
    }
    case Tree::Refused:
      return refusedValue(tree.number, tree.variant);
    default:
      return lvArg();
  }
}

inline Tree treeOf(lvArg const& value);

// The tree of an object, as far as its class lets see it.
inline Tree treeOfObject(lvReferencable const& object) {
  Tree tree{Tree::Refused, lvArgDest::SOURCE_ERROR_NO_CLASS, "", {}};
  auto const* const known = dynamic_cast<FieldObject const*>(&object);
  auto const facts = classFacts().find(textOf(object.getClassDesc()));
  if (known != nullptr && facts != classFacts().end()) {
    tree = {Tree::Object, facts->second.usable, facts->second.written, {}};
    for (lvArg const& field : known->fields()) {
      tree.children.push_back(treeOf(field));
    }
  }
  return tree;
}

// The tree of a value, the entries of maps in their own order.
inline Tree treeOf(lvArg const& value) {
  Tree tree;
  auto const* const list = dynamic_cast<lvrVector const*>(value.getReferencable());
  auto const* const map = dynamic_cast<lviMap const*>(value.getReferencable());
  if (value.getType() == lvArg::IntType) {
    tree.kind = Tree::Integer;
    tree.number = value.getInt();
  } else if (value.getType() == lvArg::StringType) {
    tree.kind = Tree::Text;
    tree.bytes = textOf(value);
  } else if (list != nullptr) {
    tree.kind = Tree::Vector;
    for (int i = 0; i < list->getSize(); ++i) {
      tree.children.push_back(treeOf(list->at(i)));
    }
  } else if (map != nullptr) {
    tree.kind = Tree::Map;
    for (lvMapEnumerator entry(*map); entry->next();) {
      tree.children.push_back(treeOf(entry->getKey()));
      tree.children.push_back(treeOf(entry->getValue()));
    }
  } else if (value.getType() == lvArg::ObjectType) {
    tree = treeOfObject(*value.getReferencable());
  } else if (value.getType() == lvArg::MapType || value.getType() == lvArg::ListType) {
    tree.kind = Tree::Refused;
    tree.number = value.getType() == lvArg::MapType ? lvArgDest::SOURCE_ERROR_NOT_A_MAP
                                                    : lvArgDest::SOURCE_ERROR_NOT_A_VECTOR;
  }
  return tree;
}

// The text of a tree that has room, byte for byte.
inline std::string textOf(Tree const& tree) {
  static std::string const letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
  std::string text;
  switch (tree.kind) {
    case Tree::Integer:
      return std::to_string(tree.number);
    case Tree::Text:
      if (!tree.bytes.empty() && letters.find(tree.bytes[0]) != std::string::npos &&
          tree.bytes.find_first_not_of(letters + "0123456789") == std::string::npos) {
        return tree.bytes;
      }
      for (char const c : tree.bytes) {
        text += escaped(c);
      }
      return '"' + text + '"';
    case Tree::Vector:
      for (Tree const& child : tree.children) {
        text += (text.empty() ? "" : ",") + textOf(child);
      }
      return "{" + text + "}";
    case Tree::Map:
      for (std::size_t i = 0; i < tree.children.size(); i += 2) {
        text += text.empty() ? "(" : ",(";
        text += textOf(tree.children[i]) + "=" + textOf(tree.children[i + 1]) + ")";
      }
      return "{" + text + "}";
    case Tree::Object:
      for (Tree const& child : tree.children) {
        text += (text.empty() ? "" : ",") + textOf(child);
      }
      return "*" + textOf(Tree{Tree::Text, 0, tree.bytes, {}}) + "{" + text + "}";
    default:
      return "#nil";
  }
}

// Pours a tree into anything that has the operations of a sink.
template <class Sink>
class TreeWriter {
 public:
  explicit TreeWriter(Sink& sink) : sink_(sink) {}

  int write(Tree const& tree) {
    switch (tree.kind) {
      case Tree::Vector:
        return writeFrame(tree, 25, 1);
      case Tree::Map:
        return writeFrame(tree, 24, 2);
      case Tree::Object:
        return writeObject(tree);
      case Tree::Refused:
        sink_.sourceError(static_cast<lvArgDest::sourceError_t>(tree.number));
        return -2;
      default:
        return sink_.putArg(valueOf(tree));
    }
  }

 private:
  int writeFrame(Tree const& tree, int kind, std::size_t cellsPerElement) {
    std::size_t const count = tree.children.size() / cellsPerElement;
    if (sink_.enter(integer(kind), static_cast<int>(count)) != 0) {
      return -1;
    }
    bool whole = true;
    for (std::size_t i = 0; whole && i < count; ++i) {
      Tree const* const cells = &tree.children[i * cellsPerElement];
      whole = (kind == 24 ? writeTuple(cells[0], cells[1]) : write(cells[0])) >= 0;
    }
    if (!whole) {
      sink_.abortLevel();
    }
    return sink_.leave() < 0 ? -1 : 0;
  }

  int writeTuple(Tree const& key, Tree const& value) {
    int status = sink_.enter(integer(32), 2);
    if (status == 0) {
      status = write(key);
      status = status < 0 ? status : write(value);
      if (status >= 0) {
        return sink_.leave();
      }
      sink_.abortLevel();
    }
    return status;
  }

  int writeObject(Tree const& tree) {
    if (sink_.enter(classNamed(tree.bytes), -1) < 0) {
      return -1;
    }
    if (tree.children.empty()) {
      return 0;
    }
    for (std::size_t i = 0; i < tree.children.size(); ++i) {
      if (static_cast<int>(i) >= tree.number) {
        sink_.sourceError(lvArgDest::SOURCE_ERROR_FIELD_ACCESS);
        return -2;
      }
      if (write(tree.children[i]) < 0) {
        sink_.abortLevel();
        return -1;
      }
    }
    return sink_.leave() < 0 ? -1 : 0;
  }

  Sink& sink_;
};

// Trees at random.
class TreeMaker {
 public:
  explicit TreeMaker(unsigned seed) : random(seed) {}

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random); }

  // At most so many levels deep: vectors and objects take one, a map two, of which one is its
  // tuples'.
  Tree make(int levels) {
    int const kind = upTo(9);
    levels = budget-- > 0 ? levels : 0;
    if (allowsObjects && levels >= 1 && upTo(2) == 0) {
      return makeObject(levels);
    }
    if (kind < 3 && levels >= 1) {
      return makeVector(levels);
    }
    if (kind < 6 && levels >= 2) {
      return makeMap(levels);
    }
    Tree scalar;
    if (kind < 8) {
      scalar.kind = Tree::Text;
      scalar.bytes = makeBytes();
    } else if (kind < 9) {
      scalar.kind = Tree::Integer;
      scalar.number = upTo(1) == 0 ? upTo(200) - 100 : static_cast<int>(random());
    } else if (allowsRefused && upTo(1) == 0) {
      scalar.kind = Tree::Refused;
      scalar.number = 1 << upTo(2);
      scalar.variant = allowsObjects ? upTo(2) : 0;
    }
    return scalar;
  }

  // One that is exactly so many levels deep.
  Tree makeDeep(int levels) {
    Tree tree = make(0);
    while (levels > 0) {
      bool const map = levels > 1 && upTo(1) == 0;
      Tree outer;
      outer.kind = map ? Tree::Map : Tree::Vector;
      if (allowsObjects && !map && upTo(1) == 0) {
        outer = {Tree::Object, 0, "Point", {make(0)}};
      }
      if (map) {
        outer.children.push_back(make(0));
        tree = tree.kind == Tree::Nil ? Tree{Tree::Integer, 7, "", {}} : tree;
      }
      outer.children.push_back(std::move(tree));
      tree = std::move(outer);
      levels -= map ? 2 : 1;
    }
    return tree;
  }

  // Whether there may be values that the serializer refuses.
  bool allowsRefused = false;
  // Whether there may be objects, whose classes must be registered, and maps that are tuple sets.
  bool allowsObjects = false;
  // Whether the objects may be of unusual classes; those do not read back as they were.
  bool allowsUnusualClasses = false;
  // Whether keys are scalars only.
  bool hasScalarKeys = false;
  // Whether maps may be empty; those do not read back as maps.
  bool allowsEmptyMaps = false;
  // After so many trees there are scalars only.
  int budget = 150;

 private:
  Tree makeObject(int levels) {
    std::vector<std::string> keys;
    for (auto const& facts : classFacts()) {
      bool const isOwn = facts.second.shown.empty();
      if (isOwn && (facts.second.isOrdinary || (allowsUnusualClasses && upTo(1) == 0))) {
        keys.push_back(facts.first);
      }
    }
    Tree tree;
    tree.kind = Tree::Object;
    tree.bytes = keys[static_cast<std::size_t>(upTo(static_cast<int>(keys.size()) - 1))];
    for (int left = classFacts().at(tree.bytes).entries; left > 0; --left) {
      tree.children.push_back(make(levels - 1));
    }
    return tree;
  }

  Tree makeVector(int levels) {
    Tree tree;
    tree.kind = Tree::Vector;
    for (int left = upTo(5); left > 0; --left) {
      tree.children.push_back(make(levels - 1));
    }
    return tree;
  }

  Tree makeMap(int levels) {
    Tree tree;
    tree.kind = Tree::Map;
    tree.variant = allowsObjects ? upTo(1) : 0;
    std::set<std::string> keys;
    for (int left = upTo(4) + (allowsEmptyMaps ? 0 : 1); left > 0; --left) {
      Tree key = make(hasScalarKeys ? 0 : levels - 2);
      Tree value = make(levels - 2);
      if (value.kind == Tree::Nil) {
        value.kind = Tree::Integer;
      }
      if (keys.insert(described(key)).second) {
        tree.children.push_back(std::move(key));
        tree.children.push_back(std::move(value));
      }
    }
    return tree;
  }

  // Any bytes but NUL, at which strings are cut, and the backslash, which reads back as an escape.
  std::string makeBytes() {
    static std::vector<std::string> const chosen = {
        "",  "nil", "#nil", "007",  "-5", "{",  "}", "(a=1)",    "[3]", "a b", "*P{",
        "%", "%22", "%n%0", "\"\"", "k",  "x1", "_", "\xFF\x80", ",",   "=",   " "};
    if (upTo(1) == 0) {
      return chosen[static_cast<std::size_t>(upTo(static_cast<int>(chosen.size()) - 1))];
    }
    std::string bytes;
    for (int left = upTo(20) == 0 ? 490 + upTo(200) : upTo(12); left > 0; --left) {
      char const c = static_cast<char>(1 + upTo(254));
      bytes += c == '\\' ? '/' : c;
    }
    return bytes;
  }

  std::mt19937 random;
};

}  // namespace test
