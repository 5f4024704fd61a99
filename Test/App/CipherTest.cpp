#include "App/CommandRun.h"
#include "Frames/FrameState.h"
#include "Support/Samples.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

struct READ_FRAME
{
    int64_t nPayloadOffset;
    int32_t frameType, errorFlags;
    CIPHER_STATE eState;
    Bytes payload;
};

std::vector<READ_FRAME> ReadFrames(const std::string& stream, const Bytes& key, size_t nChunk)
{
    CFrameSource source;
    if (!key.empty()) {
        EXPECT_EQ(source.SetKey(key), KX_SUCCESS);
    }
    std::vector<READ_FRAME> frames;
    InChunks(Bytes(stream.begin(), stream.end()), FixedChunks(nChunk), [&](Bytes& chunk) { // deciphering writes to it
        source.Feed(chunk);
        for (LISTED_FRAME listed; source.Next(listed);)
            frames.push_back({listed.nPayloadOffset, listed.frame.frameType, listed.frame.errorFlags,
                              CipherStateOf(listed.parsed),
                              CopyOf(listed.frame.streamPointer, listed.frame.streamLen)});
    });
    return frames;
}

// The frames are those of the plain recording, each with nMoreHeads bytes of heads more.
void ExpectLike(const std::vector<READ_FRAME>& frames, const std::vector<READ_FRAME>& plain, size_t nMoreHeads,
                CIPHER_STATE eState, bool bSamePayload)
{
    ASSERT_EQ(frames.size(), plain.size());
    for (size_t n = 0; n < frames.size(); ++n) {
        EXPECT_EQ(frames[n].frameType, plain[n].frameType);
        EXPECT_EQ(frames[n].nPayloadOffset, plain[n].nPayloadOffset + static_cast<int64_t>((n + 1) * nMoreHeads));
        EXPECT_EQ(frames[n].errorFlags, KX_ERROR_FLAGS_NOERROR);
        EXPECT_EQ(frames[n].eState, eState);
        EXPECT_EQ(frames[n].payload.size(), plain[n].payload.size());
        EXPECT_EQ(frames[n].payload == plain[n].payload, bSamePayload) << n;
    }
}

} // namespace

TEST(Cipher, OnlyTheKeyGivesThePayloadsBack)
{
    const TempDirectory directory;
    const std::string recording = directory.Path() + "/recording";
    const std::string mux = "mux -o " + recording + " --video-codec h264 --video " +
                            SamplePath("h264/vga_longgop.h264") + " --audio-codec aac --audio " +
                            SamplePath("audio/aac_lc_16k_mono.aac");
    ASSERT_EQ(RunFramesift(mux).nExitCode, 0);
    const auto plain = ReadFrames(ReadText(recording), {}, SIZE_MAX);
    ASSERT_GT(plain.size(), 20U);
    for (const size_t nKeySize : {16U, 24U, 32U}) {
        for (const std::string head : {"", " --cipher-head 89", " --cipher-head 95"}) {
            SCOPED_TRACE(std::to_string(nKeySize) + head);
            std::string hex;
            for (size_t n = 0; n < nKeySize; ++n)
                hex += "a5";
            ASSERT_EQ(RunFramesift(mux + " --checksum crc32 --key " + hex + head).nExitCode, 0);
            const std::string stream = ReadText(recording);
            const size_t nMoreHeads = 8U + (head.ends_with("95") ? 8 : 4);
            const Bytes key(nKeySize, 0xA5);
            const Bytes wrongKey(nKeySize, 0x5A);
            for (const size_t nChunk : {size_t{777}, stream.size()}) {
                ExpectLike(ReadFrames(stream, key, nChunk), plain, nMoreHeads, CIPHER_STATE::Deciphered, true);
                ExpectLike(ReadFrames(stream, wrongKey, nChunk), plain, nMoreHeads, CIPHER_STATE::Deciphered, false);
                ExpectLike(ReadFrames(stream, {}, nChunk), plain, nMoreHeads, CIPHER_STATE::Enciphered, false);
            }
        }
    }
}

TEST(Cipher, TheListingTellsTheState)
{
    const TempDirectory directory;
    const std::string recording = directory.Path() + "/recording";
    const std::string key = " --key 000102030405060708090a0b0c0d0e0f ";
    ASSERT_EQ(RunFramesift("mux -o " + recording + key + "--checksum sum32 --video-codec h265 --video " +
                           SamplePath("h265/16x16.h265"))
                  .nExitCode,
              0);
    for (const auto& [keyOption, state, summary] : Rows<std::string, std::string, std::string>{
             {" ", "enciphered", "still enciphered: 6 aes (--key deciphers aes)\n"},
             {key, "deciphered", "cipher  6 deciphered\n"}}) {
        const CommandResult text = RunFramesift("frames" + keyOption + recording);
        EXPECT_NE(text.output.find(" " + state + " "), std::string::npos) << text.output;
        EXPECT_NE(text.errors.find(summary), std::string::npos) << text.errors;
        const std::string lines = RunFramesift("frames --json" + keyOption + recording).output;
        EXPECT_NE(lines.find("\"cipher\":\"aes\",\"cipher_state\":\"" + state + "\""), std::string::npos) << lines;
        const std::string csv = RunFramesift("frames --csv" + keyOption + recording).output;
        EXPECT_NE(csv.find(",aes," + state + ","), std::string::npos) << csv;
    }
}

} // namespace Marvane::FrameSift
