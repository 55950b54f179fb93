// Every operation of cells, strings and values, at each of its allocations out of memory.

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>

#include "support/Cells.h"
#include "support/FailLoop.h"
#include "support/Nested.h"
#include "support/Objects.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"
#include "tarselvalues/core/lvVersion.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::brief;
using test::bytesOf;
using test::countOf;
using test::exhaust;
using test::HeldString;
using test::integer;
using test::NeedsNone;
using test::Nothing;
using test::string;
using test::Throws;
using test::ThrowsThenCopes;

constexpr int CopyAndOwn = lvrString::CopyAndOwn;
constexpr char NoMemory[] = "-12";

// A cell, and how many hold what is in it.
std::string heldBy(lvArg const& cell) {
  lvReferencable const* const object = cell.getReferencable();
  return brief(cell) + (object != nullptr ? " held " + std::to_string(countOf(*object)) : "") +
         "; ";
}

// ---- Cells -------------------------------------------------------------------------------------

struct Cells {
  std::string shown() const { return heldBy(cell) + heldBy(text) + heldBy(number); }

  lvArg text = string("text");
  lvArg number = integer(5);
  lvArg cell = string("old");
};

TEST(ArgOutOfMemory, NeedsNoMemoryAtAll) {
  exhaust<Cells>("lvArg", "assign, setNil, operator=", NeedsNone, [](Cells& with) {
    with.cell.assign(with.text);
    with.cell.setNil();
    with.cell = with.number;
    with.cell = with.text;
  });
  exhaust<Cells>("lvArg", "assignFast, setReferencableFast, releaseData", NeedsNone,
                 [](Cells& with) {
                   with.cell.releaseData();
                   with.cell.assignFast(with.text);
                   with.cell.releaseData();
                   with.cell.setReferencableFast(*with.text.getReferencable());
                   with.cell.releaseData();
                   with.cell.setReferencableFast(*with.text.getReferencable(), lvArg::ObjectType);
                 });
  exhaust<Cells>("lvArg", "setInt, setPointer, setReferencable, exchange, lvArg", NeedsNone,
                 [](Cells& with) {
                   lvArg copy(with.cell);
                   lvArg const nil('\0', 0, 0);
                   with.cell.setInt(7);
                   with.cell.setPointer(&with);
                   with.cell.setReferencable(*with.text.getReferencable());
                   with.cell.exchange(copy);
                   return lvArg(*with.text.getReferencable());
                 });
  exhaust<Cells>("lvArg", "eq, equiv, compareTo, hashCode", NeedsNone, [](Cells& with) {
    return static_cast<unsigned>(with.cell.eq(with.text)) +
           static_cast<unsigned>(with.cell.equiv(with.text)) +
           (with.cell.compareTo(with.text) < 0 ? 1U : 0U) + with.cell.hashCode();
  });
}

// ---- Counted objects ---------------------------------------------------------------------------

TEST(ReferencableOutOfMemory, MakesItsClassKeyWhenThereIsMemoryAgain) {
  ASSERT_EQ(test::entriesWith("Referencable"), 0) << "no other test may ask for it";
  lvReferencable const object;
  EXPECT_TRUE(test::failsAfter(0, [&] { object.getClassDesc(); }));
  EXPECT_EQ(test::entriesWith("Referencable"), 0);
  EXPECT_STREQ(object.getClassDesc(), "Referencable");
  exhaust<Nothing>("lvReferencable", "getClassDesc, getStaticClassDesc", NeedsNone, [](Nothing&) {
    return lvReferencable().getClassDesc().eq(lvReferencable::getStaticClassDesc());
  });
}

struct Objects {
  std::string shown() const { return heldBy(object); }

  lvArg object = *new lvReferencable;
};

TEST(ReferencableOutOfMemory, NeedsNoMemoryOnceMade) {
  exhaust<Objects>("lvReferencable", "lvReferencable", Throws,
                   [](Objects& with) { with.object = lvArg(*new lvReferencable); });
  exhaust<Objects>("lvReferencable", "__removeRef", NeedsNone, [](Objects& with) {
    tarselvalues::takeReference(*with.object.getReferencable());
    return with.object.getReferencable()->__removeRef();
  });
  exhaust<Objects>("lvReferencable", "__removeRef", NeedsNone,
                   [](Objects& with) { with.object = integer(1); });
  exhaust<Objects>("lvReferencable", "equiv, hashCode, compareTo, getValue, finalize", NeedsNone,
                   [](Objects& with) {
                     lvReferencable& object = *with.object.getReferencable();
                     object.finalize();
                     object.getValue();
                     return object.equiv(object) + object.compareTo(object) +
                            static_cast<int>(object.hashCode());
                   });
  exhaust<Nothing>("lvReferencable", "__mark, __hook, __makeImmortal", NeedsNone, [](Nothing&) {
    lvReferencable object;
    object.__makeImmortal();
    return object.__mark() + object.__hook();
  });
}

// ---- Releasing ---------------------------------------------------------------------------------

constexpr test::Wrap AllWraps[] = {test::inVector,   test::inMap,        test::inTupleSet,
                                   test::inStack,    test::inLinkedList, test::inSortedList,
                                   test::inMapAsKey, test::inLink};

// Containers of all kinds, one in the other, around an object that tells when it goes.
struct DeepValue {
  static constexpr std::size_t Depth = 1000;

  DeepValue() : innermost(*new test::Probe(log)) {
    value = test::inVector(innermost);
    innermost.setNil();
    for (std::size_t i = 0; i < Depth; ++i) {
      value = AllWraps[i % std::size(AllWraps)](value);
    }
  }
  std::string shown() const { return std::to_string(log.destroyed); }

  test::Probe::Log log;
  lvArg innermost;
  lvArg value;
};

TEST(ReleaseOutOfMemory, NeedsNoMemoryAtAnyDepth) {
  exhaust<DeepValue>("lvArg", "setNil", NeedsNone, [](DeepValue& with) {
    with.value.setNil();
    return with.log.destroyed;
  });
  exhaust<DeepValue>("lvArg", "releaseData", NeedsNone, [](DeepValue& with) {
    with.value.releaseData();
    return with.log.destroyed;
  });
}

TEST(ReleaseOutOfMemory, NeedsNoMemoryForInternedTexts) {
  struct Names {
    std::string shown() const { return std::to_string(test::entriesWith("a name of one holder")); }
    lvString name{"a name of one holder"};
  };
  exhaust<Names>("lvString::StringEntry", "finalize", NeedsNone,
                 [](Names& with) { with.name.setNil(); });
}

// ---- String objects ----------------------------------------------------------------------------

std::string shownString(lvrString const& string) {
  return bytesOf(string) + " " + std::to_string(test::flagsOf(string)) + " " +
         std::to_string(string.getInteger()) + "; ";
}

struct NewString {
  std::string shown() const { return shownString(*string); }

  HeldString string;
};

// A string whose caches are both filled.
struct Strings {
  Strings() {
    string->setFrom(integer(7));
    string->hashCode();
  }
  std::string shown() const { return shownString(*string) + heldBy(other); }

  HeldString string;
  lvArg other = test::string("a source");
};

TEST(StringObjectOutOfMemory, KeepsItsTextInEveryOperation) {
  exhaust<Nothing>("lvrString", "defaultCtorMethod, lvrString", Throws,
                   [](Nothing&) { return lvArg(*lvrString::defaultCtorMethod()); });
  exhaust<Strings>("lvrString", "setStringData", NoMemory, [](Strings& with) {
    return with.string->setStringData("a new text", -1, CopyAndOwn);
  });
  exhaust<Strings>("lvrString", "setStringData", NoMemory, [](Strings& with) {
    return with.string->setStringData(with.string->getText(), 1, lvrString::Borrow);
  });
  exhaust<NewString>("lvrString", "setStringDataFast", NoMemory, [](NewString& with) {
    return with.string->setStringDataFast("a new text", -1, CopyAndOwn);
  });
  exhaust<NewString>("lvrString", "setStringDataFast", NoMemory, [](NewString& with) {
    char const* pieces[] = {"two", "pieces"};
    return with.string->setStringDataFast(2, pieces, nullptr, CopyAndOwn);
  });
  exhaust<Strings>("lvrString", "setFrom", NoMemory,
                   [](Strings& with) { return with.string->setFrom(integer(-12)); });
  exhaust<Strings>("lvrString", "setFrom", NoMemory,
                   [](Strings& with) { return with.string->setFrom(test::pointer(0x1234)); });
  exhaust<Strings>("lvrString", "setFrom", NoMemory,
                   [](Strings& with) { return with.string->setFrom(with.other); });
}

TEST(StringObjectOutOfMemory, NeedsNoMemoryToAskOrToForget) {
  exhaust<Strings>("lvrString", "equiv, compareTo, hashCode, getLength, getInteger", NeedsNone,
                   [](Strings& with) {
                     lvReferencable const& other = *with.other.getReferencable();
                     return with.string->equiv(other) +
                            (with.string->compareTo(other) < 0 ? 1 : 0) +
                            static_cast<int>(with.string->hashCode()) + with.string->getLength() +
                            with.string->getInteger();
                   });
  exhaust<Strings>("lvrString", "toString, getClassDesc, getStaticClassDesc, computeHashCode",
                   NeedsNone, [](Strings& with) {
                     with.string->toString();
                     with.string->getClassDesc();
                     lvrString::getStaticClassDesc();
                     return lvrString::computeHashCode("text", 4);
                   });
  exhaust<Strings>("lvrString", "setFrom, setStringData, releaseData, finalize", NeedsNone,
                   [](Strings& with) {
                     int const status = with.string->setFrom(lvArg()) +
                                        with.string->setStringData("lent", 4, lvrString::Borrow);
                     with.string->finalize();
                     return status + with.string->releaseData();
                   });
}

// ---- Interned strings --------------------------------------------------------------------------

struct Handles {
  std::string shown() const { return heldBy(handle) + heldBy(nil) + heldBy(old) + heldBy(plain); }

  lvString const old{"hello there"};
  lvString handle{old};
  lvString nil;
  lvArg plain = string("a plain text");
};

TEST(InternedOutOfMemory, LeavesHandlesAndTheTableAsTheyWereWhenTheyAreMade) {
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString("a new text"); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(std::string(200, 'a').c_str()); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(5, "a new text", CopyAndOwn); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(with.plain); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(4711); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(""); });
  exhaust<Handles>("lvString", "valueOf", Throws,
                   [](Handles& with) { with.handle = lvString::valueOf(4711); });
  exhaust<Handles>("lvString", "operator=", Throws, [](Handles& with) { with.nil = "a new text"; });
  exhaust<Handles>("lvString", "findSetFast", Throws, [](Handles& with) {
    test::TableLock const lock;
    with.nil.findSetFast("a new text", -1, CopyAndOwn, 0);
  });
  exhaust<Handles>("lvString", "findStringObject", Throws, [](Handles& with) {
    test::TableLock const lock;
    with.nil.setReferencableFast(*lvString::findStringObject("a new text", -1, CopyAndOwn, 0));
  });
  exhaust<Handles>("lvString", "lvString", NeedsNone,
                   [](Handles& with) { with.handle = lvString("hello there"); });
}

TEST(InternedOutOfMemory, LeavesHandlesAndTheTableAsTheyWereWhenAValueIsConverted) {
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(integer(4711)); });
  exhaust<Handles>("lvString", "lvString", Throws,
                   [](Handles& with) { with.handle = lvString(test::pointer(0x1234)); });
}

TEST(InternedOutOfMemory, LeavesHandlesAndTheTableAsTheyWereWhenTheyAreJoinedOrCut) {
  exhaust<Handles>("lvString", "concat", ThrowsThenCopes,
                   [](Handles& with) { with.handle = lvString::concat(with.old, " and new", 5); });
  exhaust<Handles>("lvString", "concat", ThrowsThenCopes,
                   [](Handles& with) { with.handle = lvString::concat(with.old, with.old); });
  exhaust<Handles>("lvString", "operator+", ThrowsThenCopes,
                   [](Handles& with) { with.handle = with.old + " and new"; });
  exhaust<Handles>("lvString", "operator+", ThrowsThenCopes,
                   [](Handles& with) { with.handle = with.old + with.old; });
  exhaust<Handles>("lvString", "operator+=", ThrowsThenCopes,
                   [](Handles& with) { with.handle += " and new"; });
  exhaust<Handles>("lvString", "operator+=", ThrowsThenCopes,
                   [](Handles& with) { with.handle += with.old; });
  exhaust<Handles>("lvString", "getLeft", Throws,
                   [](Handles& with) { with.handle = with.old.getLeft(3); });
  exhaust<Handles>("lvString", "getMid", Throws,
                   [](Handles& with) { with.handle = with.old.getMid(3, 5); });
  exhaust<Handles>("lvString", "getRight", Throws,
                   [](Handles& with) { with.handle = with.old.getRight(3); });
}

TEST(InternedOutOfMemory, NeedsNoMemoryToAsk) {
  exhaust<Handles>("lvString", "operator char const*, length, compareTo, operator[]", NeedsNone,
                   [](Handles& with) {
                     return with.old.length() + with.old.compareTo("hello there") +
                            with.old.compareTo(with.nil) + with.old[2] +
                            static_cast<char const*>(with.old)[3];
                   });
  exhaust<Handles>("lvString", "find, findRev, getHashTable", NeedsNone, [](Handles& with) {
    lvString::getHashTable();
    return with.old.find('h') + with.old.find("there") + with.old.findRev('h');
  });
  exhaust<Nothing>("lvString::HashTable", "HashTable, writeLock, unlock", NeedsNone, [](Nothing&) {
    lvString::HashTable table;
    table.writeLock();
    table.unlock();
  });
}

// ---- Values ------------------------------------------------------------------------------------

struct Values {
  std::string shown() const { return heldBy(value) + heldBy(nil) + heldBy(text); }

  lvValue value{string("old")};
  lvValue nil;
  lvArg text = string("text");
};

TEST(ValueOutOfMemory, IsToldForTheStringObjectAndLeavesItWithoutTextForTheText) {
  char const* const saysNothing = "throws, says nothing";
  static std::string const text(200, 'n');
  exhaust<Values>(
      "lvValue", "setString", saysNothing,
      [](Values& with) { return with.value.setString(text.c_str(), -1, CopyAndOwn); },
      "'<no text>' held 1; nil; 'text' held 1; ");
  exhaust<Values>(
      "lvValue", "setStringFast", saysNothing,
      [](Values& with) { return with.nil.setStringFast(text.c_str(), -1, CopyAndOwn); },
      "'old' held 1; '<no text>' held 1; 'text' held 1; ");
  exhaust<Values>("lvValue", "toString", "throws, '<no text>'",
                  [](Values&) { return lvValue(integer(4)).toString(); });
}

TEST(ValueOutOfMemory, IsToldForAShortTextWhichIsOneBlockWithItsString) {
  exhaust<Values>("lvValue", "setString", "throws",
                  [](Values& with) { return with.value.setString("new", -1, CopyAndOwn); });
  exhaust<Values>("lvValue", "setStringFast", "throws",
                  [](Values& with) { return with.nil.setStringFast("new", -1, CopyAndOwn); });
}

TEST(VersionOutOfMemory, NeedsNoMemory) {
  exhaust<Nothing>("lvVersion", "lvGetVersion", NeedsNone, [](Nothing&) {
    int parts[3];
    lvGetVersion(parts[0], parts[1], parts[2]);
    return parts[0];
  });
}

TEST(ValueOutOfMemory, NeedsNoMemoryForStringsThatAreThere) {
  exhaust<Values>("lvValue", "lvValue, setString, setStringFast, toString", NeedsNone,
                  [](Values& with) {
                    auto const& text = static_cast<lvrString const&>(*with.text.getReferencable());
                    with.value.setString(text);
                    with.nil.setStringFast(text);
                    lvValue const copy(text);
                    return lvValue(with.text).toString();
                  });
  exhaust<Values>("lvValue", "getString, getInt", NeedsNone, [](Values& with) {
    int length = 0;
    with.value.getString(&length);
    return length + with.value.getInt();
  });
}

}  // namespace
