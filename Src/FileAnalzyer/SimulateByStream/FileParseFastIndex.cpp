// The index stage of the fast pass. It has a parser, a window and a file of its own, so that the caller may read and seek
// meanwhile.
#include <algorithm>
#include <array>

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "Tools/KXSystem.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_firstCapacity = 65536;
constexpr uint32_t sc_usualBlock = 4096; // small: a stage holds no more than a block and the window

// Streams whose parsers must have seen the start before they can be entered in the middle.
bool MustLearn(int32_t nStreamType)
{
    constexpr std::array<int32_t, 5> types = {KX_STREAM_TYPE_TS, KX_STREAM_TYPE_PS, KX_STREAM_TYPE_HIK_PS,
                                              KX_STREAM_TYPE_ZOPS, KX_STREAM_TYPE_FLV};
    return std::find(types.begin(), types.end(), nStreamType) != types.end();
}

void* UserData(CALLBACK_USE eUse)
{
    return reinterpret_cast<void*>(eUse);
}

} // namespace

int CFileParseBase::BaseParseIndex(IFileManipulate& file)
{
    CReadBlock block;
    m_pFrameSiftIndex = CreateStreamObj();
    if (!block.Make(sc_firstCapacity) || m_pFrameSiftIndex == nullptr || m_pFrameSiftIndex->Init() != 0)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    int nResult = MustLearn(m_nStreamType) ? LearnStream(file, block) : int{KX_SUCCESS};
    if (nResult == KX_SUCCESS)
        nResult = IndexFrames(file, block);
    m_logicDataIndex.ClearBuffer(); // it led into the block
    if (nResult != KX_SUCCESS || IsStopped())
        return nResult;
    m_nProcess.store(100, std::memory_order_relaxed);
    if (m_pIndexCallBack != nullptr) {
        // Without a frame the duration from the begin and end times stays in force.
        if (m_FileInfo.duration != 0) {
            m_FileInfo.duration /= 1000;
            m_nDuration.store(m_FileInfo.duration, std::memory_order_relaxed);
        }
        TellFileInfo();
    }
    m_pFrameSiftIndex.reset();
    return KX_SUCCESS;
}

int CFileParseBase::LearnStream(IFileManipulate& file, CReadBlock& block)
{
    file.SetPos(0, IFileManipulate::KX_FILE_BEGIN);
    m_pFrameSiftIndex->SetCallBackUserData(UserData(CALLBACK_USE_BASE_PRE_INDEX_GOT_FRAME));
    uint32_t nBlock = sc_usualBlock;
    while (!IsStopped()) {
        const int64_t nRead = file.ReadFile(block.Bytes(), nBlock);
        if (nRead <= 0)
            break;
        Feed(m_logicDataIndex, *m_pFrameSiftIndex, block, nRead);
        if (m_bPreIndexGotFrame) {
            m_logicDataIndex.ClearBuffer();
            m_pFrameSiftIndex->SeekClear();
            m_pFrameSiftIndex->SetVideoNumber(0);
            m_pFrameSiftIndex->ClearKeyFrameInfo();
            break;
        }
        nBlock = block.SizeFor(m_pFrameSiftIndex->GetNeedReadDataLen(), sc_usualBlock, m_nFileSize);
        if (nBlock == 0)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    return KX_SUCCESS;
}

int CFileParseBase::IndexFrames(IFileManipulate& file, CReadBlock& block)
{
    m_pFrameSiftIndex->SetCallBackUserData(UserData(CALLBACK_USE_BASE_INDEX));
    file.SetPos(m_BeginPos, IFileManipulate::KX_FILE_BEGIN);
    uint32_t nBlock = sc_usualBlock;
    while (!IsStopped()) {
        const int64_t nRead = file.ReadFile(block.Bytes(), nBlock);
        if (nRead <= 0) {
            m_pFrameSiftIndex->FlushBuffer(&m_logicDataIndex, this);
            break;
        }
        Feed(m_logicDataIndex, *m_pFrameSiftIndex, block, nRead);
        CountProgress(nRead, m_nFileSize);
        CKXSystem::KXSleep(0); // the processor is the reader's first
        nBlock = block.SizeFor(m_pFrameSiftIndex->GetNeedReadDataLen(), sc_usualBlock, m_nFileSize);
        if (nBlock == 0)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
