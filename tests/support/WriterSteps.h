// The calls that a writer and its model take, each with its name for reports.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/Cells.h"
#include "support/WriterModel.h"
#include "tarselvalues/reflect/lvClass.h"

namespace test {

inline std::string nameOf(lvArg const& kind) {
  return kind.getType() == lvArg::IntType ? std::to_string(kind.getInt())
                                          : textOf(lvClass(kind).getClassDesc());
}

inline WriterStep enter(lvArg const& kind, int size) {
  return {"enter " + ::testing::PrintToString(nameOf(kind)) + ", " + std::to_string(size),
          [=](auto& sink) { return sink.enter(kind, size); }};
}

inline WriterStep leave() {
  return {"leave", [](auto& sink) { return sink.leave(); }};
}

inline WriterStep abortLevel() {
  return {"abortLevel", [](auto& sink) { return sink.abortLevel(); }};
}

inline WriterStep put(lvArg const& value) {
  return {"putArg " + ::testing::PrintToString(textOf(lvValue(value).toString())),
          [=](auto& sink) { return sink.putArg(value); }};
}

inline WriterStep put(int value) { return put(integer(value)); }
inline WriterStep put(std::string const& text) { return put(string(text)); }

inline WriterStep insertChar(int c) {
  return {"insertChar " + std::to_string(c), [=](auto& sink) { return sink.insertChar(c); }};
}

inline WriterStep insertString(std::string const& text, int count) {
  return {"insertString " + ::testing::PrintToString(text) + ", " + std::to_string(count),
          [=](auto& sink) { return sink.insertString(text.c_str(), count); }};
}

inline WriterStep setTransferSizes(bool on) {
  return {on ? "setTransferSizes on" : "setTransferSizes off", [=](auto& sink) {
            sink.setTransferSizes(on);
            return 0;
          }};
}

inline WriterStep omitSeparator() {
  return {"omitSeparator", [](auto& sink) {
            sink.omitSeparator();
            return 0;
          }};
}

inline WriterStep setStringOffset(int offset) {
  return {"setStringOffset " + std::to_string(offset),
          [=](auto& sink) { return sink.setStringOffset(offset); }};
}

inline WriterStep terminate() {
  return {"terminate", [](auto& sink) { return sink.terminate(); }};
}

inline WriterStep init() {
  return {"init", [](auto& sink) { return sink.init(); }};
}

inline WriterStep initOnce() {
  return {"initOnce", [](auto& sink) { return sink.initOnce(); }};
}

inline WriterStep cleanup() {
  return {"cleanup", [](auto& sink) { return sink.cleanup() + sink.cleanupOnce(); }};
}

inline WriterStep sourceError() {
  return {"sourceError",
          [](auto& sink) { return sink.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS); }};
}

inline WriterStep pushLevel(bool tuple) {
  return {tuple ? "push tuple" : "push curly",
          [=](auto& sink) { return sink.pushMapStack(tuple); }};
}

inline WriterStep popLevel() {
  return {"pop", [](auto& sink) {
            int const peeked = sink.peekMapStack() ? 1 : 0;
            return sink.popMapStack() ? peeked + 2 : peeked;
          }};
}

}  // namespace test
