#include "ToJson.h"

#include <tarselvalues/core/lvRead.h>

#include <set>
#include <string>

#include "JsonText.h"
#include "TextClass.h"
#include "TextLayout.h"

namespace {

class JsonWriter {
 public:
  explicit JsonWriter(Problems& problems) : problems_(problems) {}

  void write(Node const& node) {
    switch (node.kind) {
      case Node::Atom:
        writeAtom(node);
        break;
      case Node::List:
        writeArray(node);
        break;
      case Node::Map:
        writeMap(node);
        break;
      case Node::Object:
        writeObject(node);
        break;
    }
  }

  std::string take() { return std::move(out_); }

 private:
  void writeAtom(Node const& node) {
    switch (node.value.getType()) {
      case lvArg::IntType:
        out_ += std::to_string(node.value.getInt());
        break;
      case lvArg::StringType:
        out_ += jsonString(textOf(node));
        break;
      default:
        out_ += "null";
        break;
    }
  }

  void writeArray(Node const& node) {
    out_ += '[';
    for (std::size_t i = 0; i < node.parts.size(); ++i) {
      out_ += i > 0 ? "," : "";
      write(node.parts[i]);
    }
    out_ += ']';
  }

  void writeMap(Node const& map) {
    std::set<std::string> names;
    out_ += '{';
    for (std::size_t i = 0; i < map.parts.size(); i += 2) {
      Node const& key = map.parts[i];
      std::string const name = nameOf(key, map.parts.size() == 2);
      if (!names.insert(name).second) {
        report(key, "another key has become " + jsonString(name) + ", too; this entry is left out");
        continue;
      }
      out_ += (names.size() > 1 ? "," : "") + jsonString(name) + ':';
      write(map.parts[i + 1]);
    }
    out_ += '}';
  }

  std::string nameOf(Node const& key, bool isOnly) {
    bool const isString = key.kind == Node::Atom && key.value.getType() == lvArg::StringType;
    std::string const name = isString ? textOf(key) : asUtf8(oneLine(key));
    if (!isString) {
      report(key, "the key is no string; it becomes " + jsonString(name));
    }
    return isOnly && name.rfind('*', 0) == 0 ? '*' + name : name;
  }

  void writeObject(Node const& object) {
    std::string const name = utf8Of(lvReadText(object.value, ""), object);
    TextClass const* const described = findTextClass(object.value);
    out_ += '{' + jsonString('*' + name) + ':';
    if (described != nullptr && !described->names.empty()) {
      writeFields(object, *described);
    } else {
      writeArray(object);
    }
    out_ += '}';
  }

  void writeFields(Node const& object, TextClass const& described) {
    out_ += '{';
    for (std::size_t i = 0; i < object.parts.size(); ++i) {
      out_ += (i > 0 ? "," : "") + jsonString(described.names[i]) + ':';
      write(object.parts[i]);
    }
    out_ += '}';
  }

  std::string textOf(Node const& string) { return utf8Of(lvReadText(string.value, ""), string); }

  std::string utf8Of(std::string const& text, Node const& node) {
    std::string result = asUtf8(text);
    if (result != text) {
      report(node, "the string is not UTF-8; U+FFFD stands for what does not fit");
    }
    return result;
  }

  void report(Node const& node, std::string const& reason) {
    problems_.report(node.offset, reason);
  }

  Problems& problems_;
  std::string out_;
};

}  // namespace

std::string toJson(Node const& node, Problems& problems) {
  JsonWriter writer(problems);
  writer.write(node);
  return writer.take();
}
