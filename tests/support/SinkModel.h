// What the serializer must do to a sink for a value, by the model of its trees.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/SinkRuns.h"
#include "support/TextWriter.h"
#include "support/TreeModel.h"
#include "support/WriterModel.h"

namespace test {

// As atom(), but by the model.
inline std::string modelRun(lvArg const& value, SinkAnswers const& answers) {
  RecordingDest dest;
  for (auto const& answer : answers) {
    dest.answer(answer.first, answer.second);
  }
  std::string const status = std::to_string(TreeWriter<RecordingDest>(dest).write(treeOf(value)));
  return status + ": " + dest.calls();
}

// Up to three answers of a sink that are not 0.
inline SinkAnswers randomAnswers(TreeMaker& maker) {
  SinkAnswers answers;
  for (int failures = maker.upTo(3); failures > 0; --failures) {
    answers[maker.upTo(20)] = maker.upTo(2) == 0 ? maker.upTo(10) : -1 - maker.upTo(10);
  }
  return answers;
}

// Writes into buffers of every size.
inline void expectTextsOfTheModel(lvArg const& value) {
  Tree const tree = treeOf(value);
  std::size_t const whole = textOf(tree).size();
  for (int capacity = 1; capacity <= static_cast<int>(whole) + 20; ++capacity) {
    TextWriter writer(capacity);
    int const status = HeldSerializer()->serializeAtomInto(writer, value);
    WriterModel model(capacity);
    ASSERT_EQ(status, TreeWriter<WriterModel>(model).write(tree)) << capacity;
    ASSERT_EQ(writer.text(), model.block.substr(0, model.length)) << capacity;
    ASSERT_TRUE(writer.isRestUntouched()) << capacity;
  }
}

}  // namespace test
