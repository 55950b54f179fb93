// A class that is compiled without type information, as programs may be.
#pragma once

#include "tarselvalues/tarselvalues.h"

class Untold : public lvReferencable {
 public:
  ~Untold() override;
};
