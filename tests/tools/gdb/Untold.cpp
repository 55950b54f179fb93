#include "Untold.h"

Untold::~Untold() = default;
