#include "tarselvalues/core/ClassKeys.h"

#include <pthread.h>

#include <cstddef>
#include <new>

#include "tarselvalues/core/lvString.h"

namespace tarselvalues {
namespace {

// A key under a fixed name. It lies in storage that is never destroyed, so that code which runs
// after the release at exit finds a cell without an entry instead of a dead one.
class HeldKey {
 public:
  explicit HeldKey(char const* text) : name(text) { new (storage) lvString(name); }

  lvString const& get() {
    if (key().getReferencable() == nullptr) {
      key() = lvString(name);  // Asked for after the release.
    }
    return key();
  }

  void release() { key().releaseData(); }

 private:
  lvString& key() { return *std::launder(reinterpret_cast<lvString*>(storage)); }

  char const* name;
  alignas(lvString) unsigned char storage[sizeof(lvString)];
};

class ReleaseAtExit {
 public:
  template <std::size_t Count>
  explicit ReleaseAtExit(HeldKey (&keys)[Count]) : first(keys), count(Count) {}
  ~ReleaseAtExit() {
    for (std::size_t i = 0; i < count; ++i) {
      first[i].release();
    }
  }
  ReleaseAtExit(ReleaseAtExit const&) = delete;
  ReleaseAtExit& operator=(ReleaseAtExit const&) = delete;

 private:
  HeldKey* first;
  std::size_t count;
};

[[maybe_unused]] lvString const& internedAtLoad = classKey(ClassKey::Class);

}  // namespace

lvString const& classKey(ClassKey key) {
  // In the order of ClassKey, which is the order in which they are interned.
  static HeldKey keys[] = {
      HeldKey("Class"),    HeldKey("String"),  HeldKey("CommonSerializer"),
      HeldKey("TupleSet"), HeldKey("Vector"),  HeldKey("SortedArrayList"),
      HeldKey("DLList"),   HeldKey("HashMap"), HeldKey("Stack"),
  };
  static ReleaseAtExit const release(keys);
  return keys[static_cast<std::size_t>(key)].get();
}

lvString const& referencableClassKey() {
  static HeldKey keys[] = {HeldKey("Referencable")};
  static ReleaseAtExit const release(keys);
  return keys[0].get();
}

}  // namespace tarselvalues
