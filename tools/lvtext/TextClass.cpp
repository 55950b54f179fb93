#include "TextClass.h"

#include <tarselvalues/tarselvalues.h>

#include <array>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

struct TextClass {
  lvString key;
  int fields;
};

std::vector<TextClass>& textClasses() {
  static std::vector<TextClass> classes;
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

}  // namespace

void registerTextClass(std::string const& name, int fields) {
  std::size_t const index = textClasses().size();
  if (index == makers.size()) {
    throw std::runtime_error("there are more than " + std::to_string(MaxTextClasses) + " classes");
  }
  lvString const key(name.c_str());
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  if (!registry.getClass(key).isNil()) {
    throw std::runtime_error("class " + name + " is there already");
  }
  textClasses().push_back({key, fields});
  lvClass const described(1, key, makers[index]);
  std::vector<std::size_t> offsets;
  offsets.reserve(static_cast<std::size_t>(fields));
  for (int i = 0; i < fields; ++i) {
    offsets.push_back(TextObject::fieldOffset(i));
  }
  described->setDirectObjectOffsets(lvrClass::Fields, fields, offsets.data(), 0);
  registry.putClass(key, described);
}
