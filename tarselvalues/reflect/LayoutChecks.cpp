// The layout and the numbers that compiled programs and debugger scripts rely on.

#include <cstddef>

#include "tarselvalues/reflect/LayoutAccess.h"
#include "tarselvalues/reflect/lvWalk.h"

namespace {

using Class = lvLayoutAccess<lvrClass>;

constexpr std::size_t pointerSize = sizeof(void*);
constexpr bool isIlp32 = pointerSize == 4;

static_assert(sizeof(lvClass) == sizeof(lvArg), "handles are passed where cells are taken");

// On every target: the fields in their order.
static_assert(Class::defaultCtorOffset == sizeof(lvReferencable));
static_assert(Class::superClassOffset == Class::defaultCtorOffset + pointerSize);
static_assert(Class::classNameOffset == Class::superClassOffset + sizeof(lvArg));
static_assert(Class::reflectionOffset == Class::classNameOffset + sizeof(lvArg));

static_assert(lvLayoutAccess<lvtClassRegistry>::classesOffset == pointerSize);

static_assert(offsetof(lvrClass::GenericMemberOffsetTable, count) == 0 &&
              offsetof(lvrClass::GenericMemberOffsetTable, entryWidth) == 2 &&
              offsetof(lvrClass::GenericMemberOffsetTable, entries) == pointerSize &&
              offsetof(lvrClass::GenericMemberOffsetTable, names) == 2 * pointerSize);

static_assert(offsetof(lvWalkPlace, role) == 0 && offsetof(lvWalkPlace, meeting) == 1 &&
              offsetof(lvWalkPlace, depth) == 4 && offsetof(lvWalkPlace, index) == 8 &&
              offsetof(lvWalkPlace, holder) == (isIlp32 ? 12 : 16) &&
              offsetof(lvWalkPlace, key) == offsetof(lvWalkPlace, holder) + pointerSize);

// On 32-bit targets: the numbers themselves.
static_assert(!isIlp32 || (Class::defaultCtorOffset == 36 && Class::superClassOffset == 40 &&
                           Class::classNameOffset == 48 && Class::reflectionOffset == 56 &&
                           sizeof(lvrClass) == 60));

// The numbers that programs are compiled with.
static_assert(lvrClass::Fields == 0 && lvrClass::Functions1 == 1 && lvrClass::Methods2 == 2 &&
              lvrClass::Functions3 == 3 && lvrClass::Methods4 == 4 && lvrClass::Functions5 == 5 &&
              lvrClass::Fields6 == 6 && lvrClass::Functions7 == 7 && lvrClass::Methods8 == 8 &&
              lvrClass::Functions9 == 9 && lvrClass::TableCount == 10);
static_assert(lvWalkPlace::Root == 0 && lvWalkPlace::Element == 1 && lvWalkPlace::Key == 2 &&
              lvWalkPlace::Value == 3 && lvWalkPlace::Field == 4);
static_assert(lvWalkPlace::First == 0 && lvWalkPlace::Again == 1 && lvWalkPlace::Cycle == 2);
static_assert(lvWalkVisitor::GoOn == 0 && lvWalkVisitor::Skip == 1 && lvWalkVisitor::Stop == 2);

}  // namespace
