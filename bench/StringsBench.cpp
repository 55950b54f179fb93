// Finding interned strings, making and releasing them, with many alive and with few.

#include <tarselvalues/tarselvalues.h>

#include <boost/flyweight.hpp>
#include <string>

#include "bench/Bench.h"
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

void addAll() {
  addInterning<Ours>("ours");
  addInterning<Flyweight>("Boost.Flyweight");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
