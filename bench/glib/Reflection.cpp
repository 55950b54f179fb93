// Functions in a GHashTable, beside ReflectionBench.cpp.

#include <glib.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <string>

#include "bench/Bench.h"
#include "bench/Fields.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

struct Record {
  std::array<CountedVariant, FieldNames.size()> fields;
};

struct Accessor {
  CountedVariant (*get)(Record const& record);
  void (*set)(Record& record, CountedVariant const& value);
};

template <std::size_t Field>
constexpr Accessor accessorOf() {
  return {[](Record const& record) { return record.fields[Field]; },
          [](Record& record, CountedVariant const& value) { record.fields[Field] = value; }};
}

constexpr std::array<Accessor, FieldNames.size()> Accessors = {accessorOf<0>(), accessorOf<1>(),
                                                               accessorOf<2>(), accessorOf<3>()};

// A table from texts that stay to what stays, too.
class Names {
 public:
  Names() : table(g_hash_table_new(g_str_hash, g_str_equal)) {}
  ~Names() { g_hash_table_unref(table); }
  Names(Names const&) = delete;
  Names& operator=(Names const&) = delete;

  void put(char const* name, void const* named) {
    g_hash_table_insert(table, const_cast<char*>(name), const_cast<void*>(named));
  }
  void const* get(std::string const& name) const {
    return g_hash_table_lookup(table, name.c_str());
  }

 private:
  GHashTable* table;
};

class TableObject {
 public:
  using Name = std::string;
  using Value = CountedVariant;
  static std::string makeName(char const* name) { return name; }
  static CountedVariant makeValue(std::string const& text) { return CountedVariant(text); }

  TableObject() {
    for (std::size_t i = 0; i < FieldNames.size(); ++i) {
      names.put(FieldNames[i], &Accessors[i]);
    }
  }

  CountedVariant get(std::string const& name) const { return accessorOf(name).get(record); }
  void set(std::string const& name, CountedVariant const& value) {
    accessorOf(name).set(record, value);
  }
  CountedVariant get(int index) const {
    return Accessors[static_cast<std::size_t>(index)].get(record);
  }
  void set(int index, CountedVariant const& value) {
    Accessors[static_cast<std::size_t>(index)].set(record, value);
  }

 private:
  Accessor const& accessorOf(std::string const& name) const {
    return *static_cast<Accessor const*>(names.get(name));
  }

  Names names;
  Record record;
};

// A record under an atomic count.
struct BoxRelease {
  void operator()(Record* record) const {
    g_atomic_rc_box_release_full(record,
                                 [](gpointer ended) { static_cast<Record*>(ended)->~Record(); });
  }
};
using RecordBox = std::unique_ptr<Record, BoxRelease>;

struct Maker {
  RecordBox (*make)();
};

constexpr Maker RecordMaker = {
    [] { return RecordBox(new (g_atomic_rc_box_alloc(sizeof(Record))) Record); }};

struct TableFactory {
  using Name = std::string;
  static std::string makeName(char const* name) { return name; }
  static RecordBox make(std::string const& name) {
    return static_cast<Maker const*>(makers().get(name))->make();
  }

 private:
  static Names const& makers() {
    static Names table;
    static bool const filled = [] {
      for (char const* const name : ClassNames) {
        table.put(name, &RecordMaker);
      }
      return true;
    }();
    static_cast<void>(filled);
    return table;
  }
};

void addAll() {
  addFields<TableObject>("GLib");
  addFactory<TableFactory>("GLib");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
