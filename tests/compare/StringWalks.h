// String objects and handles on interned strings: what is set, released and finalized by hand, and
// the chains of the table.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "compare/Walk.h"
#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"
#include "support/ValueTrees.h"

namespace compared {

// Short ones and long ones, such that fit one block with their string and such that do not, of one
// hash, with NULs, and such that are numbers.
inline std::string anyText(Walk& walk) {
  switch (walk.choices.below(8)) {
    case 0:
      return "";
    case 1:
      return std::string(walk.choices.below(140U), 'a');
    case 2:
      return "Shared " + std::to_string(1000 + walk.choices.below(50)) + " and the rest is one";
    case 3:
      return std::string("nul\0", 4) + std::to_string(walk.choices.below(9));
    case 4:
      return "0x" + std::to_string(walk.choices.below(9999));
    case 5:
      return walk.choices.oneIn(20) ? std::string(65530 + walk.choices.below(10U), 'b') : "true";
    default:
      return std::to_string(walk.choices.below(100));
  }
}

inline std::string shortened(std::string const& text) {
  return test::describedText(text.size() < 60 ? text : text.substr(0, 20)) + "*" +
         std::to_string(text.size());
}

// ---- Objects -----------------------------------------------------------------------------------

// Texts that outlive the strings that borrow them.
inline std::vector<std::string> const& lentTexts() {
  static std::vector<std::string> const texts = {"lent", "lent and long, so that all is not mixed"};
  return texts;
}

inline lvArg anyValue(Walk& walk, lvArg const& other) {
  switch (walk.choices.below(5)) {
    case 0:
      return lvArg();
    case 1:
      return test::integer(walk.choices.below(6000) - 3000);
    case 2:
      return test::pointer(walk.choices.below(99999U));
    case 3:
      return other;
    default:
      return *new lvReferencable;
  }
}

inline std::string change(Walk& walk, lvrString& string, lvArg const& other) {
  std::string const text = anyText(walk);
  switch (walk.choices.below(10)) {
    case 0:
      return "release " + std::to_string(string.releaseData());
    case 1:
      return "finalize " + std::to_string(string.finalize());
    case 2:
      return "from " + std::to_string(string.setFrom(anyValue(walk, other)));
    case 3: {
      std::string const& lent = walk.choices.pick(lentTexts());
      int const length = walk.choices.oneIn(2) ? -1 : walk.choices.below(5);
      return "lent " +
             std::to_string(string.setStringData(lent.c_str(), length, lvrString::Borrow));
    }
    case 4: {  // Its own text, or its end.
      char const* const own = string.getText() != nullptr ? string.getText() : "none";
      int const mode = walk.choices.below(2) * lvrString::CopyAndOwn;
      return "own " + std::to_string(string.setStringData(own, -1, mode));
    }
    case 5: {
      char const* pieces[] = {text.c_str(), "+", "tail"};
      int lengths[] = {static_cast<int>(text.size()), -1, walk.choices.below(4)};
      string.releaseData();
      int const status = string.setStringDataFast(3, pieces, lengths, lvrString::CopyAndOwn);
      return "joined " + std::to_string(status) + " " + std::to_string(lengths[1]);
    }
    default:
      return "set " + std::to_string(string.setStringData(
                          text.data(), static_cast<int>(text.size()), 2 + walk.choices.below(2)));
  }
}

inline std::string answers(lvrString const& string, lvrString const& other) {
  return shortened(test::bytesOf(string)) + " hash " + std::to_string(string.hashCode()) +
         " flags " + std::to_string(test::StringFields::flags(string)) + " integer " +
         std::to_string(string.getInteger()) + " equiv " + std::to_string(string.equiv(other)) +
         " order " + std::to_string(test::signOf(string.compareTo(other)));
}

inline void walkObjects(unsigned seed) {
  constexpr int steps = 4000;
  Walk walk("string objects", seed);
  std::vector<std::unique_ptr<test::HeldString>> strings(12);
  for (auto& string : strings) {
    string = std::make_unique<test::HeldString>();
  }
  for (int i = 0; i < steps; ++i) {
    test::HeldString const& string = *walk.choices.pick(strings);
    test::HeldString const& other = *walk.choices.pick(strings);
    std::string const changed = change(walk, *string, other.cell);
    walk.step(changed + " " + answers(*string, *other));
  }
}

// ---- Handles -----------------------------------------------------------------------------------

inline lvString anyHandle(Walk& walk, lvString const& a, lvString const& b) {
  std::string const text = anyText(walk);
  switch (walk.choices.below(12)) {
    case 0:
      return a + b;
    case 1:
      return a.getLeft(walk.choices.below(30) - 1);
    case 2:
      return a.getMid(walk.choices.below(20) - 2, walk.choices.below(20) - 1);
    case 3:
      return a.getRight(walk.choices.below(30) - 1);
    case 4:
      return {walk.choices.below(200)};
    case 5:
      return lvString();
    case 6:
      return lvString(test::string(text));
    default:
      return {static_cast<int>(text.size()), text.data(), lvrString::CopyAndOwnEmpty};
  }
}

inline std::string chains() {
  std::string all;
  for (test::Entry const* const entry : test::allEntries()) {
    all += shortened(test::bytesOf(*entry)) + ":" + std::to_string(test::countOf(*entry)) + " ";
  }
  return all;
}

inline void walkHandles(unsigned seed) {
  constexpr int steps = 6000;
  Walk walk("handles", seed);
  std::vector<lvString> handles(600);
  for (int i = 0; i < steps; ++i) {
    lvString& handle = handles[walk.choices.below(handles.size())];
    handle = anyHandle(walk, walk.choices.pick(handles), walk.choices.pick(handles));
    lvString const& other = walk.choices.pick(handles);
    walk.step(shortened(test::textOf(handle)) + " held " +
              std::to_string(handle.isNil() ? 0 : test::countOf(handle)) + " order " +
              std::to_string(test::signOf(handle.compareTo(other))) + " find " +
              std::to_string(handle.find('3')));
    if (!handle.isNil() && walk.choices.oneIn(200)) {
      auto& entry = static_cast<lvrString&>(*handle.getReferencable());
      walk.step("by hand " + change(walk, entry, other));
      handle = lvString();
    }
    if (i % 500 == 0) {
      walk.step("table " + chains());
    }
  }
}

inline void walkStrings() {
  walkObjects(1);
  walkObjects(2);
  walkHandles(1);
}

}  // namespace compared
