// GHashTable, beside MapsBench.cpp.

#include <glib.h>

#include <string>

#include "bench/Bench.h"
#include "bench/Maps.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

// What a key is for the table: the number itself, or a text that the table copies.
gpointer addressOf(int key) { return GINT_TO_POINTER(key); }
gpointer copyOf(int key) { return GINT_TO_POINTER(key); }
gconstpointer addressOf(std::string const& key) { return key.c_str(); }
gpointer copyOf(std::string const& key) { return g_strdup(key.c_str()); }

GHashTable* newTable(int const* /*key*/) {
  return g_hash_table_new_full(g_direct_hash, g_direct_equal, nullptr, unref);
}

GHashTable* newTable(std::string const* /*key*/) {
  return g_hash_table_new_full(g_str_hash, g_str_equal, g_free, unref);
}

template <class KeyType>
class TableMap {
 public:
  using Key = KeyType;
  using Value = CountedVariant;

  static Key makeKey(Keys const& keys, int number) {
    if constexpr (std::is_same_v<Key, int>) {
      return number * keys.factor;
    } else {
      return keys.textOf(number);
    }
  }
  static CountedVariant makeValue(std::string const& text) { return CountedVariant(text); }

  TableMap() : table(newTable(static_cast<Key const*>(nullptr))) {}
  ~TableMap() { g_hash_table_unref(table); }
  TableMap(TableMap const&) = delete;
  TableMap& operator=(TableMap const&) = delete;

  void put(Key const& key, CountedVariant const& value) {
    g_hash_table_insert(table, copyOf(key), g_variant_ref(value.get()));
  }
  CountedVariant get(Key const& key) const {
    return CountedVariant(static_cast<GVariant*>(g_hash_table_lookup(table, addressOf(key))));
  }

 private:
  GHashTable* table;
};

void addAll() {
  addMap<TableMap<int>>("GLib", Integers);
  addMap<TableMap<std::string>>("GLib", TextKeys);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
