#include "TextTree.h"

#include <utility>

Node makeAtom(lvArg const& value, std::size_t offset) {
  Node node;
  node.offset = offset;
  node.value = value;
  return node;
}

bool isNil(Node const& node) { return node.kind == Node::Atom && node.value.isNil(); }

void dropNilEntries(Node& map) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < map.parts.size(); i += 2) {
    if (!isNil(map.parts[i + 1])) {
      if (kept != i) {
        map.parts[kept] = std::move(map.parts[i]);
        map.parts[kept + 1] = std::move(map.parts[i + 1]);
      }
      kept += 2;
    }
  }
  map.parts.resize(kept);
}

namespace {

Node readFrame(lvArg const& kind, CheckedSource& source);

// Reads what comes next in a frame; false at the frame's end.
bool readPart(Node& part, CheckedSource& source) {
  lvArg item;
  int const result = source.getArg(item);
  if (result == lvArgSource::SOURCE_ITEM) {
    part = makeAtom(item, source.itemOffset());
  } else if (result == lvArgSource::SOURCE_FRAME_BEGIN) {
    part = readFrame(item, source);
  } else {
    return false;
  }
  return true;
}

// Reads the rest of an entry: what is missing is nil. One whose key is there already takes the place
// of that.
void readEntry(Node& map, CheckedSource& source) {
  Node key;
  Node value;
  Node none;
  if (readPart(key, source) && readPart(value, source)) {
    readPart(none, source);  // The source hands out no third part: this is the end.
  }
  std::size_t const place = 2 * source.entryIndex();
  if (place < map.parts.size()) {
    map.parts[place + 1] = std::move(value);
  } else {
    map.parts.push_back(std::move(key));
    map.parts.push_back(std::move(value));
  }
}

void readMap(Node& map, CheckedSource& source) {
  lvArg entry;
  while (source.getArg(entry) == lvArgSource::SOURCE_FRAME_BEGIN) {
    readEntry(map, source);
  }
  dropNilEntries(map);
}

void readParts(Node& node, CheckedSource& source) {
  Node part;
  while (readPart(part, source)) {
    node.parts.push_back(std::move(part));
  }
}

// The fields that are not in the text are nil.
void addMissingFields(Node& object) {
  lvClass const described(lvtClassRegistry::getInstance()->getClass(object.value));
  auto const fields = static_cast<std::size_t>(described->getNItems(lvrClass::Fields));
  while (object.parts.size() < fields) {
    object.parts.push_back(makeAtom(lvArg(), object.offset));
  }
}

Node readFrame(lvArg const& kind, CheckedSource& source) {
  Node node;
  node.offset = source.itemOffset();
  if (kind.getType() != lvArg::IntType) {
    node.kind = Node::Object;
    node.value = kind;
    readParts(node, source);
    addMissingFields(node);
  } else if (kind.getInt() == lvArgDest::MapFrame) {
    node.kind = Node::Map;
    readMap(node, source);
  } else {
    node.kind = Node::List;
    readParts(node, source);
  }
  return node;
}

}  // namespace

bool readNode(Node& node, CheckedSource& source) { return readPart(node, source); }
