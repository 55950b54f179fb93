// Finding interned strings, making and releasing them, with many alive and with few.

#include <tarselvalues/tarselvalues.h>

#include <boost/flyweight.hpp>
#include <string>

#include "bench/Bench.h"
#include "bench/Floors.h"
#include "bench/Interning.h"

namespace bench {

namespace {

struct Ours {
  using Handle = lvString;
  static Handle intern(std::string const& text) { return {text.c_str()}; }
};

struct Flyweight {
  using Handle = boost::flyweight<std::string>;
  static Handle intern(std::string const& text) { return Handle(text); }
};

// The floor of finding any string: the entry is the string, and its text lies behind it.
void addTouching(Texts const& texts) {
  for (int const alive : AliveCounts) {
    add(findAnyWork(texts), "floor: touch the string", touchAny, false)->Arg(alive);
  }
}

void addAll() {
  addTouching(Names);
  addTouching(TextsOfOneHash);
  addInterning<Ours>("ours");
  addInterning<Flyweight>("Boost.Flyweight");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
