// The JSON text of a document, which all peers that know JSON read.
#pragma once

#include <string>

#include "bench/Document.h"

namespace bench {

std::string jsonOf(Node const& node);

}  // namespace bench
