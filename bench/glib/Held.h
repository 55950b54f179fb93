// Owners of GLib's values.
#pragma once

#include <glib.h>

#include <memory>
#include <string>
#include <utility>

namespace bench {

// Drops a reference to a GVariant, which may be null.
inline void unref(gpointer variant) {
  if (variant != nullptr) {
    g_variant_unref(static_cast<GVariant*>(variant));
  }
}

struct VariantUnref {
  void operator()(GVariant* variant) const { unref(variant); }
};

// The only owner of one reference.
using HeldVariant = std::unique_ptr<GVariant, VariantUnref>;

// A value that takes a reference when it is copied.
class CountedVariant {
 public:
  CountedVariant() = default;
  explicit CountedVariant(std::string const& text)
      : held(g_variant_ref_sink(g_variant_new_string(text.c_str()))) {}
  // Of what somebody holds, or null.
  explicit CountedVariant(GVariant* variant)
      : held(variant != nullptr ? g_variant_ref(variant) : nullptr) {}
  CountedVariant(CountedVariant const& other) : CountedVariant(other.held) {}
  CountedVariant(CountedVariant&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
  CountedVariant& operator=(CountedVariant other) noexcept {
    std::swap(held, other.held);
    return *this;
  }
  ~CountedVariant() { unref(held); }

  GVariant* get() const { return held; }

 private:
  GVariant* held = nullptr;
};

}  // namespace bench
