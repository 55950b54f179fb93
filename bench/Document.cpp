#include "bench/Document.h"

#include <cstddef>

namespace bench {

namespace {

Node records() {
  constexpr int count = 100;
  std::vector<std::string> const places = {"north", "south", "roof", "cellar", "yard"};
  std::vector<std::string> const kinds = {"pump", "valve", "meter"};
  std::vector<Node> list;
  for (int i = 0; i < count; ++i) {
    auto const turn = static_cast<std::size_t>(i);
    std::string const& kind = kinds[turn % kinds.size()];
    list.push_back(Node::map({
        {"id", Node::integer(i)},
        {"name", Node::string(kind + " " + std::to_string(i))},
        {"port", Node::integer(5000 + i)},
        {"tags", Node::list({Node::string(kind), Node::string(places[turn % places.size()]),
                             Node::nothing()})},
    }));
  }
  return Node::list(std::move(list));
}

Node longStrings() {
  constexpr int count = 100;
  constexpr std::size_t length = 2000;
  std::vector<Node> list;
  for (int i = 0; i < count; ++i) {
    std::string text;
    while (text.size() < length) {
      text +=
          "line " + std::to_string(i) + " of what somebody typed, or a device has to say today\n";
    }
    text.resize(length);
    list.push_back(Node::string(std::move(text)));
  }
  return Node::list(std::move(list));
}

Node integers() {
  constexpr int count = 1000;
  constexpr int step = 2654435;  // Numbers of all lengths, every other one negative.
  std::vector<Node> list;
  for (int i = 0; i < count; ++i) {
    int const number = i % 10 == 0 ? i : i % 800 * step;
    list.push_back(Node::integer(i % 2 == 0 ? number : -number));
  }
  return Node::list(std::move(list));
}

}  // namespace

Node Node::integer(int value) {
  Node node;
  node.kind = Integer;
  node.number = value;
  return node;
}

Node Node::string(std::string text) {
  Node node;
  node.kind = Text;
  node.text = std::move(text);
  return node;
}

Node Node::list(std::vector<Node> children) {
  Node node;
  node.kind = List;
  node.children = std::move(children);
  return node;
}

Node Node::map(std::vector<std::pair<std::string, Node>> const& entries) {
  Node node;
  node.kind = Map;
  for (auto const& [name, child] : entries) {
    node.names.push_back(name);
    node.children.push_back(child);
  }
  return node;
}

std::vector<Document> const& documents() {
  static std::vector<Document> const all = {
      {"records", records()}, {"long strings", longStrings()}, {"integers", integers()}};
  return all;
}

}  // namespace bench
