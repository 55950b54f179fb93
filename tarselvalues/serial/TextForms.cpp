#include "tarselvalues/serial/TextForms.h"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "tarselvalues/serial/TextSyntax.h"
#include "tarselvalues/serial/lvtStringArgDest.h"

namespace tarselvalues {

namespace {

constexpr int EscapeLength = EscapeRoom - 1;

void writeEscape(char* at, char c) {
  static constexpr char hexDigits[] = "0123456789ABCDEF";
  auto const code = static_cast<unsigned char>(c);
  at[0] = '%';
  at[1] = hexDigits[code >> 4];
  at[2] = hexDigits[code & 15];
}

}  // namespace

int writeEscaped(char** cursor, int* room, char const* text, int most, int readable) {
  auto const addressOf = [](char const* at) { return reinterpret_cast<std::uintptr_t>(at); };
  // A number, since text + most may lie beyond all memory.
  std::uintptr_t const end = addressOf(text) + static_cast<unsigned>(most);
  auto const isInside = [=](char const* at) { return most == INT_MAX || addressOf(at) != end; };
  char const* const known = text + readable;
  while (*room > 0 && isInside(text)) {
    int const length = std::min(*room, static_cast<int>(known - text));
    int const plain = copyWhile(*cursor, text, length, areUnescaped);
    *cursor += plain;
    *room -= plain;
    text += plain;
    // What stopped that, or is no whole ByteWord.
    for (int left = ByteWordSize; left > 0 && *room > 0 && isInside(text); --left, ++text) {
      if (*text == '\0') {
        return 0;
      }
      if (!isEscaped(*text)) {
        *(*cursor)++ = *text;
        --*room;
        continue;
      }
      if (*room < EscapeRoom) {
        return lvtStringArgDest::ROOM_ERROR;
      }
      writeEscape(*cursor, *text);
      *cursor += EscapeLength;
      *room -= EscapeLength;
    }
  }
  return 0;
}

}  // namespace tarselvalues
