// Cells that are assigned from a cell inside the container that only they hold.

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

#include "support/Pairs.h"
#include "support/Rings.h"
#include "support/SortedLists.h"
#include "support/Stacks.h"

namespace {

using test::countOf;
using test::integer;
using test::string;
using test::textOf;

// A kind of container: how to make one around an element, and where that lies.
struct Kind {
  char const* name;
  lvArg (*around)(lvArg const& element);
  lvArg const& (*elementOf)(lvReferencable const& container);
};

std::ostream& operator<<(std::ostream& out, Kind const& kind) { return out << kind.name; }

template <class Container>
Container const& as(lvReferencable const& container) {
  return static_cast<Container const&>(container);
}

Kind const Kinds[] = {
    {"vector",
     [](lvArg const& element) {
       auto& vector = *new lvrVector(1);
       vector.insert(element, 0);
       return lvArg(vector);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return test::VectorLayout::elements(as<lvrVector>(container))[0];
     }},
    {"stack",
     [](lvArg const& element) {
       auto& stack = *new lvrStack(1);
       stack.push(element);
       return lvArg(stack);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return as<lvrStack>(container).peek(0);
     }},
    {"linked list",
     [](lvArg const& element) {
       auto& list = *new lvrDLList;
       list.insert(element, 0);
       return lvArg(list);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return lvLayoutAccess<lvrDLList>::head(as<lvrDLList>(container))->value;
     }},
    {"hash map",
     [](lvArg const& element) {
       auto& map = *new lvrHashMap(1U);
       map.put(integer(1), element);
       return lvArg(map);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return lvLayoutAccess<lvrHashMap>::buckets(as<lvrHashMap>(container))[0]->value;
     }},
    {"tuple set",
     [](lvArg const& element) {
       auto& set = *new lvrTupleSet(1, 1U, 0U);
       set.put(integer(1), element);
       return lvArg(set);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return test::SetLayout::entries(as<lvrTupleSet>(container))[0].value;
     }},
    {"sorted list",
     [](lvArg const& element) {
       auto& list = *new lvrSortedArrayList(test::WithDuplicates);
       list.add(element);
       return lvArg(list);
     },
     [](lvReferencable const& container) -> lvArg const& {
       return test::SortedLayout::array(as<lvrSortedArrayList>(container))[0];
     }},
};

class InnerCell : public ::testing::TestWithParam<Kind> {
 protected:
  static lvArg const& elementOf(lvArg const& cell) {
    return GetParam().elementOf(*cell.getReferencable());
  }
};

TEST_P(InnerCell, MayBeAssignedToTheOnlyHolder) {
  lvArg cell = GetParam().around(string("inner"));
  cell.assign(elementOf(cell));
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
  cell = GetParam().around(integer(5));
  cell = elementOf(cell);
  EXPECT_EQ(cell.getInt(), 5);
}

TEST_P(InnerCell, MayBeMovedToTheOnlyHolder) {
  lvArg cell = GetParam().around(string("inner"));
  cell = std::move(const_cast<lvArg&>(elementOf(cell)));
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

TEST_P(InnerCell, MayLendItsObjectToTheOnlyHolder) {
  lvArg cell = GetParam().around(string("inner"));
  cell.setReferencable(*elementOf(cell).getReferencable());
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

TEST_P(InnerCell, LeadsDownAChainOfAllKinds) {
  lvArg cell = string("innermost");
  for (int i = 0; i < 100; ++i) {
    for (Kind const& kind : Kinds) {
      cell = kind.around(cell);
    }
    cell = GetParam().around(cell);
  }
  int levels = 0;
  for (; cell.getType() != lvArg::StringType; ++levels) {
    int const kind = levels % (static_cast<int>(std::size(Kinds)) + 1);
    cell = kind == 0 ? elementOf(cell)
                     : Kinds[std::size(Kinds) - static_cast<std::size_t>(kind)].elementOf(
                           *cell.getReferencable());
  }
  EXPECT_EQ(levels, 700);
  EXPECT_EQ(countOf(cell), 1);
}

INSTANTIATE_TEST_SUITE_P(Containers, InnerCell, ::testing::ValuesIn(Kinds));

}  // namespace
