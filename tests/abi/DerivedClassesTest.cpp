// Derives from every class that the shared library exports, as programs do: what the compiler then
// asks the library for (virtual tables, type information, thunks) must be exported, and the
// functions must stand in the slots that the headers tell. Compiled with Clang too.

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>
#include <utility>

#include "support/Cells.h"
#include "support/RecordingDest.h"
#include "support/ScriptedSource.h"
#include "tarselvalues/tarselvalues.h"

namespace {

using test::integer;
using test::textOf;

// Overrides nothing.
template <class Base>
class Same : public Base {
 public:
  using Base::Base;
};

// Expects that `object` is found from its base `From`.
template <class From, class Object>
void expectFoundFrom(Object& object) {
  From& base = object;
  EXPECT_TRUE(typeid(base) == typeid(Object)) << typeid(From).name();
  EXPECT_EQ(dynamic_cast<Object*>(&base), &object) << typeid(From).name();
}

// Expects that the interface `To` of an object in a cell is found by nothing but the cell.
template <class To, class Object>
void expectFoundAcross(lvArg const& held, Object& object) {
  EXPECT_EQ(dynamic_cast<To*>(held.getReferencable()), &object) << typeid(To).name();
}

// --- Counted objects ------------------------------------------------------------------------------

// Expects that an object of a class that overrides nothing is found from each of its bases.
template <class Base, class... FurtherBases, class... Arguments>
void expectSameObject(Arguments... arguments) {
  auto* const object = new Same<Base>(arguments...);
  lvArg const held(*object);
  expectFoundFrom<Base>(*object);
  expectFoundFrom<lvReferencable>(*object);
  (expectFoundFrom<FurtherBases>(*object), ...);
  (expectFoundAcross<FurtherBases>(held, *object), ...);
}

TEST(DerivedObjects, AreFoundFromEachOfTheirBases) {
  expectSameObject<lvReferencable>();
  expectSameObject<lvrString>();
  expectSameObject<lvrHashMap, lviMap>(7U);
  expectSameObject<lvrTupleSet, lviMap>(8, 8U, 0U);
  expectSameObject<lvrVector, lviList>(4);
  expectSameObject<lvrDLList, lviList>();
  expectSameObject<lvrStack, lviStack>(4);
  expectSameObject<lvrSortedArrayList, lviSortedList>(0U);
  expectSameObject<lvrClass>();
  expectSameObject<lvrCommonSerializer>();
}

TEST(DerivedObjects, DoWhatTheirBasesDo) {
  lvHashMap const map(*new Same<lvrHashMap>(7));
  lvVector const list(*new Same<lvrVector>(1));
  list->insert(integer(1), -1);
  map->put(lvString("key"), list);
  EXPECT_EQ(textOf(lvToolsToString(map)), "{(key={1})}");

  lvSortedList const sorted(*new Same<lvrSortedArrayList>(0));
  sorted->add(integer(2));
  sorted->add(integer(1));
  EXPECT_EQ(sorted->get(0).getInt(), 1);
}

// How many objects of overriding classes are there.
int living = 0;

constexpr unsigned int OwnHash = 4711;
constexpr int OwnSize = 100;

// Overrides a function of the first base.
template <class Base>
class Hashed : public Base {
 public:
  template <class... Arguments>
  explicit Hashed(Arguments... arguments) : Base(arguments...) {
    ++living;
  }
  ~Hashed() override { --living; }
  unsigned int hashCode() const override { return OwnHash; }
};

// Overrides one of each base.
template <class Base>
class Sized : public Hashed<Base> {
 public:
  using Hashed<Base>::Hashed;
  int getSize() const override { return OwnSize + Base::getSize(); }
};

// Expects that the library calls what the class overrides, and destroys the object as what it is.
template <class Base, class... Arguments>
void expectHashed(Arguments... arguments) {
  {
    lvArg const held(*new Hashed<Base>(arguments...));
    EXPECT_EQ(held.hashCode(), OwnHash) << typeid(Base).name();
    EXPECT_EQ(living, 1);
  }
  EXPECT_EQ(living, 0) << typeid(Base).name();
}

template <class Base, class Interface, class... Arguments>
void expectSized(Arguments... arguments) {
  {
    auto* const object = new Sized<Base>(arguments...);
    lvArg const held(*object);
    Interface const& interface = *object;
    EXPECT_EQ(held.hashCode(), OwnHash) << typeid(Base).name();
    EXPECT_EQ(interface.getSize(), OwnSize) << typeid(Base).name();
    EXPECT_EQ(living, 1);
  }
  EXPECT_EQ(living, 0) << typeid(Base).name();

  auto* const unheld = new Sized<Base>(arguments...);
  unheld->finalize();
  delete static_cast<Interface*>(unheld);
  EXPECT_EQ(living, 0) << typeid(Base).name();
}

TEST(DerivedObjects, OverrideAFunctionOfTheirBase) {
  expectHashed<lvReferencable>();
  expectHashed<lvrString>();
  expectHashed<lvrClass>();
  expectHashed<lvrCommonSerializer>();
}

TEST(DerivedObjects, OverrideAFunctionOfEachOfTwoBases) {
  expectSized<lvrHashMap, lviMap>(7U);
  expectSized<lvrTupleSet, lviMap>(8, 8U, 0U);
  expectSized<lvrVector, lviList>(4);
  expectSized<lvrDLList, lviList>();
  expectSized<lvrStack, lviStack>(4);
  expectSized<lvrSortedArrayList, lviSortedList>(0U);
}

class NamedClass : public lvrClass {
 public:
  int getClassName(lvArg& out) const override {
    out.assign(lvString("Own"));
    return 0;
  }
};

TEST(DerivedObjects, OverrideWhatAClassAddsToItsBase) {
  auto* const described = new NamedClass;
  lvArg const held(*described);
  lvrClass const& base = *described;
  lvArg name;
  base.getClassName(name);
  EXPECT_EQ(textOf(name), "Own");
}

// --- Cursors --------------------------------------------------------------------------------------

template <class Base, class... FurtherBases, class... Arguments>
void expectSameCursor(Arguments&&... arguments) {
  Same<Base> cursor(arguments...);
  expectFoundFrom<Base>(cursor);
  (expectFoundFrom<FurtherBases>(cursor), ...);
}

// Overrides a function, in a class below as many bases as there are.
template <class Base>
class OwnValue : public Base {
 public:
  using Base::Base;
  lvArg getValue() const override { return integer(OwnSize); }
};

template <class Base, class Interface, class... Arguments>
void expectOwnValue(Arguments&&... arguments) {
  OwnValue<Base> cursor(arguments...);
  Interface const& interface = cursor;
  EXPECT_EQ(interface.getValue().getInt(), OwnSize) << typeid(Base).name();
}

TEST(DerivedCursors, OfMapsAreFoundFromTheirBasesAndOverride) {
  auto* const map = new lvrHashMap(7);
  auto* const set = new lvrTupleSet(8, 8, 0);
  lvArg const heldMap(*map);
  lvArg const heldSet(*set);
  expectSameCursor<lvrHashMap::RealEnumerator, lviRealMapEnumerator>(*map);
  expectSameCursor<lvrTupleSet::RealEnumerator, lviRealMapEnumerator>(*set);
  expectSameCursor<lvrTupleSet::RealIterator, lviRealMapIterator, lviRealMapEnumerator>(*set);
  expectOwnValue<lvrHashMap::RealEnumerator, lviRealMapEnumerator>(*map);
  expectOwnValue<lvrTupleSet::RealEnumerator, lviRealMapEnumerator>(*set);
  expectOwnValue<lvrTupleSet::RealIterator, lviRealMapIterator>(*set);
}

TEST(DerivedCursors, OfListsAreFoundFromTheirBasesAndOverride) {
  auto* const vector = new lvrVector(1);
  auto* const list = new lvrDLList;
  lvArg const heldVector(*vector);
  lvArg const heldList(*list);
  expectSameCursor<lvrVector::RealEnumerator, lviRealListEnumerator>(*vector);
  expectSameCursor<lvrDLList::RealEnumerator, lviRealListEnumerator>(*list);
  expectSameCursor<lvrDLList::RealIterator, lviRealListIterator, lviRealListEnumerator>(*list);
  expectSameCursor<lvrDLList::RealRWIterator, lviRealListRWIterator, lviRealListIterator,
                   lviRealListEnumerator>(*list);
  expectOwnValue<lvrVector::RealEnumerator, lviRealListEnumerator>(*vector);
  expectOwnValue<lvrDLList::RealEnumerator, lviRealListEnumerator>(*list);
  expectOwnValue<lvrDLList::RealIterator, lviRealListIterator>(*list);
  expectOwnValue<lvrDLList::RealRWIterator, lviRealListRWIterator>(*list);
}

template <class Base>
class OwnNextIndex : public Base {
 public:
  using Base::Base;
  int nextIndex() const override { return OwnSize; }
};

TEST(DerivedCursors, OfSortedListsAreFoundFromTheirBasesAndOverride) {
  auto* const list = new lvrSortedArrayList(0);
  lvArg const held(*list);
  expectSameCursor<lvrSortedArrayList::Enumerator, lviRealSortedListEnumerator>(*list, 0);
  expectSameCursor<lvrSortedArrayList::Iterator, lviRealSortedListIterator,
                   lviRealSortedListEnumerator>(*list, 0);
  OwnNextIndex<lvrSortedArrayList::Enumerator> enumerator(*list, 0);
  OwnNextIndex<lvrSortedArrayList::Iterator> iterator(*list, 0);
  EXPECT_EQ(static_cast<lviRealSortedListEnumerator&>(enumerator).nextIndex(), OwnSize);
  EXPECT_EQ(static_cast<lviRealSortedListIterator&>(iterator).nextIndex(), OwnSize);
}

// --- Interfaces, by classes of the program's own --------------------------------------------------

// The least that a cursor must have: one that reads.
template <class Base>
class MapReader : public Base {
 public:
  bool next() override { return !std::exchange(used_, true); }
  lvArg getKey() const override { return integer(1); }
  lvArg getValue() const override { return integer(2); }

 private:
  bool used_ = false;
};

class OwnMapCursor : public MapReader<lviRealMapIterator> {
 public:
  int setValue(lvArg const&, lvArg*) override { return -1; }
  int remove() override { return -1; }
};

class OwnMap : public lvReferencable, public lviMap {
 public:
  OwnMap() { setKind(MapKind); }
  int getSize() const override { return 1; }
  lvArg get(lvArg const&) const override { return integer(2); }
  int put(lvArg const&, lvArg const&, lvArg*) override { return -1; }
  int clear() override { return -1; }
  lviRealMapEnumerator* getEnumerator() const override {
    return new MapReader<lviRealMapEnumerator>;
  }
  lviRealMapIterator* getIterator() override { return new OwnMapCursor; }
  lviRealMapIterator* getRWIterator() override { return new OwnMapCursor; }
};

TEST(OwnClasses, ThatAreMapsAreUsedByTheLibrary) {
  lvHashMap const map(*new OwnMap);
  ASSERT_NE(map.getMap(), nullptr);
  EXPECT_EQ(textOf(lvToolsToString(map)), "{(1=2)}");
  EXPECT_NE(dynamic_cast<OwnMap*>(map.getMap()), nullptr);
  lvMapEnumerator const reader(*map.getMap());
  EXPECT_EQ(reader->getKey().getInt(), 1);
  std::unique_ptr<lviRealMapIterator> const cursor(map->getRWIterator());
  expectFoundFrom<lviRealMapIterator>(dynamic_cast<OwnMapCursor&>(*cursor));
}

template <class Base>
class ListReader : public Base {
 public:
  using Predicate = lviRealListEnumerator::Predicate;
  bool gotoNext() override { return false; }
  bool gotoNextMatching(Predicate*, void*) override { return false; }
  bool gotoPrevious() override { return false; }
  bool gotoPreviousMatching(Predicate*, void*) override { return false; }
  bool gotoIndex(int) override { return false; }
  int getIndex() const override { return OwnSize; }
  lvArg getValue() const override { return integer(3); }
};

template <class Base>
class RemovingListReader : public ListReader<Base> {
 public:
  bool remove() override { return true; }
};

class OwnListCursor : public RemovingListReader<lviRealListRWIterator> {
 public:
  bool isWritable() override { return true; }
  bool insert(lvArg const&) override { return true; }
};

class OwnList : public lvReferencable, public lviList {
 public:
  OwnList() { setKind(ListKind); }
  bool isSorted() const override { return false; }
  bool insert(lvArg const&, int) override { return false; }
  lvArg remove(int) override { return lvArg(); }
  int remove(lvArg const&) override { return 0; }
  bool clear() override { return false; }
  bool merge(lviList const&) override { return false; }
  lvArg at(int) const override { return integer(3); }
  int getSize() const override { return 1; }
  int getElementPos(lvArg const&) const override { return 0; }
  lviRealListEnumerator* getListEnumerator() const override {
    return new ListReader<lviRealListEnumerator>;
  }
  lviRealListIterator* getListIterator() override {
    return new RemovingListReader<lviRealListIterator>;
  }
  lviRealListRWIterator* getListRWIterator() override { return new OwnListCursor; }
};

TEST(OwnClasses, ThatAreListsAreUsedByTheLibrary) {
  auto* const list = new OwnList;
  lvArg const held(*list);
  expectFoundFrom<lviList>(*list);
  std::unique_ptr<lviRealListEnumerator> const reader(list->getListEnumerator());
  EXPECT_EQ(reader->getIndex(), OwnSize);
  std::unique_ptr<lviRealListIterator> const remover(list->getListIterator());
  EXPECT_TRUE(remover->remove());
  std::unique_ptr<lviRealListRWIterator> const writer(list->getListRWIterator());
  EXPECT_TRUE(writer->isWritable());
  expectFoundFrom<lviRealListRWIterator>(dynamic_cast<OwnListCursor&>(*writer));
  EXPECT_EQ(lvVector(held).getList(), list);
}

class OwnStack : public lviStack {
 public:
  int push(lvArg const&) override { return OwnSize; }
  lvArg pop() override { return lvArg(); }
  lvArg poke(lvArg const&) override { return lvArg(); }
  lvArg const& peek(int) const override { return lvArg::TrueValue; }
  int getSize() const override { return 1; }
  bool isEmpty() const override { return false; }
};

TEST(OwnClasses, ThatAreStacksAreFoundFromTheInterface) {
  OwnStack stack;
  expectFoundFrom<lviStack>(stack);
  EXPECT_EQ(static_cast<lviStack&>(stack).push(integer(1)), OwnSize);
}

template <class Base>
class SortedListReader : public Base {
 public:
  bool hasNext() const override { return false; }
  bool hasPrevious() const override { return false; }
  lvArg next() override { return lvArg(); }
  int nextIndex() const override { return OwnSize; }
  lvArg previous() override { return lvArg(); }
  int previousIndex() const override { return -1; }
};

class OwnSortedCursor : public SortedListReader<lviRealSortedListIterator> {
 public:
  void add(lvArg const&) override {}
  void remove() override {}
  void set(lvArg const&) override {}
};

class OwnSortedList : public lviSortedList {
 public:
  OwnSortedList() { setKind(ListKind); }
  int getSize() const override { return 1; }
  int add(lvArg const&) override { return -1; }
  bool addAll(lviSortedList const&) override { return false; }
  void clear() override {}
  bool contains(lvArg const&) const override { return false; }
  bool containsAll(lviSortedList const&) const override { return false; }
  bool equals(lviSortedList const&) const override { return false; }
  lvArg get(int) const override { return integer(7); }
  int indexOf(lvArg const&) const override { return -1; }
  bool isEmpty() const override { return false; }
  lviRealSortedListIterator* getSortedListIterator(int) override { return new OwnSortedCursor; }
  lviRealSortedListEnumerator* getSortedListEnumerator(int) const override {
    return new SortedListReader<lviRealSortedListEnumerator>;
  }
  int lastIndexOf(lvArg const&) const override { return -1; }
  int reserved14() override { return 0; }
  int reserved15() override { return 0; }
  lvArg reserved16() override { return lvArg(); }
  lvArg reserved17() override { return lvArg(); }
};

TEST(OwnClasses, ThatAreSortedListsAreUsedByTheLibrary) {
  lvSortedList const list(*new OwnSortedList);
  ASSERT_NE(list.getSortedList(), nullptr);
  EXPECT_EQ(list->get(0).getInt(), 7);
  lvSortedListEnumerator const reader(list, 0);
  EXPECT_EQ(reader->nextIndex(), OwnSize);
  lvSortedListIterator const cursor(list, 0);
  EXPECT_EQ(cursor->nextIndex(), OwnSize);
  expectFoundFrom<lviRealSortedListEnumerator>(dynamic_cast<OwnSortedCursor&>(*cursor.getCursor()));
}

// --- Text, sinks and sources ----------------------------------------------------------------------

TEST(DerivedSinks, OverrideNothingAndWriteAsTheirBaseDoes) {
  char text[32];
  Same<lvtStringArgDest> writer(text, static_cast<int>(sizeof(text)));
  expectFoundFrom<lvtStringArgDest>(writer);
  expectFoundFrom<lvArgDest>(writer);
  lvrCommonSerializer serializer;
  EXPECT_EQ(serializer.serializeAtomInto(writer, integer(12)), 0);
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_STREQ(text, "12");
}

class DoublingWriter : public lvtStringArgDest {
 public:
  using lvtStringArgDest::lvtStringArgDest;
  int putArg(lvArg const& value) override {
    return lvtStringArgDest::putArg(integer(2 * value.getInt()));
  }
};

TEST(DerivedSinks, OverrideWhatTheSerializerCalls) {
  char text[32];
  DoublingWriter writer(text, static_cast<int>(sizeof(text)));
  lvrCommonSerializer serializer;
  EXPECT_EQ(serializer.serializeAtomInto(writer, integer(12)), 0);
  writer.terminate();
  EXPECT_STREQ(text, "24");
}

TEST(OwnClasses, ThatAreSinksAreWrittenInto) {
  test::RecordingDest sink;
  expectFoundFrom<lvArgDest>(sink);
  lvrCommonSerializer serializer;
  EXPECT_EQ(serializer.serializeAtomInto(sink, integer(12)), 0);
  EXPECT_EQ(sink.calls(), "put(12)");
  EXPECT_EQ(static_cast<lvArgDest&>(sink).cleanupOnce(), 0);
}

TEST(DerivedSources, OverrideNothingAndReadAsTheirBaseDoes) {
  Same<lvtStringArgSource> parser("12", -1);
  expectFoundFrom<lvtStringArgSource>(parser);
  expectFoundFrom<lvArgSource>(parser);
  lvrCommonSerializer serializer;
  lvArg read;
  EXPECT_EQ(serializer.deserializeItemInto(read, parser), 0);
  EXPECT_EQ(read.getInt(), 12);
}

class DoublingParser : public lvtStringArgSource {
 public:
  using lvtStringArgSource::lvtStringArgSource;
  int getArg(lvArg& out) override {
    int const answer = lvtStringArgSource::getArg(out);
    out.setInt(2 * out.getInt());
    return answer;
  }
};

TEST(DerivedSources, OverrideWhatTheSerializerCalls) {
  DoublingParser parser("12", -1);
  lvrCommonSerializer serializer;
  lvArg read;
  EXPECT_EQ(serializer.deserializeItemInto(read, parser), 0);
  EXPECT_EQ(read.getInt(), 24);
}

TEST(OwnClasses, ThatAreSourcesAreReadFrom) {
  test::ScriptedSource source({test::item(12)});
  expectFoundFrom<lvArgSource>(source);
  lvrCommonSerializer serializer;
  lvArg read;
  EXPECT_EQ(serializer.deserializeItemInto(read, source), 0);
  EXPECT_EQ(read.getInt(), 12);
  EXPECT_EQ(static_cast<lvArgSource&>(source).getNextToken(read), lvtStringArgSource::TOKEN_END);
}

// --- The registry ---------------------------------------------------------------------------------

class CountingRegistry : public lvtClassRegistry {
 public:
  int putClass(lvArg const& name, lvArg const& classHandle) override {
    ++puts;
    return lvtClassRegistry::putClass(name, classHandle);
  }
  int puts = 0;
};

TEST(DerivedRegistries, AreFoundFromTheirBaseAndOverride) {
  Same<lvtClassRegistry> same;
  expectFoundFrom<lvtClassRegistry>(same);
  same.addBuiltinClasses();
  EXPECT_FALSE(same.getClass(lvString("Vector")).isNil());

  CountingRegistry counting;
  counting.addBuiltinClasses();
  EXPECT_GT(counting.puts, 0);
}

// --- Handles --------------------------------------------------------------------------------------

TEST(DerivedHandles, AreCellsAsTheirBasesAre) {
  EXPECT_EQ(sizeof(Same<lvArg>), sizeof(lvArg));
  Same<lvString> const name("name");
  Same<lvHashMap> const map(7);
  map->put(name, Same<lvValue>());
  Same<lvVector> const list(4);
  list->insert(name, -1);
  Same<lvSortedList> const sorted(*new lvrSortedArrayList(0));
  sorted->add(name);
  Same<lvClass> const described(1, name, lvrVector::defaultCtorMethod);
  EXPECT_EQ(textOf(list->at(0)), "name");
  EXPECT_EQ(textOf(sorted->get(0)), "name");
  EXPECT_EQ(textOf(described.getClassDesc()), "name");
  EXPECT_EQ(map->getSize(), 0);
}

TEST(DerivedHandles, OfCursorsWalkAsTheirBasesDo) {
  lvVector const list(4);
  list->insert(integer(1), -1);
  Same<lvListEnumerator> const item(*list.getList());
  ASSERT_TRUE(item->gotoNext());
  EXPECT_EQ(item->getValue().getInt(), 1);
  auto* const set = new lvrTupleSet(8, 8, 0);
  lvArg const held(*set);
  set->put(integer(1), integer(2));
  Same<lvMapRWIterator> const entry(*set);
  ASSERT_TRUE(entry->next());
  EXPECT_EQ(entry->getValue().getInt(), 2);
}

// --- Visitors -------------------------------------------------------------------------------------

TEST(DerivedVisitors, AreCalledThroughTheirBase) {
  class Counter : public lvWalkVisitor {
   public:
    Answer visit(lvArg const& /*value*/, lvWalkPlace const& /*place*/) override {
      ++visited_;
      return GoOn;
    }
    Answer leave(lvArg const& value, lvWalkPlace const& place) override {
      ++left_;
      return lvWalkVisitor::leave(value, place);
    }
    int visited() const { return visited_; }
    int left() const { return left_; }

   private:
    int visited_ = 0;
    int left_ = 0;
  } counter;
  lvVector list(1);
  list->insert(integer(1), -1);
  EXPECT_TRUE(lvWalk(list, counter));
  EXPECT_EQ(counter.visited(), 2);
  EXPECT_EQ(counter.left(), 1);
  expectFoundFrom<lvWalkVisitor>(counter);
}

}  // namespace
