#include "TextLayout.h"

#include <tarselvalues/core/lvRead.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "Utf8.h"
#include "ValueText.h"

namespace {

constexpr std::size_t Indent = 2;
constexpr std::size_t NoLimit = std::string::npos;

std::string openingOf(Node const& node) {
  return node.kind == Node::Object ? "*" + valueText(node.value) + "{" : "{";
}

// Writes on one line, but may stop at any place once the line is longer than the limit.
class LineWriter {
 public:
  LineWriter(std::string& out, char const* separator, std::size_t limit)
      : out_(out), separator_(separator), limit_(limit) {}

  void write(Node const& node) {
    if (node.kind == Node::Atom) {
      out_ += valueText(node.value);
      return;
    }
    out_ += openingOf(node);
    if (node.kind == Node::Map) {
      writeEntries(node);
    } else {
      writeParts(node);
    }
    out_ += '}';
  }

  bool isWithinLimit() const { return out_.size() <= limit_; }

 private:
  void writeParts(Node const& node) {
    for (std::size_t i = 0; i < node.parts.size() && isWithinLimit(); ++i) {
      out_ += i > 0 ? separator_ : "";
      write(node.parts[i]);
    }
  }

  void writeEntries(Node const& map) {
    if (map.parts.empty()) {
      out_ += "()";  // Without it, it would be a list.
    }
    for (std::size_t i = 0; i < map.parts.size() && isWithinLimit(); i += 2) {
      out_ += i > 0 ? separator_ : "";
      out_ += '(';
      write(map.parts[i]);
      out_ += '=';
      write(map.parts[i + 1]);
      out_ += ')';
    }
  }

  std::string& out_;
  char const* separator_;
  std::size_t limit_;
};

class IndentingWriter {
 public:
  explicit IndentingWriter(std::size_t width) : width_(width) {}

  // `after` is what has to stand on the same line as the end of the node.
  void write(Node const& node, std::size_t after) {
    if (writeOnThisLine(node, after)) {
      return;
    }
    out_ += openingOf(node);
    indent_ += Indent;
    if (node.kind == Node::Map) {
      writeEntries(node);
    } else {
      writeParts(node);
    }
    indent_ -= Indent;
    newLine();
    out_ += '}';
  }

  std::string take() { return std::move(out_); }

 private:
  static bool isAtom(Node const& node) { return node.kind == Node::Atom; }

  void newLine() {
    out_ += '\n';
    lineStart_ = out_.size();
    out_.append(indent_, ' ');
  }

  std::size_t columns() const { return columnsOf(std::string_view(out_).substr(lineStart_)); }

  // Writes the node here if it fits, or if it cannot be divided.
  bool writeOnThisLine(Node const& node, std::size_t after) {
    std::string line;
    LineWriter writer(line, ", ", isAtom(node) ? NoLimit : MaxBytes * width_);
    writer.write(node);
    bool const fits = writer.isWithinLimit() && columns() + columnsOf(line) + after <= width_;
    if (fits || isAtom(node) || node.parts.empty()) {
      out_ += line;
      return true;
    }
    return false;
  }

  // As many atoms on each line as fit, and each of the others on a line of its own.
  void writeParts(Node const& node) {
    for (std::size_t i = 0; i < node.parts.size(); ++i) {
      bool const followsAtom = i > 0 && isAtom(node.parts[i - 1]);
      if (followsAtom && isAtom(node.parts[i]) && hasRoomFor(node.parts[i])) {
        out_ += ' ';
      } else {
        newLine();
      }
      write(node.parts[i], Bracket);
      separate(i + 1 < node.parts.size());
    }
  }

  bool hasRoomFor(Node const& atom) const {
    return columns() + Blank + columnsOf(valueText(atom.value)) + Bracket <= width_;
  }

  void writeEntries(Node const& map) {
    for (std::size_t i = 0; i < map.parts.size(); i += 2) {
      newLine();
      out_ += '(' + oneLine(map.parts[i]) + '=';
      write(map.parts[i + 1], 2 * Bracket);
      out_ += ')';
      separate(i + 2 < map.parts.size());
    }
  }

  void separate(bool more) { out_ += more ? "," : ""; }

  static constexpr std::size_t Blank = 1;
  static constexpr std::size_t Bracket = 1;   // or separator
  static constexpr std::size_t MaxBytes = 4;  // of a character

  std::size_t width_;
  std::size_t indent_ = 0;
  std::size_t lineStart_ = 0;
  std::string out_;
};

// An entry while it is sorted.
struct Entry {
  enum Rank : unsigned char { Nil, Integer, String, Other };

  Rank rank;
  int number;
  std::string text;
  Node key;
  Node value;
};

Entry::Rank rankOf(Node const& key) {
  if (key.kind != Node::Atom) {
    return Entry::Other;
  }
  switch (key.value.getType()) {
    case lvArg::IntType:
      return Entry::Integer;
    case lvArg::StringType:
      return Entry::String;
    default:
      return Entry::Nil;
  }
}

std::vector<Entry> takeEntries(Node& map) {
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < map.parts.size(); i += 2) {
    Node& key = map.parts[i];
    Entry::Rank const rank = rankOf(key);
    std::string text = rank == Entry::Other ? oneLine(key) : lvReadText(key.value, "");
    entries.push_back({rank, lvReadInt(key.value, 0), std::move(text), std::move(key),
                       std::move(map.parts[i + 1])});
  }
  map.parts.clear();
  return entries;
}

}  // namespace

std::string oneLine(Node const& node) {
  std::string out;
  LineWriter(out, ",", NoLimit).write(node);
  return out;
}

std::string indented(Node const& node, std::size_t width) {
  IndentingWriter writer(width);
  writer.write(node, 1);
  return writer.take();
}

void sortMaps(Node& node) {
  for (Node& part : node.parts) {
    sortMaps(part);
  }
  if (node.kind != Node::Map) {
    return;
  }
  std::vector<Entry> entries = takeEntries(node);
  std::stable_sort(entries.begin(), entries.end(), [](Entry const& a, Entry const& b) {
    return std::tie(a.rank, a.number, a.text) < std::tie(b.rank, b.number, b.text);
  });
  for (Entry& entry : entries) {
    node.parts.push_back(std::move(entry.key));
    node.parts.push_back(std::move(entry.value));
  }
}
