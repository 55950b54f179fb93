// Making vectors and maps, and writing whole value trees down for comparison.
//
// A tree reads  nil  5  'text'  [1,'a']  {'k'=1,2=[]}  *Point{3,4}. Bytes outside of printable
// ASCII, quotes and backslashes stand as \xHH. The entries of a map are sorted, so that two trees
// with the same content read the same.
#pragma once

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvMapEnumerator.h"
#include "tarselvalues/containers/lvVector.h"

namespace test {

// An object that is written down as its class key and its fields.
class FieldObject : public lvReferencable {
 public:
  virtual std::vector<lvArg*> cells() = 0;
  std::vector<lvArg> fields() const {
    std::vector<lvArg> copies;
    for (lvArg const* const cell : const_cast<FieldObject*>(this)->cells()) {
      copies.push_back(*cell);
    }
    return copies;
  }
};

inline lvArg vectorOf(std::initializer_list<lvArg> elements) {
  lvVector vector(static_cast<int>(elements.size()));
  for (lvArg const& element : elements) {
    vector->insert(element, -1);
  }
  return vector;
}

inline lvArg mapOf(std::initializer_list<std::pair<lvArg, lvArg>> entries) {
  lvHashMap map(7);
  for (auto const& entry : entries) {
    map->put(entry.first, entry.second);
  }
  return map;
}

inline std::string describedText(std::string const& bytes) {
  std::string text = "'";
  for (char const c : bytes) {
    auto const code = static_cast<unsigned char>(c);
    if (code >= 32 && code < 127 && c != '\'' && c != '\\') {
      text += c;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof(escape), "\\x%02X", unsigned{code});
      text += escape;
    }
  }
  return text + "'";
}

inline std::string joined(std::vector<std::string> const& pieces) {
  std::string all;
  for (std::string const& piece : pieces) {
    all += (&piece == &pieces.front() ? "" : ",") + piece;
  }
  return all;
}

inline std::string describedEntries(std::vector<std::string> entries) {
  std::sort(entries.begin(), entries.end());
  return "{" + joined(entries) + "}";
}

inline std::string described(lvArg const& value);

// What has no form of its own: a stack, a sorted list, a class.
inline std::string describedTag(lvArg const& value) {
  return "<tag " + std::to_string(value.getType()) + ">";
}

inline std::string describedVector(lviList const& list) {
  std::vector<std::string> elements;
  for (int i = 0; i < list.getSize(); ++i) {
    elements.push_back(described(list.at(i)));
  }
  return "[" + joined(elements) + "]";
}

inline std::string describedMap(lviMap const& map) {
  std::vector<std::string> entries;
  for (lvMapEnumerator entry(map); entry->next();) {
    entries.push_back(described(entry->getKey()) + "=" + described(entry->getValue()));
  }
  return describedEntries(std::move(entries));
}

inline std::string describedObject(FieldObject const& object) {
  std::vector<std::string> fields;
  for (lvArg const& field : object.fields()) {
    fields.push_back(described(field));
  }
  return "*" + textOf(object.getClassDesc()) + "{" + joined(fields) + "}";
}

inline std::string described(lvArg const& value) {
  auto const* const map = dynamic_cast<lviMap const*>(value.getReferencable());
  auto const* const list = dynamic_cast<lviList const*>(value.getReferencable());
  auto const* const object = dynamic_cast<FieldObject const*>(value.getReferencable());
  switch (value.getType()) {
    case lvArg::NilType:
      return "nil";
    case lvArg::IntType:
      return std::to_string(value.getInt());
    case lvArg::StringType:
      return describedText(textOf(value));
    case lvArg::MapType:
      return map != nullptr ? describedMap(*map) : describedTag(value);
    case lvArg::ListType:
      return list != nullptr ? describedVector(*list) : describedTag(value);
    default:
      return object != nullptr ? describedObject(*object) : describedTag(value);
  }
}

}  // namespace test
