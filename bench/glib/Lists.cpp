// GPtrArray, GQueue and GList, beside ListsBench.cpp.

#include <glib.h>

#include <string>

#include "bench/Bench.h"
#include "bench/Lists.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

struct Variants {
  using Value = CountedVariant;
  static CountedVariant makeValue(std::string const& text) { return CountedVariant(text); }
};

class Array : public Variants {
 public:
  Array() : array(g_ptr_array_new_with_free_func(unref)) {}
  ~Array() { g_ptr_array_unref(array); }
  Array(Array const&) = delete;
  Array& operator=(Array const&) = delete;

  void append(CountedVariant const& value) { g_ptr_array_add(array, g_variant_ref(value.get())); }
  CountedVariant at(int position) const {
    return CountedVariant(static_cast<GVariant*>(g_ptr_array_index(array, position)));
  }

  void push(CountedVariant const& value) { append(value); }
  HeldVariant pop() {
    return HeldVariant(static_cast<GVariant*>(g_ptr_array_steal_index(array, array->len - 1)));
  }

 private:
  GPtrArray* array;
};

class Queue : public Variants {
 public:
  Queue() = default;
  ~Queue() { g_queue_clear_full(&queue, unref); }
  Queue(Queue const&) = delete;
  Queue& operator=(Queue const&) = delete;

  void append(CountedVariant const& value) {
    g_queue_push_tail(&queue, g_variant_ref(value.get()));
  }
  void prepend(CountedVariant const& value) {
    g_queue_push_head(&queue, g_variant_ref(value.get()));
  }

  void goInto(int position) {
    cursor = g_queue_peek_nth_link(&queue, static_cast<guint>(position));
  }
  void insertAndRemove(CountedVariant const& value) {
    g_queue_insert_before(&queue, cursor, g_variant_ref(value.get()));
    GList* const inserted = cursor->prev;
    unref(inserted->data);
    g_queue_delete_link(&queue, inserted);
  }

 private:
  GQueue queue = G_QUEUE_INIT;
  GList* cursor = nullptr;
};

void addAll() {
  addAppending<Array>("GLib");
  addPrepending<Queue>("GLib");
  addStack<Array>("GLib");
  addCursor<Queue>("GLib");
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
