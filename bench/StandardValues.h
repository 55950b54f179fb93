// What a C++ program holds counted texts in when it has no library for it.
#pragma once

#include <any>
#include <memory>
#include <string>
#include <utility>
#include <variant>

namespace bench {

using SharedText = std::shared_ptr<std::string const>;
using VariantValue = std::variant<std::monostate, int, void*, SharedText>;

inline SharedText sharedText(std::string text) {
  return std::make_shared<std::string const>(std::move(text));
}

// The name of a kind of value, as a peer.
template <class Value>
constexpr char const* peerName = nullptr;
template <>
inline constexpr char const* peerName<SharedText> = "std::shared_ptr";
template <>
inline constexpr char const* peerName<std::any> = "std::any";
template <>
inline constexpr char const* peerName<VariantValue> = "std::variant";

}  // namespace bench
