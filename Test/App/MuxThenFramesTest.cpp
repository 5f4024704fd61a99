#include <fstream>
#include <sstream>

#include "App/CommandRun.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

std::vector<json> ParseLines(const std::string& text)
{
    std::vector<json> objects;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        objects.push_back(json::parse(line));
    return objects;
}

class MuxThenFrames : public testing::Test
{
protected:
    std::vector<json> MuxAndList(const std::string& muxArguments, const std::string& listArguments = "")
    {
        const CommandResult mux = RunFramesift("mux " + muxArguments + " -o " + m_recording);
        EXPECT_EQ(mux.nExitCode, 0) << mux.errors;
        const CommandResult list = RunFramesift("frames --json " + listArguments + " " + m_recording);
        EXPECT_EQ(list.nExitCode, 0) << list.errors;
        m_summary = list.errors;
        return ParseLines(list.output);
    }

    void WriteRecording(const Bytes& stream)
    {
        std::ofstream(m_recording, std::ios::binary)
            .write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
    }

    std::string PayloadOf(const json& frame)
    {
        return ReadText(m_recording).substr(frame["payload_offset"], frame["payload_length"]);
    }

    void ExpectUnits(const std::vector<json>& frames, const std::string& file)
    {
        SCOPED_TRACE(file);
        const std::string stream = ReadText(SamplePath(file));
        const json units = SampleOf(file)["units"];
        ASSERT_EQ(frames.size(), units.size());
        for (size_t n = 0; n < units.size(); ++n) {
            const json& unit = units[n];
            ASSERT_EQ(PayloadOf(frames[n]), stream.substr(unit["offset"], unit["length"])) << n;
            EXPECT_EQ(frames[n]["sequence"], n + 1);
            EXPECT_TRUE(frames[n]["error"].is_null());
            const std::string kind = unit["kind"] == "audio" || unit["key"] ? "I" : unit["kind"];
            EXPECT_EQ(frames[n]["subtype"].is_null() ? "I" : frames[n]["subtype"], file[0] == 'j' ? "jpeg" : kind);
        }
    }

    const TempDirectory m_directory;
    const std::string m_recording = m_directory.Path() + "/recording";
    std::string m_summary;
};

} // namespace

TEST_F(MuxThenFrames, EveryVideoUnitComesOutAsItWentIn)
{
    // One sample of each: that all are cut and read back rightly, UnitCutterTest and ZOAVSamplesTest see to.
    for (const std::string codec : {"h264", "h265", "mpeg4", "mpeg2", "jpeg"}) {
        const std::string file = SamplesIn(codec).back()["file"];
        const auto frames = MuxAndList("--video-codec " + codec + " --video " + SamplePath(file));
        ExpectUnits(frames, file);
        ASSERT_FALSE(frames.empty());
        EXPECT_EQ(frames[0]["codec"], codec);
    }
}

TEST_F(MuxThenFrames, EveryAudioUnitComesOutAsItWentIn)
{
    for (const auto& [file, codec, format, nChannels] : Rows<std::string, std::string, std::string, int>{
             {"audio/aac_lc_44k1_stereo.aac", "aac", "", 2},
             {"audio/mp2_48k_stereo_192.mp2", "mp2", "", 2},
             {"audio/mp3_16k_mono_vbr.mp3", "mp3", "", 1},
             {"audio/g711a_8k_160.alaw", "g711a", "", 1},
             {"audio/g711u_8k_320.ulaw", "g711u", " --audio-frame 320", 1},
             {"audio/pcm16_16k_stereo_40ms.pcm", "pcm16", " --audio-rate 16000 --audio-channels 2 --audio-frame 2560",
              2}}) {
        const auto frames = MuxAndList("--audio " + SamplePath(file) + " --audio-codec " + codec + format);
        ExpectUnits(frames, file);
        EXPECT_EQ(frames.at(0)["codec"], codec);
        EXPECT_EQ(frames[0]["channels"], nChannels);
    }
}

TEST_F(MuxThenFrames, TracksInterleaveByTimeAndCountApart)
{
    const auto frames = MuxAndList("--video " + SamplePath("h264/480p_ntsc_main.h264") + " --video-codec h264 --fps " +
                                   "30000/1001 --audio " + SamplePath("audio/aac_lc_16k_mono.aac") +
                                   " --audio-codec aac --family lxav --start 2027-12-31T23:59:59.900");
    const auto isVideo = [](const json& frame) { return frame["kind"] == "video"; };
    ASSERT_EQ(std::count_if(frames.begin(), frames.end(), isVideo), 24);
    ASSERT_EQ(frames.size(), 44U);
    EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end(),
                               [](const auto& a, const auto& b) { return a["time"] < b["time"]; }));
    const auto& first = frames[0];
    EXPECT_EQ(first["schema_version"], 1);
    EXPECT_EQ(first["file"], m_recording);
    EXPECT_EQ(first["time"], "2027-12-31T23:59:59.900");
    EXPECT_EQ(first["width"], 720);
    EXPECT_EQ(first["height"], 480);
    EXPECT_EQ(first["frame_rate"], 30);
    EXPECT_EQ(first["stream_type"], KX_STREAM_TYPE_STD_LX);
    EXPECT_EQ(frames[1]["sample_rate"], 16000);
    // The fourth picture: 3 * 1001 / 30000 s, over the turn of the year.
    const auto fourth = std::find_if(frames.begin(), frames.end(),
                                     [&](const auto& frame) { return isVideo(frame) && frame["sequence"] == 4; });
    EXPECT_EQ((*fourth)["time"], "2028-01-01T00:00:00.000");
    EXPECT_EQ((*fourth)["time_stamp"], 100);
    EXPECT_NE(m_summary.find("24 video, 20 audio"), std::string::npos) << m_summary;
    EXPECT_NE(m_summary.find("clock"), std::string::npos) << m_summary;
}

TEST_F(MuxThenFrames, TheSameCommandWritesTheSameBytes)
{
    const std::string arguments = "mux --video-codec h265 --video ";
    const CommandResult fromFile = RunFramesift(arguments + SamplePath("h265/16x16.h265") + " -o -");
    const CommandResult fromPipe = RunFramesift(arguments + "- -o - < " + SamplePath("h265/16x16.h265"));
    EXPECT_GT(fromFile.output.size(), 180U);
    EXPECT_EQ(fromFile.output, fromPipe.output);
}

TEST_F(MuxThenFrames, FormsAndFiltersAgree)
{
    const auto all = MuxAndList("--video " + SamplePath("h264/cif_slices4.h264") + " --video-codec h264 --audio " +
                                SamplePath("audio/g711a_8k_160.alaw") + " --audio-codec g711a");
    const std::string plain = RunFramesift("frames --csv " + m_recording).output;
    for (const std::string chunk : {"1", "3", "1400", "65536"})
        EXPECT_EQ(RunFramesift("frames --csv --chunk " + chunk + " " + m_recording).output, plain) << chunk;
    EXPECT_EQ(RunFramesift("frames --csv - < " + m_recording).output, plain);
    EXPECT_EQ(std::count(plain.begin(), plain.end(), '\n'), static_cast<int64_t>(all.size() + 1));
    EXPECT_EQ(plain.find("offset,payload_offset,kind,subtype,codec,time,"), 0U);

    // Without rows the line of names is still there.
    EXPECT_EQ(RunFramesift("frames --csv --errors-only " + m_recording).output, plain.substr(0, plain.find('\n') + 1));

    const auto rowsWith = [&](const std::string& filter) {
        return ParseLines(RunFramesift("frames --json " + filter + " " + m_recording).output).size();
    };
    EXPECT_EQ(rowsWith("--type video"), 12U);
    EXPECT_EQ(rowsWith("--type audio,data"), all.size() - 12);
    EXPECT_EQ(rowsWith("--keys-only"), 2U);
    EXPECT_EQ(rowsWith("--errors-only"), 0U);
    EXPECT_EQ(rowsWith("--limit 3"), 3U);
}

TEST_F(MuxThenFrames, DamageIsListedWhereItStands)
{
    const Bytes payload(100, 0xAB);
    const Bytes good = ZoavFrame().Seq(1).Payload(payload);
    WriteRecording(good + ZoavFrame().Seq(2).Payload(payload).WrongSum() + Bytes(7, 0x11) +
                   ZoavFrame().Seq(2).Payload(payload).Build());
    const CommandResult list = RunFramesift("frames --json " + m_recording);
    const auto frames = ParseLines(list.output);
    ASSERT_EQ(frames.size(), 4U);
    const struct
    {
        int nOffset;
        const char* pError;
    } rows[] = {{0, nullptr}, {132, "length"}, {256, "lost-head"}, {271, nullptr}};
    for (size_t n = 0; n < frames.size(); ++n) {
        EXPECT_EQ(frames[n]["offset"], rows[n].nOffset);
        EXPECT_EQ(frames[n]["error"], rows[n].pError == nullptr ? json() : json(rows[n].pError));
    }
    EXPECT_EQ(frames[3]["payload_offset"], 271 + 24);
    EXPECT_NE(list.errors.find("2: 1 length, 1 lost-head"), std::string::npos) << list.errors;
    EXPECT_NE(list.errors.find("403 read, 264 in frames, 139 in no frame"), std::string::npos) << list.errors;
}

TEST_F(MuxThenFrames, LostFramesAreListedInEveryForm)
{
    Bytes stream;
    for (const uint32_t nSeq : {7U, 12U, 13U, 3U})
        stream = stream + ZoavFrame().Seq(nSeq).Payload(Bytes(100, 0xAB)).Build();
    WriteRecording(stream);
    const CommandResult list = RunFramesift("frames --json --errors-only " + m_recording);
    const auto rows = ParseLines(list.output);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["sequence"], 11);
    EXPECT_EQ(rows[0]["offset"], 132); // behind the frame in front
    EXPECT_EQ(rows[1]["sequence"], 2);
    EXPECT_EQ(rows[1]["offset"], 396);
    for (const auto& row : rows) {
        EXPECT_EQ(row["kind"], "video");
        EXPECT_EQ(row["error"], "lost-frame");
        EXPECT_EQ(row["frame_length"], 0);
        for (const char* pField : {"subtype", "codec", "payload_offset", "width", "interlace"})
            EXPECT_TRUE(row[pField].is_null()) << pField;
    }
    EXPECT_NE(list.errors.find("damage  2: 2 lost-frame\n"
                               "lost    4 video frames by their numbers (gaps: 1, steps back: 1)\n"),
              std::string::npos)
        << list.errors;
    const std::string csv = RunFramesift("frames --csv --errors-only " + m_recording).output;
    EXPECT_NE(csv.find("\n132,,video,,,2020-01-02T03:04:05.000,0,11,,"), std::string::npos) << csv;
    const std::string text = RunFramesift("frames " + m_recording).output;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 4 + 2);
    EXPECT_NE(text.find("lost-frame   SEQ of video jumps here"), std::string::npos) << text;
    const std::string keys = RunFramesift("frames --csv --keys-only " + m_recording).output;
    EXPECT_EQ(std::count(keys.begin(), keys.end(), '\n'), 1 + 4);
}

TEST_F(MuxThenFrames, ThePictureFactsOfThePayloadAreShown)
{
    const auto cropped =
        MuxAndList("--video-codec h264 --size 1920x1088 --video " + SamplePath("h264/1080p25_high_b.h264"));
    ASSERT_GT(cropped.size(), 1U);
    for (const auto& frame : {cropped[0], cropped[1]}) { // the key frame, and one that inherits from it
        EXPECT_EQ(frame["height"], 1080);
        EXPECT_EQ(frame["announced_height"], 1088);
        EXPECT_EQ(frame["coded_height"], 1088);
        EXPECT_EQ(frame["interlace"], "none");
    }
    const std::string text = RunFramesift("frames --limit 2 " + m_recording).output;
    EXPECT_NE(text.find(" 1920x1080 (head 1920x1088) 25/s, coded 1920x1088\n"), std::string::npos) << text;
    EXPECT_NE(text.find(" 1920x1080 (head 1920x1088) 25/s\n"), std::string::npos) << text;

    const auto hdr = MuxAndList("--video-codec h265 --video " + SamplePath("h265/720p25_hdr10.h265")).at(0);
    const json facts = {{"bit_depth", 10},
                        {"colour_primaries", "bt2020"},
                        {"colour_transfer", "pq"},
                        {"colour_matrix", "bt2020"},
                        {"max_luminance", 10000000},
                        {"min_luminance", 50},
                        {"max_content_light", 1000},
                        {"max_average_light", 400},
                        {"display_primaries", "13250 34500 7500 3000 34000 16000"},
                        {"white_point", "15635 16450"}};
    for (const auto& [name, value] : facts.items())
        EXPECT_EQ(hdr[name], value) << name;
    EXPECT_NE(RunFramesift("frames --limit 1 " + m_recording)
                  .output.find(" 1280x720 25/s, 10 bit, bt2020/pq/bt2020, mastered for 0.005 to 1000 cd/m2, light at "
                               "most 1000, on average 400 cd/m2\n"),
              std::string::npos);

    // Fields, which only a head can tell of, and no head that says anything.
    WriteRecording(ZoavFrame().ExtHead({0x80, 2, 90, 72}).Payload(Bytes(30)) + ZoavFrame().Seq(2).Payload(Bytes(30)));
    const auto fields = ParseLines(RunFramesift("frames --json " + m_recording).output);
    EXPECT_EQ(fields.at(0)["interlace"], "two-fields");
    EXPECT_TRUE(fields.at(1)["interlace"].is_null());
    EXPECT_NE(RunFramesift("frames " + m_recording).output.find(" 720x576, interlaced\n"), std::string::npos);
}

TEST_F(MuxThenFrames, TheLogOfTheLibraryGoesToItsDirectory)
{
    MuxAndList("--video " + SamplePath("h264/16x16.h264") + " --video-codec h264",
               "--log " + m_directory.Path() + " --log-level 7");
    EXPECT_NE(ReadText(m_directory.Path() + "/SiftKit.log").find("SIFTKIT"), std::string::npos);
}

} // namespace Marvane::FrameSift
