// The documents that the text benchmarks write and read, as plain trees. Each library makes its own
// values of them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace bench {

struct Node {
  enum Kind { Nothing, Integer, Text, List, Map };

  static Node nothing() { return {}; }
  static Node integer(int value);
  static Node string(std::string text);
  static Node list(std::vector<Node> children);
  // Of pairs of a name and a value, sorted by name.
  static Node map(std::vector<std::pair<std::string, Node>> const& entries);

  Kind kind = Nothing;
  int number = 0;
  std::string text;
  std::vector<Node> children;
  std::vector<std::string> names;  // Of a map's children.
};

struct Document {
  std::string name;
  Node root;
};

// 100 records of id, name, port, two tags and nothing; 100 strings of 2,000 characters in lines; a
// list of 1,000 integers.
std::vector<Document> const& documents();

}  // namespace bench
