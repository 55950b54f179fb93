#include "FromJson.h"

#include <tarselvalues/core/lvCell.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>

#include "JsonText.h"
#include "TextClass.h"

namespace {

constexpr int MaxDepth = lvtStringArgDest::MaxDepth;
// A map's, and within them their entries'.
constexpr int MapLevels = 2;

class Converter {
 public:
  explicit Converter(Problems& problems) : problems_(problems) {}

  // `depth` is how many levels are open around the value.
  Node convert(JsonValue const& json, int depth) {
    switch (json.kind) {
      case JsonValue::Null:
        return makeAtom(lvArg(), json.offset);
      case JsonValue::True:
        return fromBool(json, 1, "true becomes 1");
      case JsonValue::False:
        return fromBool(json, 0, "false becomes 0");
      case JsonValue::Number:
        return fromNumber(json);
      case JsonValue::String:
        return makeAtom(lvToCell(cutAtNul(json.text, json.offset)), json.offset);
      case JsonValue::Array:
        return fromArray(json, depth);
      default:
        return isObjectForm(json) ? fromObjectForm(json, depth) : fromMembers(json, depth);
    }
  }

 private:
  Node fromBool(JsonValue const& json, int value, char const* reason) {
    problems_.report(json.offset, reason);
    return makeAtom(lvToCell(value), json.offset);
  }

  Node fromNumber(JsonValue const& json) {
    long long const value = std::strtoll(json.text.c_str(), nullptr, 10);
    bool const isInt = value >= std::numeric_limits<std::int32_t>::min() &&
                       value <= std::numeric_limits<std::int32_t>::max() &&
                       std::to_string(value) == json.text;
    if (isInt) {
      return makeAtom(lvToCell(static_cast<int>(value)), json.offset);
    }
    problems_.report(json.offset, json.text + " is no integer of 32 bits; it becomes a string");
    return makeAtom(lvToCell(json.text), json.offset);
  }

  std::string cutAtNul(std::string const& text, std::size_t offset) {
    std::size_t const nul = text.find('\0');
    if (nul != std::string::npos) {
      problems_.report(offset, "the string is cut at its first NUL");
    }
    return text.substr(0, nul);
  }

  // Nil, for what has no place in text.
  Node refuse(JsonValue const& json, std::string const& reason) {
    problems_.report(json.offset, reason + "; #nil stands for it");
    return makeAtom(lvArg(), json.offset);
  }

  Node refuseDepth(JsonValue const& json) {
    return refuse(json, "this is nested deeper than " + std::to_string(MaxDepth) +
                            " levels, of which an object takes two");
  }

  Node fromArray(JsonValue const& json, int depth) {
    if (depth + 1 > MaxDepth) {
      return refuseDepth(json);
    }
    Node list = makeContainer(Node::List, json);
    addParts(list, json, depth + 1, lvrVector::MaxSize, "a list takes 65535 values");
    return list;
  }

  static Node makeContainer(Node::Kind kind, JsonValue const& json) {
    Node node;
    node.kind = kind;
    node.offset = json.offset;
    return node;
  }

  void addParts(Node& node, JsonValue const& json, int depth, std::size_t most,
                std::string const& limit) {
    for (std::size_t i = 0; i < json.parts.size(); ++i) {
      if (i >= most) {
        problems_.report(json.parts[i].offset, limit + "; this one is left out");
      } else {
        node.parts.push_back(convert(json.parts[i], depth));
      }
    }
  }

  // ---- Maps ------------------------------------------------------------------------------------

  Node fromMembers(JsonValue const& json, int depth) {
    if (depth + MapLevels > MaxDepth) {
      return refuseDepth(json);
    }
    Node map = makeContainer(Node::Map, json);
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < json.parts.size(); ++i) {
      std::string const key = keyOf(json, i);
      auto const [place, isNew] = places.insert({key, map.parts.size()});
      if (isNew) {
        map.parts.push_back(makeAtom(lvToCell(key), json.names[i].offset));
        map.parts.emplace_back();
      } else {
        reportRepeated(json.names[i]);
      }
      Node& value = map.parts[place->second + 1];
      value = convert(json.parts[i], depth + MapLevels);
      if (isNil(value)) {
        problems_.report(json.parts[i].offset, "a map holds no nil; this member is left out");
      }
    }
    dropNilEntries(map);
    return map;
  }

  std::string keyOf(JsonValue const& json, std::size_t i) {
    JsonValue::Name const& name = json.names[i];
    bool const isMarked = json.names.size() == 1 && name.text.rfind("**", 0) == 0;
    return cutAtNul(isMarked ? name.text.substr(1) : name.text, name.offset);
  }

  void reportRepeated(JsonValue::Name const& name) {
    problems_.report(name.offset,
                     jsonString(name.text) + " is there already; the earlier one is left out");
  }

  // ---- Objects ---------------------------------------------------------------------------------

  static bool isObjectForm(JsonValue const& json) {
    return json.names.size() == 1 && json.names[0].text.rfind('*', 0) == 0 &&
           json.names[0].text.rfind("**", 0) != 0;
  }

  Node fromObjectForm(JsonValue const& json, int depth) {
    JsonValue const& fields = json.parts[0];
    std::string const name = json.names[0].text.substr(1);
    TextClass const* const described = findTextClass(lvToCell(name));
    if (described == nullptr) {
      return refuse(json, "class " + jsonString(name) + " is not known");
    }
    if (depth + 1 > MaxDepth) {
      return refuseDepth(json);
    }
    Node object = makeContainer(Node::Object, json);
    object.value = described->key;
    if (fields.kind == JsonValue::Array && described->names.empty()) {
      addParts(
          object, fields, depth + 1, static_cast<std::size_t>(described->fields),
          "class " + jsonString(name) + " has " + std::to_string(described->fields) + " fields");
      addMissing(object, *described);
    } else if (fields.kind == JsonValue::Object && !described->names.empty()) {
      addNamedFields(object, fields, depth + 1, *described);
    } else {
      return refuse(json, "class " + jsonString(name) + " takes " +
                              (described->names.empty() ? "an array of fields"
                                                        : "an object of named fields"));
    }
    return object;
  }

  void addMissing(Node& object, TextClass const& described) {
    auto const count = static_cast<std::size_t>(described.fields);
    if (object.parts.size() < count) {
      problems_.report(object.offset, "fields are missing; they become #nil");
      object.parts.resize(count);
    }
  }

  void addNamedFields(Node& object, JsonValue const& json, int depth, TextClass const& described) {
    std::vector<std::string> const& names = described.names;
    std::vector<bool> isThere(names.size(), false);
    object.parts.resize(names.size());
    for (std::size_t i = 0; i < json.parts.size(); ++i) {
      JsonValue::Name const& name = json.names[i];
      auto const place = std::find(names.begin(), names.end(), name.text);
      if (place == names.end()) {
        problems_.report(name.offset,
                         "the class has no field " + jsonString(name.text) + "; it is left out");
        continue;
      }
      auto const index = static_cast<std::size_t>(place - names.begin());
      if (isThere[index]) {
        reportRepeated(name);
      }
      isThere[index] = true;
      object.parts[index] = convert(json.parts[i], depth);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (!isThere[i]) {
        problems_.report(json.offset, "field \"" + names[i] + "\" is missing; it becomes #nil");
      }
    }
  }

  Problems& problems_;
};

}  // namespace

Node fromJson(JsonValue const& json, Problems& problems) {
  return Converter(problems).convert(json, 0);
}
