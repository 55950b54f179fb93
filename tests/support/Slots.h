// The virtual-table slot of a virtual member function, read from a pointer to it.
//
// Such a pointer is two words: the function word and the adjustment of `this`. On ARM, where code
// addresses use bit 0 themselves, bit 0 of the adjustment word marks a virtual function and the
// function word is the byte offset of its slot. Elsewhere bit 0 of the function word is the mark,
// on top of the offset.
#pragma once

#include <cstdint>
#include <cstring>

namespace test {

// What slotOf() answers for a function that is not virtual.
constexpr int NotVirtual = -1;

// Returns the slot, counted from 1, in the virtual table of the class that `member` is a member
// of. Of a class with several bases that is the table of the first one, where the functions of all
// bases that the class overrides stand too. Each destructor takes two slots.
template <class Member>
int slotOf(Member member) {
  std::uintptr_t words[2];
  static_assert(sizeof(member) == sizeof(words), "a pointer to member function is two words");
  std::memcpy(words, &member, sizeof(words));
#if defined(__arm__) || defined(__aarch64__)
  bool const isVirtual = (words[1] & 1) != 0;
  std::uintptr_t const offset = words[0];
#else
  bool const isVirtual = (words[0] & 1) != 0;
  std::uintptr_t const offset = words[0] & ~std::uintptr_t{1};
#endif
  return isVirtual ? static_cast<int>(offset / sizeof(void*)) + 1 : NotVirtual;
}

}  // namespace test
