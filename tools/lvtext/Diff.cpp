#include "Diff.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include "TextClass.h"
#include "TextLayout.h"

namespace {

// Of trees whose maps are sorted.
bool isSame(Node const& a, Node const& b) {
  return a.kind == b.kind && a.value.equiv(b.value) != 0 &&
         std::equal(a.parts.begin(), a.parts.end(), b.parts.begin(), b.parts.end(), isSame);
}

std::string extended(std::string path, char const* before, std::string const& name,
                     char const* after) {
  return path.append(before).append(name).append(after);
}

class Comparison {
 public:
  void compareLists(std::string const& path, std::vector<Node> const& left,
                    std::vector<Node> const& right) {
    auto const [leftFrom, rightFrom] =
        std::mismatch(left.begin(), left.end(), right.begin(), right.end(), isSame);
    auto const [leftTo, rightTo] =
        std::mismatch(left.rbegin(), std::reverse_iterator(leftFrom), right.rbegin(),
                      std::reverse_iterator(rightFrom), isSame);
    auto const first = static_cast<std::size_t>(leftFrom - left.begin());
    auto const leftEnd = first + static_cast<std::size_t>(leftTo.base() - leftFrom);
    auto const rightEnd = first + static_cast<std::size_t>(rightTo.base() - rightFrom);
    for (std::size_t i = first; i < std::max(leftEnd, rightEnd); ++i) {
      std::string const place = extended(path, "[", std::to_string(i), "]");
      compareThese(place, i < leftEnd ? &left[i] : nullptr, i < rightEnd ? &right[i] : nullptr);
    }
  }

  std::string take() { return std::move(out_); }

 private:
  // Null for a value that is not there.
  void compareThese(std::string const& path, Node const* left, Node const* right) {
    if (left != nullptr && right != nullptr) {
      compare(path, *left, *right);
    } else if (left != nullptr) {
      addLine('<', path, *left);
    } else if (right != nullptr) {
      addLine('>', path, *right);
    }
  }

  void compare(std::string const& path, Node const& left, Node const& right) {
    if (isSame(left, right)) {
      return;
    }
    bool const isAlike =
        left.kind == right.kind && left.kind != Node::Atom && left.value.equiv(right.value) != 0;
    if (!isAlike) {
      addLine('<', path, left);
      addLine('>', path, right);
    } else if (left.kind == Node::Map) {
      compareMaps(path, left, right);
    } else if (left.kind == Node::List) {
      compareLists(path, left.parts, right.parts);
    } else {
      compareFields(path, left, right);
    }
  }

  void compareFields(std::string const& path, Node const& left, Node const& right) {
    TextClass const* const described = findTextClass(left.value);
    for (std::size_t i = 0; i < left.parts.size(); ++i) {
      bool const isNamed = described != nullptr && !described->names.empty();
      std::string const field = isNamed ? described->names[i] : std::to_string(i);
      compare(extended(path, ".", field, ""), left.parts[i], right.parts[i]);
    }
  }

  // The values under a key in both maps. A key that is no atom may be there more than once.
  struct Sides {
    std::vector<Node const*> left;
    std::vector<Node const*> right;
  };

  void compareMaps(std::string const& path, Node const& left, Node const& right) {
    std::map<std::string, Sides> keys;
    for (std::size_t i = 0; i < left.parts.size(); i += 2) {
      keys[oneLine(left.parts[i])].left.push_back(&left.parts[i + 1]);
    }
    for (std::size_t i = 0; i < right.parts.size(); i += 2) {
      keys[oneLine(right.parts[i])].right.push_back(&right.parts[i + 1]);
    }
    for (auto& [key, sides] : keys) {
      sortByText(sides.left);
      sortByText(sides.right);
      std::size_t const count = std::max(sides.left.size(), sides.right.size());
      sides.left.resize(count);
      sides.right.resize(count);
      for (std::size_t i = 0; i < count; ++i) {
        compareThese(extended(path, "(", key, ")"), sides.left[i], sides.right[i]);
      }
    }
  }

  // Which of several values under keys with the same text comes first is no difference.
  static void sortByText(std::vector<Node const*>& values) {
    std::sort(values.begin(), values.end(),
              [](Node const* a, Node const* b) { return oneLine(*a) < oneLine(*b); });
  }

  void addLine(char side, std::string const& path, Node const& node) {
    out_ += side;
    out_ += ' ';
    out_ += path;
    out_ += ": ";
    out_ += oneLine(node);
    out_ += '\n';
  }

  std::string out_;
};

void sortAll(std::vector<Node>& values) {
  for (Node& value : values) {
    sortMaps(value);
  }
}

}  // namespace

std::string differencesOf(std::vector<Node>& left, std::vector<Node>& right) {
  sortAll(left);
  sortAll(right);
  Comparison comparison;
  comparison.compareLists("", left, right);
  return comparison.take();
}
