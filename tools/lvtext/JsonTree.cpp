#include "JsonTree.h"

#include <utility>

#include "JsonText.h"

namespace {

class Builder {
 public:
  Builder(JsonValue& root, std::function<void(std::size_t)> const& reach)
      : root_(root), reach_(reach) {}

  void take(JsonPiece&& piece) {
    reach_(piece.offset);
    switch (piece.kind) {
      case JsonPiece::BeginArray:
      case JsonPiece::BeginObject:
        begin(piece);
        break;
      case JsonPiece::EndArray:
      case JsonPiece::EndObject:
        end();
        break;
      case JsonPiece::Name:
        if (tooDeep_ == 0) {
          open_.back().names.push_back({std::move(piece.text), piece.offset});
        }
        break;
      default:
        add({kindOf(piece.kind), piece.offset, std::move(piece.text), {}, {}});
        break;
    }
  }

 private:
  static JsonValue::Kind kindOf(JsonPiece::Kind kind) {
    switch (kind) {
      case JsonPiece::True:
        return JsonValue::True;
      case JsonPiece::False:
        return JsonValue::False;
      case JsonPiece::Number:
        return JsonValue::Number;
      case JsonPiece::String:
        return JsonValue::String;
      case JsonPiece::BeginArray:
        return JsonValue::Array;
      case JsonPiece::BeginObject:
        return JsonValue::Object;
      default:
        return JsonValue::Null;
    }
  }

  void begin(JsonPiece const& piece) {
    JsonValue value{kindOf(piece.kind), piece.offset, "", {}, {}};
    if (open_.size() < MaxJsonDepth) {
      open_.push_back(std::move(value));
    } else {
      add(std::move(value));
      ++tooDeep_;
    }
  }

  void end() {
    if (tooDeep_ > 0) {
      --tooDeep_;
      return;
    }
    JsonValue whole = std::move(open_.back());
    open_.pop_back();
    add(std::move(whole));
  }

  void add(JsonValue&& value) {
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (tooDeep_ == 0) {
      open_.back().parts.push_back(std::move(value));
    }
  }

  JsonValue& root_;
  std::function<void(std::size_t)> const& reach_;
  std::vector<JsonValue> open_;
  std::size_t tooDeep_ = 0;  // levels that are read over
};

}  // namespace

std::size_t readJsonTree(JsonValue& value, std::string const& text, std::size_t from,
                         std::function<void(std::size_t)> const& reach) {
  Builder builder(value, reach);
  return readJson(text, from, [&](JsonPiece&& piece) { builder.take(std::move(piece)); });
}
