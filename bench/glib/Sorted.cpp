// GSequence, beside SortedBench.cpp.

#include <glib.h>

#include <cstring>
#include <string>

#include "bench/Bench.h"
#include "bench/SortedLists.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

gint compareTexts(gconstpointer a, gconstpointer b, gpointer /*context*/) {
  auto const textOf = [](gconstpointer variant) {
    return g_variant_get_string(static_cast<GVariant*>(const_cast<gpointer>(variant)), nullptr);
  };
  return std::strcmp(textOf(a), textOf(b));
}

class Sequence {
 public:
  using Value = CountedVariant;
  static CountedVariant makeValue(std::string const& text) { return CountedVariant(text); }

  Sequence() : sequence(g_sequence_new(unref)) {}
  ~Sequence() { g_sequence_free(sequence); }
  Sequence(Sequence const&) = delete;
  Sequence& operator=(Sequence const&) = delete;

  void add(CountedVariant const& value) {
    g_sequence_insert_sorted(sequence, g_variant_ref(value.get()), compareTexts, nullptr);
  }
  bool contains(CountedVariant const& value) const {
    return g_sequence_lookup(sequence, value.get(), compareTexts, nullptr) != nullptr;
  }

 private:
  GSequence* sequence;
};

void addAll() { addSortedList<Sequence>("GLib"); }

Registration const registration(addAll);

}  // namespace

}  // namespace bench
