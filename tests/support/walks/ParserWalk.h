// A walk of the parser through a text beside its model.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/TextModel.h"
#include "support/TextReading.h"
#include "support/walks/Choices.h"

namespace test {

// A parser and its model on one text, which take the same steps.
class ParserWalk {
 public:
  explicit ParserWalk(std::string const& text) : parser(text), model(text) {}

  // Each returns whether there may be more to read.
  bool readArg() { return readsSame(parser.arg(), model.arg()); }
  bool readToken() { return readsSame(parser.token(), model.token()); }

  // Reads to the end and once more.
  void readAllArgs() {
    while (readArg() && !testing::Test::HasFailure()) {
    }
    readArg();
  }
  void readAllTokens() {
    while (readToken() && !testing::Test::HasFailure()) {
    }
  }

  // Reads, or does what the parser's owner may do between two reads.
  void takeStep(Choices& choices) {
    switch (choices.below(24)) {
      case 0:
        parser.parser().expectQuotedString();
        model.expectQuotedString();
        break;
      case 1:
        parser.parser().initParse();
        model.initParse();
        break;
      case 2:
        moveTo(choices.oneIn(2) ? saved : static_cast<int>(choices.below(50)) - 2);
        break;
      case 3:
        saved = parser.offset();
        break;
      case 4:
      case 5:
        readToken();
        break;
      default:
        readArg();
    }
  }

 private:
  bool readsSame(std::string const& answer, std::string const& expected) {
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(parser.offset(), model.offset());
    EXPECT_EQ(parser.errors(), model.errors());
    EXPECT_EQ(parser.state(), model.currentState());
    return answer != "end";
  }
  void moveTo(int offset) {
    EXPECT_EQ(parser.parser().setParseOffset(offset) == 0, model.setOffset(offset));
    EXPECT_EQ(parser.offset(), model.offset());
  }

  TextReader parser;
  TextModel model;
  int saved = 0;
};

}  // namespace test
