// Loops, readers with a default, walks over whole values, values in standard containers.

#include <tarselvalues/comfort.h>

#include <iostream>
#include <string>
#include <unordered_map>

int main() {
  lvHashMap const device(lvFromText("{(name=\"pump room\"),(ports={502,503}),(depth=17)}"));

  // What is missing, or of another type, reads as the default.
  std::cout << lvReadText(device->get(lvString("name")), "unnamed") << ", "
            << lvReadInt(device->get(lvString("depth")), 0) << " m, "
            << lvReadInt(device->get(lvString("baud")), 9600) << " baud\n";

  // A list or map may be a temporary, and a loop left at any place.
  for (lvArg const& port : lvItems(device->get(lvString("ports")))) {
    std::cout << "port " << port << '\n';
    if (port.getInt() == 502) {
      break;
    }
  }

  // Each value in a value, once. A value may contain itself.
  lvVector const ring = lvListOf(device, "pump", device);
  ring->insert(ring, -1);
  std::string marks;
  int visited = 0;
  lvWalk(ring, [&](lvArg const& /*value*/, lvWalkPlace const& place) {
    ++visited;
    marks += place.meeting == lvWalkPlace::Again   ? " shared"
             : place.meeting == lvWalkPlace::Cycle ? " cyclic"
                                                   : "";
    return lvWalkVisitor::GoOn;
  });
  std::cout << visited << " visited:" << marks << '\n';
  ring->clear();  // A cycle is never freed by itself.

  // Keys are told apart as the library tells them: strings by their text.
  std::unordered_map<lvArg, int, lvHasher, lvEquivalent> counts;
  for (lvArg const& word : lvItems(lvFromText("{on,off,on,1,\"1\",on}"))) {
    ++counts[word];
  }
  std::cout << "on: " << counts[lvString("on")] << ", 1: " << counts[lvToCell(1)] << '\n';
}
