// Values and containers: making them, asking them, walking them.

#include <tarselvalues/tarselvalues.h>

#include <cstdio>

namespace {

lvArg integer(int value) {
  lvArg cell;
  cell.setInt(value);
  return cell;
}

}  // namespace

int main() {
  // A map with a list in it. Handles are cells, so they go wherever a value goes.
  lvVector ports(4);
  for (int const port : {80, 443, 8883}) {
    ports->insert(integer(port), -1);
  }
  lvHashMap device(7);
  device->put(lvString("name"), lvString("gate-north"));
  device->put(lvString("ports"), ports);
  device->put(lvString("last"), integer(21));

  // What is there has a type; what is not reads as nil.
  lvArg const last = device->get(lvString("last"));
  std::printf("last: type %d, %d\n", last.getType(), last.getInt());
  std::printf("next: %s\n", device->get(lvString("next")).isNil() ? "nil" : "there");

  // put() hands the previous value out; nil removes the entry.
  lvArg previous;
  device->put(lvString("last"), integer(22), &previous);
  device->put(lvString("name"), lvArg::NilValue);
  std::printf("was %d, %d entries left\n", previous.getInt(), device->getSize());

  // A cursor keeps its list alive and deletes itself.
  for (lvListEnumerator port(*ports.getList()); port->gotoNext();) {
    std::printf("port %d: %d\n", port->getIndex(), port->getValue().getInt());
  }

  // A sorted map hands its keys out in order.
  lvHashMap const sorted{lvArg(*new lvrTupleSet(8, 8, 0))};
  for (char const* const word : {"pear", "apple", "fig"}) {
    sorted->put(lvString(word), integer(1));
  }
  std::puts(lvToolsToString(sorted));
}
