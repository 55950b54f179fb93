// The maps of Qt. See Maps.h.
#pragma once

#include <QString>
#include <QVariant>
#include <string>
#include <type_traits>

#include "bench/Maps.h"

namespace bench {

template <class Container>
class QtMap {
 public:
  using Key = typename Container::key_type;
  using Value = QVariant;

  static Key makeKey(Keys const& keys, int number) {
    if constexpr (std::is_same_v<Key, int>) {
      return number * keys.factor;
    } else {
      return QString::fromStdString(keys.textOf(number));
    }
  }
  static QVariant makeValue(std::string const& text) { return QString::fromStdString(text); }

  void put(Key const& key, QVariant const& value) { container.insert(key, value); }
  QVariant get(Key const& key) const { return container.value(key); }

 private:
  Container container;
};

}  // namespace bench
