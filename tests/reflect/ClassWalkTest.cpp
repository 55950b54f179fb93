// Random walks of a few classes beside a slow model of their names, superclasses and tables.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::integer;
using test::kindOf;
using test::Words;
using test::WordSize;
using test::wordsPerEntry;
using Kind = lvrClass::OffsetTableType;

constexpr int Steps = 4000;
constexpr int StepsPerRound = 400;  // Then the walk goes on with new classes.
constexpr int Classes = 8;
constexpr int KindsAsked = 11;  // One more than there are.

// What the tables can hold is numbered: 0 is an entry that was never filled in.
constexpr int Members = 5;

void answer(lvArg& result, int number) { result.setInt(number); }

// Its fields hold their numbers, its methods answer theirs.
class Described : public lvReferencable {
 public:
  Described() {
    for (int i = 1; i < Members; ++i) {
      fields.at(static_cast<std::size_t>(i)).setInt(i);
    }
  }

  template <int Number>
  void method(lvArg& result, lvArg const& /*argument*/) {
    answer(result, Number);
  }
  template <int Number>
  void methodNArgs(lvArg& result, lvArg const* /*arguments*/, int /*count*/) {
    answer(result, Number);
  }

  std::array<lvArg, Members> fields;
};

template <int Number>
void function(lvArg& result, lvArg const* /*arguments*/, int /*count*/) {
  answer(result, Number);
}

bool isField(Kind kind) { return kind == lvrClass::Fields || kind == lvrClass::Fields6; }
bool isMethod(Kind kind) { return wordsPerEntry(kind) == 2; }
bool hasMethodsNArgs(Kind kind) { return kind == lvrClass::Methods8; }

template <class Pointer>
Words wordsOfPointer(Pointer pointer) {
  Words words(sizeof(pointer) / WordSize);
  std::memcpy(words.data(), &pointer, sizeof(pointer));
  return words;
}

Words fieldWords(std::size_t number) {
  static Described const sample;
  lvReferencable const& start = sample;
  return Words(1, reinterpret_cast<std::uintptr_t>(&sample.fields.at(number)) -
                      reinterpret_cast<std::uintptr_t>(&start));
}

template <int Number>
Words methodWords() {
  return wordsOfPointer(static_cast<lvrClass::Method>(&Described::method<Number>));
}
template <int Number>
Words methodNArgsWords() {
  return wordsOfPointer(static_cast<lvrClass::MethodNArgs>(&Described::methodNArgs<Number>));
}

// The words of all that a table of the kind can hold, by number.
std::vector<Words> const& membersOf(Kind kind) {
  static std::vector<Words> const fields{
      {0}, fieldWords(1), fieldWords(2), fieldWords(3), fieldWords(4)};
  static std::vector<Words> const methods{
      {0, 0}, methodWords<1>(), methodWords<2>(), methodWords<3>(), methodWords<4>()};
  static std::vector<Words> const methodsNArgs{{0, 0},
                                               methodNArgsWords<1>(),
                                               methodNArgsWords<2>(),
                                               methodNArgsWords<3>(),
                                               methodNArgsWords<4>()};
  static std::vector<Words> const functions{{0},
                                            wordsOfPointer(&function<1>),
                                            wordsOfPointer(&function<2>),
                                            wordsOfPointer(&function<3>),
                                            wordsOfPointer(&function<4>)};
  if (isField(kind)) {
    return fields;
  }
  if (isMethod(kind)) {
    return hasMethodsNArgs(kind) ? methodsNArgs : methods;
  }
  return functions;
}

Words const& encoded(Kind kind, int number) {
  return membersOf(kind).at(static_cast<std::size_t>(number));
}

using Numbers = std::vector<int>;
using Names = std::vector<char const*>;  // A name may be null.

std::array<char const*, 5> const namePool{"a", "b", "c", "a longer name", ""};

struct TableModel {
  Numbers entries;
  std::optional<std::map<std::string, int>> names;
};

struct ClassModel {
  int name = 0;         // 0 for none
  int superClass = -1;  // an index, -1 for none
  std::array<std::optional<TableModel>, lvrClass::TableCount> tables;
};

class ClassesModel {
 public:
  std::optional<TableModel>& table(int described, Kind kind) {
    return at(described).tables.at(kind);
  }
  bool has(int described, Kind kind) {
    return kind < lvrClass::TableCount && table(described, kind).has_value();
  }

  int setName(int described, int name) {
    bool const accepted = at(described).name == 0;
    at(described).name = accepted ? name : at(described).name;
    return accepted ? 0 : -1;
  }

  int setSuperClass(int described, int superClass) {
    bool const accepted = at(described).superClass < 0 && superClass >= 0;
    at(described).superClass = accepted ? superClass : at(described).superClass;
    return accepted ? 0 : -1;
  }

  // `base` may be null.
  int needTable(int described, Kind kind, int count, TableModel const* base) {
    if (has(described, kind)) {
      return 0;
    }
    if (kind >= lvrClass::TableCount || count < 0) {
      return -1;
    }
    TableModel made;
    made.entries.resize(static_cast<std::size_t>(count), 0);
    for (std::size_t i = 0; base != nullptr && i < base->entries.size(); ++i) {
      if (i < made.entries.size()) {
        made.entries[i] = base->entries[i];
      }
    }
    table(described, kind) = made;
    return 0;
  }

  int needNames(int described, Kind kind) {
    if (!has(described, kind)) {
      return -1;
    }
    if (!table(described, kind)->names) {
      table(described, kind)->names.emplace();
    }
    return 0;
  }

  int fill(int described, Kind kind, Numbers const& own) {
    if (kind >= lvrClass::TableCount || has(described, kind)) {
      return -1;
    }
    Numbers all;
    int above = at(described).superClass;
    for (int i = 0; i < Classes && above >= 0 && !has(above, kind); ++i) {
      above = at(above).superClass;
    }
    if (above >= 0 && has(above, kind)) {
      all = table(above, kind)->entries;
    }
    all.insert(all.end(), own.begin(), own.end());
    table(described, kind) = TableModel{all, {}};
    return 0;
  }

  int fillNamed(int described, Kind kind, Numbers const& own, Names const& names) {
    if (fill(described, kind, own) != 0) {
      return -1;
    }
    needNames(described, kind);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i] != nullptr) {
        (*table(described, kind)->names)[names[i]] = static_cast<int>(i);
      }
    }
    return 0;
  }

  int lookup(int described, Kind kind, char const* name) {
    if (!has(described, kind) || !table(described, kind)->names) {
      return -1;
    }
    auto const& names = *table(described, kind)->names;
    auto const found = names.find(name);
    return found != names.end() ? found->second : -1;
  }

  int count(int described, Kind kind) {
    return has(described, kind) ? static_cast<int>(table(described, kind)->entries.size()) : 0;
  }

  // The number of the entry; 0 if there is none.
  int entry(int described, Kind kind, int index) {
    bool const isThere = index >= 0 && index < count(described, kind);
    return isThere ? table(described, kind)->entries[static_cast<std::size_t>(index)] : 0;
  }

  ClassModel& at(int described) { return classes_.at(static_cast<std::size_t>(described)); }

 private:
  std::array<ClassModel, Classes> classes_;
};

class ClassWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  ClassWalk() : random(GetParam()) {}

  void startRound() {
    model = ClassesModel();
    for (lvrClass*& described : classes) {
      described = &test::keptClass();
    }
  }

  int anyBelow(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
  Kind anyKind() { return kindOf(static_cast<unsigned>(anyBelow(KindsAsked))); }
  lvrClass& real(int described) { return *classes.at(static_cast<std::size_t>(described)); }

  Numbers anyEntries() {
    Numbers numbers(static_cast<std::size_t>(anyBelow(4)));
    std::generate(numbers.begin(), numbers.end(), [this] { return anyBelow(Members); });
    return numbers;
  }
  Names anyNames(std::size_t count) {
    Names names(count);
    for (char const*& name : names) {
      auto const i = static_cast<std::size_t>(anyBelow(static_cast<int>(namePool.size()) + 1));
      name = i < namePool.size() ? namePool.at(i) : nullptr;
    }
    return names;
  }

  // The entries as a caller has them, with junk in the gaps.
  static std::vector<unsigned char> laidOut(Kind kind, Numbers const& numbers, std::size_t gap) {
    std::vector<unsigned char> bytes;
    for (int const number : numbers) {
      Words const& words = encoded(kind, number);
      auto const* const start = reinterpret_cast<unsigned char const*>(words.data());
      bytes.insert(bytes.end(), start, start + words.size() * WordSize);
      bytes.insert(bytes.end(), gap, 0xEE);
    }
    bytes.resize(bytes.size() + 1);  // An array of no entries is no null pointer.
    return bytes;
  }

  void nameIt(int described) {
    int const name = anyBelow(3);
    ASSERT_EQ(real(described).setClassName(name == 0 ? lvArg() : integer(name)),
              model.setName(described, name));
  }

  void deriveIt(int described) {
    int const superClass = anyBelow(Classes + 1) - 1;
    lvArg const cell = superClass < 0 ? integer(27) : lvArg(real(superClass));
    ASSERT_EQ(real(described).setSuperClass(cell), model.setSuperClass(described, superClass));
  }

  void needTable(int described) {
    Kind const kind = anyKind();
    int const count = anyBelow(6) - 1;
    int const other = anyBelow(Classes);
    Kind const otherKind = anyKind();
    // Numbers mean the same in tables of one sort only.
    bool const hasBase = model.has(other, otherKind) && areOfOneSort(kind, otherKind);
    ASSERT_EQ(real(described).needOffsetTable(
                  kind, count, hasBase ? test::tableOf(real(other), otherKind) : nullptr),
              model.needTable(described, kind, count,
                              hasBase ? &*model.table(other, otherKind) : nullptr));
  }

  static bool areOfOneSort(Kind a, Kind b) {
    return isField(a) == isField(b) && isMethod(a) == isMethod(b) &&
           hasMethodsNArgs(a) == hasMethodsNArgs(b);
  }

  void needNames(int described) {
    Kind const kind = anyKind();
    ASSERT_EQ(real(described).needNames(kind, anyBelow(6) - 1), model.needNames(described, kind));
  }

  void fillIt(int described) {
    Kind const kind = anyKind();
    Numbers const entries = anyEntries();
    int const gap = std::array<int, 5>{-1, 0, 1, 8, 13}.at(static_cast<std::size_t>(anyBelow(5)));
    std::size_t const width = wordsPerEntry(kind) * WordSize;
    auto const bytes = laidOut(kind, entries, gap == -1 ? width : static_cast<std::size_t>(gap));
    ASSERT_EQ(real(described).setDirectObjectOffsets(kind, static_cast<int>(entries.size()),
                                                     bytes.data(), gap),
              model.fill(described, kind, entries));
  }

  void fillNamed(int described) {
    Kind const kind = anyKind();
    Numbers const entries = anyEntries();
    Names const names = anyNames(entries.size());
    ASSERT_EQ(real(described).setDirectObjectNamedOffsets(
                  kind, static_cast<int>(entries.size()), laidOut(kind, entries, 0).data(),
                  entries.empty() ? namePool.data() : names.data()),
              model.fillNamed(described, kind, entries, names));
  }

  void fillInterleaved(int described) {
    Kind const kind = anyKind();
    Numbers const entries = anyEntries();
    Names const names = anyNames(entries.size());
    std::size_t const width = wordsPerEntry(kind) * WordSize;
    auto bytes = laidOut(kind, entries, width);
    for (std::size_t i = 0; i < names.size(); ++i) {
      std::memcpy(&bytes[(2 * i + 1) * width], &names[i], sizeof(names[i]));
    }
    ASSERT_EQ(real(described).setDirectObjectInterleavedNamedOffsets(
                  kind, static_cast<int>(entries.size()), bytes.data()),
              model.fillNamed(described, kind, entries, names));
  }

  void refuse(int described) {
    Kind const kind = anyKind();
    Words const words(8, 0);
    ASSERT_EQ(real(described).setDirectObjectOffsets(kind, 2, nullptr, 0), 0);
    ASSERT_EQ(real(described).setDirectObjectOffsets(kind, -1, words.data(), 0), -1);
    ASSERT_EQ(real(described).setDirectObjectOffsets(kind, 1, words.data(), -2), -1);
  }

  // Reads the field, or calls the method or function, at an index.
  int use(lvrClass& described, Kind kind, int index, lvArg& out) {
    if (isField(kind)) {
      return described.getFieldAt(out, object, kind, index);
    }
    if (isMethod(kind) && !hasMethodsNArgs(kind)) {
      return described.invokeMethod(object, out, lvArg(), kind, index);
    }
    return described.invokeMethodNArgs(object, out, nullptr, 0, kind, index);
  }

  void useAny(int described) {
    Kind const kind = anyKind();
    int const index = anyBelow(8) - 1;
    int const expected = model.entry(described, kind, index);
    lvArg out = integer(0);
    ASSERT_EQ(use(real(described), kind, index, out), expected == 0 ? -1 : 0);
    ASSERT_EQ(out.getInt(), expected);
    int const isWritten = isField(kind) && expected != 0 ? 0 : -1;
    ASSERT_EQ(real(described).setFieldAt(object, integer(expected), kind, index), isWritten);
  }

  void step() {
    touched = anyBelow(Classes);
    switch (anyBelow(10)) {
      case 0:
        return nameIt(touched);
      case 1:
        return deriveIt(touched);
      case 2:
        return needTable(touched);
      case 3:
        return needNames(touched);
      case 4:
        return fillIt(touched);
      case 5:
        return fillNamed(touched);
      case 6:
        return fillInterleaved(touched);
      case 7:
        return refuse(touched);
      default:
        return useAny(touched);
    }
  }

  void compareTable(int described, Kind kind) {
    ASSERT_EQ(test::tableOf(real(described), kind) != nullptr, model.has(described, kind));
    ASSERT_EQ(real(described).getNItems(kind), model.count(described, kind));
    Words expected;
    for (int i = 0; i < model.count(described, kind); ++i) {
      Words const& words = encoded(kind, model.entry(described, kind, i));
      expected.insert(expected.end(), words.begin(), words.end());
    }
    ASSERT_EQ(test::wordsOf(real(described), kind), expected) << "kind " << kind;
    for (std::size_t i = 0; i < namePool.size(); ++i) {
      ASSERT_EQ(real(described).localLookupIndex(kind, poolNames.at(i)),
                model.lookup(described, kind, namePool.at(i)))
          << "kind " << kind << ", name " << namePool.at(i);
    }
  }

  // Everything that can be seen of a class.
  void compare(int described) {
    lvArg out;
    real(described).getClassName(out);
    int const name = model.at(described).name;
    ASSERT_TRUE(out.eq(name == 0 ? lvArg() : integer(name)));
    real(described).getSuperClass(out);
    int const superClass = model.at(described).superClass;
    ASSERT_TRUE(out.eq(superClass < 0 ? lvArg() : lvArg(real(superClass))));
    for (int kind = 0; kind < KindsAsked; ++kind) {
      ASSERT_NO_FATAL_FAILURE(compareTable(described, kindOf(static_cast<unsigned>(kind))));
    }
  }

  void compareAll() {
    for (int i = 0; i < Classes; ++i) {
      ASSERT_NO_FATAL_FAILURE(compare(i));
    }
  }

  std::mt19937 random;
  ClassesModel model;
  std::array<lvrClass*, Classes> classes{};
  std::array<lvString, namePool.size()> const poolNames{
      lvString(namePool[0]), lvString(namePool[1]), lvString(namePool[2]), lvString(namePool[3]),
      lvString(namePool[4])};
  Described object;
  int touched = 0;
};

TEST_P(ClassWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    if (i % StepsPerRound == 0) {
      startRound();
    }
    ASSERT_NO_FATAL_FAILURE(step());
    ASSERT_NO_FATAL_FAILURE(compare(touched));
    if (i % StepsPerRound == StepsPerRound - 1) {
      ASSERT_NO_FATAL_FAILURE(compareAll());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ClassWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
