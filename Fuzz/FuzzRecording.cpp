// Any bytes as a recording. Properties: no crash, no hang, no leak; index, reads in file order and reads by index tell of
// the same frames; every read and seek ends with a code that is told.
#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "FileAnalzyer/SimulateByStream/ZOAVFile.h"
#include "Require.h"
#include "Tools/FileFactory.h"

namespace Marvane::FrameSift {

namespace {

struct PLACE
{
    int64_t nOffset;
    int32_t nFrameSeq;
    int32_t nFrameLen;
    bool operator==(const PLACE&) const = default;
};

class CPlaces : public IIndexCallBack
{
public:
    int OnIndex(KX_INDEX_INFO* index, FrameInfo* frame, ExtZOAVIFrameInfo*) override
    {
        // The fast pass reports damaged frames too, of which no byte may be left.
        Require(index->frameOffset >= 0 &&
                (frame->framePointer != nullptr || frame->errorFlags != KX_ERROR_FLAGS_NOERROR));
        places.push_back({index->frameOffset, frame->frameSeq, frame->frameLen});
        return 0;
    }
    int OnFileInfo(KX_FILE_INFO*) override { return 0; }

    std::vector<PLACE> places;
};

// The descriptor of a file without a name, and its path.
class CMemoryFile
{
public:
    explicit CMemoryFile(std::span<const uint8_t> bytes) : m_nFile(memfd_create("recording", MFD_CLOEXEC))
    {
        Require(m_nFile >= 0 && write(m_nFile, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
        m_path = "/proc/self/fd/" + std::to_string(m_nFile);
    }
    ~CMemoryFile() { close(m_nFile); }
    CMemoryFile(const CMemoryFile&) = delete;
    CMemoryFile& operator=(const CMemoryFile&) = delete;

    IFileManipPtr Open() const
    {
        return CFileFactory::createFileManipObj(m_path.c_str(), IFileManipulate::READ_ONLY, 0);
    }

private:
    int m_nFile;
    std::string m_path;
};

bool IsIndexed(int32_t nErrorFlags)
{
    return nErrorFlags == KX_ERROR_FLAGS_NOERROR || nErrorFlags == KX_ERROR_FLAGS_DATA_VERIFY ||
           nErrorFlags == KX_ERROR_FLAGS_WATERMARK || nErrorFlags == KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

std::vector<PLACE> ReadPlaces(CFileParseBase& parser)
{
    std::vector<PLACE> places;
    for (;;) {
        int64_t nOffset = -1;
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        const int nResult = parser.ReadOneFrame(&nOffset, &frame, &ext);
        if (nResult != KX_SUCCESS) {
            Require(nResult == KX_ERROR_READ_FILE_END);
            return places;
        }
        if (IsIndexed(frame.errorFlags))
            places.push_back({nOffset, frame.frameSeq, frame.frameLen});
    }
}

void CheckFullPass(const CMemoryFile& memory, int64_t nSeek, const std::vector<uint8_t>& key)
{
    CZOAVFile parser;
    std::vector<uint8_t> own = key;
    parser.SetExtInfo(KX_ENCRYPT_AES, own.data(), static_cast<int>(own.size()));
    CPlaces index;
    IFileManipPtr file = memory.Open();
    parser.ParseFile(file, &index);
    parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET);
    Require(ReadPlaces(parser) == index.places);
    for (size_t n = 0; n < index.places.size(); ++n) {
        KX_INDEX_INFO info{};
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        Require(parser.GetOneIndex(static_cast<int>(n), &info, &frame, &ext) == KX_SUCCESS);
        Require(PLACE{info.frameOffset, frame.frameSeq, frame.frameLen} == index.places[n]);
    }
    parser.SeekByFileOffset(nSeek, KX_SEEK_I_FRAME);
    ReadPlaces(parser);
}

void CheckFastPass(const CMemoryFile& memory, int64_t nSeek)
{
    CZOAVFile parser;
    CPlaces index;
    IFileManipPtr file = memory.Open();
    if (parser.BaseParseFile(file, &index, true) != KX_SUCCESS)
        return;
    parser.SeekByTime(static_cast<uint32_t>(nSeek) * 997);
    ReadPlaces(parser);
}

} // namespace

} // namespace Marvane::FrameSift

// Bytes 0 and 1 choose where to seek; the recording follows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize < 2)
        return 0;
    const CMemoryFile memory({pData + 2, nSize - 2});
    const int64_t nSeek = pData[0] << 8 | pData[1];
    CheckFullPass(memory, nSeek, std::vector<uint8_t>(16, pData[0]));
    CheckFastPass(memory, nSeek);
    return 0;
}
