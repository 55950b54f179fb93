// The layout and the numbers that compiled programs and debugger scripts rely on.

#include <pthread.h>

#include <climits>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/core/lvValue.h"

namespace {

using Cell = lvLayoutAccess<lvArg>;
using Object = lvLayoutAccess<lvReferencable>;
using String = lvLayoutAccess<lvrString>;
using Entry = lvLayoutAccess<lvString::StringEntry>;

constexpr std::size_t pointerSize = sizeof(void*);
constexpr bool isIlp32 = pointerSize == 4;

// On every target: the tag word first, the payload one pointer further.
static_assert(sizeof(lvArg) == 2 * pointerSize, "containers hold arrays of cells");
static_assert(Cell::tagWordOffset == 0 && Cell::payloadOffset == pointerSize);
static_assert(sizeof(lvString) == sizeof(lvArg) && sizeof(lvValue) == sizeof(lvArg),
              "handles are passed where cells are taken");

static_assert(Object::typeByteOffset == pointerSize);
static_assert(Object::countOffset == pointerSize + 4);
static_assert(Object::mutexOffset == pointerSize + 8);
static_assert(String::textOffset == sizeof(lvReferencable));
static_assert(String::lengthOffset == String::textOffset + pointerSize);
static_assert(String::flagsOffset == String::lengthOffset + 2);
static_assert(String::cachedHashOffset == String::lengthOffset + 4);
static_assert(Entry::nextOffset == sizeof(lvrString));

// On 32-bit targets: the numbers themselves.
static_assert(!isIlp32 || sizeof(lvArg) == 8);
static_assert(!isIlp32 || sizeof(pthread_mutex_t) == 24);
static_assert(!isIlp32 || (Object::typeByteOffset == 4 && Object::countOffset == 8 &&
                           Object::mutexOffset == 12 && sizeof(lvReferencable) == 36));
static_assert(!isIlp32 || (String::textOffset == 36 && String::lengthOffset == 40 &&
                           String::flagsOffset == 42 && String::cachedHashOffset == 44 &&
                           sizeof(lvrString) == 48));
static_assert(!isIlp32 || (Entry::nextOffset == 48 && sizeof(lvString::StringEntry) == 52));

// The numbers that programs are compiled with.
static_assert(lvArg::NilType == 0 && lvArg::IntType == 5 && lvArg::PointerType == 12 &&
              lvArg::ReferenceFlag == 16 && lvArg::ObjectType == 18 && lvArg::StringType == 19 &&
              lvArg::MapType == 24 && lvArg::ListType == 25 && lvArg::ClassType == 27);
static_assert(lvReferencable::ObjectKind == 2 && lvReferencable::StringKind == 3 &&
              lvReferencable::MapKind == 8 && lvReferencable::ListKind == 9 &&
              lvReferencable::ClassKind == 11);
static_assert(String::integerFlag == 1 && String::hashFlag == 2 && String::internedFlag == 4 &&
              String::borrowedFlag == 8 && String::integerShift == 4);
static_assert(lvrString::Borrow == 0 && lvrString::CopyAndOwn == 2 &&
              lvrString::CopyAndOwnEmpty == 3);

// What derived classes of programs use.
struct Derived : lvReferencable {
  static_assert(FirstOwnBit == 4 && SecondOwnBit == 8 && FinalizeRefused == INT_MIN);
};

}  // namespace
