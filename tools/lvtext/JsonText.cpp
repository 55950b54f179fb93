#include "JsonText.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

// What the parser and the writer are asked for: one value of several, and text without indentation.
constexpr bool ToTheEnd = false;
constexpr int OneLine = -1;

constexpr char ByteOrderMark[] = "\xEF\xBB\xBF";

// What the parser keeps of numbers that are no integers. It refuses a number that this cannot hold, as
// a double cannot hold 1e400. Here only counts what was written, so all of them read as 0.
class AnyNumber {
 public:
  AnyNumber() = default;
  // What the parser does with a double: sets it, has strtod() write into it, and reads it.
  constexpr AnyNumber(double value) : written_(value) {}  // NOLINT(google-explicit-constructor)
  operator double&() { return written_; }                 // NOLINT(google-explicit-constructor)
  operator double() const { return 0; }                   // NOLINT(google-explicit-constructor)

 private:
  double written_;
};

using AnyJson = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                     std::uint64_t, AnyNumber>;

// Hands on what the parser tells, and finds out where it stands, which the parser does not say.
class PieceReader : public nlohmann::json_sax<AnyJson> {
 public:
  PieceReader(std::string const& text, std::size_t from,
              std::function<void(JsonPiece&&)> const& take)
      : text_(text), from_(from), next_(from), take_(take) {}

  bool null() override { return hand(JsonPiece::Null); }
  bool boolean(bool value) override { return hand(value ? JsonPiece::True : JsonPiece::False); }
  bool number_integer(std::int64_t /*value*/) override { return handNumber(); }
  bool number_unsigned(std::uint64_t /*value*/) override { return handNumber(); }
  bool number_float(AnyNumber /*value*/, std::string const& /*text*/) override {
    return handNumber();
  }
  bool string(std::string& value) override { return hand(JsonPiece::String, std::move(value)); }
  bool binary(AnyJson::binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return hand(JsonPiece::BeginObject); }
  bool key(std::string& value) override { return hand(JsonPiece::Name, std::move(value)); }
  bool end_object() override { return hand(JsonPiece::EndObject); }
  bool start_array(std::size_t /*size*/) override { return hand(JsonPiece::BeginArray); }
  bool end_array() override { return hand(JsonPiece::EndArray); }

  bool parse_error(std::size_t position, std::string const& /*token*/,
                   AnyJson::exception const& error) override {
    // "[NUMBER] parse error at line L, column C: REASON"
    std::string const message = error.what();
    std::size_t const column = message.find("column ");
    std::size_t const colon = message.find(": ", column);
    std::string const reason = colon != std::string::npos ? message.substr(colon + 2) : message;
    throw JsonError(reason, std::min(from_ + std::max(position, std::size_t{1}) - 1, text_.size()));
  }

  std::size_t end() const { return next_; }

 private:
  bool hand(JsonPiece::Kind kind, std::string value = "") {
    std::size_t const offset = nextToken();
    next_ = endOfToken(offset);
    take_({kind, offset, std::move(value)});
    return true;
  }

  bool handNumber() {
    std::size_t const offset = nextToken();
    return hand(JsonPiece::Number, text_.substr(offset, endOfToken(offset) - offset));
  }

  std::size_t nextToken() const { return text_.find_first_not_of(" \t\r\n,:", next_); }

  std::size_t endOfToken(std::size_t i) const {
    if (text_[i] == '"') {
      for (++i; text_[i] != '"'; ++i) {
        i += text_[i] == '\\' ? 1 : 0;
      }
      return i + 1;
    }
    if (std::string("{}[]").find(text_[i]) != std::string::npos) {
      return i + 1;
    }
    return std::min(text_.find_first_of(" \t\r\n,:{}[]\"", i), text_.size());
  }

  std::string const& text_;
  std::size_t from_;
  std::size_t next_;  // where the token before ends
  std::function<void(JsonPiece&&)> const& take_;
};

bool isAscii(std::string const& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80U; });
}

}  // namespace

std::size_t findJson(std::string const& text, std::size_t from) {
  std::size_t const start = from == 0 && text.rfind(ByteOrderMark, 0) == 0 ? 3 : from;
  return std::min(text.find_first_not_of(" \t\r\n", start), text.size());
}

std::size_t readJson(std::string const& text, std::size_t from,
                     std::function<void(JsonPiece&&)> const& take) {
  PieceReader reader(text, from, take);
  char const* const begin = text.data() + from;
  AnyJson::sax_parse(begin, text.data() + text.size(), &reader, AnyJson::input_format_t::json,
                     ToTheEnd);
  return reader.end();
}

std::string asUtf8(std::string const& text) {
  return isAscii(text)
             ? text
             : json::parse(json(text).dump(OneLine, ' ', false, json::error_handler_t::replace))
                   .get<std::string>();
}

std::string jsonString(std::string const& text) { return json(text).dump(); }
