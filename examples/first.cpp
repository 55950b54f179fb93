#include <tarselvalues/comfort.h>

#include <iostream>

int main() {
  lvMapBuilder device;
  device.put("ports", lvListOf(502, 503)).put("alarms", lvListOf("low water", "no power"));
  for (auto const& [name, list] : lvEntries(device.map())) {
    std::cout << name << " has " << list << '\n';
  }
  std::string const text = lvToText(device.map());
  lvHashMap const again(lvFromText(text));
  std::cout << text << '\n' << again->get(lvString("ports")) << '\n';
}
