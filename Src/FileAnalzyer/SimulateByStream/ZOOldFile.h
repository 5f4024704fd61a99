// Recordings of the older formats.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_ZOOLDFILE_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_ZOOLDFILE_H

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"

namespace Marvane::FrameSift {

class CZOOldFile : public CFileParseBase
{
public:
    CZOOldFile();

    // No extension record belongs to a frame of this family.
    int OnFrame(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, void* userData) override;
    // Into the index by the positions that the frame brings. It does not count in the summary if a callback hears of it.
    int OnPureAudioFrame(ZOOldPureAudoFrame* frame, void* userData) override;
    // The wall-clock time, to the second; the time stamp is not used.
    int64_t RecalcTimeStamp(FrameInfo* frameInfo) override;
    std::unique_ptr<IStreamAnalzyer> CreateStreamObj() override;

private:
    bool Abandon(const FrameInfo& frameInfo);
};

} // namespace Marvane::FrameSift

#endif
