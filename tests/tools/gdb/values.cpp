// Values of all kinds, whole and damaged, for gdb to show.
//
// The program stops in stopHere(). Behind each value stands what gdb is asked there, after //>, and what
// it answers, line by line, after //=; what it answers where program and library are stripped, after
// //-, if that is something else. (expectations.py says more.)

#include <cstdlib>
#include <cstring>
#include <string>

#include "Untold.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/reflect/LayoutAccess.h"
#include "tarselvalues/tarselvalues.h"

// A place to stop at that is known by its name even in a stripped program.
extern "C" __attribute__((noinline)) void stopHere() { asm volatile(""); }

namespace {

// A cell of these two words, which holds no reference.
void forge(lvArg& cell, unsigned tag, void const* content) {
  lvLayoutAccess<lvArg>::tagWord(cell) = tag;
  lvLayoutAccess<lvArg>::payload(cell) = reinterpret_cast<std::uintptr_t>(content);
}

lvArg number(int value) {
  lvArg cell;
  cell.setInt(value);
  return cell;
}

template <class Field>
void overwrite(void* object, std::size_t offset, Field value) {
  std::memcpy(static_cast<char*>(object) + offset, &value, sizeof(value));
}

}  // namespace

// ---- Cells -------------------------------------------------------------------------------------

lvArg nil;
//> print nil
//= #nil
//> lv print &nil
//= #nil

lvArg integer = number(-502);
//> print integer
//= -502
//> lv print &integer
//= -502

lvArg smallest = number(-2147483647 - 1);
//> print smallest
//= -2147483648

lvArg address;
//> print address
//= <address 0xc0ffee>

lvArg const& reference = integer;
//> print reference
//= -502

lvArg* pointer = &integer;
//> print *pointer
//= -502
//> lv print pointer
//= -502
//- 'pointer' has unknown type; cast it to its declared type

lvArg marked = number(7);  // with bits that belong to whoever stores it
//> print marked
//= 7

// ---- Strings -----------------------------------------------------------------------------------

lvString interned("pump room");
//> print interned
//= "pump room"
//> lv print &interned
//= "pump room"

lvString bareWord("pump");
//> print bareWord
//= "pump"
//> lv print &bareWord
//= pump

//> lv strings pum
//= 34 interned strings, longest chain 2
//=      1 "pump"
//=      2 "pump room"
//> lv strings nobody's
//= 34 interned strings, longest chain 2

lvString noString;
//> print noString
//= #nil

lvString escapes("say \"hi\": 100%\n");
//> print escapes
//= "say %22hi%22%3A 100%25%0A"

lvString bytes("\xFF\x80 caf\xC3\xA9");
//> print bytes
//= "%FF%80 caf%C3%A9"

lvValue plain;
//> print plain
//= "of its own"
//> lv print plain.payload_
//= "of its own"
//- 'plain' has unknown type; cast it to its declared type

lvString empty("");
//> print empty
//= ""

lvValue longText;
//> with print elements 5 -- print longText
//= "aaaaa"...
//> with print elements 3 -- lv print &longText
//= "aaa"...

lvArg noText;  // a string object without text
//> print noText
//= <string without text>

// ---- Containers --------------------------------------------------------------------------------

lvVector list(4);
//> print list
//= list of 4 = {42, "a b", #nil, list of 1 = {7}}
//> lv print &list
//= {42,"a b",#nil,{7}}
//> lv print -max-depth 1 &list
//= {42,"a b",#nil,{...}}
//> lv print -elements 2 &list
//= {42,"a b",...}
//> lv print -elements 0 &list
//= {42,"a b",#nil,{7}}
//> lv print -elements unlimited -max-depth unlimited &list
//= {42,"a b",#nil,{7}}
//> lv stats &list
//= values   6
//= objects  3
//= shared   0
//= cycles   0
//= depth    2
//= bytes    [208|340]
//= chain    0

lvVector ring(3);  // whose first element does not come first
//> print ring
//= list of 3 = {2, 3, 4}

lvVector emptyList(4);
//> print emptyList
//= list of 0
//> lv print &emptyList
//= {}

lvHashMap hashMap(7);
//> print hashMap
//= map of 2 = {["name"] = "pump room", ["ports"] = list of 1 = {502}}
//> lv print &hashMap
//= {(name="pump room"),(ports={502})}
//> interpreter-exec mi "-enable-pretty-printing"
//= ^done
//> interpreter-exec mi "-var-create shown * hashMap"
//= ^done,name="shown",numchild="0",value="{...}",type="lvHashMap",displayhint="map",dynamic="1",has_more="1"
//> interpreter-exec mi "-var-list-children --simple-values shown 0 2"
//= ^done,numchild="2",displayhint="map",children=[child={name="shown.[0]",exp="[0]",numchild="0",value="\"name\"",type="lvArg",dynamic="1"},child={name="shown.[1]",exp="[1]",numchild="0",value="\"pump room\"",type="lvArg",dynamic="1"}],has_more="1"

lviMap* interface = nullptr;  // of that map: not what cells hold
//> print *interface
//= map of 2 = {["name"] = "pump room", ["ports"] = list of 1 = {502}}

lvHashMap crowded(1);  // all in one chain
//> lv stats &crowded
//= values   7
//= objects  1
//= shared   0
//= cycles   0
//= depth    1
//= bytes    [124|224]
//= chain    3

lvArg tupleSet;
//> print tupleSet
//= tuple set of 2 = {["a"] = 1, ["b"] = 2}
//> lv print &tupleSet
//= {(a=1),(b=2)}

lvArg linked;
//> print linked
//= linked list of 2 = {1, "two"}
//> lv print &linked
//= {1,two}

lvArg sorted;
//> print sorted
//= sorted list of 3 = {1, 2, 3}
//> lv print &sorted
//= {1,2,3}

lvArg stack;
//> print stack
//= stack of 2 = {"bottom", "top"}
//> lv print &stack
//= {bottom,top}

lvrVector unheld(2);
//> print unheld
//= list of 1 = {1}
//> lv print &unheld
//= {1}

// ---- Classes and objects -----------------------------------------------------------------------

namespace {
class Point : public lvReferencable {
 public:
  lvString const& getClassDesc() const override {
    static lvString const key("Point");
    return key;
  }
  void weigh(lvArg& result, lvArg const& factor) const {
    result.setInt(x.getInt() * factor.getInt());
  }

  lvArg x;
  lvArg y;
};

class Point3 : public Point {
 public:
  lvString const& getClassDesc() const override {
    static lvString const key("Point3");
    return key;
  }
  lvArg z;
};

class Valve {
 public:
  virtual ~Valve() = default;
  int position = 3;
};

// The counted object is not where the whole begins.
class Controlled : public Valve, public Point {};

class Gauge : public lvReferencable {
 public:
  lvString const& getClassDesc() const override {
    static lvString const key("pressure gauge");
    return key;
  }
  lvArg level;
};

class Plain : public lvReferencable {};

class Ports : public lvrVector {
 public:
  Ports() : lvrVector(4) {}
};
}  // namespace

lvArg point;
//> print point
//= Point = {x = 3, y = "deep"}
//> lv print &point
//= *Point{3,deep}
//> lv stats &point
//= values   3
//= objects  2
//= shared   0
//= cycles   0
//= depth    1
//= bytes    [109|173]
//= chain    0

lvArg derived;  // of a class without a description, derived from one that has one
//> print derived
//= Point = {x = 5, y = #nil}
//> lv print &derived
//= *Point{5,#nil}

lvArg gauge;  // of a class whose name in C++ is another
//> print gauge
//= pressure gauge = {level = 4}
//> lv print &gauge
//= *"pressure gauge"{4}
//- <(anonymous namespace)::Gauge at ADDRESS>

lvArg undescribed;
//> print undescribed
//= <(anonymous namespace)::Plain at ADDRESS>
//> lv print &undescribed
//= <(anonymous namespace)::Plain at ADDRESS>

lvArg untold;  // of a class without type information
//> lv print &untold
//= <Untold at ADDRESS>

lvArg ports;  // of a class derived from a container
//> print ports
//= (anonymous namespace)::Ports, list of 1 = {502}
//> lv print &ports
//= {502}

lvClass described(lvArg::NilValue);
//> print described
//= <class Point: Fields x, y; Methods2 weigh>
//> lv print &described
//= <class Point: Fields x, y; Methods2 weigh>

lvClass describedHigher(lvArg::NilValue);
//> print describedHigher
//= <class Point3 (Point): Fields x, y, z; Methods2 weigh>

lvArg higher;
//> print higher
//= Point3 = {x = 1, y = 2, z = 3}
//> lv print &higher
//= *Point3{1,2,3}

lvVector classes(1);
//> lv print &classes
//= {<class Point>}

lvtClassRegistry* registry;
//> with print elements 6 -- print *registry
//= tuple set of 10 = {["Class"] = <class Class>, ["DLList"] = <class DLList>, ["HashMa"...] = <class HashMap>...}

// ---- Sinks and sources -------------------------------------------------------------------------

char buffer[32];
lvtStringArgDest writer(buffer, sizeof(buffer));
//> print writer
//= <text writer, 8 of 32 bytes used, 1 levels open: {1,"a b">
//> lv print &writer
//= <text writer, 8 of 32 bytes used, 1 levels open: {1,"a b">

lvtStringArgDest noBuffer;
//> print noBuffer
//= <text writer without a buffer>

lvtStringArgSource parser("12 x,word,{2,3}", -1);
//> print parser
//= <text parser, 9 of 15 bytes read, 1 errors, next: ,{2,3}>
//> lv print &parser
//= <text parser, 9 of 15 bytes read, 1 errors, next: ,{2,3}>

lvtStringArgSource noSource;
//> print noSource
//= <text parser without a text>

// ---- What is no value ---------------------------------------------------------------------------

lvMapEnumerator cursor(*hashMap.getMap());
//> lv print cursor
//= <no object at ADDRESS>
//- 'cursor' has unknown type; cast it to its declared type
//> lv print *cursor.cursor
//= <lvrHashMap::RealEnumerator at ADDRESS>
//- 'cursor' has unknown type; cast it to its declared type

double ratio = 0.5;
//> lv print ratio
//= This is neither a value of the library nor an address.
//- 'ratio' has unknown type; cast it to its declared type
//> lv print 1 +
//= A syntax error in expression, near `'.
//> lv print
//= An expression is expected.
//> lv print -elements many list
//= A number is expected, not many.
//> lv graph &list /no/such/folder/file
//= /no/such/folder/file: No such file or directory.
//> lv graph list
//= An expression and a file are expected.

// ---- Shared, and in circles --------------------------------------------------------------------

lvVector circle(2);
//> print circle
//= list of 2 = {1, <cycle: 1 up>}
//> lv print &circle
//= {1,<cycle: 1 up>}

lvVector wheel(2);  // over a map
//> lv print &wheel
//= {{(back=<cycle: 2 up>)}}
//> lv stats &wheel
//= values   4
//= objects  3
//= shared   1
//= cycles   1
//= depth    2
//= bytes    [213|349]
//= chain    1
//> lv graph &wheel FILE
//= digraph value {
//=   node [shape=box, fontname="monospace"];
//=   n1 [label="list of 1"];
//=   n2 [label="map of 1"];
//=   n1 -> n2 [label="0", color=red, fontcolor=red];
//=   n2 -> n1 [label="\"back\"", color=red, fontcolor=red];
//= }

lvVector twice(2);  // the same list two times
//> lv print &twice
//= {{7},{7}}
//> lv graph &twice FILE
//= digraph value {
//=   node [shape=box, fontname="monospace"];
//=   n1 [label="list of 2"];
//=   n2 [label="list of 1\n0: 7\l"];
//=   n1 -> n2 [label="0"];
//=   n1 -> n2 [label="1"];
//= }

// ---- Damaged -----------------------------------------------------------------------------------

lvArg unknownTag;
//> print unknownTag
//= <unknown tag 7>
//> lv print &unknownTag
//= <unknown tag 7>

lvArg noObject;
//> print noObject
//= <no list>

lvArg nowhere;
//> print nowhere
//= <unreadable 0x10>

lvArg poisoned;
//> print poisoned
//= <no object at ADDRESS>

lvArg wrongTag;
//> print wrongTag
//= <no map but lvrVector at ADDRESS>

lvArg released;
//> print released
//= <released lvrVector at ADDRESS>

lvArg unreadableText;
//> print unreadableText
//= <unreadable 0x10>

lvVector hugeList(1);
//> print hugeList
//= list of 60000 = {<60000 in room for 1>}

lvArg hugeSet;
//> print hugeSet
//= tuple set of 2147483647 = {[...] = <2147483647 in room for 8>}
//> lv print &hugeSet
//= {<2147483647 in room for 8>}

lvArg negativeSet;
//> print negativeSet
//= tuple set of -5 = {[...] = <-5 in room for 8>}

lvArg lostSet;
//> print lostSet
//= tuple set of 3 = {[...] = <unreadable 0x10>}

lvHashMap loopedMap(1);
//> print loopedMap
//= map of 1 = {[1] = 10, [...] = <more than 1>}

lvHashMap shortMap(1);
//> print shortMap
//= map of 9 = {[1] = 10, [...] = <1 instead of 9>}

lvHashMap lostMap(7);
//> print lostMap
//= map of 1 = {[...] = <unreadable 0x10>}

lvArg loopedList;
//> print loopedList
//= linked list of 2 = {1, 1, <more than 2>}

lvArg endlessList;
//> with print elements 3 -- print endlessList
//= linked list of 2147483647 = {1, 1, 1...}

lvClass ownBase(lvArg::NilValue);
//> print ownBase
//= <class Snake (Snake)>

lvClass lostClass(lvArg::NilValue);
//> print lostClass
//= <class Lost: <unreadable 0x10>>

lvVector deep(1);  // a thousand levels
//> with print max-depth 3 -- print deep
//= list of 1 = {{{{...}}}}
//> lv print -elements 3 &deep
//= {{{{...}}}}
//> python print(gdb.execute("lv print -max-depth 100000 &deep", to_string=True).count("{"))
//= 101
//> lv stats &deep
//= values   1001
//= objects  1001
//= shared   0
//= cycles   0
//= depth    1000
//= bytes    [64064|104104]
//= chain    0

namespace {

lvArg newVector(int size) { return *new lvrVector(size); }

lvReferencable& objectIn(lvArg const& cell) { return *cell.getReferencable(); }

lvrVector& vectorIn(lvArg const& cell) { return static_cast<lvrVector&>(objectIn(cell)); }

void fillCells() {
  address.setPointer(reinterpret_cast<void*>(0xc0ffee));
  marked.setBookkeeping(0x5A5A5A5);
  plain.setString("of its own", -1, lvrString::CopyAndOwn);
  std::string const many(70000, 'a');
  longText.setString(many.c_str(), -1, lvrString::CopyAndOwn);
  noText = *new lvrString;
}

void fillContainers() {
  lvArg const inner = newVector(1);
  vectorIn(inner).insert(number(7), -1);
  list->insert(number(42), -1);
  list->insert(lvString("a b"), -1);
  list->insert(nil, -1);
  list->insert(inner, -1);
  for (int i = 1; i <= 3; ++i) {
    ring->insert(number(i), -1);
  }
  ring->remove(0);
  ring->insert(number(4), -1);
  lvVector const mapPorts(1);
  mapPorts->insert(number(502), -1);
  interface = hashMap.getMap();
  hashMap->put(lvString("name"), interned);
  hashMap->put(lvString("ports"), mapPorts);
  for (int i = 1; i <= 3; ++i) {
    crowded->put(number(i), number(i));
  }
  unheld.insert(number(1), -1);
  twice->insert(inner, -1);
  twice->insert(inner, -1);
}

void fillOtherContainers() {
  tupleSet = *lvrTupleSet::defaultCtorMethod();
  auto& set = static_cast<lvrTupleSet&>(objectIn(tupleSet));
  set.put(lvString("b"), number(2));
  set.put(lvString("a"), number(1));
  linked = *lvrDLList::defaultCtorMethod();
  auto& nodes = static_cast<lvrDLList&>(objectIn(linked));
  nodes.insert(number(1), -1);
  nodes.insert(lvString("two"), -1);
  sorted = *new lvrSortedArrayList(0);
  for (int i = 3; i >= 1; --i) {
    static_cast<lvrSortedArrayList&>(objectIn(sorted)).add(number(i));
  }
  stack = *lvrStack::defaultCtorMethod();
  static_cast<lvrStack&>(objectIn(stack)).push(lvString("bottom"));
  static_cast<lvrStack&>(objectIn(stack)).push(lvString("top"));
}

void fillObjects() {
  lvClassBuilder<Point> points("Point");
  points.field("x", &Point::x).field("y", &Point::y);
  points.method<lvrClass::Methods2>("weigh", &Point::weigh).registerClass();
  lvClassBuilder<Gauge>("pressure gauge").field("level", &Gauge::level).registerClass();
  registry = lvtClassRegistry::getInstance();
  lvClassBuilder<Point3>("Point3", points).field("z", &Point3::z).registerClass();
  describedHigher = lvClass(registry->getClass(lvString("Point3")));
  described = lvClass(registry->getClass(lvString("Point")));
  classes->insert(described, -1);
  auto& shown = *new Point;
  shown.x = number(3);
  shown.y = lvString("deep");
  point = shown;
  auto& raised = *new Point3;
  raised.x = number(1);
  raised.y = number(2);
  raised.z = number(3);
  higher = raised;
  auto& controlled = *new Controlled;
  controlled.x = number(5);
  derived = controlled;
  auto& level = *new Gauge;
  level.level = number(4);
  gauge = level;
  undescribed = *new Plain;
  untold = *new Untold;
  auto& own = *new Ports;
  own.insert(number(502), -1);
  ports = own;
}

void fillStreams() {
  lvArg kind;
  kind.setInt(lvArg::ListType);
  writer.enter(kind, -1);
  writer.putArg(number(1));
  writer.putArg(lvString("a b"));
  lvArg item;
  parser.getArg(item);
  parser.getArg(item);
}

void closeCircles() {
  circle->insert(number(1), -1);
  circle->insert(circle, -1);
  lvHashMap const spoke(1);
  spoke->put(lvString("back"), wheel);
  wheel->insert(spoke, -1);
  lvArg below = deep;
  for (int i = 0; i < 1000; ++i) {
    lvArg const next = newVector(1);
    vectorIn(below).insert(next, -1);
    below = next;
  }
}

// Objects that are not there.
void damageCells() {
  forge(unknownTag, 7, nullptr);
  forge(noObject, lvArg::ListType, nullptr);
  forge(nowhere, lvArg::ListType, reinterpret_cast<void*>(0x10));
  void* const memory = std::malloc(sizeof(lvrVector));
  std::memset(memory, 0xA5, sizeof(lvrVector));
  forge(poisoned, lvArg::ListType, memory);
  forge(wrongTag, lvArg::MapType, list.getReferencable());
  forge(released, lvArg::ListType, &unheld);
  auto& lost = *new lvrString;
  lost.setStringData("lost", -1, lvrString::CopyAndOwn);
  unreadableText = lost;
  overwrite(&objectIn(unreadableText), lvLayoutAccess<lvrString>::textOffset, std::uintptr_t{0x10});
}

// Counts and pointers that are wrong.
void damageArrays() {
  using Vector = lvLayoutAccess<lvrVector>;
  using Set = lvLayoutAccess<lvrTupleSet>;
  overwrite(hugeList.getReferencable(), Vector::countOffset, std::uint16_t{60000});
  hugeSet = *lvrTupleSet::defaultCtorMethod();
  overwrite(&objectIn(hugeSet), Set::countOffset, std::int32_t{0x7fffffff});
  negativeSet = *lvrTupleSet::defaultCtorMethod();
  overwrite(&objectIn(negativeSet), Set::countOffset, std::int32_t{-5});
  lostSet = *lvrTupleSet::defaultCtorMethod();
  overwrite(&objectIn(lostSet), Set::countOffset, std::int32_t{3});
  overwrite(&objectIn(lostSet), Set::entriesOffset, std::uintptr_t{0x10});
}

void damageChains() {
  using Map = lvLayoutAccess<lvrHashMap>;
  using Entry = lvLayoutAccess<lvrHashMap::HashEntry>;
  using List = lvLayoutAccess<lvrDLList>;
  using Class = lvLayoutAccess<lvrClass>;
  for (lvHashMap* each : {&loopedMap, &shortMap, &lostMap}) {
    (*each)->put(number(1), number(10));
  }
  auto& looped = static_cast<lvrHashMap&>(objectIn(loopedMap));
  lvrHashMap::HashEntry* const entry = Map::buckets(looped)[0];
  overwrite(entry, Entry::nextOffset, entry);
  overwrite(&objectIn(shortMap), Map::countOffset, std::int32_t{9});
  overwrite(&objectIn(lostMap), Map::bucketsOffset, std::uintptr_t{0x10});
  for (lvArg* each : {&loopedList, &endlessList}) {
    *each = *lvrDLList::defaultCtorMethod();
    auto& nodes = static_cast<lvrDLList&>(objectIn(*each));
    nodes.insert(number(1), -1);
    nodes.insert(number(2), -1);
    auto* const first = const_cast<lvrDLList::lvrDLListNode*>(List::head(nodes));
    overwrite(first, offsetof(lvrDLList::lvrDLListNode, next), first);
  }
  overwrite(&objectIn(endlessList), List::countOffset, std::int32_t{0x7fffffff});
  ownBase = lvClass(1, lvString("Snake"), nullptr);
  ownBase->setSuperClass(ownBase);
  lostClass = lvClass(1, lvString("Lost"), nullptr);
  overwrite(lostClass.getReferencable(), Class::reflectionOffset, std::uintptr_t{0x10});
}

}  // namespace

int main() {
  fillCells();
  fillContainers();
  fillOtherContainers();
  fillObjects();
  fillStreams();
  closeCircles();
  damageCells();
  damageArrays();
  damageChains();
  stopHere();
  std::_Exit(0);  // What is damaged is never destroyed.
}
