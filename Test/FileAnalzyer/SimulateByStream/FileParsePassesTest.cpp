// The full pass and the slice pass, and what they leave behind.
#include "Support/ParsedRecording.h"
#include "Support/RandomStream.h"

namespace Marvane::FrameSift {

namespace {

// 25 frames a second, a key frame each second, audio between them.
Bytes TwoSeconds()
{
    Bytes bytes;
    for (uint32_t nSeq = 0; nSeq < 50; ++nSeq) {
        const bool bKey = nSeq % 25 == 0;
        bytes = bytes + ZoavFrame()
                            .Type(bKey ? ZOAV_FRAME::I : ZOAV_FRAME::P)
                            .Seq(nSeq + 1)
                            .ExtHead({0x81, 25, 50, 25})
                            .Payload(Bytes(bKey ? 5000 : 700, 0x55));
        if (nSeq % 10 == 0)
            bytes = bytes + ZoavFrame().Type(ZOAV_FRAME::Audio).Seq(nSeq / 10).Payload(Bytes(320, 0x66));
    }
    return bytes;
}

// Reads of the file, of which the one with the given number fails for good.
class CFailingFile : public IFileManipulate
{
public:
    CFailingFile(const RecordingFile& file, int nFailing) : m_file(file.Open()), m_nUntilFailure(nFailing) {}
    bool OpenFile(const char*, OPEN_MODE) override { return false; }
    bool CloseFile() override { return m_file->CloseFile(); }
    bool IsOpen() override { return true; }
    int64_t WriteFile(const char*, int64_t) override { return 0; }
    int64_t ReadFile(void* lpBuffer, int64_t nLen) override
    {
        return m_nUntilFailure-- > 0 ? m_file->ReadFile(lpBuffer, nLen) : 0;
    }
    int64_t GetSize() override { return m_file->GetSize(); }
    bool SetPos(int64_t pos, MOVE_MODE mode) override { return m_file->SetPos(pos, mode); }
    const char* GetFileName() override { return m_file->GetFileName(); }

private:
    IFileManipPtr m_file;
    int m_nUntilFailure;
};

} // namespace

TEST(FileParsePass, TheSummaryCountsGoodFramesAndTheirIntervals)
{
    const Bytes damaged = ZoavFrame().Seq(60).Payload(Bytes(9000, 1)).WrongTailMagic();
    ParsedRecording recording(TwoSeconds() + damaged + Filler(64));
    ASSERT_EQ(recording.collector.infos.size(), 1u);
    const KX_FILE_INFO info = recording.collector.infos.front();
    EXPECT_EQ((Fields{info.framenum, info.videonum, info.audionum, info.keyframenum, info.duration}),
              (Fields{55, 50, 5, 2, 2}));
    EXPECT_EQ(info.filesize64, static_cast<int64_t>(info.filesize));
    EXPECT_EQ((Fields{info.fileStartTime, info.fileEndTime, info.bPureAudio, info.createtime}), (Fields{0, 0, 0, 0}));
    int nProcess = 0;
    EXPECT_EQ(recording.parser.GetProcess(&nProcess), KX_SUCCESS);
    EXPECT_EQ(nProcess, 100);
    EXPECT_EQ(recording.parser.GetProcess(nullptr), KX_ERROR_PARAMETER);
}

TEST(FileParsePass, ReadingRightBehindItStartsFromTheTail)
{
    const Bytes first = ZoavFrame().Seq(1).Payload(Bytes(400, 1));
    const Bytes unfinished = Part(ZoavFrame().Seq(2).Payload(Bytes(400, 2)), 0, 300);
    ParsedRecording recording(first + unfinished);
    // The unfinished frame waits for its end, and gets the file's first bytes for it.
    const auto frames = ReadToEnd(recording.parser);
    const auto again = std::find_if(frames.begin(), frames.end(), [](const PLACED_FRAME& placed) {
        return placed.frame.frameSeq == 1 && placed.frame.errorFlags == KX_ERROR_FLAGS_NOERROR;
    });
    ASSERT_NE(again, frames.end());
    EXPECT_EQ(again->nOffset, static_cast<int64_t>(first.size() + unfinished.size()));
    EXPECT_EQ(recording.parser.SeekByTime(0), KX_SUCCESS); // offsets then count from -1
    EXPECT_EQ(recording.parser.SeekByTime(1000), -1);
    EXPECT_EQ(recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    ExpectSame(ReadToEnd(recording.parser), recording.collector.frames);
}

TEST(FileParsePass, NothingCanBeReadBeforeOrDuringIt)
{
    const RecordingFile file(TwoSeconds());
    CZOAVFile parser;
    PLACED_FRAME placed;
    const auto tryAll = [&] {
        return Fields{ReadPlaced(parser, placed), parser.SeekByTime(0), parser.SeekByFileOffset(0, 1)};
    };
    EXPECT_EQ(tryAll(), (Fields{-1, -1, -1}));
    CIndexCollector collector;
    collector.onFrame = [&] { EXPECT_EQ(tryAll(), (Fields{-1, -1, -1})); };
    collector.onInfo = [&] { EXPECT_EQ(parser.SeekByFileOffset(0, 1), KX_SUCCESS); };
    IFileManipPtr passFile = file.Open();
    EXPECT_EQ(parser.ParseFile(passFile, &collector), KX_SUCCESS);
    EXPECT_EQ(ReadPlaced(parser, placed), KX_SUCCESS);
    parser.StopParse();
    parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET);
    EXPECT_EQ(ReadPlaced(parser, placed), KX_ERROR_PARAMETER);
}

TEST(FileParsePass, ASliceTellsItsFramesAtTheirPlaceInTheFile)
{
    const Bytes bytes = TwoSeconds();
    const auto whole = ParsedRecording(bytes).collector.frames;
    const RecordingFile file(bytes);
    IFileManipPtr passFile = file.Open();
    CZOAVFile parser;
    CIndexCollector collector;
    const int64_t nFrom = whole[10].nOffset;
    EXPECT_EQ(parser.ParseSlice(passFile, &collector, nFrom, whole[20].nOffset - nFrom), KX_SUCCESS);
    ExpectSame(collector.frames, {whole.begin() + 10, whole.begin() + 20});
    EXPECT_TRUE(collector.infos.empty());
    EXPECT_EQ(parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET), -1);
}

TEST(FileParsePass, AReadThatFailsEndsItAsTheFilesEndDoes)
{
    const RecordingFile file(TwoSeconds());
    for (int nFailing = 0; nFailing < 3; ++nFailing) {
        IFileManipPtr failing(new CFailingFile(file, nFailing));
        CZOAVFile parser;
        CIndexCollector collector;
        EXPECT_EQ(parser.ParseFile(failing, &collector), KX_SUCCESS);
        EXPECT_EQ(collector.infos.size(), 1u);
        EXPECT_EQ(collector.frames.empty(), nFailing == 0);
    }
    IFileManipPtr none;
    CZOAVFile parser;
    EXPECT_EQ(parser.ParseFile(none, nullptr), KX_ERROR_PARAMETER);
    EXPECT_EQ(parser.ParseSlice(none, nullptr, 0, 1), KX_ERROR_PARAMETER);
    EXPECT_EQ(parser.BaseParseFile(none, nullptr, true), KX_ERROR_PARAMETER);
}

TEST(FileParsePass, WithoutAParserThereIsACodeAndTheTimesAreThoseOfTheStream)
{
    const RecordingFile file(Filler(100));
    IFileManipPtr passFile = file.Open();
    CFileParseBase parser(nullptr); // as without memory
    EXPECT_EQ(parser.ParseFile(passFile, nullptr), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    EXPECT_EQ(parser.BaseParseFile(passFile, nullptr, true), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    // More than a second in front of the file's start, here 0, a time stamp of 33 bits has wrapped.
    for (const auto& [nTimeStamp, nExpected] : Rows<int32_t, int64_t>{
             {5000, 5000}, {-999, -999}, {-1000, 95443717 - 1000}, {INT32_MIN, 95443717 - 2147483648}}) {
        FrameInfo frame{};
        frame.timeStamp = nTimeStamp;
        EXPECT_EQ(parser.RecalcTimeStamp(&frame), nExpected);
    }
    KX_FILE_INFO info{};
    info.fileStartTime = 0xFFFFF000;
    info.fileEndTime = 0x100001000;
    parser.CalcDuration(info);
    EXPECT_EQ(info.duration, 8u); // in 32 bits
}

TEST(FileRead, AFileThatShrinksOrGrowsGivesACode)
{
    ParsedRecording recording(TwoSeconds());
    const auto told = recording.collector.frames;
    recording.file.Truncate(static_cast<size_t>(told[5].nOffset) + 100);
    recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET);
    ExpectSame(ReadToEnd(recording.parser), {told.begin(), told.begin() + 5});
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    EXPECT_EQ(recording.parser.GetOneIndex(4, &index, &frame, nullptr), KX_SUCCESS);
    EXPECT_EQ(recording.parser.GetOneIndex(5, &index, &frame, nullptr), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    EXPECT_EQ(recording.parser.GetOneIndex(55, &index, &frame, nullptr), KX_ERROR_INVALID_INDEX);
    recording.file.Truncate(0);
    PLACED_FRAME placed;
    EXPECT_EQ(ReadPlaced(recording.parser, placed), KX_ERROR_READ_FILE_END);
    const Bytes grown = TwoSeconds();
    recording.file.Write(grown + grown, 0);
    EXPECT_EQ(recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    EXPECT_EQ(ReadToEnd(recording.parser).size(), 2 * told.size());
}

TEST(FileRead, LargeFramesAreCompletedWithReadsOfTheirNeed)
{
    Bytes bytes;
    for (uint32_t nSeq = 1; nSeq <= 4; ++nSeq)
        bytes = bytes + ZoavFrame().Seq(nSeq).Payload(Bytes(nSeq * 1700000, static_cast<uint8_t>(nSeq)));
    ParsedRecording recording(bytes);
    recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET);
    ExpectSame(ReadToEnd(recording.parser), recording.collector.frames);
    EXPECT_EQ(recording.collector.frames.size(), 4u);
}

} // namespace Marvane::FrameSift
