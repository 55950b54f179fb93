#include "Verbs.h"

#include <tarselvalues/tarselvalues.h>

#include <cstdio>
#include <stdexcept>
#include <utility>
#include <vector>

#include "CheckedSource.h"
#include "Diff.h"
#include "Files.h"
#include "FromJson.h"
#include "Graph.h"
#include "Input.h"
#include "JsonText.h"
#include "Stats.h"
#include "Svg.h"
#include "TextLayout.h"
#include "TextTree.h"
#include "ToJson.h"
#include "ValueText.h"

namespace {

int statusOf(Problems const& problems) { return problems.any() ? Problem : Success; }

// Texts of values, with what separates them: a text that is read back.
class TextList {
 public:
  void add(std::string const& text) {
    writeOut(isFirst_ ? "" : ",\n");
    writeOut(text);
    isFirst_ = false;
  }
  void end() const {
    writeOut(isFirst_ ? "" : "\n");
    flushOut();
  }

 private:
  bool isFirst_ = true;
};

// Calls `use` with each value as the library reads it.
template <class Use>
void forEachValue(Input& input, Use use) {
  CheckedSource source(input);
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  lvArg value;
  while (serializer->deserializeItemInto(value, source) != lvArgSource::SOURCE_END) {
    use(value);
  }
}

// Calls `use` with the tree of each value.
template <class Use>
void forEachNode(Input& input, Use use) {
  CheckedSource source(input);
  Node node;
  while (readNode(node, source)) {
    use(node);
  }
}

std::vector<lvArg> readValues(Input& input) {
  std::vector<lvArg> values;
  forEachValue(input, [&](lvArg const& value) { values.push_back(value); });
  return values;
}

std::vector<Node> readNodes(Input& input) {
  std::vector<Node> nodes;
  forEachNode(input, [&](Node& node) { nodes.push_back(std::move(node)); });
  return nodes;
}

}  // namespace

int checkText(std::string const& name) {
  Input input = openInput(name, stdout, Problems::WithSource);
  forEachNode(input, [](Node const& /*node*/) {});
  flushOut();
  return statusOf(input.problems);
}

int printText(std::string const& name) {
  Input input = openInput(name);
  TextList out;
  forEachValue(input, [&](lvArg const& value) { out.add(valueText(value)); });
  out.end();
  return statusOf(input.problems);
}

int formatText(std::string const& name, bool sorted, std::size_t width) {
  Input input = openInput(name);
  TextList out;
  forEachNode(input, [&](Node& node) {
    if (sorted) {
      sortMaps(node);
    }
    out.add(indented(node, width));
  });
  out.end();
  return statusOf(input.problems);
}

int convertToJson(std::string const& name, bool strict) {
  Input input = openInput(name);
  std::string lines;
  forEachNode(input, [&](Node const& node) { lines += toJson(node, input.problems) + '\n'; });
  if (!strict || !input.problems.any()) {
    writeOut(lines);
    flushOut();
  }
  return statusOf(input.problems);
}

int convertFromJson(std::string const& name, bool strict) {
  Input input = openInput(name);
  std::vector<std::string> texts;
  try {
    std::size_t offset = findJson(input.text, 0);
    while (offset < input.text.size()) {
      JsonValue json;
      offset = readJsonTree(json, input.text, offset,
                            [&](std::size_t reached) { input.progress.reach(reached); });
      texts.push_back(oneLine(fromJson(json, input.problems)));
      offset = findJson(input.text, offset);
    }
  } catch (JsonError const& error) {
    input.problems.report(error.offset, error.what());
  }
  TextList out;
  if (!strict || !input.problems.any()) {
    for (std::string const& text : texts) {
      out.add(text);
    }
  }
  out.end();
  return statusOf(input.problems);
}

int graphText(std::string const& name, bool svg) {
  Input input = openInput(name);
  std::string const graph = dotGraph(readValues(input));
  input.progress.hide();
  if (svg) {
    writeSvg(graph);
  } else {
    writeOut(graph);
    flushOut();
  }
  return statusOf(input.problems);
}

int diffTexts(std::string const& left, std::string const& right) {
  if (left == "-" && right == "-") {
    throw std::runtime_error("standard input cannot be both texts");
  }
  Input leftInput = openInput(left);
  Input rightInput = openInput(right);
  std::vector<Node> leftNodes = readNodes(leftInput);
  std::vector<Node> rightNodes = readNodes(rightInput);
  std::string const differences = differencesOf(leftNodes, rightNodes);
  writeOut(differences);
  flushOut();
  if (leftInput.problems.any() || rightInput.problems.any()) {
    return Failure;
  }
  return differences.empty() ? Success : Problem;
}

int printStats(std::string const& name) {
  Input input = openInput(name);
  writeOut(statsOf(readValues(input), input.text.size()));
  flushOut();
  return statusOf(input.problems);
}
