// Any text to a value, to a text, and to a value again: what must hold whatever the text is.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "support/FieldObjects.h"
#include "support/SinkRuns.h"
#include "support/TextReading.h"
#include "support/TextWriter.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/serial/lvTools.h"

namespace test {

// The first item of a text; nil if there is none.
inline lvArg readFrom(std::string const& text) {
  ExactText const exact(text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg value;
  HeldSerializer()->deserializeItemInto(value, parser);
  EXPECT_LE(parser.getParseOffset(), exact.size());
  return value;
}

// As much of the text of a value as the writer puts into so many bytes.
inline std::string writtenInto(std::size_t capacity, lvArg const& value) {
  TextWriter writer(static_cast<int>(capacity));
  HeldSerializer()->serializeAtomInto(writer, value);
  EXPECT_TRUE(writer.holdsItsBlock());
  EXPECT_LE(static_cast<std::size_t>(writer.getStringLength()), capacity);
  return writer.text();
}

// ---- What a value is made of -------------------------------------------------------------------

struct Shape {
  int levels = 0;         // as the writer opens them
  bool comesBack = true;  // whether all that is in it is read as it was written
};

// What a value holds, and how many levels the writer opens for that.
struct Contents {
  std::vector<lvArg> values;
  int levels = 0;
  bool comesBack = true;
};

inline Contents contentsOf(lvrVector const& vector) {
  Contents held{{}, 1, true};
  for (int i = 0; i < vector.getSize(); ++i) {
    held.values.push_back(vector.at(i));
  }
  return held;
}

// An empty map is read as a vector.
inline Contents contentsOf(lviMap const& map) {
  Contents held{{}, 2, map.getSize() > 0};
  for (lvMapEnumerator entry(map); entry->next();) {
    held.values.push_back(entry->getKey());
    held.values.push_back(entry->getValue());
  }
  return held;
}

inline Contents contentsOf(FieldObject const& object) {
  auto const facts = classFacts().find(textOf(object.getClassDesc()));
  return {object.fields(), 1, facts != classFacts().end() && facts->second.isOrdinary};
}

// A string without text is read as an empty one, and one with a NUL up to there.
inline bool stringComesBack(lvArg const& string) {
  int length = 0;
  char const* const bytes = lvValue(string).getString(&length);
  return bytes != nullptr && std::memchr(bytes, '\0', static_cast<std::size_t>(length)) == nullptr;
}

inline Contents contentsOf(lvArg const& value) {
  lvReferencable const* const object = value.getReferencable();
  if (auto const* const vector = dynamic_cast<lvrVector const*>(object)) {
    return contentsOf(*vector);
  }
  if (auto const* const map = dynamic_cast<lviMap const*>(object)) {
    return contentsOf(*map);
  }
  if (auto const* const known = dynamic_cast<FieldObject const*>(object)) {
    return contentsOf(*known);
  }
  bool const isString = value.getType() == lvArg::StringType;
  return {{}, 0, isString ? stringComesBack(value) : object == nullptr};
}

// Without recursion, since a text may be nested as deep as it is long.
inline Shape shapeOf(lvArg const& whole) {
  Shape shape;
  std::vector<std::pair<lvArg, int>> rest = {{whole, 0}};
  while (!rest.empty()) {
    auto const [value, around] = std::move(rest.back());
    rest.pop_back();
    Contents const held = contentsOf(value);
    shape.levels = std::max(shape.levels, around + held.levels);
    shape.comesBack = shape.comesBack && held.comesBack;
    for (lvArg const& each : held.values) {
      rest.emplace_back(each, around + held.levels);
    }
  }
  shape.comesBack = shape.comesBack && shape.levels <= lvtStringArgDest::MaxDepth;
  return shape;
}

// ---- What must hold ----------------------------------------------------------------------------

// No text of a value is so much longer than the text that the value was read from.
inline std::size_t roomFor(std::string const& text) { return 16 * text.size() + 100; }

// Writes a value that was read from `text`, also where there is too little room, and reads it.
inline void expectToComeBack(std::string const& text, lvArg const& value) {
  std::string const written = writtenInto(roomFor(text), value);
  writtenInto(text.size(), value);
  lvArg const back = readFrom(written);
  if (shapeOf(value).comesBack && written.find('\\') == std::string::npos) {
    EXPECT_EQ(described(back), described(value));
  }
}

// The longest text that the conversion function yields, and one that it does not cut for sure.
inline constexpr std::size_t LongestConverted = 4089;
inline constexpr std::size_t SurelyConverted = 4000;

// Reads and writes once more, with the functions that do it in one call.
inline void expectTheSameByTheConversionFunctions(std::string const& text, lvArg const& value) {
  lvString const whole(static_cast<int>(text.size()), text.data(), 2);
  int consumed = -1;
  lvArg const converted = lvToolsFromString(whole, consumed);
  EXPECT_GE(consumed, 0);
  EXPECT_LE(consumed, static_cast<int>(text.size()));
  if (shapeOf(value).levels <= lvtStringArgDest::MaxDepth) {
    EXPECT_EQ(described(converted), described(value));
  }
  std::string const written = writtenInto(roomFor(text), value);
  std::string const back = textOf(lvToolsToString(value));
  EXPECT_LE(back.size(), LongestConverted);
  if (written.size() <= SurelyConverted) {
    EXPECT_EQ(back, written);
  }
}

}  // namespace test
