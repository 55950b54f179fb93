// Uses every class of the library, and one of its own, in a static initialiser, in main(), in exit
// handlers and in a static destructor.
//
// "LoadTimeProgram loaded" expects the class keys to be there before its own initialisers run, as
// they are in a program that links the shared library. "LoadTimeProgram linked" does not: the
// initialisers of a program may come before those of the static library.
//
// Handlers run in the reverse order of their registration:
//   leave                   registered in main() after the base's class key was made
//   (the base's key goes)
//   ~Resident               after it
//   leaveLast               registered before anything else of the library was used

#include <cstdlib>
#include <cstring>

#include "support/Cells.h"
#include "support/EveryClass.h"
#include "support/InternedTexts.h"
#include "support/ProgramChecks.h"
#include "tarselvalues/tarselvalues.h"

namespace {

int stages = 0;  // How many of the handlers above have run.

bool wereKeysThereAtTheStart = false;

bool hasText(lvString const& handle, char const* text) {
  return std::strcmp(handle, text) == 0 && handle.getReferencable() == test::internedEntry(text);
}

// A class whose objects are written and read at any time, so its key is never released.
class Point : public lvReferencable {
 public:
  lvString const& getClassDesc() const override {
    static lvString const& key = *new lvString("Point");
    return key;
  }

  lvArg x;
  lvArg y;
};

void tryKeys(char const* when) {
  LV_CHECK(hasText(lvrString::getStaticClassDesc(), "String"), when);
  LV_CHECK(hasText(lvrVector::getStaticClassDesc(), "Vector"), when);
  LV_CHECK(hasText(lvrHashMap::getStaticClassDesc(), "HashMap"), when);
  LV_CHECK(hasText(lvrClass::getStaticClassDesc(), "Class"), when);
  LV_CHECK(hasText(lvrCommonSerializer::getStaticClassDesc(), "CommonSerializer"), when);
}

void tryStrings(char const* when) {
  lvString const first("made in between");
  LV_CHECK(hasText(first, "made in between"), when);
  LV_CHECK(lvString("made in between").getReferencable() == first.getReferencable(), when);
  LV_CHECK(hasText(first + "!", "made in between!"), when);
}

void tryObjects(char const* when) {
  auto* const point = new Point;
  lvArg const cell(*point);
  point->x = test::integer(3);
  point->y = test::string("north");
  LV_CHECK(test::isWritten(cell, "*Point{3,north}"), when);
  lvClass const described(lvtClassRegistry::getInstance()->getClass(lvString("Point")));
  lvArg field;
  LV_CHECK(described->getObjectField(field, *point, lvString("y")) == 0, when);
  LV_CHECK(test::reads(field, "north"), when);
}

void tryAll(char const* when) {
  tryKeys(when);
  tryStrings(when);
  tryObjects(when);
  test::useEveryClass(when);
}

void leave() {
  LV_CHECK(stages++ == 0, "leave");
  LV_CHECK(test::isInterned("Referencable"), "leave");
  LV_CHECK(hasText(lvReferencable::getStaticClassDesc(), "Referencable"), "leave");
  tryAll("leave");
}

void leaveLast() {
  LV_CHECK(stages++ == 2, "leaveLast");
  LV_CHECK(test::isInterned("SortedArrayList") == wereKeysThereAtTheStart, "leaveLast");
  tryAll("leaveLast");
  LV_CHECK(hasText(lvReferencable::getStaticClassDesc(), "Referencable"), "leaveLast");
  test::judge();
}

class Resident {
 public:
  Resident() {
    std::atexit(leaveLast);
    wereKeysThereAtTheStart = test::isInterned("SortedArrayList");
    LV_CHECK(lvClassBuilder<Point>("Point")
                     .field("x", &Point::x)
                     .field("y", &Point::y)
                     .registerClass() == 0,
             "initialiser");
    tryAll("initialiser");
    handle = lvString("resident");
    key = lvrVector::getStaticClassDesc();
    truth = lvArg::TrueValue;
  }

  ~Resident() {
    LV_CHECK(stages++ == 1, "destructor");
    LV_CHECK(!test::isInterned("Referencable"), "destructor");
    LV_CHECK(hasText(lvReferencable::getStaticClassDesc(), "Referencable"), "destructor");
    LV_CHECK(hasText(handle, "resident"), "destructor");
    LV_CHECK(hasText(lvString(key), "Vector"), "destructor");
    LV_CHECK(truth.getInt() == 1, "destructor");
    tryAll("destructor");
  }

  Resident(Resident const&) = delete;
  Resident& operator=(Resident const&) = delete;

  lvString handle;
  lvArg key;
  lvArg truth;
};

Resident resident;

}  // namespace

int main(int argc, char** argv) {
  LV_CHECK(!test::isInterned("Referencable"), "main");
  LV_CHECK(hasText(lvReferencable::getStaticClassDesc(), "Referencable"), "main");
  std::atexit(leave);
  if (argc == 2 && std::strcmp(argv[1], "loaded") == 0) {
    LV_CHECK(wereKeysThereAtTheStart, "main");
  }
  LV_CHECK(hasText(resident.handle, "resident"), "main");
  tryAll("main");
  return 0;
}
