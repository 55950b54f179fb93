// How the library writes and reads a document.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <cstddef>
#include <string>
#include <vector>

#include "bench/Document.h"

namespace bench {

inline lvArg ourValueOf(Node const& node) {
  lvArg value;
  switch (node.kind) {
    case Node::Nothing:
      break;
    case Node::Integer:
      value.setInt(node.number);
      break;
    case Node::Text: {
      lvValue string;
      string.setString(node.text.c_str(), -1, lvrString::CopyAndOwnEmpty);
      value = std::move(string);
      break;
    }
    case Node::List: {
      lvVector list(static_cast<int>(node.children.size()));
      for (Node const& child : node.children) {
        list->insert(ourValueOf(child), -1);
      }
      value = std::move(list);
      break;
    }
    case Node::Map: {
      lvHashMap map(lvrHashMap::DefaultHashSize);
      for (std::size_t i = 0; i < node.children.size(); ++i) {
        map->put(lvString(node.names[i].c_str()), ourValueOf(node.children[i]));
      }
      value = std::move(map);
      break;
    }
  }
  return value;
}

// Writes and reads with one serializer, which has no state. The longest text is 1 MB.
class OurText {
 public:
  OurText() : serializer(new lvrCommonSerializer), held(*serializer), buffer(1 << 20) {}

  // Returns the number of bytes that are in text() then.
  std::size_t write(lvArg const& value) {
    lvtStringArgDest writer(buffer.data(), static_cast<int>(buffer.size()));
    serializer->serializeAtomInto(writer, value);
    return static_cast<std::size_t>(writer.getStringLength());
  }

  lvArg read(std::string const& text) {
    lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
    lvArg value;
    serializer->deserializeItemInto(value, parser);
    return value;
  }

  std::string textOf(lvArg const& value) { return {buffer.data(), write(value)}; }
  char const* text() const { return buffer.data(); }

 private:
  lvrCommonSerializer* serializer;
  lvArg held;
  std::vector<char> buffer;
};

}  // namespace bench
