// Random trees, and the values that they stand for.
#pragma once

#include <gmock/gmock.h>
#include <lvtext/TextClass.h>
#include <lvtext/TextTree.h>
#include <tarselvalues/containers/lvEntries.h>
#include <tarselvalues/containers/lvItems.h>
#include <tarselvalues/core/lvCell.h>
#include <tarselvalues/tarselvalues.h>

#include <random>
#include <set>
#include <string>

// Declares the classes of the objects in random trees, once.
inline void declareRandomClasses() {
  static bool const declared = [] {
    declareClass("Named=x,y");
    declareClass("my class=3");
    return true;
  }();
  (void)declared;
}

class RandomTrees {
 public:
  // Trees of values that JSON has too have strings in UTF-8 as keys, and other strings in UTF-8.
  explicit RandomTrees(unsigned seed, bool forJson = false) : random_(seed), forJson_(forJson) {
    declareRandomClasses();
  }

  // A tree of up to so many levels.
  Node make(int levels) {
    int const kind = levels > 0 ? below(8) : 0;
    switch (kind) {
      case 5:
        return makeList(levels - 1);
      case 6:
        return levels > 1 ? makeMap(levels - 2) : makeAtom(lvArg(), 0);
      case 7:
        return makeObject(levels - 1);
      default:
        return makeAtom(makeValue(), 0);
    }
  }

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

 private:
  lvArg makeValue() {
    switch (below(4)) {
      case 0:
        return {};
      case 1:
        return lvToCell(static_cast<int>(random_()));
      case 2:
        return lvToCell(below(20) - 10);
      default:
        return lvToCell(makeText());
    }
  }

  // Bytes that need care are frequent, as are words.
  std::string makeText() {
    static char const* const pieces[] = {"a",
                                         "B",
                                         "_",
                                         "7",
                                         " ",
                                         "\\",
                                         "%",
                                         "\"",
                                         ":",
                                         "{",
                                         ",",
                                         "n",
                                         "t",
                                         "r",
                                         "0",
                                         "*",
                                         "#",
                                         "=",
                                         ")",
                                         "\x7f",
                                         "-",
                                         "\n",
                                         "\t",
                                         "\x01",
                                         "word",
                                         "\xc3\xa4",
                                         "\xe2\x82\xac",
                                         "\xf0\x9f\x98\x80"};
    std::string text;
    for (int left = below(6); left > 0; --left) {
      if (!forJson_ && below(8) == 0) {
        text += static_cast<char>(1 + below(255));
      } else {
        text += pieces[below(static_cast<int>(std::size(pieces)))];
      }
    }
    return text;
  }

  static Node makeContainer(Node::Kind kind) {
    Node node;
    node.kind = kind;
    return node;
  }

  Node makeList(int levels) {
    Node list = makeContainer(Node::List);
    for (int left = below(6); left > 0; --left) {
      list.parts.push_back(make(levels));
    }
    return list;
  }

  Node makeMap(int levels) {
    Node map = makeContainer(Node::Map);
    std::set<std::string> texts;
    for (int left = below(6); left > 0; --left) {
      Node value = make(levels);
      std::string const text = makeText();
      if (!isNil(value) && texts.insert(text).second) {
        map.parts.push_back(makeKey(text));
        map.parts.push_back(std::move(value));
      }
    }
    return map;
  }

  // Sometimes a list with the text, which is no other key.
  Node makeKey(std::string const& text) {
    Node key = makeAtom(lvToCell(text), 0);
    if (forJson_ || below(4) != 0) {
      return key;
    }
    Node list = makeContainer(Node::List);
    list.parts.push_back(std::move(key));
    return list;
  }

  Node makeObject(int levels) {
    Node object = makeContainer(Node::Object);
    bool const isNamed = below(2) == 0;
    object.value = lvString(isNamed ? "Named" : "my class");
    for (int left = isNamed ? 2 : 3; left > 0; --left) {
      object.parts.push_back(make(levels));
    }
    return object;
  }

  std::mt19937 random_;
  bool forJson_;
};

// Whether a value is what the tree says. Keys that are no atoms are looked for among the others of
// that kind.
inline bool stands(Node const& node, lvArg const& value);

inline bool standsInMap(Node const& key, Node const& wanted, lvHashMap const& map) {
  if (key.kind == Node::Atom) {
    return stands(wanted, map->get(key.value));
  }
  bool found = false;
  for (lvEntry const& entry : lvEntries(map)) {
    found = found || (stands(key, entry.key) && stands(wanted, entry.value));
  }
  return found;
}

inline bool standsInObject(Node const& node, lvArg const& value) {
  lvReferencable* const object = value.getReferencable();
  if (value.getType() != lvArg::ObjectType || object == nullptr ||
      node.value.equiv(object->getClassDesc()) == 0) {
    return false;
  }
  lvClass const described(lvtClassRegistry::getInstance()->getClass(node.value));
  for (std::size_t i = 0; i < node.parts.size(); ++i) {
    lvArg field;
    described->getFieldAt(field, *object, lvrClass::Fields, static_cast<int>(i));
    if (!stands(node.parts[i], field)) {
      return false;
    }
  }
  return static_cast<int>(node.parts.size()) == described->getNItems(lvrClass::Fields);
}

inline bool stands(Node const& node, lvArg const& value) {
  if (node.kind == Node::Object) {
    return standsInObject(node, value);
  }
  if (node.kind == Node::Atom) {
    return node.value.equiv(value) != 0;
  }
  if (node.kind == Node::List) {
    std::size_t count = 0;
    bool same = value.getType() == lvArg::ListType;
    for (lvArg const& item : lvItems(value)) {
      same = same && count < node.parts.size() && stands(node.parts[count], item);
      ++count;
    }
    return same && count == node.parts.size();
  }
  lvHashMap const map(value);
  bool same = value.getType() == lvArg::MapType &&
              2 * map->getSize() == static_cast<int>(node.parts.size());
  for (std::size_t i = 0; same && i < node.parts.size(); i += 2) {
    same = standsInMap(node.parts[i], node.parts[i + 1], map);
  }
  return same;
}
