// A slow model of what the serializer builds from the answers of a source: values are told, not
// held, and so is what is printed.
#pragma once

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/FieldObjects.h"
#include "support/SourceRuns.h"
#include "support/ValueTrees.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace test {

// What one answer of a source is, for the model.
struct Told {
  int code;
  std::string value;  // as described(); of a frame that begins, its kind
};

inline std::vector<Told> told(Script const& script) {
  std::vector<Told> all;
  for (Answer const& answer : script) {
    all.push_back({answer.code, answer.value ? described(*answer.value) : ""});
  }
  return all;
}

// All answers of the text parser to a text.
inline Script scriptOf(std::string const& text) {
  Script script;
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  for (;;) {
    lvArg out;
    int const code = parser.getArg(out);
    if (code == lvArgSource::SOURCE_END) {
      return script;
    }
    script.push_back({code, out});
  }
}

// Which classes are registered.
enum class Classes { None, All };

class ReadingModel {
 public:
  explicit ReadingModel(std::vector<Told> script, Classes classes = Classes::None)
      : script_(std::move(script)), classes_(classes) {}

  // The answer, and what was read.
  std::pair<int, std::string> readItem() {
    for (;;) {
      Told const told = next();
      if (told.code == 0) {
        return {0, told.value};
      }
      if (told.code == 7 || told.code == 9) {
        return {told.code, ""};
      }
      if (told.code == 6) {
        return readFrame(told.value);
      }
    }
  }

  std::size_t reads() const { return reads_; }
  std::string const& printed() const { return printed_; }

 private:
  Told next() { return reads_++ < script_.size() ? script_[reads_ - 1] : Told{9, ""}; }

  std::pair<int, std::string> readFrame(std::string const& kind) {
    if (kind == "24") {
      return readMap();
    }
    if (kind == "25") {
      return {0, "[" + joined(readElements().second) + "]"};
    }
    return kind[0] == '\'' ? readObject(kind) : std::make_pair(-1, std::string());
  }

  // Whether they end with a frame (7) or with the input (9).
  std::pair<int, std::vector<std::string>> readElements() {
    std::vector<std::string> elements;
    for (;;) {
      auto const item = readItem();
      if (item.first > 0) {
        return {item.first, elements};
      }
      if (item.first == 0) {
        elements.push_back(item.second);
      }
    }
  }

  std::pair<int, std::string> readObject(std::string const& quotedKey) {
    auto const facts = classFacts().find(quotedKey.substr(1, quotedKey.size() - 2));
    if (classes_ == Classes::None || facts == classFacts().end()) {
      printed_ += "CS_ERR_UNKNOWN_CLASS_KEY\n";
      return {-4, ""};
    }
    if (!facts->second.hasCtor) {
      printed_ += "CS_ERR_NO_CLASS_CTOR\n";
      return {-5, ""};
    }
    auto const values = readElements();
    if (values.first == 9) {
      printed_ += "Unknown error: 9";
      return {0, "nil"};
    }
    if (static_cast<int>(values.second.size()) > facts->second.usable) {
      printed_ += "CS_ERR_REF_SETUP_ERROR\n";
      return {-6, ""};
    }
    return {0, describedWith(facts->second, values.second)};
  }

  // A new object whose first fields were set.
  static std::string describedWith(ClassFacts const& facts, std::vector<std::string> values) {
    if (!facts.shown.empty()) {
      return facts.shown;
    }
    lvArg const fresh = objectOf(facts.written);
    std::vector<lvArg> const fields =
        dynamic_cast<FieldObject const&>(*fresh.getReferencable()).fields();
    for (std::size_t i = values.size(); i < fields.size(); ++i) {
      values.push_back(described(fields[i]));
    }
    return "*" + facts.written + "{" + joined(values) + "}";
  }

  std::pair<int, std::string> readMap() {
    std::map<std::string, std::string> entries;
    for (;;) {
      Told const told = next();
      if (told.code == 7 || told.code == 9) {
        std::vector<std::string> pieces;
        for (auto const& entry : entries) {
          pieces.push_back(entry.first + "=" + entry.second);
        }
        return {0, describedEntries(pieces)};
      }
      if (told.code == 6 && told.value != "32") {
        return {-1, ""};
      }
      if (told.code == 6) {
        readTuple(entries);
      }
    }
  }

  void readTuple(std::map<std::string, std::string>& entries) {
    std::vector<std::string> items;
    for (auto item = readItem(); item.first <= 0; item = readItem()) {
      if (item.first == 0) {
        items.push_back(item.second);
      }
    }
    items.resize(items.size() < 2 ? 2 : items.size(), "nil");
    if (items[1] == "nil") {
      entries.erase(items[0]);
    } else {
      entries[items[0]] = items[1];
    }
  }

  std::vector<Told> script_;
  Classes classes_;
  std::size_t reads_ = 0;
  std::string printed_;
};

// Random answers of a source.
//
// Keys that are frames are told apart by what they are, not by what is in them; so in the random
// scripts a tuple begins with a scalar, if it holds anything.
class ScriptMaker {
 public:
  // Objects are of classes with these keys.
  ScriptMaker(unsigned seed, std::vector<std::string> classKeys)
      : random_(seed), classKeys_(std::move(classKeys)) {}

  Script make(std::size_t length) {
    Script script;
    while (script.size() < length) {
      add(script);
    }
    return script;
  }

 private:
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  lvArg scalar() {
    switch (upTo(3)) {
      case 0:
        return lvArg();
      case 1:
        return string(std::string(1, static_cast<char>('a' + upTo(2))));
      default:
        return integer(upTo(3));
    }
  }

  lvArg classKey() {
    return string(
        classKeys_[static_cast<std::size_t>(upTo(static_cast<int>(classKeys_.size()) - 1))]);
  }

  void add(Script& script) {
    int const choice = upTo(21 + static_cast<int>(classKeys_.size()) / 3);
    if (choice < 7) {
      script.push_back(item(scalar()));
    } else if (choice < 13) {
      script.push_back(frameEnd());
    } else if (choice < 15) {
      script.push_back(begin(25));
    } else if (choice < 16) {
      script.push_back(begin(24));
    } else if (choice < 19) {
      addTuple(script);
    } else if (choice < 20) {
      script.push_back(nothing(upTo(1) == 0 ? 8 : -upTo(5) - 1));
    } else if (choice < 21) {
      script.push_back(begin(upTo(1) == 0 ? lvArg() : integer(upTo(31) == 0 ? 26 : 0)));
    } else {
      script.push_back(begin(classKey()));
    }
  }

  void addTuple(Script& script) {
    if (upTo(3) == 0) {
      script.push_back(begin(24));
    }
    script.push_back(begin(32));
    script.push_back(upTo(5) == 0 ? frameEnd() : item(scalar()));
  }

  std::mt19937 random_;
  std::vector<std::string> classKeys_;
};

}  // namespace test
