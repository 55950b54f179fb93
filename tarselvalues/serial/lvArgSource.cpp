#include "tarselvalues/serial/lvArgSource.h"

#include "tarselvalues/serial/lvtStringArgSource.h"

lvArgSource::~lvArgSource() = default;

int lvArgSource::getNextToken(lvArg& /*out*/) { return lvtStringArgSource::TOKEN_END; }
