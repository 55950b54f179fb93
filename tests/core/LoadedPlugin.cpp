// A plugin that links the library, for UnloadingProgram.cpp. It uses every class in a static
// initialiser, when it is asked to, and in a static destructor, which runs when it is unloaded.

#include "support/Cells.h"
#include "support/EveryClass.h"
#include "support/InternedTexts.h"
#include "support/ProgramChecks.h"
#include "support/StringTable.h"
#include "tarselvalues/tarselvalues.h"

namespace {

class Resident {
 public:
  Resident() : text("resident of the plugin"), key(lvrHashMap::getStaticClassDesc()) {
    test::useEveryClass("initialiser of the plugin");
    kept->insert(text, -1);
    kept->insert(lvHashMap(2), -1);
  }
  ~Resident() {
    tryAll("destructor of the plugin");
    test::useEveryClass("destructor of the plugin");
    test::judge();
  }
  Resident(Resident const&) = delete;
  Resident& operator=(Resident const&) = delete;

  // The library's strings and keys, whatever has been loaded and released meanwhile.
  void tryAll(char const* when) const {
    LV_CHECK(test::textOf(text) == "resident of the plugin", when);
    LV_CHECK(kept->at(0).eq(text) && kept->getSize() == 2, when);
    LV_CHECK(test::textOf(key) == "HashMap", when);
    LV_CHECK(key.eq(lvrHashMap::getStaticClassDesc()), when);
    LV_CHECK(test::textOf(lvrVector::getStaticClassDesc()) == "Vector", when);
    LV_CHECK(test::textOf(lvReferencable::getStaticClassDesc()) == "Referencable", when);
  }

 private:
  lvString text;
  lvArg key;
  lvVector kept{1};
};

Resident const resident;

}  // namespace

// Each answers how many checks failed.
extern "C" __attribute__((visibility("default"))) int tryWhileLoaded() {
  LV_CHECK(test::isInterned("SortedArrayList"), "loaded");
  resident.tryAll("loaded");
  test::useEveryClass("loaded");
  return test::failedChecks;
}

extern "C" __attribute__((visibility("default"))) int tryAfterTheRelease() {
  LV_CHECK(!test::isInterned("SortedArrayList"), "after the release");
  LV_CHECK(test::textOf(lvrSortedArrayList::getStaticClassDesc()) == "SortedArrayList",
           "after the release");
  LV_CHECK(test::textOf(lvrVector::getStaticClassDesc()) == "Vector", "after the release");
  LV_CHECK(test::textOf(lvrClass::getStaticClassDesc()) == "Class", "after the release");
  LV_CHECK(test::textOf(lvReferencable::getStaticClassDesc()) == "Referencable",
           "after the release");
  test::useEveryClass("after the release");
  return test::failedChecks;
}

// The number of texts that are interned.
extern "C" __attribute__((visibility("default"))) int countEntries() {
  return static_cast<int>(test::entryCount());
}
