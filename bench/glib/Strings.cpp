// GLib's interned strings, beside StringsBench.cpp: those that are counted, and those that stay.

#include <glib.h>

#include <string>
#include <utility>

#include "bench/Bench.h"
#include "bench/Interning.h"

namespace bench {

namespace {

class RefString {
 public:
  explicit RefString(char const* text) : held(g_ref_string_new_intern(text)) {}
  RefString(RefString&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
  RefString& operator=(RefString&& other) noexcept {
    std::swap(held, other.held);
    return *this;
  }
  ~RefString() {
    if (held != nullptr) {
      g_ref_string_release(held);
    }
  }

 private:
  char* held;
};

struct Counted {
  using Handle = RefString;
  static Handle intern(std::string const& text) { return Handle(text.c_str()); }
};

// The table of those that stay is copied whole for every 2,048 new ones.
constexpr int MostStaying = 10000;

struct Staying {
  using Handle = char const*;
  static Handle intern(std::string const& text) { return g_intern_string(text.c_str()); }
};

void addAll() {
  addInterning<Counted>("GRefString");
  addFinding<Staying>("g_intern_string", MostStaying);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
