// Hash maps that are left at the size they are made with by default.

#include <tarselvalues/tarselvalues.h>

#include <any>
#include <boost/unordered/unordered_flat_map.hpp>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>

#include "bench/Bench.h"
#include "bench/Floors.h"
#include "bench/Maps.h"
#include "bench/OurCells.h"
#include "bench/StandardMaps.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

class OurMap : public OurCells {
 public:
  OurMap() : handle(lvrHashMap::DefaultHashSize), map(handle.getMap()) {}
  void put(lvArg const& key, lvArg const& value) { map->put(key, value); }
  lvArg get(lvArg const& key) const { return map->get(key); }

 private:
  lvHashMap handle;
  lviMap* map;
};

class NlohmannMap {
 public:
  using Key = std::string;
  using Value = nlohmann::json;

  static std::string makeKey(Keys const& keys, int number) { return keys.textOf(number); }
  static nlohmann::json makeValue(std::string const& text) { return text; }

  void put(std::string const& key, nlohmann::json const& value) { object[key] = value; }
  nlohmann::json get(std::string const& key) const { return *object.find(key); }

 private:
  nlohmann::json object = nlohmann::json::object();
};

template <class Key>
void addStandard(Keys const& keys) {
  addMap<StandardMap<std::unordered_map<Key, SharedText>>>("std::shared_ptr", keys);
  addMap<StandardMap<std::unordered_map<Key, std::any>>>("std::any", keys);
  addMap<StandardMap<boost::unordered_flat_map<Key, SharedText>>>("Boost.Unordered", keys);
}

// The floor of looking up any key.
void addTouching(Keys const& keys) {
  bool const keysAreObjects = keys.textOf != nullptr;
  for (int const entries : EntryCounts) {
    add(getAnyWork(keys), "floor: touch the entry", touchAny, keysAreObjects)->Arg(entries);
  }
}

void addAll() {
  for (Keys const* const keys : {&Integers, &MultiplesOfSeven, &TextKeys, &InternedKeys,
                                 &KeysOfOneHash, &InternedKeysOfOneHash}) {
    addMap<OurMap>("ours", *keys);
    addTouching(*keys);
  }
  addStandard<int>(Integers);
  addStandard<std::string>(TextKeys);
  addMap<NlohmannMap>("nlohmann", TextKeys);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
