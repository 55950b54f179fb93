// The tuple set and the sorted list.

#include <tarselvalues/tarselvalues.h>

#include <any>
#include <boost/container/flat_map.hpp>
#include <boost/container/flat_set.hpp>
#include <map>
#include <set>
#include <string>

#include "bench/Bench.h"
#include "bench/OurCells.h"
#include "bench/SortedLists.h"
#include "bench/StandardMaps.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

class OurTupleSet : public OurCells {
 public:
  OurTupleSet() : set(new lvrTupleSet(Room, Room, 0)), held(*set) {}
  void put(lvArg const& key, lvArg const& value) { set->put(key, value); }
  lvArg get(lvArg const& key) const { return set->get(key); }

 private:
  static constexpr int Room = 8;  // As it is made with by name.

  lvrTupleSet* set;
  lvArg held;
};

class OurSortedList : public OurCells {
 public:
  OurSortedList() : list(new lvrSortedArrayList(KeepDuplicates)), held(*list) {}
  void add(lvArg const& value) { list->add(value); }
  bool contains(lvArg const& value) const { return list->contains(value); }

 private:
  static constexpr unsigned int KeepDuplicates = 1;

  lvrSortedArrayList* list;
  lvArg held;
};

struct TextOrder {
  bool operator()(SharedText const& a, SharedText const& b) const { return *a < *b; }
};

template <class Container>
class StandardSortedList {
 public:
  using Value = SharedText;
  static SharedText makeValue(std::string const& text) { return sharedText(text); }

  void add(SharedText const& value) { container.insert(value); }
  bool contains(SharedText const& value) const { return container.find(value) != container.end(); }

 private:
  Container container;
};

template <class Key>
void addStandard(Keys const& keys) {
  addSortedMap<StandardMap<std::map<Key, SharedText>>>("std::shared_ptr", keys);
  addSortedMap<StandardMap<std::map<Key, std::any>>>("std::any", keys);
  addSortedMap<StandardMap<boost::container::flat_map<Key, SharedText>>>("Boost.Container", keys);
}

void addAll() {
  for (Keys const* const keys : {&Integers, &TextKeys, &InternedKeys}) {
    addSortedMap<OurTupleSet>("ours", *keys);
  }
  addStandard<int>(Integers);
  addStandard<std::string>(TextKeys);
  addSortedList<OurSortedList>("ours");
  addSortedList<StandardSortedList<std::multiset<SharedText, TextOrder>>>("std::shared_ptr");
  addSortedList<StandardSortedList<boost::container::flat_multiset<SharedText, TextOrder>>>(
      "Boost.Container");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
