// Recordings of the older formats and of raw MPEG-4: what their passes tell, and what can be read of them.
#include "FileAnalzyer/SimulateByStream/RawMPEG4File.h"
#include "FileAnalzyer/SimulateByStream/ZOOldFile.h"
#include "FrameWriter/LegacyFrameWriter.h"
#include "ParserMethod/ParserCreator.h"
#include "Support/ParsedRecording.h"
#include "Support/RandomLegacy.h"
#include "Support/RandomStream.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

struct Placed
{
    int64_t nOffset;
    Bytes bytes;
    bool operator==(const Placed&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Placed& placed)
{
    return out << placed.nOffset << " of " << placed.bytes.size() << " bytes";
}

// Where the frames stand; the end mark behind them is none.
std::vector<Placed> Places(const std::vector<Bytes>& frames)
{
    std::vector<Placed> places;
    int64_t nOffset = 0;
    for (size_t n = 0; n + 1 < frames.size(); ++n) {
        places.push_back({nOffset, frames[n]});
        nOffset += static_cast<int64_t>(frames[n].size());
    }
    return places;
}

// Numbers are not looked at: a parser that reads a file a second time counts on.
std::vector<Placed> Places(const std::vector<PLACED_FRAME>& frames)
{
    std::vector<Placed> places;
    for (const PLACED_FRAME& placed : frames)
        places.push_back({placed.nOffset, placed.frame.frame});
    return places;
}

template <class File>
void ExpectReadable(LEGACY_FORMAT eFormat)
{
    for (uint32_t nSeed = 1; nSeed <= 3; ++nSeed) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(eFormat) << " seed " << nSeed);
        const auto frames = RandomLegacyFrames(eFormat, nSeed, 50, nSeed == 3 ? 20000 : 2000);
        const auto places = Places(frames);
        ParsedRecordingOf<File> recording(Joined(frames));
        EXPECT_EQ(Places(recording.collector.frames), places);
        for (const size_t nIndex : {size_t{0}, size_t{17}, places.size() - 1}) {
            KX_INDEX_INFO index{};
            FrameInfo frame{};
            ExtZOAVIFrameInfo ext{};
            ASSERT_EQ(recording.parser.GetOneIndex(static_cast<int>(nIndex), &index, &frame, &ext), KX_SUCCESS);
            EXPECT_EQ(CopyOf(frame.framePointer, frame.frameLen), frames[nIndex]);
            ASSERT_EQ(recording.parser.SeekByFileOffset(index.frameOffset, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
            const std::vector<Placed> behind(places.begin() + static_cast<ptrdiff_t>(nIndex), places.end());
            EXPECT_EQ(Places(ReadToEnd(recording.parser)), behind);
        }
    }
}

int32_t TypeOf(const Bytes& bytes)
{
    const RecordingFile file(bytes);
    void* handle = KX_CreateFileHandle(0, file.Path().c_str());
    int32_t nType = -1;
    KX_GetFileStreamType(handle, &nType);
    KX_Destroy(handle);
    return nType;
}

} // namespace

TEST(LegacyFiles, IndexReadsAndSeeksAgree)
{
    for (const LEGACY_FORMAT eFormat :
         {LEGACY_FORMAT::New, LEGACY_FORMAT::NewEx, LEGACY_FORMAT::NewEx1, LEGACY_FORMAT::Zopt, LEGACY_FORMAT::Audio}) {
        ExpectReadable<CZOOldFile>(eFormat);
        EXPECT_EQ(TypeOf(Joined(RandomLegacyFrames(eFormat, 1, 50, 2000))), KX_STREAM_TYPE_OLD);
    }
    ExpectReadable<CRawMPEG4File>(LEGACY_FORMAT::RawMpeg4);
    EXPECT_EQ(TypeOf(ReadSample("mpeg4/cif25_ip.m4v")), KX_STREAM_TYPE_UNKNOWN);
}

TEST(LegacyFiles, TheSummaryOfANewRecording)
{
    LEGACY_PICTURE picture;
    const Bytes vop = {0, 0, 1, 0xB6, 0x10, 9, 9, 9};
    Bytes bytes;
    for (picture.time.nSecond = 5; picture.time.nSecond < 20; picture.time.nSecond += 1)
        bytes = bytes + NewKeyFrame(NEW_HEADS::Ex1, picture, vop) + NewOtherFrame(NEW_HEADS::Ex1, false, vop);
    ParsedRecordingOf<CZOOldFile> recording(bytes + OldAudioFrame(14, 2, Counting(20)) + LegacyEndMark());
    const KX_FILE_INFO& info = recording.collector.infos.at(0);
    EXPECT_EQ((Fields{info.framenum, info.videonum, info.keyframenum, info.audionum, info.maxframesize, info.duration}),
              (Fields{31, 30, 15, 1, 28, 1}));
    // The fast pass finds the clock of the first and the last picture.
    CZOOldFile fast;
    CIndexCollector collector;
    IFileManipPtr file = recording.file.Open();
    EXPECT_EQ(fast.BaseParseFile(file, &collector, false), KX_SUCCESS);
    EXPECT_EQ(collector.infos.at(0).fileEndTime - collector.infos.at(0).fileStartTime, 14000);
    EXPECT_EQ(collector.infos.at(0).duration, 14U);
}

TEST(LegacyFiles, AudioAloneIsIndexedByItsOwnPositionsAndNotCounted)
{
    const auto frames = RandomLegacyFrames(LEGACY_FORMAT::Audio, 5, 30, 100);
    ParsedRecordingOf<CZOOldFile> recording(Joined(frames));
    EXPECT_EQ(recording.collector.infos.at(0).framenum, 0U);
    EXPECT_EQ(recording.parser.GetInnerType(), KX_STREAM_TYPE_UNKNOWN);
    // Without a callback each frame enters the index twice, and counts.
    CZOOldFile silent;
    IFileManipPtr file = recording.file.Open();
    EXPECT_EQ(silent.ParseFile(file, nullptr), KX_SUCCESS);
    int nCount = 0;
    EXPECT_EQ(silent.GetIndexCount(-1, &nCount), KX_SUCCESS);
    EXPECT_EQ(nCount, 60);
}

TEST(LegacyFiles, HBAndAudioWithLongHeadsAreAbandonedAtTheFirstFrame)
{
    for (const LEGACY_FORMAT eFormat : {LEGACY_FORMAT::Hb, LEGACY_FORMAT::AudioEx}) {
        const Bytes bytes = Joined(RandomLegacyFrames(eFormat, 1, 40, 2000));
        EXPECT_EQ(TypeOf(bytes), KX_STREAM_TYPE_OLD);
        ParsedRecordingOf<CZOOldFile> recording(bytes);
        EXPECT_TRUE(recording.collector.frames.empty());
        EXPECT_EQ(recording.collector.infos.size(), 1U);
        PLACED_FRAME placed;
        EXPECT_EQ(ReadPlaced(recording.parser, placed), KX_ERROR_PARAMETER);
    }
}

// A recording of raw MPEG-4 is one by the word of the caller alone, and its last picture ends with the file.
TEST(LegacyFiles, RawMPEG4IsReadToItsLastPicture)
{
    const json sample = SampleOf("mpeg4/cif25_ip.m4v");
    const Bytes bytes = ReadSample(sample["file"]);
    ParsedRecordingOf<CRawMPEG4File> recording(bytes);
    ASSERT_EQ(recording.collector.frames.size(), sample["units"].size());
    for (size_t n = 0; n < recording.collector.frames.size(); ++n) {
        const PLACED_FRAME& placed = recording.collector.frames[n];
        EXPECT_EQ(placed.frame.frame, UnitOf(bytes, sample["units"][n]));
        EXPECT_EQ(placed.nOffset, sample["units"][n]["offset"]);
    }
    ASSERT_EQ(recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    EXPECT_EQ(Places(ReadToEnd(recording.parser)), Places(recording.collector.frames));
}

} // namespace Marvane::FrameSift
