// Every operation of sinks, sources, the serializer and the conversion functions, at each of its
// allocations out of memory.

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "support/FailLoop.h"
#include "support/FieldObjects.h"
#include "support/Nested.h"
#include "support/ScriptedSource.h"
#include "support/SourceRuns.h"
#include "support/TextReading.h"
#include "support/TextWriter.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/lvBuilders.h"
#include "tarselvalues/containers/lvEntries.h"
#include "tarselvalues/containers/lvItems.h"
#include "tarselvalues/core/lvHashing.h"
#include "tarselvalues/core/lvRead.h"
#include "tarselvalues/serial/lvStream.h"
#include "tarselvalues/serial/lvText.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace {

using test::countOf;
using test::described;
using test::exhaust;
using test::integer;
using test::mapOf;
using test::NeedsNone;
using test::Nothing;
using test::point;
using test::string;
using test::Throws;
using test::vectorOf;
using test::Wrap;

// ---- Sinks -------------------------------------------------------------------------------------

// A sink that takes everything.
class Abyss : public lvArgDest {
 public:
  int terminate() override { return 0; }
  int enter(lvArg const& /*kind*/, int /*size*/) override { return 0; }
  int leave() override { return 0; }
  int abortLevel() override { return 0; }
  int sourceError(sourceError_t /*error*/) override { return 0; }
  int putArg(lvArg const& /*value*/) override { return 0; }
};

TEST(ArgDestOutOfMemory, NeedsNoMemoryAtAll) {
  exhaust<Nothing>("lvArgDest", "setStringBuffer, init, initOnce, cleanup, cleanupOnce", NeedsNone,
                   [](Nothing&) {
                     Abyss sink;
                     sink.setStringBuffer(nullptr, 100);
                     return sink.initOnce() + sink.init() + sink.cleanup() + sink.cleanupOnce();
                   });
}

// A writer in the middle of a text, in a buffer of its own.
struct Writer {
  Writer() : writer(nullptr, 200) {
    writer.enter(test::mapKind, -1);
    writer.enter(test::tupleKind, -1);
    writer.putArg(integer(1));
  }
  std::string shown() const {
    return test::textOf(writer) + " of " + std::to_string(test::capacityOf(writer)) + " depth " +
           std::to_string(test::depthOf(writer)) + " flags " +
           std::to_string(test::flagsOf(writer));
  }

  lvtStringArgDest writer;
  lvArg text = string("not an identifier");
  lvClass named = test::classNamed("Point");
};

TEST(WriterOutOfMemory, IsToldAndLeavesTheTextAsItWas) {
  exhaust<Writer>("lvtStringArgDest", "setStringBuffer", Throws, [](Writer& with) {
    with.writer.setStringBuffer(nullptr, 300);
    return with.writer.putArg(with.text);
  });
  exhaust<Writer>("lvtStringArgDest", "lvtStringArgDest", Throws,
                  [](Writer&) { return lvtStringArgDest(nullptr, 100).getStringLength(); });
}

TEST(WriterOutOfMemory, NeedsNoMemoryToWrite) {
  exhaust<Writer>("lvtStringArgDest", "putArg, enter, leave, abortLevel, sourceError, terminate",
                  NeedsNone, [](Writer& with) {
                    lvtStringArgDest& writer = with.writer;
                    return writer.putArg(with.text) + writer.putArg(integer(-5)) +
                           writer.putArg(lvArg()) + writer.enter(with.named, 3) + writer.leave() +
                           writer.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS) +
                           writer.abortLevel() + writer.terminate();
                  });
  exhaust<Writer>("lvtStringArgDest", "insertChar, insertString, outputInteger, outputQuotedString",
                  NeedsNone, [](Writer& with) {
                    char buffer[20];
                    char* cursor = buffer;
                    int room = sizeof(buffer);
                    return with.writer.insertChar('x') + with.writer.insertString("text", 4) +
                           with.writer.outputInteger(&cursor, &room, 77) +
                           with.writer.outputQuotedString(&cursor, &room, "a:", -1);
                  });
  exhaust<Writer>("lvtStringArgDest",
                  "pushMapStack, peekMapStack, popMapStack, omitSeparator, setTransferSizes, "
                  "setStringOffset",
                  NeedsNone, [](Writer& with) {
                    with.writer.omitSeparator();
                    with.writer.setTransferSizes(true);
                    return with.writer.pushMapStack(true) + with.writer.setStringOffset(2) +
                           static_cast<int>(with.writer.peekMapStack()) +
                           static_cast<int>(with.writer.popMapStack());
                  });
}

TEST(WriterOutOfMemory, NeedsNoMemoryForACallersBuffer) {
  exhaust<Writer>("lvtStringArgDest",
                  "lvtStringArgDest, setStringBuffer, init, initOnce, cleanup, cleanupOnce",
                  NeedsNone, [](Writer& with) {
                    char buffer[20];
                    lvtStringArgDest other(buffer, sizeof(buffer));
                    other.setStringBuffer(buffer, 10);
                    return other.cleanup() + other.cleanupOnce() + other.initOnce() +
                           with.writer.init() + with.writer.cleanup();
                  });
}

// ---- Sources -----------------------------------------------------------------------------------

TEST(ArgSourceOutOfMemory, NeedsNoMemoryAtAll) {
  struct Source {
    static std::string shown() { return ""; }
    test::ScriptedSource source{{}};
  };
  exhaust<Source>("lvArgSource", "getNextToken", NeedsNone, [](Source& with) {
    lvArg out;
    return with.source.lvArgSource::getNextToken(out);
  });
}

std::string const longText = "\"" + std::string(600, 'a') + "\"";

// A parser behind the first item of its text, and a cell for what it reads.
template <char const* Rest>
struct Parser {
  Parser() { parser.getArg(out); }
  std::string shown() const {
    return test::describedText(test::textOf(out)) + std::to_string(countOf(out)) + " at " +
           std::to_string(parser.getParseOffset()) + " errors " +
           std::to_string(parser.getErrorCount()) + " " +
           test::describedText(test::textOf(test::TextReader::Access::tokenValue(parser)));
  }

  std::string const text = "\"old\"" + (*Rest == '\0' ? longText : std::string(Rest));
  lvtStringArgSource parser{text.data(), static_cast<int>(text.size())};
  lvArg out;
};

constexpr char Word[] = "word";
constexpr char Quoted[] = "\"two words\"";
constexpr char Long[] = "";

template <char const* Rest>
void readTokenOutOfMemory() {
  exhaust<Parser<Rest>>("lvtStringArgSource", "getNextToken", Throws,
                        [](Parser<Rest>& with) { return with.parser.getNextToken(with.out); });
}

TEST(ParserOutOfMemory, IsToldAndStaysBeforeTheToken) {
  readTokenOutOfMemory<Word>();
  readTokenOutOfMemory<Quoted>();
  readTokenOutOfMemory<Long>();
}

// Read from its beginning, in a parser that has not begun.
struct Text {
  std::string shown() const { return described(out) + test::brief(held); }

  lvString const text{"{old,*Point{1,\"a b\"},(k=v)}"};
  lvArg held = string("held");
  lvArg out = held;
};

TEST(ParserOutOfMemory, IsToldForItemsAndFrames) {
  exhaust<Text>("lvtStringArgSource", "getArg, lvtStringArgSource", Throws, [](Text& with) {
    lvtStringArgSource parser(with.text);
    int frames = 0;
    lvArg item;
    for (int got = 0; got != lvArgSource::SOURCE_END; got = parser.getArg(item)) {
      frames += got == lvArgSource::SOURCE_FRAME_BEGIN ? 1 : 0;
    }
    return frames;
  });
}

TEST(ParserOutOfMemory, NeedsNoMemoryToStart) {
  exhaust<Text>("lvtStringArgSource",
                "lvtStringArgSource, setSource, initOnce, initParse, setParseOffset", NeedsNone,
                [](Text& with) {
                  lvtStringArgSource parser;
                  lvtStringArgSource const other("12", -1);
                  return parser.setSource(with.text) + parser.setParseOffset(3) +
                         parser.initOnce() + parser.initParse() + parser.setSource("12", -1);
                });
  exhaust<Text>("lvtStringArgSource", "getArg, getNextToken", NeedsNone, [](Text& with) {
    lvtStringArgSource parser("{12,-5,#nil}", -1);
    lvArg item;
    parser.getArg(item);
    parser.getArg(item);
    return parser.getArg(with.out) + parser.getNextToken(item);
  });
}

// ---- Writing -----------------------------------------------------------------------------------

// Values of all kinds, in one another, and one serializer for all of them.
struct Tree {
  Tree() {
    test::registerClasses();
    map = mapOf({{string("k"), vectorOf({point(1, 2), integer(3)})}});
    vector = vectorOf({map, string("a b"), vectorOf({vectorOf({})})});
    object = point(map, integer(4));
  }
  std::string shown() const {
    return described(vector) + described(object) + " held " + std::to_string(countOf(map)) + " " +
           std::to_string(countOf(vector)) + " " + std::to_string(countOf(object));
  }

  // Whether `write`, a function of a sink, succeeds and writes this text.
  template <class Writer, class Write>
  static bool writes(std::string_view text, Write const& write) {
    char buffer[200];
    Writer writer(buffer, sizeof(buffer));
    return write(writer) == 0 &&
           std::string_view(buffer, static_cast<std::size_t>(writer.getStringLength())) == text;
  }

  test::Held<lvrCommonSerializer> serializer;
  lvArg map;
  lvArg vector;
  lvArg object;
};

// A text writer of the program's: what is open is held, which takes memory.
class OwnWriter : public lvtStringArgDest {
 public:
  using lvtStringArgDest::lvtStringArgDest;
};

// Writes everything with each operation.
template <class Writer>
void exhaustWriting(std::string const& missing) {
  exhaust<Tree>("lvrCommonSerializer", "serializeAtomInto", missing, [](Tree& with) {
    return Tree::writes<Writer>("{{(k={*Point{1,2},3})},\"a b\",{{}}}", [&](lvArgDest& sink) {
      return with.serializer->serializeAtomInto(sink, with.vector);
    });
  });
  exhaust<Tree>("lvrCommonSerializer", "serializeMapInto", missing, [](Tree& with) {
    return Tree::writes<Writer>("{(k={*Point{1,2},3})}", [&](lvArgDest& sink) {
      return with.serializer->serializeMapInto(sink, with.map);
    });
  });
  exhaust<Tree>("lvrCommonSerializer", "serializeVectorInto", missing, [](Tree& with) {
    return Tree::writes<Writer>("{{(k={*Point{1,2},3})},\"a b\",{{}}}", [&](lvArgDest& sink) {
      return with.serializer->serializeVectorInto(sink, with.vector);
    });
  });
  exhaust<Tree>("lvrCommonSerializer", "serializeReferencableInto", missing, [](Tree& with) {
    return Tree::writes<Writer>("*Point{{(k={*Point{1,2},3})},4}", [&](lvArgDest& sink) {
      return with.serializer->serializeReferencableInto(sink, with.object);
    });
  });
  exhaust<Tree>("lvrCommonSerializer", "serializeTupleInto", missing, [](Tree& with) {
    return Tree::writes<Writer>("(4=*Point{{(k={*Point{1,2},3})},4})", [&](lvArgDest& sink) {
      return with.serializer->serializeTupleInto(sink, integer(4), with.object);
    });
  });
}

TEST(SerializerOutOfMemory, IsToldAndLeavesWhatItWrites) { exhaustWriting<OwnWriter>(Throws); }

TEST(SerializerOutOfMemory, NeedsNoMemoryToWriteText) {
  exhaustWriting<lvtStringArgDest>(NeedsNone);
}

TEST(SerializerOutOfMemory, NeedsNoMemoryOfItsOwnAndForScalars) {
  exhaust<Nothing>("lvrCommonSerializer", "lvrCommonSerializer", Throws,
                   [](Nothing&) { return lvArg(*new lvrCommonSerializer); });
  exhaust<Tree>("lvrCommonSerializer", "getClassDesc, getStaticClassDesc, finalize", NeedsNone,
                [](Tree& with) {
                  with.serializer->getClassDesc();
                  lvrCommonSerializer::getStaticClassDesc();
                  return with.serializer->finalize();
                });
  exhaust<Tree>("lvrCommonSerializer", "serializeAtomInto, deserializeItemInto", NeedsNone,
                [](Tree& with) {
                  Abyss sink;
                  lvArg out;
                  lvtStringArgSource parser("12", -1);
                  return with.serializer->serializeAtomInto(sink, integer(5)) +
                         with.serializer->deserializeItemInto(out, parser);
                });
}

// ---- Reading -----------------------------------------------------------------------------------

// Cells that are read into, and what they hold before.
struct Outputs {
  Outputs() { test::registerClasses(); }
  std::string shown() const {
    return described(out) + " " + described(key) + " held " + std::to_string(countOf(held));
  }

  // The answer of `read`, a function of a source, for a text.
  template <class Read>
  int read(char const* text, Read const& reading) {
    lvtStringArgSource parser(text, -1);
    return reading(*serializer, parser);
  }

  test::Held<lvrCommonSerializer> serializer;
  lvArg held = string("old");
  lvArg out = held;
  lvArg key = held;
  lvArg className = string("Point");
  lvHashMap map{7};
  lvVector vector{7};
};

using Serializer = lvrCommonSerializer;

TEST(SerializerOutOfMemory, IsToldAndLeavesWhatItReadsInto) {
  exhaust<Outputs>("lvrCommonSerializer", "deserializeItemInto", Throws, [](Outputs& with) {
    return with.read("{1,{(k=\"a b\"),({2}=3)},*Point{4,{5}}}",
                     [&](Serializer& serializer, lvArgSource& source) {
                       return serializer.deserializeItemInto(with.out, source);
                     });
  });
  exhaust<Outputs>("lvrCommonSerializer", "deserializeInto", Throws, [](Outputs& with) {
    return with.read("1,two,{3}", [&](Serializer& serializer, lvArgSource& source) {
      return serializer.deserializeInto(with.out, source);
    });
  });
  for (int const kind : {24, 25}) {
    exhaust<Outputs>("lvrCommonSerializer", "deserializeFrameInto", Throws, [kind](Outputs& with) {
      return with.read("(1={two}),(3=4)}", [&](Serializer& serializer, lvArgSource& source) {
        return serializer.deserializeFrameInto(with.out, source, integer(kind));
      });
    });
  }
  exhaust<Outputs>(
      "lvrCommonSerializer", "deserializeReferencableContentsInto", Throws, [](Outputs& with) {
        return with.read("one,{2}}", [&](Serializer& serializer, lvArgSource& source) {
          return serializer.deserializeReferencableContentsInto(with.out, with.className, source);
        });
      });
}

TEST(SerializerOutOfMemory, LeavesTheCellsOfATupleAsTheyWere) {
  exhaust<Outputs>("lvrCommonSerializer", "deserializeTupleInto", Throws, [](Outputs& with) {
    return with.read("{1}=two)", [&](Serializer& serializer, lvArgSource& source) {
      return serializer.deserializeTupleInto(with.key, with.out, source);
    });
  });
}

// Deeper than what there is room for at once.
struct DeepTree {
  static constexpr int Depth = 20;

  std::string shown() const { return described(value) + described(out); }

  Wrap const wraps[1] = {test::inVector};
  lvArg value = test::nested(wraps, Depth);
  std::string const text = std::string(Depth, '{') + "1" + std::string(Depth, '}');
  lvArg out = string("old");
};

TEST(SerializerOutOfMemory, IsToldAtAnyDepth) {
  exhaust<DeepTree>("lvrCommonSerializer", "serializeAtomInto", Throws, [](DeepTree& with) {
    return Tree::writes<OwnWriter>(with.text, [&](lvArgDest& sink) {
      return lvrCommonSerializer().serializeAtomInto(sink, with.value);
    });
  });
  exhaust<DeepTree>("lvrCommonSerializer", "deserializeItemInto", Throws, [](DeepTree& with) {
    lvtStringArgSource parser(with.text.data(), static_cast<int>(with.text.size()));
    return lvrCommonSerializer().deserializeItemInto(with.out, parser);
  });
}

// What was read before stays in the container; here it is read anew.
TEST(SerializerOutOfMemory, LeavesAContainerThatCanBeReadIntoAgain) {
  exhaust<Outputs>("lvrCommonSerializer", "deserializeMapContentsInto", Throws, [](Outputs& with) {
    with.map->clear();
    return with.read("(one=two),(3={4})}", [&](Serializer& serializer, lvArgSource& source) {
      return serializer.deserializeMapContentsInto(with.map, source) + with.map->getSize();
    });
  });
  exhaust<Outputs>(
      "lvrCommonSerializer", "deserializeVectorContentsInto", Throws, [](Outputs& with) {
        with.vector->clear();
        return with.read("one,{2},3,4,5,6,7,8}", [&](Serializer& serializer, lvArgSource& source) {
          return serializer.deserializeVectorContentsInto(with.vector, source) +
                 with.vector->getSize();
        });
      });
}

// ---- The conversion functions ------------------------------------------------------------------

TEST(ToolsOutOfMemory, LeaveNothingBehind) {
  exhaust<Tree>("lvTools", "lvToolsToString", "nil, throws, copes",
                [](Tree& with) { return lvToolsToString(with.vector); });
  struct ConsumedText : Text {
    std::string shown() const { return Text::shown() + " " + std::to_string(consumed); }
    lvString value{"{old,*Point{1,\"a b\"},{(k=v)}} tail"};
    int consumed = -77;
  };
  test::registerClasses();
  exhaust<ConsumedText>("lvTools", "lvToolsFromString", Throws, [](ConsumedText& with) {
    with.out = lvToolsFromString(with.value, with.consumed);
  });
}

// ---- Comfort -----------------------------------------------------------------------------------

TEST(ComfortOutOfMemory, IsToldAndLeavesNothing) {
  std::string const text(1000, 'x');
  exhaust<Nothing>("lvCell", "lvToCell", Throws, [&](Nothing&) { return lvToCell(text); });
  exhaust<Nothing>("lvCell", "lvToKey", Throws, [&](Nothing&) { return lvToKey(text); });
  exhaust<Nothing>("lvBuilders", "lvListOf, lvMapBuilder", Throws,
                   [&](Nothing&) { return lvMapBuilder().put(text, lvListOf(text, 1)).map(); });
  exhaust<Tree>("lvText", "lvToText, lvFromText", Throws,
                [](Tree& with) { return lvFromText(lvToText(with.vector)); });
  exhaust<Tree>("lvItems", "lvItems", Throws, [](Tree& with) {
    int count = 0;
    for (lvArg const& item : lvItems(with.vector)) {
      count += item.isNil() ? 1 : 2;
    }
    return count;
  });
  exhaust<Tree>("lvEntries", "lvEntries", Throws, [](Tree& with) {
    int count = 0;
    for (auto const& [key, value] : lvEntries(with.map)) {
      count += key.isNil() || value.isNil() ? 1 : 2;
    }
    return count;
  });
  lvArg const cell = string(text);
  exhaust<Nothing>("lvRead", "lvReadText", Throws,
                   [&](Nothing&) { return static_cast<int>(lvReadText(cell, "").size()); });
  exhaust<Nothing>("lvStream", "operator<<", Throws,
                   [&](Nothing&) { std::ostream(nullptr) << cell; });
}

TEST(ComfortOutOfMemory, NeedsNoMemoryToReadIntegersAndToCompare) {
  exhaust<Nothing>("lvRead", "lvReadInt, lvReadBool", NeedsNone, [](Nothing&) {
    return lvReadInt(integer(1), 2) + static_cast<int>(lvReadBool(integer(1), false));
  });
  exhaust<Nothing>("lvHashing", "lvHasher, lvEquivalent, lvOrdered", NeedsNone, [](Nothing&) {
    return static_cast<int>(lvHasher()(integer(1)) & 0xFF) +
           static_cast<int>(lvEquivalent()(integer(1), integer(1))) +
           static_cast<int>(lvOrdered()(integer(1), integer(2)));
  });
}

}  // namespace
