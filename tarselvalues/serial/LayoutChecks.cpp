// The layout and the numbers that compiled programs and debugger scripts rely on.

#include "tarselvalues/serial/LayoutAccess.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

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

// The numbers that programs are compiled with.
static_assert(lvArgDest::SOURCE_ERROR_NOT_A_MAP == 1 && lvArgDest::SOURCE_ERROR_NOT_A_VECTOR == 2 &&
              lvArgDest::SOURCE_ERROR_NO_CLASS == 4 && lvArgDest::SOURCE_ERROR_FIELD_ACCESS == 5);
static_assert(lvArgDest::MapFrame == 24 && lvArgDest::VectorFrame == 25 &&
              lvArgDest::TupleFrame == 32);
static_assert(lvtStringArgDest::ROOM_ERROR == -3072 && lvtStringArgDest::MaxDepth == 32);
static_assert(lvArgSource::SOURCE_ITEM == 0 && lvArgSource::SOURCE_FRAME_BEGIN == 6 &&
              lvArgSource::SOURCE_FRAME_END == 7 && lvArgSource::SOURCE_END == 9);
static_assert(lvtStringArgSource::TOKEN_END == 256 && lvtStringArgSource::TOKEN_INTEGER == 257 &&
              lvtStringArgSource::TOKEN_STRING == 258 &&
              lvtStringArgSource::TOKEN_OVERFLOW == 259 && lvtStringArgSource::TOKEN_UNKNOWN == -1);
static_assert(lvrCommonSerializer::CS_ERR_FAILED == -1 &&
              lvrCommonSerializer::CS_ERR_SOURCE == -2 &&
              lvrCommonSerializer::CS_ERR_UNKNOWN_CLASS_KEY == -4 &&
              lvrCommonSerializer::CS_ERR_NO_CLASS_CTOR == -5 &&
              lvrCommonSerializer::CS_ERR_REF_SETUP_ERROR == -6);

}  // namespace
