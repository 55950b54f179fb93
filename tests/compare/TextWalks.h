// Texts read and values written: hostile texts, buffers with little room, sinks and sources that
// answer with errors.
#pragma once

#include <string>
#include <vector>

#include "compare/Walk.h"
#include "support/FieldObjects.h"
#include "support/ReadingModel.h"
#include "support/SinkModel.h"
#include "support/SourceRuns.h"
#include "support/TextRoundTrip.h"
#include "support/walks/RandomTexts.h"
#include "tarselvalues/serial/lvTools.h"

namespace compared {

// As the writer puts it into a buffer of so many bytes, and what it answers.
inline std::string written(lvArg const& value, int capacity, bool sizes) {
  test::TextWriter writer(capacity);
  writer.setTransferSizes(sizes);
  int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
  return std::to_string(status) + " " + test::describedText(writer.text()) + " depth " +
         std::to_string(writer.depth()) + " flags " + std::to_string(writer.flags());
}

inline void writeEverywhere(Walk& walk, lvArg const& value) {
  std::string const whole = written(value, 4000, false);
  walk.step("write " + whole);
  walk.step("with sizes " + written(value, 4000, true));
  for (int i = 0; i < 6; ++i) {
    int const capacity = 1 + walk.choices.below(static_cast<int>(whole.size()));
    walk.step("into " + std::to_string(capacity) + " " +
              written(value, capacity, walk.choices.oneIn(4)));
  }
  walk.step("to string " + test::describedText(test::textOf(lvToolsToString(value))));
}

// ---- Texts -------------------------------------------------------------------------------------

inline void readAndWrite(Walk& walk, std::string const& text) {
  walk.step("text " + test::describedText(text));
  walk.step("items " + test::describedText(test::argsOf(text)));
  walk.step("tokens " + test::describedText(test::tokensOf(text)));
  test::ExactText const exact(text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg value = test::untouched();
  int const status = test::HeldSerializer()->deserializeInto(value, parser);
  walk.step("read " + std::to_string(status) + " " + test::describedOutput(value) + " errors " +
            std::to_string(parser.getErrorCount()) + " offset " +
            std::to_string(parser.getParseOffset()));
  int consumed = -1;
  lvArg const converted =
      lvToolsFromString(lvString(static_cast<int>(text.size()), text.data(), 2), consumed);
  walk.step("from string " + std::to_string(consumed) + " " + test::described(converted));
  writeEverywhere(walk, converted);
}

inline void walkRandomTexts() {
  struct {
    char const* name;
    std::string (*make)(test::Choices&);
    unsigned texts;
  } const kinds[] = {{"bytes", test::randomBytes, 100},
                     {"meaningful bytes", test::meaningfulBytes, 200},
                     {"tokens", test::tokenSoup, 200},
                     {"mutated texts", test::mutatedText, 300},
                     {"long strings", test::longString, 20}};
  for (auto const& kind : kinds) {
    for (unsigned seed = 1; seed <= kind.texts; ++seed) {
      Walk walk(kind.name, seed);
      readAndWrite(walk, kind.make(walk.choices));
    }
  }
}

// ---- Values ------------------------------------------------------------------------------------

// Tuple sets order objects by their addresses.
inline void useHashMaps(test::Tree& tree) {
  tree.variant = tree.kind == test::Tree::Map ? 0 : tree.variant;
  for (test::Tree& child : tree.children) {
    useHashMaps(child);
  }
}

inline void walkValues() {
  for (unsigned seed = 1; seed <= 100; ++seed) {
    Walk walk("values", seed);
    test::TreeMaker maker(seed);
    maker.allowsObjects = true;
    maker.allowsUnusualClasses = true;
    maker.allowsRefused = true;
    maker.allowsEmptyMaps = true;
    maker.budget = 40;
    test::Tree tree = maker.make(7);
    useHashMaps(tree);
    lvArg const value = test::valueOf(tree);
    writeEverywhere(walk, value);
    for (int run = 0; run < 3; ++run) {
      walk.step("sink " + test::describedText(test::atom(value, test::randomAnswers(maker))));
    }
  }
}

inline void walkScripts() {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    Walk walk("scripts", seed);
    test::ScriptMaker maker(seed, {"Point", "Segment", "Half", "Bogus"});
    test::Script const script = maker.make(30);
    walk.step("all " + test::readAll(script));
    walk.step("item " + test::readItem(script));
    walk.step("tuple " + test::readTuple(script));
    walk.step("map " + test::readMapContents(script));
    walk.step("vector " + test::readVectorContents(script));
  }
}

inline void walkTexts() {
  test::registerClasses();
  walkRandomTexts();
  walkValues();
  walkScripts();
}

}  // namespace compared
