#include "tarselvalues/containers/lvSortedList.h"

#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/containers/lvSortedListIterator.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/core/ClassCast.h"

namespace {

lviSortedList* sortedListIn(lvArg const& value) {
  return tarselvalues::castLikely<lviSortedList, lvrSortedArrayList>(value.getReferencable());
}

}  // namespace

lvSortedList::lvSortedList(lvArg const& value) {
  if (value.getType() == ListType && sortedListIn(value) != nullptr) {
    assignFast(value);
  }
}

lvSortedList::lvSortedList(lvReferencable const& object) {
  if (object.getKind() == lvReferencable::ListKind &&
      dynamic_cast<lviSortedList const*>(&object) != nullptr) {
    setReferencableFast(object);
  }
}

lviSortedList* lvSortedList::getSortedList() const { return sortedListIn(*this); }

lvSortedListEnumerator::lvSortedListEnumerator(lviSortedList const& list, int position)
    : cursor(list.getSortedListEnumerator(position)) {}

lvSortedListEnumerator::lvSortedListEnumerator(lvArg const& value, int position) : cursor(nullptr) {
  if (lviSortedList const* const list = sortedListIn(value)) {
    cursor = list->getSortedListEnumerator(position);
  }
}

lvSortedListEnumerator::~lvSortedListEnumerator() { delete cursor; }

lvSortedListIterator::lvSortedListIterator(lviSortedList& list, int position)
    : cursor(list.getSortedListIterator(position)) {}

lvSortedListIterator::lvSortedListIterator(lvArg const& value, int position) : cursor(nullptr) {
  if (lviSortedList* const list = sortedListIn(value)) {
    cursor = list->getSortedListIterator(position);
  }
}

lvSortedListIterator::~lvSortedListIterator() { delete cursor; }
