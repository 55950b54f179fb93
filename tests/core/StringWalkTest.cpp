// Strings beside a slow model of them, through random steps.

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstddef>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using namespace std::string_literals;
using test::HeldString;
using test::ModelText;

// Short texts of few bytes, so that equal ones, prefixes and equal hashes are common; now and then
// a long one that differs from others in one byte only.
class Dice {
 public:
  explicit Dice(unsigned seed) : random(seed) {}

  int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

  std::string text() {
    static std::string const bytes = "ab \t#TtrueFalsx$0159-\n\xFF\0"s;
    if (below(4) == 0) {
      std::string text(static_cast<std::size_t>(16 + below(6)), 'a');
      text[static_cast<std::size_t>(below(static_cast<int>(text.size())))] = 'b';
      return text;
    }
    std::string text;
    for (int length = below(6); length > 0; --length) {
      text += bytes[static_cast<std::size_t>(below(static_cast<int>(bytes.size())))];
    }
    return below(3) == 0 ? prefix() + text : text;
  }

  int number() {
    int const small[] = {-2049, -2048, -1, 0, 1, 2047, 2048, INT_MIN, INT_MAX};
    return small[below(9)];
  }

 private:
  std::string prefix() {
    char const* const prefixes[] = {"0x", "$", "tru", "fals", "#", " ", "12", "99999999999"};
    return prefixes[below(8)];
  }

  std::mt19937 random;
};

class Walk : public ::testing::TestWithParam<unsigned> {
 protected:
  static constexpr int Steps = 2500;

  Dice dice{GetParam()};
};

using StringObjectWalk = Walk;
using InternedStringWalk = Walk;

INSTANTIATE_TEST_SUITE_P(Seeds, StringObjectWalk, ::testing::Values(1U, 2U, 3U));

// A string object and what it should be.
struct Modelled {
  void set(ModelText const& newText) {
    text = newText;
    cached.reset();
  }

  int integer() const { return cached ? *cached : test::modelInteger(text); }

  HeldString string;
  ModelText text;
  std::optional<int> cached;
};

// Sets by any mode; returns what the text should be then.
ModelText setAnyhow(lvrString& string, Dice& dice) {
  static std::set<std::string> lasting;  // What is borrowed must stay.
  std::string const text = dice.text();
  int const length = static_cast<int>(text.size());
  int const mode = std::array<int, 3>{0, 2, 3}[static_cast<std::size_t>(dice.below(3))];
  bool const measured = dice.below(3) == 0;
  std::string const& kept = *lasting.insert(text).first;
  std::string const expected = measured ? test::visible(text) : text;
  EXPECT_EQ(string.setStringData(kept.c_str(), measured ? -1 : length, mode), 0);
  return expected.empty() && mode != 3 ? ModelText() : ModelText(expected);
}

// Joins three texts; returns what the text should be then.
ModelText joinAnyhow(lvrString& string, Dice& dice) {
  std::vector<std::string> const texts = {dice.text(), dice.text(), dice.text()};
  char const* pieces[3];
  int lengths[3];
  std::string expected;
  for (std::size_t i = 0; i < 3; ++i) {
    bool const measured = dice.below(2) == 0;
    pieces[i] = texts[i].c_str();
    lengths[i] = measured ? -1 : static_cast<int>(texts[i].size());
    expected += measured ? test::visible(texts[i]) : texts[i];
  }
  string.setStringData(nullptr, 0, lvrString::Borrow);
  EXPECT_EQ(string.setStringDataFast(3, pieces, lengths, lvrString::CopyAndOwn), 0);
  return expected.empty() ? ModelText() : ModelText(expected);
}

void expectAlike(Modelled const& a, Modelled const& b) {
  lvrString const& string = *a.string;
  EXPECT_EQ(string.getText() != nullptr, a.text.has_value());
  EXPECT_EQ(test::bytesOf(string), a.text.value_or("<no text>"));
  EXPECT_EQ(string.getInteger(), a.integer());
  EXPECT_EQ(string.hashCode(), test::modelHash(a.text.value_or("")));
  EXPECT_EQ(test::signOf(string.compareTo(*b.string)), test::modelCompare(a.text, b.text));
  EXPECT_EQ(string.equiv(*b.string), test::modelEquiv(a.text, b.text));
}

void step(Modelled& changed, Modelled const& other, Dice& dice) {
  lvrString& string = *changed.string;
  switch (dice.below(5)) {
    case 0:
    case 1:
      changed.set(setAnyhow(string, dice));
      break;
    case 2:
      changed.set(joinAnyhow(string, dice));
      break;
    case 3: {
      int const number = dice.number();
      EXPECT_EQ(string.setFrom(test::integer(number)), 0);
      changed.set(std::to_string(number));
      if (number >= -2048 && number <= 2047) {
        changed.cached = number;
      }
      break;
    }
    default:
      EXPECT_EQ(string.setFrom(other.string.cell), 0);
      if (&other != &changed) {
        changed.set(other.text.value_or(""));
      }
      break;
  }
}

TEST_P(StringObjectWalk, AgreesWithTheModel) {
  std::array<Modelled, 3> strings;
  for (int i = 0; i < Steps && !HasFailure(); ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    Modelled& changed = strings[static_cast<std::size_t>(dice.below(3))];
    Modelled const& other = strings[static_cast<std::size_t>(dice.below(3))];
    step(changed, other, dice);
    for (Modelled const& a : strings) {
      expectAlike(a, changed);
      expectAlike(changed, a);
    }
  }
}

// ---- Handles -----------------------------------------------------------------------------------

INSTANTIATE_TEST_SUITE_P(Seeds, InternedStringWalk, ::testing::Values(4U, 5U, 6U));

// A handle, and its text if it has one.
struct ModelledHandle {
  lvString handle;
  ModelText text;
};

std::string bytes(ModelText const& text) { return text.value_or(""); }

ModelText modelConcat(ModelText const& a, ModelText const& b) {
  if (!a || !b) {
    return a ? a : b ? b : ModelText("");
  }
  return b->empty() || b->front() == '\0' ? a : ModelText(*a + *b);
}

ModelText modelLeft(ModelText const& a, int n) {
  return n < 0 || n >= static_cast<int>(bytes(a).size())
             ? a
             : ModelText(a->substr(0, static_cast<std::size_t>(n)));
}

ModelText modelMid(ModelText const& a, int start, int count) {
  std::string const text = bytes(a);
  std::size_t const first = start < 0 ? 0 : static_cast<std::size_t>(start);
  if (first >= text.size() || count < -1) {
    return "";
  }
  return text.substr(first, count == -1 ? std::string::npos : static_cast<std::size_t>(count));
}

ModelText modelRight(ModelText const& a, int n) {
  int const length = static_cast<int>(bytes(a).size());
  if (n < 0 || n == length) {
    return a;
  }
  return n > length ? bytes(a) : bytes(a).substr(static_cast<std::size_t>(length - n));
}

void stepHandle(ModelledHandle& changed, ModelledHandle const& other, Dice& dice) {
  int const n = dice.below(9) - 2;
  int const m = dice.below(9) - 2;
  switch (dice.below(8)) {
    case 0: {
      std::string const text = dice.text();
      int const mode = 2 + dice.below(2);
      changed.handle = lvString(static_cast<int>(text.size()), text.data(), mode);
      changed.text = text;
      break;
    }
    case 1: {
      std::string const text = test::visible(dice.text());
      changed.handle += text.c_str();
      changed.text = text.empty() ? changed.text : ModelText(bytes(changed.text) + text);
      break;
    }
    case 2:
      changed.text = modelConcat(changed.text, other.text);
      changed.handle += other.handle;
      break;
    case 3:
      changed.handle = other.handle.getLeft(n);
      changed.text = modelLeft(other.text, n);
      break;
    case 4:
      changed.handle = other.handle.getMid(n, m);
      changed.text = modelMid(other.text, n, m);
      break;
    case 5:
      changed.handle = other.handle.getRight(n);
      changed.text = modelRight(other.text, n);
      break;
    case 6:
      changed.handle = lvString();
      changed.text.reset();
      break;
    default: {
      std::string const text = dice.text();
      changed.handle = lvString(test::string(text));
      changed.text = text;
      break;
    }
  }
  if (bytes(changed.text).size() > 200) {
    changed = ModelledHandle();
  }
}

int modelIndex(ModelText const& text, std::size_t found) {
  return text && found != std::string::npos ? static_cast<int>(found) : -1;
}

void expectAlike(ModelledHandle const& a, ModelledHandle const& b) {
  lvString const& handle = a.handle;
  std::string const text = bytes(a.text);
  ASSERT_EQ(handle.isNil(), !a.text.has_value());
  EXPECT_EQ(handle.length(), static_cast<int>(text.size()));
  EXPECT_EQ(std::string(handle, text.size()), text);
  EXPECT_EQ(handle.getReferencable() == b.handle.getReferencable(), a.text == b.text);
  EXPECT_EQ(handle.find('a'), modelIndex(a.text, test::visible(text).find('a')));
  EXPECT_EQ(handle.findRev('a'), modelIndex(a.text, test::visible(text).rfind('a')));
  EXPECT_EQ(handle.find("ab"), modelIndex(a.text, test::visible(text).find("ab")));
  if (a.text && b.text) {
    EXPECT_EQ(test::signOf(handle.compareTo(b.handle)), test::modelCompare(a.text, b.text));
    EXPECT_EQ(test::signOf(handle.compareTo(text.c_str())), 0);
  }
  for (int i = 0; i < handle.length(); ++i) {
    ASSERT_EQ(handle[i], static_cast<int>(test::byteAt(text, static_cast<std::size_t>(i))));
  }
}

TEST_P(InternedStringWalk, AgreesWithTheModelAndLeavesTheTableWhereItBegan) {
  std::size_t const before = test::entryCount();
  {
    std::array<ModelledHandle, 4> handles;
    for (int i = 0; i < Steps && !HasFailure(); ++i) {
      SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
      ModelledHandle& changed = handles[static_cast<std::size_t>(dice.below(4))];
      ModelledHandle const other = handles[static_cast<std::size_t>(dice.below(4))];
      stepHandle(changed, other, dice);
      for (ModelledHandle const& a : handles) {
        expectAlike(a, changed);
        expectAlike(changed, a);
      }
    }
  }
  EXPECT_EQ(test::entryCount(), before);
}

}  // namespace
