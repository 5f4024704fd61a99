// Recordings that are a bare MPEG-4 stream. Their times are stream time stamps.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_RAWMPEG4FILE_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_RAWMPEG4FILE_H

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"

namespace Marvane::FrameSift {

class CRawMPEG4File : public CFileParseBase
{
public:
    CRawMPEG4File();
    std::unique_ptr<IStreamAnalzyer> CreateStreamObj() override;
};

} // namespace Marvane::FrameSift

#endif
