// GVariant's text format, beside TextBench.cpp.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <string>

#include "bench/Bench.h"
#include "bench/Document.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

GVariant* variantOf(Node const& node);

// A list is an array of what its elements have in common.
GVariantType const* elementTypeOf(std::vector<Node> const& children) {
  bool gaps = false;
  Node::Kind kind = Node::Nothing;
  for (Node const& child : children) {
    gaps = gaps || child.kind == Node::Nothing;
    kind = child.kind == Node::Nothing ? kind : child.kind;
  }
  switch (kind) {
    case Node::Integer:
      return G_VARIANT_TYPE(gaps ? "mi" : "i");
    case Node::Text:
      return G_VARIANT_TYPE(gaps ? "ms" : "s");
    case Node::Map:
      return G_VARIANT_TYPE(gaps ? "ma{sv}" : "a{sv}");
    default:
      return G_VARIANT_TYPE_VARIANT;
  }
}

GVariant* elementOf(GVariantType const* type, Node const& child) {
  if (g_variant_type_is_maybe(type) == FALSE) {
    return variantOf(child);
  }
  GVariant* const value = child.kind == Node::Nothing ? nullptr : variantOf(child);
  return g_variant_new_maybe(g_variant_type_element(type), value);
}

GVariant* listOf(std::vector<Node> const& children) {
  GVariantType const* const type = elementTypeOf(children);
  std::vector<GVariant*> elements;
  for (Node const& child : children) {
    elements.push_back(elementOf(type, child));
  }
  return g_variant_new_array(type, elements.data(), elements.size());
}

GVariant* mapOf(Node const& node) {
  std::vector<GVariant*> entries;
  for (std::size_t i = 0; i < node.children.size(); ++i) {
    entries.push_back(g_variant_new_dict_entry(g_variant_new_string(node.names[i].c_str()),
                                               g_variant_new_variant(variantOf(node.children[i]))));
  }
  return g_variant_new_array(G_VARIANT_TYPE("{sv}"), entries.data(), entries.size());
}

GVariant* variantOf(Node const& node) {
  switch (node.kind) {
    case Node::Integer:
      return g_variant_new_int32(node.number);
    case Node::Text:
      return g_variant_new_string(node.text.c_str());
    case Node::List:
      return listOf(node.children);
    case Node::Map:
      return mapOf(node);
    default:
      return g_variant_new_variant(g_variant_new_maybe(G_VARIANT_TYPE_BYTE, nullptr));
  }
}

HeldVariant read(GVariantType const* type, std::string const& text) {
  return HeldVariant(
      g_variant_parse(type, text.data(), text.data() + text.size(), nullptr, nullptr));
}

std::string textOf(GVariant* value) {
  gchar* const text = g_variant_print(value, FALSE);
  std::string copy = text;
  g_free(text);
  return copy;
}

void writeVariant(benchmark::State& state, Document const* document) {
  HeldVariant const made(g_variant_ref_sink(variantOf(document->root)));
  // Read once, so that it is a tree and not one block.
  HeldVariant const value = read(g_variant_get_type(made.get()), textOf(made.get()));
  for (auto _ : state) {
    gchar* text = g_variant_print(value.get(), FALSE);
    benchmark::DoNotOptimize(text);
    g_free(text);
  }
}

void readVariant(benchmark::State& state, Document const* document) {
  HeldVariant const made(g_variant_ref_sink(variantOf(document->root)));
  GVariantType const* const type = g_variant_get_type(made.get());
  std::string const written = textOf(made.get());
  HeldVariant const again = read(type, written);
  if (again == nullptr || textOf(again.get()) != written) {
    state.SkipWithError("does not read what it wrote");
  }
  for (auto _ : state) {
    HeldVariant value = read(type, written);
    benchmark::DoNotOptimize(value);
  }
}

void addAll() {
  for (Document const& document : documents()) {
    add("write " + document.name, "GVariant", writeVariant, &document);
    add("read " + document.name, "GVariant", readVariant, &document);
  }
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
