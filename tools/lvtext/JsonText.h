// Reads and writes JSON, piece by piece.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

// A piece of a JSON text, in the order in which they stand there.
struct JsonPiece {
  enum Kind : unsigned char {
    Null,
    True,
    False,
    Number,  // `text` is the number as it was written
    String,  // `text` is the string
    BeginArray,
    EndArray,
    BeginObject,
    Name,  // of a member; `text` is the name
    EndObject,
  };

  Kind kind;
  std::size_t offset;  // of its first byte
  std::string text;
};

// Why a text is no JSON, and where.
struct JsonError : std::runtime_error {
  JsonError(std::string const& reason, std::size_t where)
      : std::runtime_error(reason), offset(where) {}

  std::size_t offset;
};

// Returns where the next JSON value begins at `from` or after it; the end of the text if there is
// none.
std::size_t findJson(std::string const& text, std::size_t from);

// Reads the value that begins at `from` and hands out its pieces. Returns where it ends. Throws
// JsonError.
std::size_t readJson(std::string const& text, std::size_t from,
                     std::function<void(JsonPiece&&)> const& take);

// The text as UTF-8: U+FFFD stands for what is not.
std::string asUtf8(std::string const& text);

// A JSON string, with its quotes, of a text in UTF-8.
std::string jsonString(std::string const& text);
