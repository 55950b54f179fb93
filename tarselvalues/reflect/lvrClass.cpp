#include "tarselvalues/reflect/lvrClass.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/NameIndex.h"

using tarselvalues::castLikely;

namespace {

constexpr int Refused = -1;
constexpr int NotFound = -1;
constexpr int GapOfOneEntry = -1;

constexpr int MaxEntries = 65535;
constexpr std::size_t WordSize = sizeof(void*);

// The buckets of a map of names, beyond one for each.
constexpr int SpareBuckets = 3;

// How far up superclasses are followed: further than any hierarchy, and an end to a circular one.
constexpr int MaxSuperClasses = 1000;

bool isStatic(lvrClass::OffsetTableType kind) { return kind % 2 != 0; }

bool isMethod(lvrClass::OffsetTableType kind) {
  return kind == lvrClass::Methods2 || kind == lvrClass::Methods4 || kind == lvrClass::Methods8;
}

bool isField(lvrClass::OffsetTableType kind) { return !isStatic(kind) && !isMethod(kind); }

std::size_t widthOf(lvrClass::OffsetTableType kind) {
  return isMethod(kind) ? 2 * WordSize : WordSize;
}

static_assert(sizeof(lvrClass::Method) == 2 * WordSize &&
                  sizeof(lvrClass::MethodNArgs) == 2 * WordSize,
              "a member-function entry is the platform's own pointer to member");

template <class Entry>
Entry readEntry(unsigned char const* at) {
  Entry entry;
  std::memcpy(&entry, at, sizeof(entry));
  return entry;
}

// The entry as a pointer to a member function; null, too, where there is no such entry.
template <class Pointer>
Pointer methodAt(unsigned char const* at) {
  return at != nullptr ? readEntry<Pointer>(at) : nullptr;
}

// Calls a method on the object. UBSan would check the part of the object that the method belongs
// to, which may be another base, as if it were the lvReferencable.
template <class Pointer, class... Arguments>
__attribute__((no_sanitize("vptr"))) void call(lvReferencable& object, Pointer method,
                                               Arguments&&... arguments) {
  (object.*method)(std::forward<Arguments>(arguments)...);
}

// From names to indices of entries. It stands behind the entries of a table, out of sight, unless
// there are very many.
using EntryIndex = tarselvalues::NameIndex<int>;

constexpr int MaxIndexed = 1000;

std::size_t bytesBehindEntries(int n) {
  return n > MaxIndexed ? 0
                        : sizeof(EntryIndex) + EntryIndex::slotsFor(static_cast<std::size_t>(n)) *
                                                   sizeof(EntryIndex::Slot);
}

// Null if there is none.
EntryIndex* indexBehind(lvrClass::GenericMemberOffsetTable const& table) {
  if (table.entries == nullptr || table.count > MaxIndexed) {
    return nullptr;
  }
  std::size_t const bytes = std::size_t{table.count} * table.entryWidth;
  return reinterpret_cast<EntryIndex*>(static_cast<char*>(table.entries) + bytes);
}

void makeIndexBehind(lvrClass::GenericMemberOffsetTable const& table) {
  if (EntryIndex* const index = indexBehind(table)) {
    new (index) EntryIndex(reinterpret_cast<EntryIndex::Slot*>(index + 1), table.count);
  }
}

}  // namespace

lvrClass::lvrClass() : lvrClass(0, lvArg(), nullptr) {}

lvrClass::lvrClass(unsigned int number, lvArg const& name, DefaultCtor* ctor)
    : lvrClass(number, name, lvArg(), ctor) {}

lvrClass::lvrClass(unsigned int /*number*/, lvArg const& name, lvArg const& superclass,
                   DefaultCtor* ctor)
    : defaultCtor_(ctor), reflection_(nullptr) {
  setKind(ClassKind);
  superClass_.assign(superclass);
  className_.assign(name);
}

lvrClass::~lvrClass() = default;  // The tables stay, deliberately.

lvReferencable* lvrClass::defaultCtorMethod() { return new lvrClass; }

lvString const& lvrClass::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::Class);
}

lvString const& lvrClass::getClassDesc() const { return getStaticClassDesc(); }

int lvrClass::finalize() { return 0; }

int lvrClass::setClassName(lvArg const& name) {
  return className_.isNil() ? className_.assign(name) : Refused;
}

int lvrClass::getClassName(lvArg& out) const { return out.assign(className_); }

int lvrClass::setSuperClass(lvArg const& superclass) {
  bool const accepted = superClass_.isNil() && superclass.getType() == lvArg::ClassType;
  return accepted ? superClass_.assign(superclass) : Refused;
}

int lvrClass::getSuperClass(lvArg& out) const { return out.assign(superClass_); }

lvReferencable* lvrClass::instantiateDefaultObject() const {
  return defaultCtor_ != nullptr ? defaultCtor_() : nullptr;
}

// ---- Asking ------------------------------------------------------------------------------------

lvrClass::GenericMemberOffsetTable* lvrClass::tableOf(OffsetTableType kind) const {
  return reflection_ != nullptr && kind < TableCount ? reflection_[kind] : nullptr;
}

// Where an entry lies; null if there is none.
unsigned char const* lvrClass::entryAt(OffsetTableType kind, int index) const {
  GenericMemberOffsetTable const* const table = tableOf(kind);
  if (table == nullptr || index < 0 || index >= table->count) {
    return nullptr;
  }
  return static_cast<unsigned char const*>(table->entries) +
         static_cast<std::size_t>(index) * table->entryWidth;
}

// The offset of a field; 0, where no field can be, if there is none.
std::ptrdiff_t lvrClass::fieldOffset(OffsetTableType kind, int index) const {
  unsigned char const* const entry = isField(kind) ? entryAt(kind, index) : nullptr;
  return entry != nullptr ? readEntry<std::ptrdiff_t>(entry) : 0;
}

int lvrClass::getNItems(OffsetTableType kind) const {
  GenericMemberOffsetTable const* const table = tableOf(kind);
  return table != nullptr ? table->count : 0;
}

int lvrClass::localLookupIndex(OffsetTableType kind, lvArg const& key) const {
  GenericMemberOffsetTable const* const table = tableOf(kind);
  if (table == nullptr || table->names.isNil()) {
    return NotFound;
  }
  EntryIndex const* const beside = indexBehind(*table);
  if (int const* const index = beside != nullptr ? beside->find(key) : nullptr) {
    return *index;
  }
  lviMap const* const names = castLikely<lviMap, lvrHashMap>(table->names.getReferencable());
  return names != nullptr ? names->get(key).getInt() : NotFound;
}

// ---- Fields ------------------------------------------------------------------------------------

int lvrClass::setFieldAt(lvReferencable& object, lvArg const& value, OffsetTableType kind,
                         int index) const {
  std::ptrdiff_t const offset = fieldOffset(kind, index);
  return offset != 0 ? fieldAt(object, offset).assign(value) : Refused;
}

int lvrClass::getFieldAt(lvArg& out, lvReferencable const& object, OffsetTableType kind,
                         int index) const {
  std::ptrdiff_t const offset = fieldOffset(kind, index);
  return offset != 0 ? out.assign(fieldAt(object, offset)) : Refused;
}

int lvrClass::setObjectField(lvReferencable& object, lvArg const& name, lvArg const& value) const {
  return setFieldAt(object, value, Fields, localLookupIndex(Fields, name));
}

int lvrClass::getObjectField(lvArg& out, lvReferencable const& object, lvArg const& name) const {
  return getFieldAt(out, object, Fields, localLookupIndex(Fields, name));
}

// ---- Methods -----------------------------------------------------------------------------------

int lvrClass::invokeMethod(lvReferencable& object, lvArg& result, lvArg const& argument,
                           OffsetTableType kind, int index) {
  auto const method = methodAt<Method>(isMethod(kind) ? entryAt(kind, index) : nullptr);
  if (method == nullptr) {
    return Refused;
  }
  call(object, method, result, argument);
  return 0;
}

int lvrClass::invokeMethod(lvReferencable& object, lvArg& result, lvArg const& argument,
                           OffsetTableType kind, lvArg const& name) {
  return invokeMethod(object, result, argument, kind, localLookupIndex(kind, name));
}

int lvrClass::invokeMethodNArgs(lvReferencable& object, lvArg& result, lvArg const* arguments,
                                int count, OffsetTableType kind, int index) {
  unsigned char const* const entry = entryAt(kind, index);
  if (entry != nullptr && isStatic(kind)) {
    auto* const function = readEntry<Function*>(entry);
    if (function == nullptr) {
      return Refused;
    }
    function(result, arguments, count);
    return 0;
  }
  auto const method = methodAt<MethodNArgs>(isMethod(kind) ? entry : nullptr);
  if (method == nullptr) {
    return Refused;
  }
  call(object, method, result, arguments, count);
  return 0;
}

int lvrClass::invokeMethodNArgs(lvReferencable& object, lvArg& result, lvArg const* arguments,
                                int count, OffsetTableType kind, lvArg const& name) {
  return invokeMethodNArgs(object, result, arguments, count, kind, localLookupIndex(kind, name));
}

// ---- Filling the tables ------------------------------------------------------------------------

int lvrClass::needReflection() {
  if (reflection_ == nullptr) {
    reflection_ = new GenericMemberOffsetTable* [TableCount] {};
  }
  return 0;
}

int lvrClass::needOffsetTable(OffsetTableType kind, int n, GenericMemberOffsetTable const* base) {
  if (tableOf(kind) != nullptr) {
    return 0;
  }
  if (kind >= TableCount || n < 0 || n > MaxEntries) {
    return Refused;
  }
  needReflection();
  std::size_t const width = widthOf(kind);
  auto table = std::make_unique<GenericMemberOffsetTable>();
  table->entries = std::calloc(1, static_cast<std::size_t>(n) * width + bytesBehindEntries(n));
  if (table->entries == nullptr && n != 0) {
    return Refused;
  }
  table->count = static_cast<std::uint16_t>(n);
  table->entryWidth = static_cast<std::uint8_t>(width);
  makeIndexBehind(*table);
  if (base != nullptr && base->entries != nullptr && base->entryWidth == width) {
    std::size_t const inherited = base->count < table->count ? base->count : table->count;
    std::memcpy(table->entries, base->entries, inherited * width);
  }
  reflection_[kind] = table.release();
  return 0;
}

int lvrClass::needNames(OffsetTableType kind, int n) {
  GenericMemberOffsetTable* const table = tableOf(kind);
  if (table == nullptr) {
    return Refused;
  }
  if (table->names.isNil()) {
    table->names = lvHashMap(std::min(n, MaxEntries) + SpareBuckets);
  }
  return 0;
}

// The table of the nearest superclass that has one of this kind, or null.
lvrClass::GenericMemberOffsetTable const* lvrClass::inheritedTable(OffsetTableType kind) const {
  auto const* above = castLikely<lvrClass, lvrClass>(superClass_.getReferencable());
  for (int i = 0; above != nullptr && i < MaxSuperClasses; ++i) {
    if (above->tableOf(kind) != nullptr) {
      return above->tableOf(kind);
    }
    above = castLikely<lvrClass, lvrClass>(above->superClass_.getReferencable());
  }
  return nullptr;
}

int lvrClass::setDirectObjectOffsets(OffsetTableType kind, int n, void const* table, int gap) {
  if (table == nullptr) {
    return 0;
  }
  if (tableOf(kind) != nullptr || kind >= TableCount || n < 0 || n > MaxEntries ||
      gap < GapOfOneEntry) {
    return Refused;
  }
  GenericMemberOffsetTable const* const base = inheritedTable(kind);
  int const inherited = base != nullptr ? base->count : 0;
  if (needOffsetTable(kind, n + inherited, base) != 0) {
    return Refused;
  }
  std::size_t const width = widthOf(kind);
  std::size_t const stride = width + (gap == GapOfOneEntry ? width : static_cast<std::size_t>(gap));
  auto* to = static_cast<unsigned char*>(tableOf(kind)->entries) +
             static_cast<std::size_t>(inherited) * width;
  auto const* from = static_cast<unsigned char const*>(table);
  for (int i = 0; i < n; ++i, to += width, from += stride) {
    std::memcpy(to, from, width);
  }
  return 0;
}

void lvrClass::dropTable(OffsetTableType kind) {
  std::free(reflection_[kind]->entries);
  delete std::exchange(reflection_[kind], nullptr);
}

// Gives the entries of a new table their names; an entry may go without one. The table is dropped
// when the memory runs out.
template <class NameAt>
void lvrClass::nameEntries(OffsetTableType kind, int n, NameAt nameAt) {
  try {
    needNames(kind, n);
    lvHashMap const names(tableOf(kind)->names);
    EntryIndex* const beside = indexBehind(*tableOf(kind));
    for (int i = 0; i < n; ++i) {
      if (char const* const name = nameAt(i)) {
        lvString const key(name);
        lvArg index;
        index.setInt(i);
        names->put(key, index);
        if (beside != nullptr) {
          beside->set(key, i);
        }
      }
    }
    // Any number of threads may ask for names once the class is set up.
    static_cast<lvrHashMap&>(*names.getReferencable()).forgoIndex();
  } catch (...) {
    dropTable(kind);
    throw;
  }
}

int lvrClass::setDirectObjectNamedOffsets(OffsetTableType kind, int n, void const* table,
                                          char const* const* names) {
  int const status = setDirectObjectOffsets(kind, n, table, 0);
  if (status != 0 || table == nullptr || names == nullptr) {
    return status;
  }
  nameEntries(kind, n, [names](int i) { return names[i]; });
  return 0;
}

int lvrClass::setDirectObjectInterleavedNamedOffsets(OffsetTableType kind, int n,
                                                     void const* table) {
  int const status = setDirectObjectOffsets(kind, n, table, GapOfOneEntry);
  if (status != 0 || table == nullptr) {
    return status;
  }
  std::size_t const width = widthOf(kind);
  auto const* const firstName = static_cast<unsigned char const*>(table) + width;
  nameEntries(kind, n, [firstName, width](int i) {
    return readEntry<char const*>(firstName + static_cast<std::size_t>(i) * 2 * width);
  });
  return 0;
}
