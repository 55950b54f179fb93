// The sizes of what is read. Not for users.
#pragma once

namespace tarselvalues {

// Room for this many elements or buckets in a frame.
constexpr int FrameSizeHint = 6;

// And among the values of an object's fields.
constexpr int FieldSizeHint = 8;

}  // namespace tarselvalues
