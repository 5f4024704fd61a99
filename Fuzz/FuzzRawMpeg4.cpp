// The raw MPEG-4 stream.
#include "LegacyTarget.h"
#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzLegacy(
        pData, nSize, [] { return CRawMPEG4Stream(); }, &NeverMatters);
}
