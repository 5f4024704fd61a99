#include <cstdlib>
#include <sys/stat.h>

#include <fstream>

#include "App/CommandRun.h"
#include "FrameWriter/ExtHeads.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_h264 = 8; // on the wire
constexpr uint8_t sc_mpeg4 = 1;

class Extract : public testing::Test
{
protected:
    std::string In(const std::string& name) const { return m_directory.Path() + "/" + name; }

    void Write(const Bytes& stream)
    {
        std::ofstream(m_recording, std::ios::binary)
            .write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
    }

    // The exit code; outputs land in video, audio and data.
    int Run(const std::string& arguments)
    {
        const CommandResult result = RunFramesift("extract " + arguments + " " + m_recording);
        m_errors = result.errors;
        return result.nExitCode;
    }

    void ExpectTold(const std::string& text) { EXPECT_NE(m_errors.find(text), std::string::npos) << m_errors; }

    const TempDirectory m_directory;
    const std::string m_recording = In("recording");
    const std::string m_video = "--video " + In("video");
    std::string m_errors;
};

} // namespace

TEST_F(Extract, AudioComesBackByteForByte)
{
    for (const auto& [file, codec] : Rows<std::string, std::string>{{"audio/aac_lc_44k1_stereo.aac", "aac"},
                                                                    {"audio/mp2_48k_stereo_192.mp2", "mp2"},
                                                                    {"audio/mp3_16k_mono_vbr.mp3", "mp3"},
                                                                    {"audio/g711u_8k_160.ulaw", "g711u"},
                                                                    {"audio/pcm16_8k_mono_20ms.pcm", "pcm16"}}) {
        ASSERT_EQ(RunFramesift("mux -o " + m_recording + " --audio-codec " + codec + " --audio " + SamplePath(file))
                      .nExitCode,
                  0);
        const std::string stream = ReadText(SamplePath(file));
        EXPECT_EQ(RunFramesift("extract --audio - " + m_recording).output, stream) << file;
        EXPECT_EQ(Run(m_video), 4); // there is none, and no empty file either
        EXPECT_FALSE(std::ifstream(In("video")));
    }
}

TEST_F(Extract, DamagedFramesAreLeftOutAndTold)
{
    const Bytes sound(100, 0x11);
    const Bytes other(100, 0x22);
    // The payload is shorter than the heads claim: it has none.
    const Bytes noPayload = ZoavFrame().Type(ZOAV_FRAME::P).Seq(5).Payload(Bytes(30)).ClaimExtLength(40);
    const Bytes claim(200, 0x7F); // a watermark that claims more than the frame holds
    Write(ZoavFrame().Seq(1).Payload(sound) + ZoavFrame().Seq(2).Payload(other).WrongSum() +
          ZoavFrame().Seq(2).ExtHead(ExtHead88(2, 12345)).Payload(other) +
          ZoavFrame().RawType(0xF1, 6).Seq(3).Payload(claim) + ZoavFrame().Type(ZOAV_FRAME::Data).Payload(sound) +
          noPayload + ZoavFrame().Type(ZOAV_FRAME::P).Seq(6).Payload(sound).Build());
    EXPECT_EQ(Run(m_video + " --data " + In("data")), 0);
    EXPECT_EQ(ReadText(In("video")), std::string(200, 0x11));
    ExpectTold("video: 3 video frames, 200 bytes");
    ExpectTold("damaged, and left out: 1 length, 1 payload-sum, 1 lost-head, 1 watermark");
    EXPECT_EQ(ReadText(In("data")), std::string(100, 0x11));
}

TEST_F(Extract, EncipheredFramesNeedTheKey)
{
    const std::string key = " --key 000102030405060708090a0b0c0d0e0f ";
    const std::string file = SamplePath("h265/vga30_nob_aud.h265");
    for (const std::string head : {"89", "95"}) {
        ASSERT_EQ(RunFramesift("mux -o " + m_recording + key + "--cipher-head " + head +
                               " --video-codec h265 --video " + file)
                      .nExitCode,
                  0);
        EXPECT_EQ(Run(m_video), 4);
        ExpectTold("enciphered, and left out: 30 aes (--key deciphers aes)");
        EXPECT_EQ(RunFramesift("extract --video -" + key + m_recording).output, ReadText(file));
    }
}

TEST_F(Extract, AChangeOfCodecIsRefusedUnlessTheRangeAvoidsIt)
{
    Bytes stream;
    for (uint32_t nSeq = 1; nSeq <= 6; ++nSeq) {
        const KX_TIME time = {2026, 1, 31, 10, 0, static_cast<int32_t>(nSeq), 0};
        stream = stream + ZoavFrame()
                              .Seq(nSeq)
                              .Time(time)
                              .ExtHead(ExtHead81(nSeq < 4 ? sc_h264 : sc_mpeg4, 25))
                              .Payload(Bytes(50, static_cast<uint8_t>('0' + nSeq)));
    }
    Write(stream);
    EXPECT_EQ(Run(m_video), 4);
    ExpectTold("changes from h264 to mpeg4 at offset " + std::to_string(stream.size() / 2));
    EXPECT_FALSE(std::ifstream(In("video")));
    for (const auto& [times, first, last] : Rows<std::string, char, char>{
             {" --to 2", '1', '3'}, {" --from 3", '4', '6'}, {" --from 2026-01-31T10:00:05 --to 4", '5', '5'}}) {
        EXPECT_EQ(Run(m_video + times), 0) << m_errors;
        const std::string bytes = ReadText(In("video"));
        EXPECT_EQ(bytes.size(), 50U * static_cast<size_t>(last - first + 1));
        EXPECT_EQ(bytes.front(), first);
        EXPECT_EQ(bytes.back(), last);
    }
    for (const std::string& usage :
         std::vector<std::string>{"", "--video - --audio -", "--video x --data ./x", "--video " + m_recording})
        EXPECT_EQ(Run(usage), 2) << usage;
    EXPECT_EQ(ReadText(m_recording).size(), stream.size());
}

TEST_F(Extract, FramesInFrontOfTheFirstKeyFrameAreNoOtherCodec)
{
    const auto frame = [](ZOAV_FRAME eType, uint32_t nSeq) {
        ZoavFrame made;
        made.Type(eType).Seq(nSeq).Payload(Bytes(50, static_cast<uint8_t>('0' + nSeq)));
        return (eType == ZOAV_FRAME::I ? made.ExtHead(ExtHead81(sc_h264, 25)) : made).Build();
    };
    const Bytes unfinished = Part(frame(ZOAV_FRAME::P, 4), 0, 60);
    Write(frame(ZOAV_FRAME::P, 1) + frame(ZOAV_FRAME::I, 2) + frame(ZOAV_FRAME::P, 3) + unfinished);
    EXPECT_EQ(Run(m_video), 0) << m_errors;
    EXPECT_EQ(ReadText(In("video")).size(), 150U);
    ExpectTold("its last 60 bytes");
}

TEST_F(Extract, CtrlCEndsItAndTellsWhatThereIs)
{
    Bytes stream;
    for (uint32_t nSeq = 1; nSeq <= 20; ++nSeq)
        stream = stream + ZoavFrame().Seq(nSeq).Payload(Bytes(200000, 0x11)).Build();
    Write(stream);
    // The command waits for its reader when the signal comes.
    const std::string line =
        "{ timeout --foreground -s INT --preserve-status 2 " FRAMESIFT_COMMAND " extract --video - " + m_recording +
        " 2>" + In("errors") + "; echo $? >" + In("code") + "; } | { sleep 3; cat >" + In("video") + "; }";
    ASSERT_EQ(std::system(line.c_str()), 0);
    EXPECT_EQ(ReadText(In("code")), "130\n");
    EXPECT_NE(ReadText(In("errors")).find("interrupted; standard output is incomplete: it has "), std::string::npos)
        << ReadText(In("errors"));

    // Here it waits for somebody who reads the pipe.
    ASSERT_EQ(mkfifo(In("pipe").c_str(), 0600), 0);
    const std::string wait = "timeout --foreground -s INT --preserve-status 2 " FRAMESIFT_COMMAND " extract --video " +
                             In("pipe") + " " + m_recording + " 2>" + In("errors") + "; echo $? >" + In("code");
    ASSERT_EQ(std::system(wait.c_str()), 0);
    EXPECT_EQ(ReadText(In("code")), "130\n");
}

} // namespace Marvane::FrameSift
