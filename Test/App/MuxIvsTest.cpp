// Intelligent video metadata on its way from a description into a recording and back.
#include <algorithm>
#include <fstream>
#include <tuple>

#include "App/CommandRun.h"
#include "FrameWriter/RecordingClock.h"
#include "Frames/FrameSource.h"
#include "Ivs/Json/IvsWire.h"
#include "Mux/MuxOptions.h"
#include "Support/IvsEvents.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

struct READ_FRAME
{
    int32_t nType = 0;
    int32_t nSubType = 0;
    int32_t nSeq = 0;
    int64_t nAtMs = 0; // since the start of the recording
    Bytes payload;
};

bool operator==(const READ_FRAME& left, const READ_FRAME& right)
{
    const auto fields = [](const READ_FRAME& frame) {
        return std::tie(frame.nType, frame.nSubType, frame.nSeq, frame.nAtMs, frame.payload);
    };
    return fields(left) == fields(right);
}

void PrintTo(const READ_FRAME& frame, std::ostream* pStream)
{
    *pStream << frame.nSeq << " of " << frame.nType << "/" << frame.nSubType << " at " << frame.nAtMs << ": "
             << testing::PrintToString(frame.payload);
}

std::vector<READ_FRAME> FramesIn(Bytes recording)
{
    CFrameSource source;
    EXPECT_EQ(source.Feed(recording), KX_SUCCESS);
    std::vector<READ_FRAME> frames;
    for (LISTED_FRAME listed; source.Next(listed);) {
        const FrameInfo& frame = listed.frame;
        const KX_TIME time = frame.frameTime;
        const uint8_t* pPayload = frame.streamPointer;
        frames.push_back({frame.frameType, frame.frameSubType, frame.frameSeq, TimeToClock(time) - gsk_defaultStart,
                          Bytes(pPayload, pPayload + frame.streamLen)});
    }
    EXPECT_EQ(source.UnfinishedBytes(), 0U);
    return frames;
}

class MuxIvs : public testing::Test
{
protected:
    CommandResult Mux(const std::string& description, const std::string& more = "")
    {
        std::ofstream(m_description) << description;
        return RunFramesift("mux --ivs " + m_description + " " + more + " -o " + m_recording);
    }

    std::vector<READ_FRAME> Recorded() const
    {
        const std::string bytes = ReadText(m_recording);
        return FramesIn(Bytes(bytes.begin(), bytes.end()));
    }

    const TempDirectory m_directory;
    const std::string m_description = m_directory.Path() + "/a.json";
    const std::string m_recording = m_directory.Path() + "/recording";
};

// The frames of a description, as they should come out.
std::vector<READ_FRAME> FramesOf(const ordered_json& description)
{
    std::vector<READ_FRAME> frames;
    for (const ordered_json& frame : description["frames"]) {
        const IVS_FORMAT_ROW& format = *FindIvsFormat(frame["format"].get<std::string>());
        frames.push_back({KX_FRAME_TYPE_DATA, format.frameSubType, static_cast<int32_t>(frames.size()) + 1,
                          frame["at_ms"].get<int64_t>(), IvsPayload(format, frame["records"])});
    }
    return frames;
}

} // namespace

TEST_F(MuxIvs, TheSampleStandsAmongVideoAndAudioByItsTimes)
{
    const std::string sample = ReadText(SamplePath("ivs/scene.json"));
    const CommandResult mux = Mux(sample, "--video-codec h264 --video " + SamplePath("h264/cif_baseline_25.h264") +
                                              " --audio-codec g711a --audio " + SamplePath("audio/g711a_8k_160.alaw"));
    ASSERT_EQ(mux.nExitCode, 0) << mux.errors;
    EXPECT_NE(mux.errors.find(", 21 IVS frames, "), std::string::npos) << mux.errors;

    const auto frames = Recorded();
    const auto rank = [](const READ_FRAME& frame) {
        const int nKind = frame.nType == KX_FRAME_TYPE_VIDEO ? 0 : frame.nType == KX_FRAME_TYPE_AUDIO ? 1 : 2;
        return std::pair(frame.nAtMs, nKind);
    };
    EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end(),
                               [&](const auto& left, const auto& right) { return rank(left) < rank(right); }));
    std::vector<READ_FRAME> data;
    std::copy_if(frames.begin(), frames.end(), std::back_inserter(data),
                 [](const READ_FRAME& frame) { return frame.nType == KX_FRAME_TYPE_DATA; });
    EXPECT_EQ(data, FramesOf(ordered_json::parse(sample))); // which stand in the order of time there
    for (const READ_FRAME& frame : data) {
        const IVS_RUN run = ParseIvs(IvsFormatOfSubType(frame.nSubType)->eParseType, frame.payload);
        EXPECT_EQ(run.nResult, KX_SUCCESS);
        EXPECT_FALSE(run.events.empty());
    }
}

TEST_F(MuxIvs, FramesAreSortedAndMayBringTheirPayload)
{
    // Later first; two at one time keep their order. The bytes may be damaged. A reader waits for the 48th
    // byte of the last frame.
    const CommandResult mux = Mux(R"({"frames": [
        {"at_ms": 3000, "format": "overlay", "payload": "01000000fF"},
        {"at_ms": 70000, "format": "traffic", "payload": [13, 0, 255, 3, 4, 5, 6, 7, 8, 9, 10, 11]},
        {"format": "scene", "payload": ""},
        {"at_ms": 3000, "format": "track", "records": [{}]}]})");
    ASSERT_EQ(mux.nExitCode, 0) << mux.errors;
    EXPECT_EQ(Recorded(),
              (std::vector<READ_FRAME>{
                  {KX_FRAME_TYPE_DATA, KX_FRAME_SUB_TYPE_SCENE_INFORMATION_TAGGING, 1, 0, {}},
                  {KX_FRAME_TYPE_DATA, KX_FRAME_SUB_TYPE_ZOOP_WITH_SMART, 2, 3000, {1, 0, 0, 0, 255}},
                  {KX_FRAME_TYPE_DATA, KX_FRAME_SUB_TYPE_DATA_INTL, 3, 3000, {1, 0, 0, 0}},
                  {KX_FRAME_TYPE_DATA, KX_FRAME_SUB_TYPE_DATA_ITS, 4, 70000, {13, 0, 255, 3, 4, 5, 6, 7, 8, 9, 10, 11}},
              }));
}

TEST_F(MuxIvs, AnEndThatReadersDoNotSeeIsToldOf)
{
    for (const size_t nPayload : {11, 12}) {
        const CommandResult mux =
            Mux(R"({"frames": [{"format": "track", "payload": ")" + std::string(2 * nPayload, '0') + "\"}]}");
        EXPECT_EQ(mux.nExitCode, 0);
        const bool bTold = mux.errors.find("recording: the last frame is shorter than 48 bytes: ") != std::string::npos;
        EXPECT_EQ(bTold, RunFramesift("frames " + m_recording).output.find("intl") == std::string::npos) << mux.errors;
        EXPECT_EQ(bTold, nPayload == 11);
        EXPECT_NE(mux.errors.find(", 1 IVS frame, "), std::string::npos) << mux.errors;
    }
}

TEST_F(MuxIvs, WhatCannotBeWrittenIsRefusedBeforeTheOutputIsTouched)
{
    const std::string deep(33, '[');
    std::string deepPlace;
    for (int n = 0; n < 32; ++n)
        deepPlace += "[0]";
    const struct
    {
        std::string description;
        std::string message;
        std::string more = {};
    } rows[] = {
        {"{\"frames\":\n [,]}", "parse error at line 2, column 3: "},
        {"[1e400]", "number overflow parsing '1e400'\n"},
        {R"({"frames": [{}, {"at_ms": 1, "format": "track", "at_ms": 1}]})", "frames[1].at_ms: stands twice\n"},
        {R"({"a": [[], {"b": {}}, {"c": 1}], "a": 1})", "a: stands twice\n"},
        {deep, deepPlace + ": is nested too deep\n"},
        {std::string((size_t{64} << 20) + 1, ' '), "is too long for a description: at most 64 MiB\n"},
        {"[]", "holds no object with frames\n"},
        {R"({"frames": [{}]})", "frames[0].format: is missing\n"},
        {R"({"frames": []})", "frames: there must be one at least\n"},
        {R"({"frame": []})", "frame: there is no such field\n"},
        {R"({"frames": [{"format": "tracks"}]})",
         "frames[0].format: is none of track, track-ex, segments, scene, overlay, traffic\n"},
        {R"({"frames": [{"format": "track"}]})", "frames[0]: must have records or a payload, and not both\n"},
        {R"({"frames": [{"format": "track", "payload": "0", "records": []}]})",
         "frames[0]: must have records or a payload, and not both\n"},
        {R"({"frames": [{"format": "track", "payload": "0"}]})", "frames[0].payload: has half a byte at its end\n"},
        {R"({"frames": [{"format": "track", "payload": "0x12"}]})",
         "frames[0].payload: is no list of bytes, and no text of hexadecimal digits\n"},
        {R"({"frames": [{"format": "track", "payload": [256]}]})",
         "frames[0].payload[0]: 256 does not fit: 0 to 255\n"},
        {R"({"frames": [{"format": "track", "at_ms": -1, "payload": []}]})", "frames[0].at_ms: -1 does not fit: 0 to "},
        {R"({"frames": [{"format": "track", "at_ms": 500, "payload": []},
                        {"format": "track", "at_ms": 1001, "payload": []}]})",
         "frames[1].at_ms: 1001 does not fit: 0 to 1000\n", "--start 2063-12-31T23:59:58.999"},
        {R"({"frames": [{"format": "track", "records": [{"objects": [{}, {"x": 1}]}]}]})",
         "frames[0].records[0].objects[1].x: there is no such field\n"},
    };
    std::ofstream(m_recording) << "keep";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.description.substr(0, 200));
        const CommandResult mux = Mux(row.description, row.more);
        EXPECT_EQ(mux.nExitCode, 4);
        EXPECT_NE(mux.errors.find("framesift: " + m_description + ": " + row.message), std::string::npos) << mux.errors;
    }
    EXPECT_EQ(RunFramesift("mux --ivs - --video - --video-codec h264 -o " + m_recording).nExitCode, 2);
    EXPECT_EQ(RunFramesift("mux -o " + m_recording).nExitCode, 2);
    EXPECT_EQ(ReadText(m_recording), "keep");
}

} // namespace Marvane::FrameSift
