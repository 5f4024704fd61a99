// A recording in a file, and what a file parser makes of it.
#ifndef FRAMESIFT_TEST_SUPPORT_PARSEDRECORDING_H
#define FRAMESIFT_TEST_SUPPORT_PARSEDRECORDING_H

#include <fstream>
#include <functional>

#include "FileAnalzyer/SimulateByStream/ZOAVFile.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"
#include "Tools/FileFactory.h"

namespace Marvane::FrameSift {

class RecordingFile
{
public:
    explicit RecordingFile(const Bytes& bytes, int64_t nOffset = 0) { Write(bytes, nOffset); }

    // What lies between is a hole.
    void Write(const Bytes& bytes, int64_t nOffset)
    {
        std::ofstream file(m_path, std::ios::binary | std::ios::in | std::ios::out);
        if (!file.is_open())
            file.open(m_path, std::ios::binary);
        file.seekp(nOffset);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    void Truncate(size_t nSize) const { std::filesystem::resize_file(m_path, nSize); }
    const std::string& Path() const { return m_path; }
    IFileManipPtr Open() const
    {
        return CFileFactory::createFileManipObj(m_path.c_str(), IFileManipulate::READ_ONLY, 0);
    }

private:
    TempDirectory m_directory;
    std::string m_path = m_directory.Path() + "/recording";
};

// A frame and its place in the file. What a frame inherits from the last key frame that the parser saw, which may be one
// behind it if the file is read a second time, is blanked.
struct PLACED_FRAME
{
    PLACED_FRAME() = default;
    PLACED_FRAME(int64_t nAt, const SIFTED_FRAME& what) : nOffset(nAt), frame(what)
    {
        frame.frameRate = frame.width = frame.height = 0;
        frame.frameEncodeType = 0;
    }

    int64_t nOffset = 0;
    SIFTED_FRAME frame = {};

    bool operator==(const PLACED_FRAME&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const PLACED_FRAME& placed)
{
    return out << placed.nOffset << ": " << placed.frame;
}

// The whole lists would fill pages.
inline void ExpectSame(const std::vector<PLACED_FRAME>& left, const std::vector<PLACED_FRAME>& right)
{
    const auto [l, r] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    if (l != left.end() && r != right.end())
        ADD_FAILURE() << "frame " << l - left.begin() << ": " << *l << " and " << *r;
    else
        EXPECT_EQ(left.size(), right.size());
}

// The codes that the index takes.
inline bool IsIndexed(const SIFTED_FRAME& frame)
{
    const int32_t nError = frame.errorFlags;
    return nError == 0 || nError == KX_ERROR_FLAGS_DATA_VERIFY || nError == KX_ERROR_FLAGS_WATERMARK ||
           nError == KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

inline bool IsKey(const PLACED_FRAME& placed)
{
    return placed.frame.frameType == KX_FRAME_TYPE_VIDEO && IsIFrameSubType(placed.frame.frameSubType);
}

class CIndexCollector : public IIndexCallBack
{
public:
    int OnIndex(KX_INDEX_INFO* index, FrameInfo* frame, ExtZOAVIFrameInfo*) override
    {
        frames.push_back({index->frameOffset, ToSifted(*frame)});
        indices.push_back(*index);
        if (onFrame)
            onFrame();
        return 0;
    }
    int OnFileInfo(KX_FILE_INFO* info) override
    {
        infos.push_back(*info);
        if (onInfo)
            onInfo();
        return 0;
    }

    std::vector<PLACED_FRAME> frames;
    std::vector<KX_INDEX_INFO> indices;
    std::vector<KX_FILE_INFO> infos;
    std::function<void()> onFrame, onInfo;
};

// One more frame, with copies of its bytes. The code is that of the read.
inline int ReadPlaced(CFileParseBase& parser, PLACED_FRAME& placed)
{
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    const int nResult = parser.ReadOneFrame(&placed.nOffset, &frame, &ext);
    if (nResult == KX_SUCCESS)
        placed = {placed.nOffset, ToSifted(frame)};
    return nResult;
}

inline std::vector<PLACED_FRAME> ReadToEnd(CFileParseBase& parser)
{
    std::vector<PLACED_FRAME> frames;
    PLACED_FRAME placed;
    int nResult = KX_SUCCESS;
    while ((nResult = ReadPlaced(parser, placed)) == KX_SUCCESS)
        frames.push_back(placed);
    EXPECT_EQ(nResult, KX_ERROR_READ_FILE_END);
    return frames;
}

// A recording behind its full pass.
template <class Parser>
class ParsedRecordingOf
{
public:
    explicit ParsedRecordingOf(const Bytes& bytes) : file(bytes)
    {
        IFileManipPtr passFile = file.Open();
        nResult = parser.ParseFile(passFile, &collector);
    }

    RecordingFile file;
    Parser parser;
    CIndexCollector collector;
    int nResult = -1;
};

using ParsedRecording = ParsedRecordingOf<CZOAVFile>;

} // namespace Marvane::FrameSift

#endif
