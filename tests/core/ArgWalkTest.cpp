// Random walks over a few cells and a few objects, beside a model that counts by looking.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <new>
#include <random>
#include <string>
#include <utility>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvArg.h"

namespace {

using test::AllMarks;
using test::bookkeepingOf;
using test::countOf;
using test::Probe;

// What a cell should hold.
struct Expected {
  unsigned tag = lvArg::NilType;
  int number = 0;     // of an integer or an address
  int object = None;  // index of the object of a reference
  std::uint32_t bits = 0;

  static constexpr int None = -1;

  void takeValue(Expected const& other) {
    tag = other.tag;
    number = other.number;
    object = other.object;
  }
  void setImmediate(unsigned newTag, int value) {
    tag = newTag;
    number = value;
    object = None;
  }
};

class Walk {
 public:
  explicit Walk(unsigned seed) : random(seed) {}

  ~Walk() {
    for (lvArg& cell : cells) {
      cell.setNil();
    }
  }

  // Makes one change to a cell and to its model.
  void step() {
    std::size_t const at = below(CellCount);
    std::size_t const from = below(CellCount);
    lvArg& cell = cells[at];
    lvArg& source = cells[from];
    Expected& model = models[at];
    Expected& sourceModel = models[from];
    int const number = static_cast<int>(below(1000)) - 500;
    switch (below(16)) {
      case 0:
        cell.setInt(number);
        model.setImmediate(lvArg::IntType, number);
        break;
      case 1:
        cell.setPointer(&log[below(ObjectCount)]);
        model.setImmediate(lvArg::PointerType, 0);
        break;
      case 2:
        cell.setNil();
        model.setImmediate(lvArg::NilType, 0);
        break;
      case 3:
      case 4:
        cell.assign(source);
        model.takeValue(sourceModel);
        break;
      case 5:
        cell = std::move(source);
        moveModel(model, sourceModel);
        break;
      case 6:
        cell.exchange(source);
        std::swap(model, sourceModel);
        break;
      case 7:
        cell.releaseData();
        model.object = Expected::None;
        break;
      case 8:
      case 9:
        setObject(cell, model, anyObject());
        break;
      case 10:
        cell.releaseData();
        cell.assignFast(source);
        if (at != from) {
          model.takeValue(sourceModel);
        } else {
          model.object = Expected::None;
        }
        break;
      case 11:
        if (at != from) {
          cell.~lvArg();
          new (&cell) lvArg(source);
          model = sourceModel;
        }
        break;
      case 12:
        if (at != from) {
          cell.~lvArg();
          new (&cell) lvArg(std::move(source));
          model = sourceModel;
          sourceModel.setImmediate(lvArg::NilType, 0);
        }
        break;
      case 13:
        setTagged(cell, model, anyObject());
        break;
      default:
        model.bits = static_cast<std::uint32_t>(random()) & AllMarks;
        test::setBookkeeping(cell, model.bits);
        break;
    }
  }

  // Says what differs from the model; nothing when all is well.
  std::string difference() {
    for (std::size_t i = 0; i < CellCount; ++i) {
      if (!holds(cells[i], models[i])) {
        return "cell " + std::to_string(i);
      }
    }
    for (std::size_t i = 0; i < objects.size(); ++i) {
      int const holders = holdersOf(static_cast<int>(i));
      bool const right = holders == 0 ? isGone(i) : isHeldBy(i, holders);
      if (!right) {
        return "object " + std::to_string(i) + " with " + std::to_string(holders) + " holders";
      }
      if (holders == 0) {
        objects[i] = nullptr;
      }
    }
    return "";
  }

 private:
  static constexpr std::size_t CellCount = 7;
  static constexpr std::size_t ObjectCount = 4;

  std::size_t below(std::size_t end) { return random() % end; }

  // Returns one of the objects, which it makes anew if it is gone.
  int anyObject() {
    std::size_t const i = below(ObjectCount);
    if (objects[i] == nullptr) {
      log[i] = {};
      objects[i] = new Probe(log[i]);
    }
    return static_cast<int>(i);
  }

  Probe& object(int index) { return *objects[static_cast<std::size_t>(index)]; }

  void setObject(lvArg& cell, Expected& model, int index) {
    cell.setReferencable(object(index));
    if (model.object != index) {
      model.tag = lvArg::ObjectType;
      model.object = index;
    }
  }

  void setTagged(lvArg& cell, Expected& model, int index) {
    Probe& added = object(index);
    lvArg const keeper(added);
    cell.releaseData();
    cell.setReferencableFast(added, lvArg::ListType);
    model.tag = lvArg::ListType;
    model.object = index;
  }

  static void moveModel(Expected& model, Expected& source) {
    if (&model != &source) {
      model.takeValue(source);
      source.setImmediate(lvArg::NilType, 0);
    }
  }

  bool holds(lvArg const& cell, Expected const& model) {
    lvReferencable const* const expected =
        model.object == Expected::None ? nullptr : &object(model.object);
    return cell.getType() == model.tag && bookkeepingOf(cell) == model.bits &&
           cell.getReferencable() == expected &&
           (model.tag != lvArg::IntType || cell.getInt() == model.number);
  }

  int holdersOf(int index) const {
    return static_cast<int>(std::count_if(
        models.begin(), models.end(), [index](Expected const& m) { return m.object == index; }));
  }

  bool isGone(std::size_t i) const {
    return objects[i] == nullptr || (log[i].finalized == 1 && log[i].destroyed == 1);
  }

  bool isHeldBy(std::size_t i, int holders) const {
    return log[i].finalized == 0 && log[i].destroyed == 0 && countOf(*objects[i]) == holders;
  }

  std::mt19937 random;
  std::array<Probe::Log, ObjectCount> log;
  std::array<Probe*, ObjectCount> objects{};
  std::array<lvArg, CellCount> cells;
  std::array<Expected, CellCount> models;
};

TEST(ArgWalk, EndsEveryStepAsTheModelDoes) {
  for (unsigned const seed : {1U, 20U, 300U, 4000U, 50000U}) {
    Walk walk(seed);
    for (int step = 0; step < 4000; ++step) {
      walk.step();
      std::string const difference = walk.difference();
      ASSERT_EQ(difference, "") << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
