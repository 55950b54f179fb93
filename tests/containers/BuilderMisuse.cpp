// Uses of builders and lvToCell() that must not compile, one for each number of MISUSE, and next to
// each the use that must: with MISUSE 0 the whole file compiles.
//
// Each #if is followed by the misuse, each #else by its legal twin.

#include <string>

#include "tarselvalues/containers/lvBuilders.h"

lvVector makeList() {
  // Braces might mean a list of two, or one element made of two arguments.
#if MISUSE == 1
  return lvListOf({1, 2});
#else
  return lvListOf(1, 2);
#endif
}

lvHashMap makeMap() {
#if MISUSE == 2
  return lvMapBuilder().put("ports", {1, 2}).map();
#else
  return lvMapBuilder().put("ports", lvListOf(1, 2)).map();
#endif
}

lvArg makeFromUnsigned(unsigned int number) {
#if MISUSE == 3
  return lvToCell(number);
#else
  return lvToCell(static_cast<int>(number));
#endif
}

lvArg makeFromLong(long long number) {
#if MISUSE == 4
  return lvToCell(number);
#else
  return lvToCell(static_cast<int>(number));
#endif
}

lvArg makeFromCharacter(char character) {
#if MISUSE == 5
  return lvToCell(character);
#else
  return lvToCell(std::string(1, character));
#endif
}

lvArg makeFromFloat(double number) {
#if MISUSE == 6
  return lvToCell(number);
#else
  return lvToCell(std::to_string(number));
#endif
}

struct Unknown {};

lvArg makeFromUnknown([[maybe_unused]] Unknown const* object) {
#if MISUSE == 7
  return lvToCell(*object);
#else
  lvArg cell;
  cell.setPointer(const_cast<Unknown*>(object));
  return cell;
#endif
}

lvArg makeFromUtf16(char16_t character) {
#if MISUSE == 8
  return lvToCell(character);
#else
  return lvToCell(static_cast<int>(character));
#endif
}
