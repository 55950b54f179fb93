// A program of a user's own: a map, a list, their text, and a class derived from a container.
#include <tarselvalues/tarselvalues.h>

#include <cstdio>

namespace {

// A vector that keeps its elements below a limit.
class Readings : public lvrVector {
 public:
  explicit Readings(int limit) : lvrVector(4), limit_(limit) {}

  bool insert(lvArg const& value, int index) override {
    return value.getInt() < limit_ && lvrVector::insert(value, index);
  }

 private:
  int limit_;
};

lvArg number(int value) {
  lvArg cell;
  cell.setInt(value);
  return cell;
}

}  // namespace

int main() {
  lvArg readings;
  Readings* const list = new Readings(100);
  readings.setReferencable(*list);
  for (int value : {20, 150, 21}) {
    std::printf("%d is %s\n", value, list->insert(number(value), -1) ? "kept" : "refused");
  }

  lvHashMap pump(7);
  pump->put(lvString("name"), lvString("pump room"));
  pump->put(lvString("readings"), readings);
  lvString const text = lvToolsToString(pump);
  std::puts(text);

  int consumed = 0;
  lvHashMap const again(lvToolsFromString(text, consumed));
  lvVector const read(again->get(lvString("readings")));
  std::printf("%d of %d readings read back\n", read->getSize(), list->getSize());

  int major = 0;
  int minor = 0;
  int patch = 0;
  lvGetVersion(major, minor, patch);
  std::printf("with release %d\n", major);
}
