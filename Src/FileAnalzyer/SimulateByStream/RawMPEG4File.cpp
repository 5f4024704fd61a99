#include "FileAnalzyer/SimulateByStream/RawMPEG4File.h"

#include "Memory/TryAlloc.h"
#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

namespace Marvane::FrameSift {

CRawMPEG4File::CRawMPEG4File() : CFileParseBase(TryMake<CRawMPEG4Stream>()) {}

std::unique_ptr<IStreamAnalzyer> CRawMPEG4File::CreateStreamObj()
{
    return TryMake<CRawMPEG4Stream>();
}

} // namespace Marvane::FrameSift
