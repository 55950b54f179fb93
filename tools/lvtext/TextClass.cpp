#include "TextClass.h"

#include <algorithm>
#include <array>
#include <deque>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <utility>

namespace {

constexpr int MaxFields = 65535;

// A deque: what findTextClass() returns stays where it is.
std::deque<TextClass>& textClasses() {
  static std::deque<TextClass> classes;
  return classes;
}

// An object whose fields follow it in the same block of memory, as many as its class has.
class TextObject : public lvReferencable {
 public:
  static lvReferencable* make(TextClass const& described) {
    return new (::operator new(fieldOffset(described.fields))) TextObject(described);
  }

  ~TextObject() override { std::destroy_n(fields(), count); }
  lvString const& getClassDesc() const override { return key; }
  // NOLINTNEXTLINE(misc-new-delete-overloads): the block comes from make().
  static void operator delete(void* object) { ::operator delete(object); }

  static std::size_t fieldOffset(int i) {
    return sizeof(TextObject) + static_cast<std::size_t>(i) * sizeof(lvArg);
  }

 private:
  explicit TextObject(TextClass const& described) : key(described.key), count(described.fields) {
    std::uninitialized_default_construct_n(fields(), count);
  }
  static void* operator new(std::size_t, void* place) { return place; }
  lvArg* fields() { return reinterpret_cast<lvArg*>(this + 1); }

  lvString key;
  int count;
};

template <std::size_t Index>
lvReferencable* makeObject() {
  return TextObject::make(textClasses()[Index]);
}

// Default constructors take no argument, so each class needs one of its own.
template <std::size_t... Indices>
constexpr auto makersFor(std::index_sequence<Indices...> /*indices*/) {
  return std::array<lvrClass::DefaultCtor*, sizeof...(Indices)>{&makeObject<Indices>...};
}
constexpr auto makers = makersFor(std::make_index_sequence<MaxTextClasses>());

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isWord(std::string const& text) {
  for (char const c : text) {
    bool const isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    if (!isLetter && !isDigit(c)) {
      return false;
    }
  }
  return !text.empty() && !isDigit(text[0]);
}

// COUNT; 0 if it is none.
int readCount(std::string const& text) {
  bool const isNumber = !text.empty() && text.size() <= 5 &&
                        text.find_first_not_of("0123456789") == std::string::npos;
  int const count = isNumber ? std::stoi(text) : 0;
  return count <= MaxFields ? count : 0;
}

// FIELD,FIELD...; empty if they are none, or not all different.
std::vector<std::string> readNames(std::string const& text) {
  std::vector<std::string> names;
  std::set<std::string> seen;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    std::size_t const end = std::min(text.find(',', begin), text.size());
    names.push_back(text.substr(begin, end - begin));
    if (!isWord(names.back()) || !seen.insert(names.back()).second) {
      return {};
    }
    begin = end + 1;
  }
  return names.size() <= MaxFields ? names : std::vector<std::string>();
}

void describe(TextClass const& declared, lvrClass::DefaultCtor* make) {
  lvClass const described(1, declared.key, make);
  std::vector<std::size_t> offsets;
  offsets.reserve(static_cast<std::size_t>(declared.fields));
  for (int i = 0; i < declared.fields; ++i) {
    offsets.push_back(TextObject::fieldOffset(i));
  }
  described->setDirectObjectOffsets(lvrClass::Fields, declared.fields, offsets.data(), 0);
  lvtClassRegistry::getInstance()->putClass(declared.key, described);
}

}  // namespace

void declareClass(std::string const& declaration) {
  std::size_t const equals = declaration.rfind('=');
  bool const isWhole = equals != 0 && equals != std::string::npos;
  std::string const fields = isWhole ? declaration.substr(equals + 1) : "";
  std::vector<std::string> names = readNames(fields);
  int const count = names.empty() ? readCount(fields) : static_cast<int>(names.size());
  if (count == 0) {
    throw std::runtime_error(declaration +
                             ": NAME=COUNT or NAME=FIELD,FIELD... is expected, with 1 to 65535 "
                             "fields");
  }
  std::size_t const index = textClasses().size();
  if (index == makers.size()) {
    throw std::runtime_error(declaration + ": there are more than " +
                             std::to_string(MaxTextClasses) + " classes");
  }
  std::string const name = declaration.substr(0, equals);
  lvString const key(name.c_str());
  if (!lvtClassRegistry::getInstance()->getClass(key).isNil()) {
    throw std::runtime_error(declaration + ": class " + name + " is there already");
  }
  textClasses().push_back({key, count, std::move(names)});
  describe(textClasses().back(), makers[index]);
}

TextClass const* findTextClass(lvArg const& key) {
  for (TextClass const& declared : textClasses()) {
    if (declared.key.equiv(key) != 0) {
      return &declared;
    }
  }
  return nullptr;
}
