// The layout that compiled programs and debugger scripts rely on.

#include "tarselvalues/serial/LayoutAccess.h"

namespace {

using Writer = lvLayoutAccess<lvtStringArgDest>;
using Parser = lvLayoutAccess<lvtStringArgSource>;

constexpr std::size_t pointerSize = sizeof(void*);
constexpr bool isIlp32 = pointerSize == 4;

// On every target: the fields in their order.
static_assert(Writer::bufferOffset == pointerSize);
static_assert(Writer::capacityOffset == 2 * pointerSize);
static_assert(Writer::lengthOffset == Writer::capacityOffset + 4);
static_assert(Writer::flagsOffset == Writer::capacityOffset + 8);
static_assert(Writer::depthOffset == Writer::capacityOffset + 10);
static_assert(Writer::levelKindsOffset == Writer::capacityOffset + 12);

static_assert(Parser::lengthOffset == pointerSize);
static_assert(Parser::offsetOffset == pointerSize + 4);
static_assert(Parser::textOffset == pointerSize + 8);
static_assert(Parser::sourceStringOffset == 2 * pointerSize + 8);
static_assert(Parser::stateOffset == Parser::sourceStringOffset + sizeof(lvArg));
static_assert(Parser::flagsOffset == Parser::stateOffset + 4);
static_assert(Parser::errorCountOffset == Parser::stateOffset + 6);
static_assert(Parser::tokenValueOffset == Parser::stateOffset + 8);
static_assert(Parser::pendingClassNameOffset == Parser::tokenValueOffset + sizeof(lvArg));
static_assert(Parser::lastTokenOffset == Parser::pendingClassNameOffset + sizeof(lvArg));

// On 32-bit targets: the numbers themselves.
static_assert(!isIlp32 || (Writer::bufferOffset == 4 && Writer::capacityOffset == 8 &&
                           Writer::lengthOffset == 12 && Writer::flagsOffset == 16 &&
                           Writer::depthOffset == 18 && Writer::levelKindsOffset == 20 &&
                           sizeof(lvtStringArgDest) == 24));
static_assert(!isIlp32 ||
              (Parser::lengthOffset == 4 && Parser::offsetOffset == 8 && Parser::textOffset == 12 &&
               Parser::sourceStringOffset == 16 && Parser::stateOffset == 24 &&
               Parser::flagsOffset == 28 && Parser::errorCountOffset == 30 &&
               Parser::tokenValueOffset == 32 && Parser::pendingClassNameOffset == 40 &&
               Parser::lastTokenOffset == 48 && sizeof(lvtStringArgSource) == 52));

}  // namespace
