// The character classes of the text format, which writer and parser share. Not for users.
#pragma once

#include <cctype>

namespace tarselvalues {

// In the process's locale, and for bytes of either signedness of char.
inline bool isLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
inline bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
inline bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Words start with the first and go on with the second.
inline bool startsWord(char c) { return isLetter(c) || c == '_'; }
inline bool continuesWord(char c) { return startsWord(c) || isDigit(c); }

}  // namespace tarselvalues
