// Making vectors and maps, and writing whole value trees down for comparison.
//
// A tree reads  nil  5  'text'  [1,'a']  {'k'=1,2=[]}. Bytes outside of printable ASCII, quotes and
// backslashes stand as \xHH. The entries of a map are sorted, so that two trees with the same
// content read the same.
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

inline std::string described(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::NilType:
      return "nil";
    case lvArg::IntType:
      return std::to_string(value.getInt());
    case lvArg::StringType:
      return describedText(textOf(value));
    case lvArg::MapType:
      return describedMap(*lvHashMap(value).getMap());
    case lvArg::ListType:
      return describedVector(*lvVector(value).getList());
    default:
      return "<tag " + std::to_string(value.getType()) + ">";
  }
}

}  // namespace test
