// Keys of every kind that a hash map tells apart, many of which change while they are keys, and
// what a slow model knows of each.
#pragma once

#include <gtest/gtest.h>
#include <strings.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/StringModel.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/core/LayoutAccess.h"

namespace test {

// A string of a program's class, which takes capital letters for small ones.
class FoldedString : public lvrString {
 public:
  int equiv(lvReferencable const& other) const override {
    return other.getKind() == StringKind && folded(*this) == folded(other) ? 1 : 0;
  }
  unsigned int hashCode() const override { return modelHash(folded(*this)); }

  static std::string folded(std::string const& text) { return modelLower(visible(text)); }

 private:
  static std::string folded(lvReferencable const& string) {
    char const* const text = static_cast<lvrString const&>(string).getText();
    return folded(text != nullptr ? std::string(text) : "");
  }
};

// An object with the hash that it is told to have from now on.
class RehashedObject : public lvReferencable {
 public:
  unsigned int hashCode() const override { return hash; }

  unsigned hash = 0;
};

class ChangingKeys {
 public:
  using Id = std::size_t;

  // Which keys: those that are told by what they are, or besides them strings that borrow one text,
  // or besides them what is compared by functions of the program.
  enum class Mix { Own, OwnAndBorrowed, OwnAndForeign };

  ChangingKeys(Choices& source, Mix mix) : choices(source) {
    addNumbers();
    addStrings();
    addOthers();
    if (mix == Mix::OwnAndBorrowed) {
      addBorrowed();
    } else if (mix == Mix::OwnAndForeign) {
      addForeign();
    }
  }

  std::size_t size() const { return keys.size(); }
  lvArg const& cell(Id id) const { return keys[id].cell; }
  // What a container holds that was given this key: nil in place of an unknown tag.
  lvArg const& stored(Id id) const { return keys[id].stored; }
  unsigned hash(Id id) const { return keys[id].hash; }

  // Whether a walk of a chain takes the entry with the key `id` for that with the key `sought`.
  bool isFoundBy(Id id, Id sought) const {
    Key const& key = keys[id];
    Key const& other = keys[sought];
    if (key.stored.getType() != other.cell.getType()) {
      return false;
    }
    switch (key.stored.getReferencable() != nullptr && other.cell.getReferencable() != nullptr
                ? key.form
                : Form::Plain) {
      case Form::Own:
        return isSameText(key, other);
      case Form::Folded:
        return other.form != Form::Impostor &&
               FoldedString::folded(key.whole) == FoldedString::folded(other.whole);
      default:
        return key.stored.eq(other.cell);
    }
  }

  // Changes any of the keys that can. Returns how many entries that has put into hash maps.
  int changeAny() {
    Id const id = choices.pick(changing);
    Key& key = keys[id];
    if (auto* const map = dynamic_cast<lvrHashMap*>(key.cell.getReferencable())) {
      int const added = map->getSize();
      map->put(integer(added), integer(1));
      key.hash += 9563891U * hashOfInteger(added);
      return 1;
    }
    if (auto* const object = dynamic_cast<RehashedObject*>(key.cell.getReferencable())) {
      object->hash = key.hash = choices.below(50U);
      return 0;
    }
    changeText(key);
    return 0;
  }

 private:
  enum class Form {
    Plain,     // equal to itself alone
    Own,       // a string of the library's
    Folded,    // a FoldedString
    Impostor,  // no string, in a cell with the tag of one
  };

  struct Key {
    lvArg cell;
    lvArg stored;
    unsigned hash = 0;
    Form form = Form::Plain;
    // Of strings:
    char const* address = nullptr;
    std::string bytes;    // as many as its length says
    std::string whole;    // up to the first NUL, wherever the length ends
    bool isLong = false;  // too long for its length to be stored
    bool borrows = false;
  };

  static constexpr std::size_t Uncounted = 65535;

  static unsigned hashOfInteger(int value) {
    return static_cast<unsigned>(value) * 0xFFFFA460U + 0x110D5U;
  }

  static bool isSameText(Key const& key, Key const& other) {
    if (other.form == Form::Impostor) {
      return true;  // The difference of two addresses is never 0.
    }
    if (key.address == other.address) {
      return true;
    }
    if (key.address == nullptr || other.address == nullptr || key.hash != other.hash) {
      return false;
    }
    if (key.isLong) {
      return key.whole == other.whole;
    }
    return !other.isLong && key.bytes.size() == other.bytes.size() &&
           visible(key.bytes) == visible(other.bytes);
  }

  Key& add(lvArg const& cell, unsigned hash) {
    Key key;
    key.cell = cell;
    key.stored = cell;
    key.hash = hash;
    keys.push_back(std::move(key));
    return keys.back();
  }

  // ---- Texts -----------------------------------------------------------------------------------

  static lvrString& stringOf(Key const& key) {
    return static_cast<lvrString&>(*key.cell.getReferencable());
  }

  // Notes down what a string with these bytes is, after it was given them.
  static void noteText(Key& key, std::string const& bytes) {
    key.address = stringOf(key).getText();
    key.isLong = key.address != nullptr && bytes.size() >= Uncounted;
    key.bytes = key.isLong ? visible(bytes) : bytes;
    key.whole = visible(bytes);
    key.hash =
        key.form == Form::Folded ? modelHash(FoldedString::folded(bytes)) : modelHash(key.bytes);
    ASSERT_EQ(key.cell.hashCode(), key.hash);  // From here on it has it cached.
  }

  Key& addString(lvArg const& cell, std::string const& bytes, Form form = Form::Own) {
    Key& key = add(cell, 0);
    key.form = form;
    noteText(key, bytes);
    return key;
  }

  static std::string numbered(std::string text, unsigned number) {
    return std::move(text) + std::to_string(number);
  }

  // Of 30 bytes, the number outside of those that count for the hash.
  static std::string withSharedHash(unsigned number) {
    std::string text = numbered("Shared ", 1000 + number);
    text += "a tail of 18 byte.";
    text.back() = static_cast<char>('0' + number % 10);
    return text;
  }

  // Of one hash, and equal, though not in all bytes.
  static std::string withHiddenDifference(unsigned number) {
    return numbered(std::string("same\0then ", 10), 10 + number) + "a tail of 18 bytes";
  }

  // Few enough to meet again.
  std::string anyText() {
    switch (choices.below(5)) {
      case 0:
        return withSharedHash(choices.below(200U));
      case 1:
        return withHiddenDifference(choices.below(4U));
      case 2:
        return numbered(std::string("nul\0", 4), choices.below(8U));
      default:
        return numbered(choices.oneIn(2) ? "text " : "TEXT ", choices.below(200U));
    }
  }

  void changeText(Key& key) {
    lvrString& string = stringOf(key);
    if (key.borrows) {
      int const length = 1 + choices.below(5);
      bool const copied = choices.oneIn(4);
      string.setStringData(borrowed, length, copied ? lvrString::CopyAndOwn : lvrString::Borrow);
      noteText(key, std::string(borrowed, static_cast<std::size_t>(length)));
      key.whole = copied ? key.bytes : borrowed;
      return;
    }
    if (choices.oneIn(5)) {
      choices.oneIn(2) ? string.releaseData() : string.finalize();
      // An empty text is borrowed and stays. So does the hash, once asked for, and the length.
      key.address = key.address == lvrString::strEmpty ? key.address : nullptr;
      key.whole.clear();
      key.hash = key.form == Form::Folded ? modelHash("") : key.hash;
      return;
    }
    std::string const text = choices.oneIn(8) ? "" : anyText();
    string.setStringData(text.data(), static_cast<int>(text.size()),
                         choices.oneIn(2) ? lvrString::CopyAndOwn : lvrString::CopyAndOwnEmpty);
    noteText(key, text);
  }

  // ---- All keys --------------------------------------------------------------------------------

  void addNumbers() {
    add(lvArg(), 19567);
    for (int i = -20; i < 60; ++i) {
      add(integer(i), hashOfInteger(i));
    }
    for (int i = 10; i < 160; ++i) {
      add(integer(7 * i), hashOfInteger(7 * i));
    }
    for (std::uintptr_t i = 1; i <= 20; ++i) {
      add(pointer(8 * i), hashOfInteger(static_cast<int>(i)));
    }
  }

  void addStrings() {
    for (unsigned i = 0; i < 150; ++i) {
      addChangingString(withSharedHash(i));
      addChangingString(anyText());
    }
    for (unsigned i = 0; i < 60; ++i) {
      std::string const text = anyText();
      addString(lvString(static_cast<int>(text.size()), text.data(), lvrString::CopyAndOwn), text);
    }
    addChangingString("");                           // with an empty text,
    addString(*lvrString::defaultCtorMethod(), "");  // without text,
    addString(*lvrString::defaultCtorMethod(), "");  // and another,
    addString(string(std::string(70000, 'x')), std::string(70000, 'x'));
    addString(string(std::string(70000, 'x')), std::string(70000, 'x'));
    addString(string(std::string(70001, 'x')), std::string(70001, 'x'));
    std::string const cut = std::string("text 1\0", 7) + std::string(70000, 'x');
    addString(string(cut), cut);
  }

  void addChangingString(std::string const& text) {
    changing.push_back(size());
    addString(string(text), text);
  }

  void addOthers() {
    for (int i = 0; i < 5; ++i) {
      changing.push_back(size());
      add(*lvrHashMap::defaultCtorMethod(), 0x8386a731);
    }
    for (int i = 0; i < 10; ++i) {
      changing.push_back(size());
      add(*new RehashedObject, 0);
    }
    // References without object.
    lvArg none = string("gone");
    none.releaseData();
    add(none, 0);
    none = *new RehashedObject;
    none.releaseData();
    add(none, 0);
    // A string in a cell with the tag of an object.
    lvArg disguised;
    lvArg const text = string("text 1");
    disguised.setReferencableFast(*text.getReferencable(), lvArg::ObjectType);
    add(disguised, modelHash("text 1"));
    // Unknown tags.
    for (std::uint32_t const tag : {3U, 13U}) {
      Key& key = add(integer(5), 0);
      lvLayoutAccess<lvArg>::tagWord(key.cell) = tag;
      key.stored.setNil();
    }
  }

  void addBorrowed() {
    for (int i = 0; i < 10; ++i) {
      changing.push_back(size());
      Key& key = addString(string(""), "");
      key.borrows = true;
      changeText(key);
    }
  }

  void addForeign() {
    for (int i = 0; i < 10; ++i) {
      changing.push_back(size());
      lvArg const folded(*new FoldedString);
      addString(folded, "", Form::Folded);
      changeText(keys.back());
    }
    lvArg impostor;
    lvArg const object(*new RehashedObject);
    impostor.setReferencableFast(*object.getReferencable(), lvArg::StringType);
    add(impostor, 0).form = Form::Impostor;
  }

  static constexpr char borrowed[] = "text 17";

  Choices& choices;
  std::vector<Key> keys;
  std::vector<Id> changing;
};

}  // namespace test
