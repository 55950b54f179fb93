#include "Stats.h"

#include <tarselvalues/reflect/lvWalk.h>

#include <algorithm>
#include <unordered_set>

namespace {

// Where the numbers stand.
constexpr std::size_t NumberColumn = 22;

class Counter {
 public:
  void add(lvArg const& root) {
    bytes_ += sizeof(lvArg);
    lvWalk(root, [this](lvArg const& value, lvWalkPlace const& place) {
      visit(value, place);
      return lvWalkVisitor::GoOn;
    });
  }

  std::string table(std::size_t textBytes) const {
    std::string out;
    addLine(out, "values", values_);
    addLine(out, "  nil", nils_);
    addLine(out, "  integers", integers_);
    addLine(out, "  strings", strings_);
    addLine(out, "  lists", lists_);
    addLine(out, "  maps", maps_);
    addLine(out, "  objects of classes", objects_);
    addLine(out, "counted objects", met_.size());
    addLine(out, "  met again", shared_);
    addLine(out, "  in cycles", cycles_);
    addLine(out, "depth", depth_);
    addLine(out, "bytes of text", textBytes);
    addLine(out, "bytes of memory", bytes_);
    return out;
  }

 private:
  static void addLine(std::string& out, char const* name, std::size_t number) {
    std::string line = name;
    line.resize(NumberColumn, ' ');
    out += line + std::to_string(number) + '\n';
  }

  void visit(lvArg const& value, lvWalkPlace const& place) {
    ++values_;
    depth_ = std::max(depth_, static_cast<std::size_t>(place.depth));
    bool const isCycle = place.meeting == lvWalkPlace::Cycle;
    lvReferencable const* const object = value.getReferencable();
    bool const isNew = object != nullptr && met_.insert(object).second;
    cycles_ += isCycle ? 1 : 0;
    shared_ += object != nullptr && !isNew && !isCycle ? 1 : 0;
    std::size_t const own = count(value);
    bytes_ += isNew ? own : 0;
  }

  // Returns the bytes that the object in the value takes, its cells included.
  std::size_t count(lvArg const& value) {
    switch (value.getType()) {
      case lvArg::IntType:
        ++integers_;
        return 0;
      case lvArg::StringType: {
        ++strings_;
        int length = 0;
        lvValue(value).getString(&length);
        return sizeof(lvrString) + static_cast<std::size_t>(length) + 1;
      }
      case lvArg::ListType:
        ++lists_;
        return sizeof(lvrVector) + sizeof(lvArg) * sizeOf(lvVector(value)->getSize());
      case lvArg::MapType:
        ++maps_;
        return sizeof(lvrHashMap) +
               sizeof(lvrHashMap::HashEntry) * sizeOf(lvHashMap(value)->getSize());
      case lvArg::ObjectType: {
        ++objects_;
        lvClass const described(
            lvtClassRegistry::getInstance()->getClass(value.getReferencable()->getClassDesc()));
        return sizeof(lvReferencable) +
               sizeof(lvArg) * sizeOf(described->getNItems(lvrClass::Fields));
      }
      default:
        ++nils_;
        return 0;
    }
  }

  static std::size_t sizeOf(int count) { return static_cast<std::size_t>(count); }

  std::unordered_set<lvReferencable const*> met_;
  std::size_t values_ = 0;
  std::size_t nils_ = 0;
  std::size_t integers_ = 0;
  std::size_t strings_ = 0;
  std::size_t lists_ = 0;
  std::size_t maps_ = 0;
  std::size_t objects_ = 0;
  std::size_t shared_ = 0;
  std::size_t cycles_ = 0;
  std::size_t depth_ = 0;
  std::size_t bytes_ = 0;
};

}  // namespace

std::string statsOf(std::vector<lvArg> const& values, std::size_t textBytes) {
  Counter counter;
  for (lvArg const& value : values) {
    counter.add(value);
  }
  return counter.table(textBytes);
}
