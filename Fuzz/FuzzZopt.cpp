// The ZOPT stream.
#include "LegacyTarget.h"
#include "StreamAnalzyer/OldStream/ZOPTStream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzLegacy(
        pData, nSize, [] { return CZOPTStream(); }, &NeverMatters);
}
