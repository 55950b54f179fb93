// A text parser that reports what the library reads over in silence, and leaves it out.
//
// The library's parser skips tokens that do not fit and does not match brackets; its serializer
// drops frames and items in the wrong place. Here each of them is reported with its position, and
// what cannot be kept is taken out before the serializer sees it, so that the rest reads as meant.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>
#include <vector>

#include "Problems.h"

class CheckedSource : public lvtStringArgSource {
 public:
  CheckedSource(std::string const& text, Problems& problems);

  int getArg(lvArg& out) override;
  int getNextToken(lvArg& out) override;

 private:
  struct Token {
    int code = TOKEN_END;
    int offset = 0;
    bool accounted = true;  // reported, or part of a construct that took it
  };
  struct Frame {
    int kind;
    int offset;
    int fields;  // of an object
    int items = 0;
    bool lastIsNil = false;
  };

  bool inFrame(int kind) const { return !frames.empty() && frames.back().kind == kind; }
  int skipBlanks(int from) const;
  bool isOpenString(Token const& token, lvArg const& value) const;
  void reportSkipped();
  std::string describeSkipped(Token const& token) const;

  bool acceptItem(lvArg const& item);
  bool acceptFrame(lvArg const& kind);
  bool countItem(int offset, bool isNil);
  std::string refuseFrame(lvArg const& kind) const;
  int frameOffset(lvArg const& kind) const;
  void skipFrame();
  void endFrame();
  int closeAtEnd();

  std::string const& content;
  Problems& report;
  int seenErrors;
  Token previous;
  Token last;
  int lastStar = 0;
  bool endReported = false;
  std::vector<Frame> frames;
};
