// The frames that the serializer opens in a sink. Not for users.
#pragma once

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace tarselvalues {

constexpr int TupleSize = 2;
constexpr int UnknownSize = -1;

inline lvArg frameCell(lvArgDest::FrameKind kind) {
  lvArg cell;
  cell.setInt(kind);
  return cell;
}

}  // namespace tarselvalues
