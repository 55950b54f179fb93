// A JSON text as a tree that knows where each value stands.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct JsonValue {
  enum Kind : unsigned char { Null, True, False, Number, String, Array, Object };
  struct Name {
    std::string text;
    std::size_t offset;
  };

  Kind kind = Null;
  std::size_t offset = 0;
  std::string text;              // of a number, as it was written, or of a string
  std::vector<JsonValue> parts;  // elements or members
  std::vector<Name> names;       // of the members
};

// Arrays and objects within as many others are left empty: text nests 32 levels deep, and has two
// levels for two of JSON at least.
constexpr std::size_t MaxJsonDepth = 65;

// Reads the JSON value that begins at `from` into `value`, calling `reach` with offsets on the way.
// Returns where it ends. Throws JsonError.
std::size_t readJsonTree(JsonValue& value, std::string const& text, std::size_t from,
                         std::function<void(std::size_t)> const& reach);
