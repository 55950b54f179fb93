// What the program's own maps and objects may do to the containers that are being written.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "support/ActingItems.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

using test::Act;
using test::acting;
using test::Held;
using test::integer;

// A map that does something at each step of its cursors.
class SteppingMap : public lvrHashMap {
 public:
  SteppingMap() : lvrHashMap(7) {}
  lviRealMapEnumerator* getEnumerator() const override { return new Cursor(*this, onStep); }

  Act onStep;

 private:
  class Cursor : public RealEnumerator {
   public:
    Cursor(SteppingMap const& map, Act onStep) : RealEnumerator(map), onStep_(std::move(onStep)) {}
    bool next() override {
      onStep_();
      return RealEnumerator::next();
    }

   private:
    Act onStep_;
  };
};

// An object that does something when it is asked for its class, and has none.
class AskedObject : public lvReferencable {
 public:
  lvString const& getClassDesc() const override {
    onAsked();
    return none_;
  }

  Act onAsked;

 private:
  lvString none_;
};

// A vector of 1, something that acts, and 3.
class SerializerWhileWriting : public ::testing::Test {
 protected:
  SerializerWhileWriting() : vector(3) {}

  void fill(lvArg const& acts) {
    vector->insert(integer(1), -1);
    vector->insert(acts, -1);
    vector->insert(integer(3), -1);
  }
  std::string written() { return std::string(lvToolsToString(lvArg(*vector))); }

  Held<lvrVector> vector;
};

TEST_F(SerializerWhileWriting, WritesNilForTheElementsOfAVectorThatAMapClears) {
  auto& map = *new SteppingMap;
  fill(lvArg(map));
  map.put(integer(5), integer(6));
  map.onStep = [this] { vector->clear(); };
  EXPECT_EQ(written(), "{1,{(5=6)},#nil}");
  EXPECT_EQ(vector->getSize(), 0);
}

TEST_F(SerializerWhileWriting, WritesNoMoreOfAVectorThanItHad) {
  auto& map = *new SteppingMap;
  fill(lvArg(map));
  map.onStep = [this] { vector->insert(integer(9), -1); };
  EXPECT_EQ(written(), "{1,{},3}");
  EXPECT_EQ(vector->getSize(), 4);
}

TEST_F(SerializerWhileWriting, StopsAMapThatIsClearedAtItsFirstStep) {
  auto& map = *new SteppingMap;
  fill(lvArg(map));
  for (int key = 0; key < 20; ++key) {
    map.put(integer(key), integer(1));
  }
  map.onStep = [&map] { map.clear(); };
  EXPECT_EQ(written(), "{1,{},3}");
}

TEST_F(SerializerWhileWriting, EndsWhenTheRoomDoesThoughAMapGrowsAtEachStep) {
  auto& map = *new SteppingMap;
  fill(lvArg(map));
  int added = 0;
  map.onStep = [&map, &added] {
    ++added;
    map.put(integer(added), integer(added));
  };
  std::string const text = written();
  EXPECT_EQ(text.substr(0, 4), "{1,{");
  EXPECT_LE(text.size(), 4089U);
  EXPECT_LT(added, 4090);
}

TEST_F(SerializerWhileWriting, KeepsAnObjectThatEmptiesTheVectorWhenItIsAskedForItsClass) {
  auto& object = *new AskedObject;
  fill(lvArg(object));
  object.onAsked = [this] { vector->releaseData(); };
  EXPECT_EQ(written().substr(0, 2), "{1");
  EXPECT_EQ(vector->getSize(), 0);
}

TEST_F(SerializerWhileWriting, LetsAnElementThatGoesMeanwhileWriteTheVectorItself) {
  std::string inner;
  auto& map = *new SteppingMap;
  fill(lvArg(map));
  vector->insert(acting([this, &inner] { inner = written(); }), -1);
  map.onStep = [this] { vector->remove(-1); };
  EXPECT_EQ(written(), "{1,{},3,#nil}");
  EXPECT_EQ(inner, "{1,{},3}");
}

}  // namespace
