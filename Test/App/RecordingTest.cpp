#include <filesystem>
#include <fstream>

#include "Frames/ProgressBar.h"
#include "Io/AppError.h"
#include "Recordings/Recording.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_frames = 3000; // several blocks of the pass

class RecordingOnDisk : public testing::Test
{
protected:
    void SetUp() override
    {
        std::ofstream file(m_path, std::ios::binary);
        for (uint32_t n = 0; n < sc_frames; ++n) {
            const auto nFill = static_cast<uint8_t>(n);
            const Bytes frame = ZoavFrame()
                                    .Type(n % 10 == 0 ? ZOAV_FRAME::I : ZOAV_FRAME::P)
                                    .Seq(n + 1)
                                    .Payload(Bytes(100 + n % 7, nFill))
                                    .Build();
            m_offsets.push_back(m_nSize);
            m_nSize += static_cast<int64_t>(frame.size());
            file.write(reinterpret_cast<const char*>(frame.data()), static_cast<std::streamsize>(frame.size()));
        }
    }

    void ExpectFrame(const LISTED_FRAME& listed, size_t nFrame) const
    {
        const FrameInfo& frame = listed.parsed;
        ASSERT_EQ(int32_t{frame.frameSeq}, static_cast<int32_t>(nFrame + 1));
        ASSERT_EQ(int32_t{frame.errorFlags}, KX_ERROR_FLAGS_NOERROR);
        ASSERT_EQ(listed.nFrameOffset, m_offsets[nFrame]);
        ASSERT_EQ(listed.nPayloadOffset, m_offsets[nFrame] + 24);
        ASSERT_EQ(int32_t{frame.streamLen}, static_cast<int32_t>(100 + nFrame % 7));
        ASSERT_EQ(frame.streamPointer[0], static_cast<uint8_t>(nFrame));
        ASSERT_EQ(frame.streamPointer[frame.streamLen - 1], static_cast<uint8_t>(nFrame));
    }

    // The code of the failure; Done if there is none.
    EXIT_CODE IndexWith(const CRecording::TakeFrame& take)
    {
        CRecording recording(m_path, {});
        try {
            recording.Index(take, m_progress);
        } catch (const CAppError& error) {
            return error.Code();
        }
        return EXIT_CODE::Done;
    }

    const TempDirectory m_directory;
    const std::string m_path = m_directory.Path() + "/recording";
    std::vector<int64_t> m_offsets;
    int64_t m_nSize = 0;
    CProgressBar m_progress{0, false};
};

} // namespace

TEST_F(RecordingOnDisk, IsIndexedThenReadAndSought)
{
    CRecording recording(m_path, {});
    size_t nIndexed = 0;
    const KX_FILE_INFO info = recording.Index(
        [&](const LISTED_FRAME& listed, int64_t nIndex) {
            ASSERT_EQ(nIndex, static_cast<int64_t>(nIndexed));
            ExpectFrame(listed, nIndexed++);
        },
        m_progress);
    EXPECT_EQ(nIndexed, sc_frames);
    EXPECT_EQ(uint32_t{info.keyframenum}, sc_frames / 10);
    EXPECT_EQ(recording.Size(), static_cast<uint64_t>(m_nSize));
    EXPECT_EQ(recording.StreamType(), KX_STREAM_TYPE_ZOSTD);

    LISTED_FRAME listed;
    for (size_t n = 0; n < sc_frames; ++n) {
        ASSERT_TRUE(recording.Read(listed)) << n;
        ExpectFrame(listed, n);
    }
    EXPECT_FALSE(recording.Read(listed));
    for (const auto& [nOffset, bPrecise, nFrame] : Rows<int64_t, bool, size_t>{
             {m_offsets[25], true, 25}, {m_offsets[25], false, 20}, {m_offsets[2017] + 5, false, 2010}}) {
        recording.Seek(nOffset, bPrecise);
        ASSERT_TRUE(recording.Read(listed));
        ExpectFrame(listed, nFrame);
    }
    EXPECT_THROW(recording.Seek(m_nSize + 1, true), CAppError);
}

TEST_F(RecordingOnDisk, WhatTheTakerThrowsEndsThePass)
{
    int nTaken = 0;
    const auto takeSome = [&nTaken](const LISTED_FRAME&, int64_t) {
        if (++nTaken == 100)
            throw CAppError(EXIT_CODE::Usage, "enough");
    };
    EXPECT_EQ(IndexWith(takeSome), EXIT_CODE::Usage);
    EXPECT_EQ(nTaken, 100);
    nTaken = -static_cast<int>(sc_frames) + 100; // at the very last frame
    EXPECT_EQ(IndexWith(takeSome), EXIT_CODE::Usage);
}

TEST_F(RecordingOnDisk, AFileThatShrinksHasNoCleanEnd)
{
    const auto shrink = [this](const LISTED_FRAME&, int64_t nIndex) {
        if (nIndex == 10)
            std::filesystem::resize_file(m_path, static_cast<uintmax_t>(m_nSize / 2));
    };
    EXPECT_EQ(IndexWith(shrink), EXIT_CODE::Io);
    EXPECT_EQ(IndexWith([](const LISTED_FRAME&, int64_t) {}), EXIT_CODE::Done); // a cut end alone is none
    const auto grow = [this](const LISTED_FRAME& listed, int64_t nIndex) {
        if (nIndex == 10)
            std::ofstream(m_path, std::ios::binary | std::ios::app)
                .write(reinterpret_cast<const char*>(listed.parsed.framePointer), listed.parsed.frameLen);
    };
    EXPECT_EQ(IndexWith(grow), EXIT_CODE::Done); // a recorder is still writing
}

TEST(ProgressBarText, TellsRateAndTimeLeft)
{
    constexpr uint64_t sc_mebibyte = uint64_t{1} << 20;
    const std::string bar = "[" + std::string(9, '#') + std::string(27, ' ') + "]  25 %";
    for (const auto& [nDone, dSeconds, text] : Rows<uint64_t, double, std::string>{
             {0, 1.0, "[" + std::string(36, ' ') + "]   0 %"},
             {250, 10.0, bar + "  25.0 MiB/s  0:30 left"},
             {250, 600.0, bar + "  0.4 MiB/s  30:00 left"},
             {250, 7200.0, bar + "  0.0 MiB/s  6:00:00 left"},
             {250, 1e9, bar + "  0.0 MiB/s"},
             {1001, 10.0, "[" + std::string(36, '#') + "] 100 %  100.0 MiB/s  0:00 left"}})
        EXPECT_EQ(ProgressText(nDone * sc_mebibyte, 1000 * sc_mebibyte, dSeconds), text);
}

} // namespace Marvane::FrameSift
