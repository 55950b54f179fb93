// Where containers end: 65,535 elements, and buckets that never grow.

#include <tarselvalues/tarselvalues.h>

#include <cstdio>

namespace {

void fillVector() {
  lvArg zero;
  zero.setInt(0);
  lvVector list(lvrVector::MaxSize);
  while (list->insert(zero, -1)) {
  }
  std::printf("a vector holds %d\n", list->getSize());
}

void fillStack() {
  lvArg zero;
  zero.setInt(0);
  auto* const stack = new lvrStack(lvrStack::MaxSize);
  lvArg const holder(*stack);
  int status = 0;
  while (status == 0) {
    status = stack->push(zero);
  }
  std::printf("a stack holds %d, then push() answers %d\n", stack->getSize(), status);
}

void fillLinkedList() {
  lvArg zero;
  zero.setInt(0);
  lvVector const list{lvArg(*new lvrDLList)};
  for (int i = 0; i < 100000; ++i) {
    list->insert(zero, -1);
  }
  std::printf("a linked list holds %d\n", list->getSize());
}

// A map that is read has six buckets. Into a map of your own choice the same text reads as well.
void readIntoLargeMap() {
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  lvtStringArgSource source("{(a=1),(b=2),(c=3)}", -1);
  lvArg kind;
  source.getArg(kind);  // The beginning of the frame.
  lvHashMap large(1009);
  serializer->deserializeMapContentsInto(large, source);
  std::printf("%d entries in the large map\n", large->getSize());
}

}  // namespace

int main() {
  fillVector();
  fillStack();
  fillLinkedList();
  readIntoLargeMap();
}
