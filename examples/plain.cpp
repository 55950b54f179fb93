#include <tarselvalues/tarselvalues.h>

#include <cstdio>

int main() {
  lvArg port;
  port.setInt(502);
  lvVector ports(4);
  ports->insert(port, -1);
  lvHashMap device(7);
  device->put(lvString("name"), lvString("pump room"));
  device->put(lvString("ports"), ports);
  lvString const text = lvToolsToString(device);
  int consumed = 0;
  lvHashMap const again(lvToolsFromString(text, consumed));
  lvString const name(again->get(lvString("name")));
  std::puts(text);
  std::puts(name);
}
