#include "FileAnalzyer/SimulateByStream/ZOOldFile.h"

#include "Memory/TryAlloc.h"
#include "StreamAnalzyer/OldStream/ZOOldStream.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

CZOOldFile::CZOOldFile() : CFileParseBase(TryMake<CZOOldStream>()) {}

std::unique_ptr<IStreamAnalzyer> CZOOldFile::CreateStreamObj()
{
    return TryMake<CZOOldStream>();
}

int64_t CZOOldFile::RecalcTimeStamp(FrameInfo* frameInfo)
{
    return int64_t{CKXConvert::KXTimeToTimeStamp(frameInfo->frameTime)} * 1000;
}

// A frame of the HB stream is put together from blocks, and stands nowhere in the file as it is handed out: there is
// nothing that an index could tell. The pass ends, for good. Audio alone with long heads bears the same type and shares
// its fate. Kept.
bool CZOOldFile::Abandon(const FrameInfo& frameInfo)
{
    if (frameInfo.streamType != KX_STREAM_TYPE_HB)
        return false;
    StopParse();
    return true;
}

int CZOOldFile::OnFrame(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, void* userData)
{
    if (userData != nullptr)
        return CFileParseBase::OnFrame(frameInfo, frameInfoEx, userData);
    return Abandon(*frameInfo) ? int{KX_SUCCESS} : CFileParseBase::OnFrame(frameInfo, nullptr, nullptr);
}

int CZOOldFile::OnPureAudioFrame(ZOOldPureAudoFrame* frame, void* userData)
{
    if (userData != nullptr)
        return CFileParseBase::OnFrame(frame, nullptr, userData);
    if (Abandon(*frame))
        return KX_SUCCESS;
    KX_INDEX_INFO index{};
    index.streamOffset = SliceStartPos() + frame->nStreamOffset;
    index.frameOffset = SliceStartPos() + frame->nFrameOffset;
    if (const int nResult = IndexFrame(index, frame, nullptr); nResult != KX_SUCCESS)
        return nResult;
    if (IndexCallBack() != nullptr)
        return IndexCallBack()->OnIndex(&index, frame, nullptr);
    // Without a callback the frame counts in the summary, and enters the index a second time. Kept.
    return CFileParseBase::OnFrame(frame, nullptr, nullptr);
}

} // namespace Marvane::FrameSift
