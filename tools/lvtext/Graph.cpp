#include "Graph.h"

#include <tarselvalues/reflect/lvWalk.h>

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "JsonText.h"
#include "TextClass.h"
#include "Utf8.h"
#include "ValueText.h"

namespace {

// Longer texts are cut.
constexpr std::size_t MaxColumns = 40;

// What is more is left out: dot takes long for it, and nobody could read it.
constexpr std::size_t MaxRows = 5000;

// The text as UTF-8, with U+FFFD for the two characters, U+FFFE and U+FFFF, that XML lacks. dot reads
// labels as XML. Of control characters it lacks nearly all, but values have them escaped.
std::string asXml(std::string const& text) {
  constexpr char begin[] = "\xEF\xBF";
  constexpr unsigned char firstLacking = 0xBE;
  std::string result = asUtf8(text);
  for (std::size_t at = result.find(begin); at != std::string::npos; at = result.find(begin, at)) {
    at += 2;
    if (static_cast<unsigned char>(result[at]) >= firstLacking) {
      result[at] = '\xBD';
    }
  }
  return result;
}

// The label of a text that was cut, without the beginning of a byte that is written as %XX.
std::string withoutHalfAnEscape(std::string const& label) {
  constexpr std::size_t escapeLength = 3;
  std::size_t const percent = label.rfind('%');
  bool const isWhole = percent == std::string::npos || label.size() - percent >= escapeLength;
  return isWhole ? label : label.substr(0, percent);
}

// The text as DOT takes it in a label, cut if it is long.
std::string labelOf(std::string const& text) {
  std::string label;
  std::size_t columns = 0;
  for (char const c : asXml(text)) {
    columns += isContinuation(c) ? 0 : 1;
    if (columns > MaxColumns) {
      return withoutHalfAnEscape(label) + "...";
    }
    switch (c) {
      case '&':
        label += "&amp;";
        break;
      case '<':
        label += "&lt;";
        break;
      case '>':
        label += "&gt;";
        break;
      default:
        label += c;
        break;
    }
  }
  return label;
}

bool isAtom(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::ObjectType:
    case lvArg::MapType:
    case lvArg::ListType:
      return value.getReferencable() == nullptr;
    default:
      return true;
  }
}

std::string nameOf(lvWalkPlace const& place) {
  switch (place.role) {
    case lvWalkPlace::Key:
      return "key";
    case lvWalkPlace::Value:
      return isAtom(*place.key) ? labelOf(valueText(*place.key)) : "value";
    case lvWalkPlace::Field: {
      TextClass const* const described =
          findTextClass(place.holder->getReferencable()->getClassDesc());
      return described != nullptr && !described->names.empty()
                 ? described->names[static_cast<std::size_t>(place.index)]
                 : std::to_string(place.index);
    }
    default:
      return std::to_string(place.index);
  }
}

std::string titleOfObject(lvArg const& className) {
  return "*" + labelOf(className.isNil() ? "object" : valueText(className));
}

std::string titleOf(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::MapType:
      return "map";
    case lvArg::ListType:
      return "list";
    default:
      return titleOfObject(value.getReferencable()->getClassDesc());
  }
}

struct Row {
  std::string name;
  std::string text;        // of an atom
  std::size_t target = 0;  // the box that it refers to, if it is no atom
  bool isAtom = true;
  bool isInCycle = false;
};

struct Box {
  std::string title;
  std::vector<Row> rows;
  int meetings = 0;
};

class Drawing {
 public:
  // Several values are held together by a box of their own.
  explicit Drawing(std::size_t values) : hasTextBox_(values > 1) {
    if (hasTextBox_) {
      boxes_.push_back({"text", {}, 0});
    }
  }

  void add(lvArg const& root) {
    lvWalk(root, [this](lvArg const& value, lvWalkPlace const& place) {
      if (rows_ == MaxRows) {
        return lvWalkVisitor::Stop;
      }
      visit(value, place);
      return lvWalkVisitor::GoOn;
    });
  }

  std::string dot() const {
    std::string out =
        "digraph values {\n"
        "  rankdir=LR;\n"
        "  node [shape=plain, fontname=\"Helvetica\", fontsize=10];\n";
    if (!onlyAtom_.empty()) {
      out += "  atom [label=<" + onlyAtom_ + ">];\n";
    }
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
      addNode(out, i);
    }
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
      addArrows(out, i);
    }
    if (rows_ == MaxRows) {
      out += "  rest [label=\"No more than " + std::to_string(MaxRows) + " parts are drawn.\"];\n";
    }
    return out + "}\n";
  }

 private:
  void visit(lvArg const& value, lvWalkPlace const& place) {
    bool const isName = place.role == lvWalkPlace::Key && isAtom(value);
    if (isName) {
      return;  // Of the row that comes next.
    }
    ++rows_;
    open_.resize(static_cast<std::size_t>(place.depth));
    Row row{nameOf(place), "", 0, isAtom(value), false};
    if (row.isAtom) {
      row.text = labelOf(valueText(value));
    } else {
      row.target = boxOf(value);
    }
    if (place.role != lvWalkPlace::Root) {
      boxes_[open_.back()].rows.push_back(row);
    } else if (hasTextBox_) {
      addRoot(row);
    } else {
      onlyAtom_ = row.text;
    }
    if (place.meeting == lvWalkPlace::Cycle) {
      markCycle(row.target);
    }
    open_.push_back(row.target);
  }

  void addRoot(Row row) {
    row.name = std::to_string(boxes_[0].rows.size());
    boxes_[0].rows.push_back(std::move(row));
  }

  std::size_t boxOf(lvArg const& value) {
    auto const [place, isNew] = numbers_.insert({value.getReferencable(), boxes_.size()});
    if (isNew) {
      boxes_.push_back({titleOf(value), {}, 0});
    }
    ++boxes_[place->second].meetings;
    return place->second;
  }

  // From the box to the innermost open one, whose last row leads back.
  void markCycle(std::size_t box) {
    for (auto i = std::find(open_.begin(), open_.end(), box); i != open_.end(); ++i) {
      boxes_[*i].rows.back().isInCycle = true;
    }
  }

  void addNode(std::string& out, std::size_t number) const {
    Box const& box = boxes_[number];
    out += "  n" + std::to_string(number) + " [label=<<TABLE BORDER=\"" +
           (box.meetings > 1 ? "3" : "0") +
           "\" CELLBORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"3\">"
           "<TR><TD COLSPAN=\"2\" BGCOLOR=\"lightgrey\"><B>" +
           (box.rows.empty() ? "empty " : "") + box.title + "</B></TD></TR>";
    for (std::size_t i = 0; i < box.rows.size(); ++i) {
      Row const& row = box.rows[i];
      out += "<TR><TD ALIGN=\"LEFT\">" + row.name + "</TD><TD ALIGN=\"LEFT\" PORT=\"p" +
             std::to_string(i) + "\">" + row.text + "</TD></TR>";
    }
    out += "</TABLE>>];\n";
  }

  void addArrows(std::string& out, std::size_t number) const {
    std::vector<Row> const& rows = boxes_[number].rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (!rows[i].isAtom) {
        out += "  n" + std::to_string(number) + ":p" + std::to_string(i) + " -> n" +
               std::to_string(rows[i].target) + (rows[i].isInCycle ? " [color=red]" : "") + ";\n";
      }
    }
  }

  std::vector<Box> boxes_;
  bool hasTextBox_;
  std::string onlyAtom_;  // a value that is no box
  std::size_t rows_ = 0;
  std::unordered_map<lvReferencable const*, std::size_t> numbers_;
  std::vector<std::size_t> open_;  // the boxes around the value that is visited
};

}  // namespace

std::string dotGraph(std::vector<lvArg> const& values) {
  Drawing drawing(values.size());
  for (lvArg const& value : values) {
    drawing.add(value);
  }
  return drawing.dot();
}
