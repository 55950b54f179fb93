// Writing documents to text, and reading them.
//
// Everyone writes into a buffer that is there already, if its interface lets it, and reads into
// values of its own, which are then released. Before it is measured, each must read what it wrote.

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <boost/json.hpp>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Bench.h"
#include "bench/BlocksOfReading.h"
#include "bench/Document.h"
#include "bench/Json.h"
#include "bench/OurText.h"

namespace bench {

namespace {

constexpr char const* NotTheSame = "does not read what it wrote";

// ---- Ours --------------------------------------------------------------------------------------

void writeOurs(benchmark::State& state, Document const* document) {
  OurText text;
  lvArg const value = ourValueOf(document->root);
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.write(value));
    benchmark::ClobberMemory();
  }
}

std::string sorted(std::string text) {
  std::sort(text.begin(), text.end());
  return text;
}

void readOurs(benchmark::State& state, Document const* document) {
  OurText text;
  std::string const written = text.textOf(ourValueOf(document->root));
  // The entries of a map have an order of their own.
  if (sorted(text.textOf(text.read(written))) != sorted(written)) {
    state.SkipWithError(NotTheSame);
  }
  for (auto _ : state) {
    lvArg value = text.read(written);
    benchmark::DoNotOptimize(value);
  }
}

// ---- nlohmann ----------------------------------------------------------------------------------

nlohmann::json nlohmannValueOf(Node const& node) {
  nlohmann::json value;
  switch (node.kind) {
    case Node::Nothing:
      break;
    case Node::Integer:
      value = node.number;
      break;
    case Node::Text:
      value = node.text;
      break;
    case Node::List:
      value = nlohmann::json::array();
      for (Node const& child : node.children) {
        value.push_back(nlohmannValueOf(child));
      }
      break;
    case Node::Map:
      for (std::size_t i = 0; i < node.children.size(); ++i) {
        value[node.names[i]] = nlohmannValueOf(node.children[i]);
      }
      break;
  }
  return value;
}

void writeNlohmann(benchmark::State& state, Document const* document) {
  nlohmann::json const value = nlohmannValueOf(document->root);
  for (auto _ : state) {
    std::string text = value.dump();
    benchmark::DoNotOptimize(text);
  }
}

void readNlohmann(benchmark::State& state, Document const* document) {
  std::string const written = jsonOf(document->root);
  if (nlohmann::json::parse(written).dump() != written) {
    state.SkipWithError(NotTheSame);
  }
  for (auto _ : state) {
    nlohmann::json value = nlohmann::json::parse(written);
    benchmark::DoNotOptimize(value);
  }
}

// ---- RapidJSON ---------------------------------------------------------------------------------

class RapidText {
 public:
  std::string_view write(rapidjson::Document const& value) {
    buffer.Clear();
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
  }

 private:
  rapidjson::StringBuffer buffer;
};

void writeRapidJson(benchmark::State& state, Document const* document) {
  rapidjson::Document value;
  value.Parse(jsonOf(document->root).c_str());
  RapidText text;
  for (auto _ : state) {
    benchmark::DoNotOptimize(text.write(value));
    benchmark::ClobberMemory();
  }
}

void readRapidJson(benchmark::State& state, Document const* document) {
  std::string const written = jsonOf(document->root);
  rapidjson::Document first;
  first.Parse(written.data(), written.size());
  if (RapidText().write(first) != written) {
    state.SkipWithError(NotTheSame);
  }
  for (auto _ : state) {
    rapidjson::Document value;
    value.Parse(written.data(), written.size());
    benchmark::DoNotOptimize(value);
  }
}

// ---- Boost.JSON --------------------------------------------------------------------------------

void writeBoostJson(benchmark::State& state, Document const* document) {
  std::string const written = jsonOf(document->root);
  boost::json::value const value = boost::json::parse(written);
  std::vector<char> buffer(written.size());
  boost::json::serializer serializer;
  for (auto _ : state) {
    serializer.reset(&value);
    benchmark::DoNotOptimize(serializer.read(buffer.data(), buffer.size()));
    benchmark::ClobberMemory();
  }
}

void readBoostJson(benchmark::State& state, Document const* document) {
  std::string const written = jsonOf(document->root);
  if (boost::json::serialize(boost::json::parse(written)) != written) {
    state.SkipWithError(NotTheSame);
  }
  for (auto _ : state) {
    boost::json::value value = boost::json::parse(written);
    benchmark::DoNotOptimize(value);
  }
}

// ---- Floors ------------------------------------------------------------------------------------

void copyText(benchmark::State& state, Document const* document) {
  std::string const written = OurText().textOf(ourValueOf(document->root));
  std::vector<char> buffer(written.size());
  for (auto _ : state) {
    std::memcpy(buffer.data(), written.data(), written.size());
    benchmark::DoNotOptimize(buffer.data());
    benchmark::ClobberMemory();
  }
}

// Allocates and frees what reading and releasing do, in the same order.
void allocateBlocks(benchmark::State& state, BlockEvents const* events) {
  std::vector<void*> blocks(events->blockCount);
  for (auto _ : state) {
    for (BlockEvent const* event = events->begin; event != events->end; ++event) {
      void*& block = blocks[event->block];
      if (event->size != 0) {
        block = std::malloc(event->size);
      } else {
        std::free(block);
      }
    }
    benchmark::ClobberMemory();
  }
}

// ------------------------------------------------------------------------------------------------

void addAll() {
  for (std::size_t i = 0; i < documents().size(); ++i) {
    Document const* const document = &documents()[i];
    std::string const write = "write " + document->name;
    add(write, "ours", writeOurs, document);
    add(write, "RapidJSON", writeRapidJson, document);
    add(write, "Boost.JSON", writeBoostJson, document);
    add(write, "nlohmann", writeNlohmann, document);
    add(write, "floor: memcpy of the text", copyText, document);
    std::string const read = "read " + document->name;
    add(read, "ours", readOurs, document);
    add(read, "RapidJSON", readRapidJson, document);
    add(read, "Boost.JSON", readBoostJson, document);
    add(read, "nlohmann", readNlohmann, document);
    add(read, "floor: malloc and free of every object", allocateBlocks, &ObjectBlocks[i]);
    add(read, "floor: malloc and free of our blocks", allocateBlocks, &OwnBlocks[i]);
    add(read, "floor: memcpy of the text", copyText, document);
  }
}

Registration const registration(addAll);

}  // namespace

std::string jsonOf(Node const& node) { return nlohmannValueOf(node).dump(); }

}  // namespace bench
