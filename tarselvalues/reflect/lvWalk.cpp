#include "tarselvalues/reflect/lvWalk.h"

#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/containers/lviStack.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/MetObjects.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace {

using tarselvalues::castLikely;
using tarselvalues::MetObjects;

// One part of a value.
struct Part {
  lvArg value;
  lvArg key;  // of the entry, while its value is visited
  lvWalkPlace::Role role = lvWalkPlace::Root;
  int index = 0;
};

// What holds parts. Each steps to the next part; false when there is none. The level that has it
// holds the container.

lvArg partAt(lvrVector const& vector, int index) { return vector.at(index); }
lvArg partAt(lviSortedList const& list, int index) { return list.get(index); }
lvArg partAt(lviStack const& stack, int index) { return stack.peek(index); }

// Of a container that tells each part by its position.
template <class Container>
struct PartsByPosition {
  Container const* container;
  int next = 0;

  bool step(Part& part) {
    if (next >= container->getSize()) {
      return false;
    }
    part.index = next;
    part.value = partAt(*container, next++);
    return true;
  }
};

using VectorParts = PartsByPosition<lvrVector>;
using SortedListParts = PartsByPosition<lviSortedList>;
using StackParts = PartsByPosition<lviStack>;

struct ListParts {
  std::unique_ptr<lviRealListEnumerator> cursor;
  int next = 0;

  bool step(Part& part) {
    if (cursor == nullptr || !cursor->gotoNext()) {
      return false;
    }
    part.index = next++;
    part.value = cursor->getValue();
    return true;
  }
};

struct MapParts {
  std::unique_ptr<lviRealMapEnumerator> cursor;
  lvArg value;  // of the entry whose key was the last part
  int entries = 0;

  bool step(Part& part) {
    if (part.role == lvWalkPlace::Key) {
      part.role = lvWalkPlace::Value;
      part.key = std::move(part.value);
      part.value = std::move(value);
      return true;
    }
    if (cursor == nullptr || !cursor->next()) {
      return false;
    }
    part.role = lvWalkPlace::Key;
    part.key.setNil();
    part.index = entries++;
    part.value = cursor->getKey();
    value = cursor->getValue();
    return true;
  }
};

struct ObjectParts {
  lvReferencable const* object;
  lvClass described;
  int next = 0;

  // Reads past a field that cannot be read.
  bool step(Part& part) {
    int const fields = described->getNItems(lvrClass::Fields);
    while (next < fields) {
      part.index = next;
      if (described->getFieldAt(part.value, *object, lvrClass::Fields, next++) == 0) {
        return true;
      }
    }
    return false;
  }
};

using Parts =
    std::variant<VectorParts, ListParts, SortedListParts, StackParts, MapParts, ObjectParts>;

// What an object of a registered class holds.
std::optional<Parts> fieldsOf(lvReferencable const& object) {
  lvArg const key(object.getClassDesc());
  if (key.isNil()) {
    return std::nullopt;
  }
  lvClass described(lvtClassRegistry::getInstance()->getClass(key));
  if (described.isNil()) {
    return std::nullopt;
  }
  return ObjectParts{&object, std::move(described)};
}

// What a container holds, asked for by its interfaces.
std::optional<Parts> elementsOf(lvReferencable& object) {
  if (auto const* const vector = castLikely<lvrVector, lvrVector>(&object)) {
    return VectorParts{vector};
  }
  if (lviMap const* const map = castLikely<lviMap, lvrHashMap, lvrTupleSet>(&object)) {
    return MapParts{std::unique_ptr<lviRealMapEnumerator>(map->getEnumerator()), lvArg()};
  }
  if (lviList const* const list = castLikely<lviList, lvrDLList>(&object)) {
    return ListParts{std::unique_ptr<lviRealListEnumerator>(list->getListEnumerator())};
  }
  if (auto const* const list = dynamic_cast<lviSortedList const*>(&object)) {
    return SortedListParts{list};
  }
  if (auto const* const stack = dynamic_cast<lviStack const*>(&object)) {
    return StackParts{stack};
  }
  return std::nullopt;
}

// What a value holds; none if it never holds anything.
std::optional<Parts> partsOf(lvArg const& value) {
  lvReferencable* const object = value.getReferencable();
  if (object == nullptr) {
    return std::nullopt;
  }
  switch (value.getType()) {
    case lvArg::ObjectType: {
      std::optional<Parts> fields = fieldsOf(*object);
      return fields.has_value() ? std::move(fields) : elementsOf(*object);
    }
    case lvArg::MapType:
    case lvArg::ListType:
      return elementsOf(*object);
    default:
      return std::nullopt;
  }
}

class Walk {
 public:
  explicit Walk(lvWalkVisitor& visitor) : visitor_(visitor) {}

  bool run(lvArg const& root) {
    Part part;
    part.value = root;
    Answer answer = visit(part);
    while (answer != lvWalkVisitor::Stop && !levels_.empty()) {
      Level& level = levels_.back();
      bool const any = std::visit([&](auto& parts) { return parts.step(level.part); }, level.parts);
      answer = any ? visit(level.part) : leave();
    }
    return answer != lvWalkVisitor::Stop;
  }

 private:
  using Answer = lvWalkVisitor::Answer;

  // A value that the walk is in.
  struct Level {
    Part self;
    Parts parts;
    Part part;  // the last one
  };

  // Visits a part of the innermost level, and opens a level for it if it is to be gone into.
  Answer visit(Part const& part) {
    lvWalkPlace::Meeting const meeting = meet(part.value);
    Answer const answer = visitor_.visit(part.value, placeOf(part, levels_.size(), meeting));
    if (answer == lvWalkVisitor::GoOn && meeting == lvWalkPlace::First) {
      open(part);
    }
    return answer;
  }

  void open(Part const& part) {
    std::optional<Parts> parts = partsOf(part.value);
    if (!parts.has_value()) {
      return;
    }
    Part next;
    next.role = std::holds_alternative<ObjectParts>(*parts) ? lvWalkPlace::Field
                : std::holds_alternative<MapParts>(*parts)  ? lvWalkPlace::Value
                                                            : lvWalkPlace::Element;
    met_.setState(part.value, MetObjects::Open);
    levels_.push_back({part, *std::move(parts), std::move(next)});
  }

  Answer leave() {
    Level const level = std::move(levels_.back());
    levels_.pop_back();
    met_.setState(level.self.value, MetObjects::Closed);
    return visitor_.leave(level.self.value,
                          placeOf(level.self, levels_.size(), lvWalkPlace::First));
  }

  lvWalkPlace::Meeting meet(lvArg const& value) {
    if (value.getReferencable() == nullptr) {
      return lvWalkPlace::First;
    }
    switch (met_.meet(value)) {
      case MetObjects::Unknown:
        return lvWalkPlace::First;
      case MetObjects::Open:
        return lvWalkPlace::Cycle;
      default:
        return lvWalkPlace::Again;
    }
  }

  // Where a part of the level number `depth - 1` stands.
  lvWalkPlace placeOf(Part const& part, std::size_t depth, lvWalkPlace::Meeting meeting) const {
    return {part.role,
            meeting,
            static_cast<int>(depth),
            part.index,
            depth > 0 ? &levels_[depth - 1].self.value : nullptr,
            part.role == lvWalkPlace::Value ? &part.key : nullptr};
  }

  lvWalkVisitor& visitor_;
  MetObjects met_;
  std::vector<Level> levels_;
};

}  // namespace

lvWalkVisitor::~lvWalkVisitor() = default;

lvWalkVisitor::Answer lvWalkVisitor::leave(lvArg const& /*value*/, lvWalkPlace const& /*place*/) {
  return GoOn;
}

bool lvWalk(lvArg const& root, lvWalkVisitor& visitor) { return Walk(visitor).run(root); }
