// What little the tool has to know of UTF-8. The text format itself knows no encoding.
#pragma once

#include <cstddef>
#include <string_view>

// Whether a byte goes on with the character that another one began.
inline bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// How many columns a text takes, if each character takes one.
inline std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (char const c : text) {
    columns += isContinuation(c) ? 0 : 1;
  }
  return columns;
}
