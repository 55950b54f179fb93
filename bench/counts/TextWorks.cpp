#include <array>

#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 4;
constexpr int Records = 100;

// A list of records, each a map of identifier, name, port and a list of two tags and a nil.
std::string documentText() {
  std::string text("{");
  repeat(Records, [&text](int i) {
    std::string const number = std::to_string(i);
    text += i == 0 ? "" : ",";
    text += "{(id=" + number + "),(name=\"device-" + number +
            "\"),(port=" + std::to_string(8000 + i) + "),(tags={outdoor,floor_" +
            std::to_string(i % 3) + ",#nil})}";
  });
  return text + "}";
}

// A serializer, held by a cell.
class Serializer {
 public:
  Serializer() : serializer(new lvrCommonSerializer), cell(*serializer) {}
  lvrCommonSerializer* operator->() const { return serializer; }

 private:
  lvrCommonSerializer* serializer;
  lvArg cell;
};

lvArg read(Serializer const& serializer, std::string const& text) {
  lvArg value;
  lvtStringArgSource source(text.c_str(), static_cast<int>(text.size()));
  serializer->deserializeItemInto(value, source);
  return value;
}

// Reads the document, and releases it.
void readDocument(int repetitions) {
  std::string const text = documentText();
  Serializer const serializer;
  int records = 0;
  repeat(repetitions, [&](int) { records += lvVector(read(serializer, text))->getSize(); });
  require(records == repetitions * Records, "all records are read");
}

void writeDocument(int repetitions) {
  std::string const text = documentText();
  Serializer const serializer;
  lvArg const document = read(serializer, text);
  std::array<char, 16384> buffer;
  int length = 0;
  repeat(repetitions, [&](int) {
    lvtStringArgDest writer(buffer.data(), static_cast<int>(buffer.size()));
    serializer->serializeAtomInto(writer, document);
    length += writer.getStringLength();
  });
  require(length == repetitions * static_cast<int>(text.size()), "as much is written as was read");
}

}  // namespace

std::vector<Work> textWorks() {
  return {
      {"text-read-document", Repetitions, readDocument},
      {"text-write-document", Repetitions, writeDocument},
  };
}

}  // namespace counts
