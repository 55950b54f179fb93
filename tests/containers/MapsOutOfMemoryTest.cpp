// Every operation of the maps, their cursors and handles, at each of its allocations out of memory.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/FailLoop.h"
#include "support/Objects.h"
#include "support/Pairs.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvMapEnumerator.h"
#include "tarselvalues/containers/lvMapIterator.h"
#include "tarselvalues/containers/lvMapRWIterator.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrTupleSet.h"

namespace {

using test::countOf;
using test::exhaust;
using test::Exits;
using test::Held;
using test::integer;
using test::NeedsNone;
using test::Nothing;
using test::SaysNothing;
using test::string;
using test::Throws;

constexpr char NoMemory[] = "-12";

// A map of its own with two entries, a key and a value that are not in it, and a cursor of it.
template <class Map>
struct Filled {
  template <class... Arguments>
  explicit Filled(Arguments... arguments) : map(arguments...) {
    map->put(integer(1), string("one"));
    map->put(integer(2), string("two"));
  }
  std::string shown() const {
    return shownMap() + " hash " + std::to_string(map->hashCode()) + " size " +
           std::to_string(map->getSize()) + " held " + std::to_string(countOf(*map)) + "; " +
           std::to_string(countOf(key)) + " " + std::to_string(countOf(value)) + " " +
           test::brief(old) + "; " + shownCursor();
  }
  std::string shownMap() const { return test::describedMap(*map); }
  std::string shownCursor() const { return cursor == nullptr ? "" : test::brief(cursor->getKey()); }

  Held<Map> map;
  lvArg key = string("key");
  lvArg value = string("value");
  lvArg old = string("old");
  std::unique_ptr<lviRealMapEnumerator> cursor;
};

// ---- The hash map ------------------------------------------------------------------------------

struct FilledMap : Filled<lvrHashMap> {
  FilledMap() : Filled(7U) {}
};

// One that has cleared its buckets away.
struct EmptyMap : FilledMap {
  EmptyMap() { map->freeStorage(); }
};

struct MapWithCursor : FilledMap {
  MapWithCursor() {
    cursor.reset(map->getEnumerator());
    cursor->next();
  }
};

TEST(HashMapOutOfMemory, IsToldAndLeavesTheMapAsItWas) {
  exhaust<Nothing>("lvrHashMap", "lvrHashMap, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrHashMap::defaultCtorMethod()); });
  exhaust<FilledMap>("lvrHashMap", "put", Throws, [](FilledMap& with) {
    return with.map->put(with.key, with.value, &with.old);
  });
  exhaust<EmptyMap>("lvrHashMap", "put", Throws,
                    [](EmptyMap& with) { return with.map->put(with.key, with.value, &with.old); });
  exhaust<EmptyMap>("lvrHashMap", "needStorage", Throws,
                    [](EmptyMap& with) { return with.map->needStorage(); });
  exhaust<FilledMap>("lvrHashMap", "getEnumerator", Throws,
                     [](FilledMap& with) { with.cursor.reset(with.map->getEnumerator()); });
}

TEST(HashMapOutOfMemory, NeedsNoMemoryToAsk) {
  exhaust<FilledMap>("lvrHashMap", "get, getSize, hashCode, getClassDesc, getStaticClassDesc",
                     NeedsNone, [](FilledMap& with) {
                       with.map->getClassDesc();
                       lvrHashMap::getStaticClassDesc();
                       with.map->get(with.key);
                       with.map->hashCode();
                       with.map->getSize();
                       return with.map->get(integer(2));
                     });
  exhaust<FilledMap>("lvrHashMap", "getIterator, getRWIterator", NeedsNone, [](FilledMap& with) {
    return with.map->getIterator() == nullptr && with.map->getRWIterator() == nullptr;
  });
}

TEST(HashMapOutOfMemory, NeedsNoMemoryToReplaceRemoveAndPutAgain) {
  exhaust<FilledMap>("lvrHashMap", "put", NeedsNone, [](FilledMap& with) {
    return with.map->put(integer(1), with.value, &with.old) + with.map->put(with.key, lvArg()) +
           with.map->put(integer(2), lvArg()) + with.map->put(with.key, with.value);
  });
  exhaust<FilledMap>("lvrHashMap", "clear, setHashSize", NeedsNone, [](FilledMap& with) {
    return with.map->setHashSize(9) + with.map->clear() + with.map->setHashSize(9);
  });
  exhaust<FilledMap>(
      "lvrHashMap", "freeStorage, finalize, needStorage", NeedsNone, [](FilledMap& with) {
        return with.map->needStorage() + with.map->freeStorage() + with.map->finalize();
      });
}

TEST(HashMapCursorOutOfMemory, NeedsNoMemoryOnceMade) {
  exhaust<MapWithCursor>("lvrHashMap::RealEnumerator", "next, getKey, getValue", NeedsNone,
                         [](MapWithCursor& with) {
                           with.map->put(integer(1), lvArg());
                           with.cursor->getKey();
                           with.cursor->next();
                           return with.cursor->getValue();
                         });
  exhaust<FilledMap>("lvrHashMap::RealEnumerator", "RealEnumerator", NeedsNone,
                     [](FilledMap& with) {
                       lvrHashMap::RealEnumerator cursor(*with.map);
                       return cursor.next();
                     });
  exhaust<FilledMap>("lvrHashMap::IteratorLogic", "initFrom, next, getKey, getValue", NeedsNone,
                     [](FilledMap& with) {
                       lvrHashMap::IteratorLogic logic;
                       logic.initFrom(*with.map);
                       return logic.next() && logic.getKey().getInt() != 0 &&
                              logic.getValue().getType() == lvArg::StringType;
                     });
}

// ---- The tuple set -----------------------------------------------------------------------------

// Without room for a third pair.
struct FullSet : Filled<lvrTupleSet> {
  explicit FullSet(unsigned flags = 0) : Filled(2, 3U, flags) {}
};

struct FullSetOfEqualKeys : FullSet {
  FullSetOfEqualKeys() : FullSet(lvrTupleSet::InsertEqualKeys) {}
};

struct SetWithoutArray : FullSet {
  SetWithoutArray() { map->finalize(); }
};

struct SetWithCursor : FullSet {
  SetWithCursor() : changing(map->getIterator()) {
    cursor.reset(changing);
    cursor->next();
  }

  lviRealMapIterator* changing;
};

TEST(TupleSetOutOfMemory, IsToldAndLeavesTheSetAsItWas) {
  exhaust<Nothing>("lvrTupleSet", "lvrTupleSet, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrTupleSet::defaultCtorMethod()); });
  exhaust<FullSet>("lvrTupleSet", "getEnumerator", Throws,
                   [](FullSet& with) { with.cursor.reset(with.map->getEnumerator()); });
  exhaust<FullSet>("lvrTupleSet", "getIterator", Throws,
                   [](FullSet& with) { with.cursor.reset(with.map->getIterator()); });
}

TEST(TupleSetOutOfMemory, EndsTheProcessWhereASetWithPairsCannotGrow) {
  exhaust<FullSet>("lvrTupleSet", "put", Exits,
                   [](FullSet& with) { return with.map->put(with.key, with.value, &with.old); });
  exhaust<FullSetOfEqualKeys>("lvrTupleSet", "put", Exits, [](FullSetOfEqualKeys& with) {
    return with.map->put(integer(1), with.value, &with.old);
  });
}

TEST(TupleSetOutOfMemory, LeavesASetWithoutArrayEmpty) {
  exhaust<SetWithoutArray>("lvrTupleSet", "put", SaysNothing, [](SetWithoutArray& with) {
    return with.map->put(with.key, with.value, &with.old);
  });
  exhaust<SetWithoutArray>("lvrTupleSet", "expand", NoMemory,
                           [](SetWithoutArray& with) { return with.map->expand(5); });
}

TEST(TupleSetOutOfMemory, LosesThePairsOfASetThatIsExpanded) {
  exhaust<FullSet>(
      "lvrTupleSet", "expand", NoMemory, [](FullSet& with) { return with.map->expand(5); },
      "{} hash 0 size 0 held 1; 1 1 'old'; ");
}

TEST(TupleSetOutOfMemory, NeedsNoMemoryToAsk) {
  exhaust<FullSet>("lvrTupleSet", "get, getSize, getKey, getValue, search, getRWIterator",
                   NeedsNone, [](FullSet& with) {
                     bool found = false;
                     with.map->get(with.key);
                     with.map->getKey(0);
                     with.map->getValue(7);
                     with.map->getRWIterator();
                     return with.map->search(integer(2), &found) + with.map->getSize();
                   });
}

TEST(TupleSetOutOfMemory, NeedsNoMemoryToReplaceRemoveAndPutAgain) {
  exhaust<FullSet>("lvrTupleSet", "put, setValue, removeEntry, expand", NeedsNone,
                   [](FullSet& with) {
                     int const status = with.map->put(integer(1), with.value, &with.old) +
                                        with.map->setValue(1, with.value, nullptr);
                     with.map->removeEntry(0);
                     return status + with.map->put(with.key, with.value) + with.map->expand(2);
                   });
  exhaust<FullSet>("lvrTupleSet", "clear, finalize", NeedsNone, [](FullSet& with) {
    return with.map->clear() + with.map->put(with.key, with.value) + with.map->finalize();
  });
}

TEST(TupleSetCursorOutOfMemory, NeedsNoMemoryOnceMade) {
  exhaust<FullSet>("lvrTupleSet::RealEnumerator", "next, getKey, getValue", NeedsNone,
                   [](FullSet& with) {
                     lvrTupleSet::RealEnumerator cursor(*with.map);
                     cursor.next();
                     cursor.getKey();
                     return cursor.getValue();
                   });
  exhaust<SetWithCursor>("lvrTupleSet::RealIterator", "setValue, getKey, getValue", NeedsNone,
                         [](SetWithCursor& with) {
                           int const status = with.changing->setValue(with.value, &with.old);
                           with.changing->getKey();
                           with.changing->getValue();
                           return status;
                         });
  exhaust<SetWithCursor>("lvrTupleSet::RealIterator", "remove, next", NeedsNone,
                         [](SetWithCursor& with) {
                           int const status = with.changing->remove();
                           with.changing->next();
                           return status;
                         });
}

// ---- Handles -----------------------------------------------------------------------------------

TEST(MapHandlesOutOfMemory, AreNotMadeAndTakeNoReference) {
  exhaust<Nothing>("lvHashMap", "lvHashMap", Throws, [](Nothing&) { return lvHashMap(7); });
  exhaust<FilledMap>("lvMapEnumerator", "lvMapEnumerator", Throws,
                     [](FilledMap& with) { return lvMapEnumerator(*with.map)->next(); });
  exhaust<FilledMap>("lvMapIterator", "lvMapIterator", Throws,
                     [](FilledMap& with) { return lvMapIterator(*with.map)->next(); });
  exhaust<FilledMap>("lvMapRWIterator", "lvMapRWIterator", Throws,
                     [](FilledMap& with) { return lvMapRWIterator(*with.map)->next(); });
  exhaust<FullSet>("lvMapEnumerator", "lvMapEnumerator", Throws,
                   [](FullSet& with) { return lvMapEnumerator(*with.map)->next(); });
}

TEST(MapHandlesOutOfMemory, NeedNoMemoryToShareAMap) {
  exhaust<FilledMap>("lvHashMap", "lvHashMap, getMap", NeedsNone, [](FilledMap& with) {
    return lvHashMap(with.map.cell()).getMap() != nullptr;
  });
}

}  // namespace
