#include "tarselvalues/core/lvValue.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "tarselvalues/core/OneBlockString.h"

lvValue::lvValue(lvrString const& string) { setStringFast(string); }

char const* lvValue::getString(int* length) const {
  char const* text = nullptr;
  int measured = 0;
  if (isNil()) {
    text = lvrString::strNil;
    measured = sizeof("(NIL)") - 1;
  } else if (getType() == StringType && getReferencable() != nullptr) {
    auto const& string = static_cast<lvrString const&>(*getReferencable());
    text = string.getText();
    measured = string.getLength();
  } else {
    return nullptr;
  }
  if (length != nullptr) {
    *length = measured;
  }
  return text;
}

int lvValue::getInt() const {
  if (getType() != StringType) {
    return lvArg::getInt();
  }
  auto const* const string = static_cast<lvrString const*>(getReferencable());
  return string != nullptr ? string->getInteger() : -1;
}

int lvValue::setString(char const* text, int length, int mode) {
  lvValue fresh;
  fresh.setStringFast(text, length, mode);
  lvArg::operator=(std::move(fresh));
  return 0;
}

int lvValue::setString(lvrString const& string) {
  lvArg::operator=(lvValue(string));
  return 0;
}

int lvValue::setStringFast(char const* text, int length, int mode) {
  if (text != nullptr) {
    std::size_t const bytes = length < 0 ? std::strlen(text) : static_cast<std::size_t>(length);
    if (lvrString::fitsOneBlock(bytes, mode)) {
      return setStringFast(*lvrString::make<lvrString>(text, bytes));
    }
  }
  auto* const string = new lvrString;
  setStringFast(*string);
  string->setStringDataFast(text, length, mode);
  return 0;
}

int lvValue::setStringFast(lvrString const& string) {
  return setReferencableFast(string, StringType);
}

lvValue lvValue::toString() const {
  if (getType() == StringType) {
    return *this;
  }
  auto* const string = new lvrString;
  lvValue result(*string);
  string->setFrom(*this);
  return result;
}
