// A second text writer, slow and simple, to hold lvtStringArgDest against: the same calls must give
// the same answers, the same bytes and the same state, whatever the capacity.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/TextWriter.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/lvtStringArgDest.h"

namespace test {

// What one byte of a quoted string is written as.
inline std::string escaped(char c) {
  auto const code = static_cast<unsigned char>(c);
  if (code >= 32 && code != 127 && std::string("\"%:").find(c) == std::string::npos) {
    return std::string(1, c);
  }
  char pair[4];
  std::snprintf(pair, sizeof(pair), "%%%02X", unsigned{code});
  return pair;
}

// The written form of the bytes of a quoted string, one piece each, as far as `room` allows.
struct Escapes {
  std::vector<std::string> pieces;
  int room;
  int status = 0;

  Escapes(std::string const& text, int initialRoom) : room(initialRoom) {
    for (char const c : text) {
      if (c == '\0' || room <= 0) {
        return;
      }
      std::string const piece = escaped(c);
      if (piece.size() == 3 && room < 4) {
        status = lvtStringArgDest::ROOM_ERROR;
        return;
      }
      room -= static_cast<int>(piece.size());
      pieces.push_back(piece);
    }
  }

  std::string joined() const {
    std::string all;
    for (std::string const& piece : pieces) {
      all += piece;
    }
    return all;
  }
};

class WriterModel {
 public:
  explicit WriterModel(int capacity) : block(static_cast<std::size_t>(capacity), Untouched) {}

  int enter(lvArg const& kind, int size) {
    int const needed = size < 0 ? 1 : separatorPending ? 16 : 15;
    if (room() < needed) {
      return lvtStringArgDest::ROOM_ERROR;
    }
    bool const tuple = kind.getType() == lvArg::IntType && kind.getInt() == 32;
    separate();
    if (kind.getType() == lvArg::ClassType) {
      append("*");
      separatorPending = false;
      putArg(lvClass(kind).getClassDesc());
      separatorPending = true;
    }
    if (length == block.size() || pushMapStack(tuple) != 0) {
      return lvtStringArgDest::ROOM_ERROR;
    }
    append(tuple ? "(" : "{");
    if (transferSizes && size >= 0) {
      append("[" + std::to_string(size) + "]");
    }
    separatorPending = false;
    return 0;
  }

  int leave() {
    if (room() < 1) {
      return lvtStringArgDest::ROOM_ERROR;
    }
    append(popMapStack() ? ")" : "}");
    separatorPending = true;
    return 0;
  }

  int abortLevel() {
    leave();
    return 0;
  }

  int putArg(lvArg const& value) {
    int const roomBefore = room();
    if (roomBefore < 2) {
      return lvtStringArgDest::ROOM_ERROR;
    }
    separate();
    if (value.getType() == lvArg::IntType) {
      return appendWithin(roomBefore, std::to_string(value.getInt()));
    }
    if (value.getType() == lvArg::StringType) {
      return putString(roomBefore, textOf(value));
    }
    return appendWithin(roomBefore, "#nil");
  }

  int insertChar(int c) { return append(std::string(1, static_cast<char>(c))) ? 0 : -1; }

  int insertString(char const* text, int count) {
    std::string const bytes =
        count < 0 ? std::string(text) : std::string(text, static_cast<std::size_t>(count));
    return bytes.size() < block.size() - length && append(bytes) ? 0 : -1;
  }

  int setStringOffset(int offset) {
    if (offset >= static_cast<int>(block.size())) {
      return -1;
    }
    length = static_cast<std::size_t>(offset);
    return 0;
  }

  int terminate() {
    if (length < block.size()) {
      block[length] = '\0';
    }
    return 0;
  }

  int init() {
    separatorPending = false;
    levels.clear();
    return 0;
  }

  int sourceError(lvArgDest::sourceError_t /*error*/) { return 0; }
  int cleanup() { return 0; }
  int cleanupOnce() { return 0; }
  int initOnce() {
    transferSizes = false;
    return 0;
  }
  void omitSeparator() { separatorPending = false; }
  void setTransferSizes(bool on) { transferSizes = on; }

  int pushMapStack(bool tuple) {
    if (levels.size() == 32) {
      return -1;
    }
    levels.push_back(tuple);
    return 0;
  }

  bool peekMapStack() const { return !levels.empty() && levels.back(); }

  bool popMapStack() {
    bool const tuple = peekMapStack();
    if (!levels.empty()) {
      levels.pop_back();
    }
    return tuple;
  }

  unsigned flags() const {
    return BareWordsBit | (transferSizes ? TransferSizesBit : 0) |
           (separatorPending ? SeparatorPendingBit : 0);
  }

  std::string block;
  std::size_t length = 0;
  std::vector<bool> levels;  // true: a tuple
  bool separatorPending = false;
  bool transferSizes = false;

 private:
  int room() const { return static_cast<int>(block.size()) - static_cast<int>(length) - 1; }

  bool append(std::string const& bytes) {
    if (bytes.size() > block.size() - length) {
      return false;
    }
    block.replace(length, bytes.size(), bytes);
    length += bytes.size();
    return true;
  }

  int appendWithin(int roomBefore, std::string const& bytes) {
    bool const fits = static_cast<int>(bytes.size()) <= roomBefore && append(bytes);
    return fits ? 0 : lvtStringArgDest::ROOM_ERROR;
  }

  void separate() {
    if (separatorPending) {
      append(peekMapStack() ? "=" : ",");
    }
    separatorPending = true;
  }

  int putString(int roomBefore, std::string const& text) {
    if (static_cast<int>(text.size()) + 1 >= roomBefore) {
      return lvtStringArgDest::ROOM_ERROR;
    }
    if (isWord(text)) {
      append(text);
      return 0;
    }
    Escapes escapes(text, roomBefore - 1);
    while (!append('"' + escapes.joined() + '"')) {
      escapes.pieces.pop_back();
    }
    return 0;
  }

  static bool isWord(std::string const& text) {
    static std::string const letters = "_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    return !text.empty() && letters.find(text[0]) != std::string::npos &&
           text.find_first_not_of(letters + "0123456789") == std::string::npos;
  }
};

// A call that a writer and the model can both take.
struct WriterStep {
  template <class Call>
  WriterStep(std::string what, Call call)
      : name(std::move(what)), onWriter(call), onModel(std::move(call)) {}

  std::string name;
  std::function<int(lvtStringArgDest&)> onWriter;
  std::function<int(WriterModel&)> onModel;
};

// A writer and the model beside it.
class WriterAndModel {
 public:
  explicit WriterAndModel(int capacity) : writer_(capacity), model_(capacity) {}

  // Makes one call on both. Succeeds when answer, bytes and state are the same.
  testing::AssertionResult agreeOn(WriterStep const& step) {
    std::string const before = describe(model_);
    int const actual = step.onWriter(writer_);
    int const expected = step.onModel(model_);
    if (actual == expected && stateAgrees()) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << step.name << ", capacity " << model_.block.size() << "\n  before:   " << before
           << "\n  expected: " << expected << ", " << describe(model_) << "\n  actual:   " << actual
           << ", " << describe(writer_);
  }

 private:
  bool stateAgrees() const {
    return writer_.holdsItsBlock() &&
           writer_.getStringLength() == static_cast<int>(model_.length) &&
           writer_.flags() == model_.flags() && writer_.levels() == model_.levels &&
           writer_.block() == model_.block;
  }

  static std::string describe(WriterModel const& model) {
    return describe(model.block, model.length, model.flags(), model.levels);
  }

  static std::string describe(TextWriter const& writer) {
    return describe(writer.block(), static_cast<std::size_t>(writer.getStringLength()),
                    writer.flags(), writer.levels());
  }

  static std::string describe(std::string const& block, std::size_t length, unsigned flags,
                              std::vector<bool> const& levels) {
    std::string kinds;
    for (bool const tuple : levels) {
      kinds += tuple ? '(' : '{';
    }
    return testing::PrintToString(block) + " length " + std::to_string(length) + " flags " +
           std::to_string(flags) + " levels " + kinds;
  }

  TextWriter writer_;
  WriterModel model_;
};

}  // namespace test
