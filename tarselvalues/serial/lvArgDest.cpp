#include "tarselvalues/serial/lvArgDest.h"

lvArgDest::~lvArgDest() = default;

void lvArgDest::setStringBuffer(char* /*buffer*/, int /*size*/) {}

int lvArgDest::init() { return 0; }

int lvArgDest::initOnce() { return 0; }

int lvArgDest::cleanup() { return 0; }

int lvArgDest::cleanupOnce() { return 0; }
