// A plugin that links the library, for UnloadingProgram.cpp.

#include "support/Cells.h"
#include "support/InternedTexts.h"
#include "support/ProgramChecks.h"
#include "tarselvalues/tarselvalues.h"

namespace {

lvString const resident("resident of the plugin");
lvArg const key = lvrHashMap::getStaticClassDesc();

// The library's strings and keys, whatever has been loaded and released meanwhile.
void tryAll(char const* when) {
  LV_CHECK(test::textOf(resident) == "resident of the plugin", when);
  LV_CHECK(test::textOf(key) == "HashMap", when);
  LV_CHECK(key.eq(lvrHashMap::getStaticClassDesc()) == test::isInterned("HashMap"), when);
  LV_CHECK(test::textOf(lvrVector::getStaticClassDesc()) == "Vector", when);
  LV_CHECK(test::textOf(lvReferencable::getStaticClassDesc()) == "Referencable", when);
  LV_CHECK(lvString("made in between").length() == 15, when);
  LV_CHECK(lvArg::TrueValue.getInt() == 1, when);
  LV_CHECK(test::textOf(lvToolsToString(lvArg::TrueValue)) == "1", when);
}

}  // namespace

// Each answers how many checks failed.
extern "C" __attribute__((visibility("default"))) int tryWhileLoaded() {
  LV_CHECK(test::isInterned("TupleSet"), "loaded");
  tryAll("loaded");
  return test::failedChecks;
}

extern "C" __attribute__((visibility("default"))) int tryAfterTheRelease() {
  LV_CHECK(!test::isInterned("TupleSet"), "after the release");
  LV_CHECK(test::textOf(lvrVector::getStaticClassDesc()) == "Vector", "after the release");
  LV_CHECK(test::textOf(lvrClass::getStaticClassDesc()) == "Class", "after the release");
  LV_CHECK(test::textOf(lvReferencable::getStaticClassDesc()) == "Referencable",
           "after the release");
  LV_CHECK(lvString("made in between").length() == 15, "after the release");
  LV_CHECK(lvArg::TrueValue.getInt() == 1, "after the release");
  LV_CHECK(test::textOf(lvToolsToString(lvArg::TrueValue)) == "1", "after the release");
  return test::failedChecks;
}
