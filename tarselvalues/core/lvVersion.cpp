#include "tarselvalues/core/lvVersion.h"

void lvGetVersion(int& major, int& minor, int& patch) noexcept {
  major = TARSELVALUES_VERSION_MAJOR;
  minor = TARSELVALUES_VERSION_MINOR;
  patch = TARSELVALUES_VERSION_PATCH;
}
