#include <fstream>
#include <sstream>

#include "App/CommandRun.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

class InfoOnFiles : public testing::Test
{
protected:
    std::string Path(const std::string& name) const { return m_directory.Path() + "/" + name; }

    void Write(const std::string& name, const Bytes& stream) const
    {
        std::ofstream(Path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
    }

    void Mux(const std::string& arguments, const std::string& name = "a") const
    {
        const CommandResult mux = RunFramesift("mux " + arguments + " -o " + Path(name));
        ASSERT_EQ(mux.nExitCode, 0) << mux.errors;
    }

    json Info(const std::string& options = "", const std::string& name = "a") const
    {
        const CommandResult info = RunFramesift("info --json " + options + " " + Path(name));
        EXPECT_EQ(info.nExitCode, 0) << info.errors;
        return json::parse(info.output);
    }

    const TempDirectory m_directory;
};

Bytes Frame(uint32_t nSeq, ZOAV_FRAME eType = ZOAV_FRAME::I, uint8_t nMinute = 0)
{
    return ZoavFrame().Type(eType).Seq(nSeq).Time({2026, 1, 31, 10, nMinute, 0, 0}).Payload(Bytes(100, 0xAB));
}

// What is known of a stream of 25 pictures a second.
struct EXPECTED
{
    explicit EXPECTED(const json& units)
    {
        int64_t nLastKey = -1;
        for (int64_t n = 0; n < static_cast<int64_t>(units.size()); ++n) {
            const json& unit = units[static_cast<size_t>(n)];
            nBytes += unit["length"].get<int64_t>();
            if (unit["key"] && nLastKey >= 0)
                nLargest = std::max(nLargest, n - nLastKey);
            nLastKey = unit["key"] ? n : nLastKey;
            nKeys += unit["key"] ? 1 : 0;
        }
    }

    int64_t nBytes = 0;
    int64_t nKeys = 0;
    int64_t nLargest = 0; // distance of key frames
};

} // namespace

TEST_F(InfoOnFiles, TellsTheFactsOfRealStreams)
{
    for (const std::string file :
         {"h264/cif_baseline_25.h264", "h264/480p_ntsc_main.h264", "h265/vga30_nob_aud.h265"}) {
        SCOPED_TRACE(file);
        const json sample = SampleOf(file);
        const EXPECTED expected(sample["units"]);
        const auto nFrames = sample["units"].size();
        Mux("--fps 25 --start 2031-04-09T10:31:00 --video " + SamplePath(file) + " --video-codec " +
            file.substr(0, file.find('/')));
        const json info = Info();
        EXPECT_EQ(info["bytes"], ReadText(Path("a")).size());
        EXPECT_EQ(info["frames"]["by_kind"], (json{{"video", nFrames}}));
        EXPECT_EQ(info["frames"]["video_by_subtype"], sample["kinds"]);
        EXPECT_EQ(info["frames"]["payload_bytes_by_kind"]["video"], expected.nBytes);
        EXPECT_EQ(info["time"]["duration_ms"], (nFrames - 1) * 40);
        EXPECT_EQ(info["time"]["earliest"], "2031-04-09T10:31:00.000");
        const auto nBitRate =
            static_cast<int64_t>(static_cast<uint64_t>(expected.nBytes) * 8 * 1000 / ((nFrames - 1) * 40));
        EXPECT_EQ(info["bit_rate"], (json{{"total", nBitRate}, {"video", nBitRate}, {"audio", 0}}));
        EXPECT_EQ(info["key_frames"]["count"], expected.nKeys);
        if (expected.nLargest > 0) {
            EXPECT_EQ(info["key_frames"]["distance_frames"]["largest"], expected.nLargest);
        }
        ASSERT_EQ(info["video"]["formats"].size(), 1U);
        EXPECT_EQ(info["video"]["formats"][0]["width"], sample["facts"]["width"]);
        EXPECT_EQ(info["video"]["formats"][0]["height"], sample["facts"]["height"]);
        for (const std::string field : {"gaps", "damage"}) {
            for (const json& count : info[field])
                EXPECT_TRUE(count.empty() || count == 0) << info[field];
        }
    }
}

TEST_F(InfoOnFiles, TellsWhereFormatsChange)
{
    Mux("--fps 25 --start 2031-04-09T10:31:00 --video " + SamplePath("h264/cif_baseline_25.h264") +
        " --video-codec h264 --audio " + SamplePath("audio/aac_lc_16k_mono.aac") + " --audio-codec aac");
    Mux("--fps 30 --start 2031-04-09T10:31:02 --video " + SamplePath("h265/vga30_nob_aud.h265") +
            " --video-codec h265 --audio " + SamplePath("audio/g711a_8k_320.alaw") +
            " --audio-codec g711a --audio-frame 320",
        "b");
    const auto nFirst = ReadText(Path("a")).size();
    std::ofstream(Path("a"), std::ios::binary | std::ios::app) << ReadText(Path("b"));
    const json info = Info();
    EXPECT_EQ(info["video"]["changes"], 1);
    EXPECT_EQ(info["audio"]["changes"], 1);
    EXPECT_EQ(info["video"]["formats"][1], (json{{"offset", nFirst},
                                                 {"time", "2031-04-09T10:31:02.000"},
                                                 {"codec", "h265"},
                                                 {"width", 640},
                                                 {"height", 480},
                                                 {"frame_rate", 30},
                                                 {"channel", 0}}));
    EXPECT_EQ(info["audio"]["formats"][0]["codec"], "aac");
    EXPECT_EQ(info["audio"]["formats"][1]["sample_rate"], 8000);
    const std::string text = RunFramesift("info " + Path("a")).output;
    for (const std::string part : {"zoav (8)", "key frames 4; typical distance 25 frames, largest 25 frames",
                                   "h264 352x288, 25/s", "(2031-04-09T10:31:02.000) h265 640x480, 30/s", "kbit/s"})
        EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
}

TEST_F(InfoOnFiles, CountsGapsAndDamageAsCheckDoes)
{
    const Bytes good = Frame(1) + Frame(2, ZOAV_FRAME::P) + Frame(3, ZOAV_FRAME::P);
    for (const auto& [pName, stream] :
         Rows<const char*, Bytes>{{"sound", good},
                                  {"lost", good + Frame(9, ZOAV_FRAME::P) + Frame(10, ZOAV_FRAME::P)},
                                  {"restart", good + good},
                                  {"clock", good + Frame(4, ZOAV_FRAME::P, 30) + Frame(5, ZOAV_FRAME::P, 5)},
                                  {"head", good + ZoavFrame().Seq(4).Payload(Bytes(100)).WrongSum().Build() + Frame(5)},
                                  {"noise", Bytes(77, 0x11) + good + Bytes(99, 0x11)},
                                  {"cut", Part(good + Frame(4), 0, good.size() + 60)},
                                  {"cut in the middle", Part(good + Frame(4), 0, good.size() + 60) + good},
                                  {"cut in the magic", Part(good + Frame(4), 0, good.size() + 2)}}) {
        SCOPED_TRACE(pName);
        Write("a", stream);
        const json info = Info();
        const json check = json::parse(RunFramesift("check --json " + Path("a")).output)["files"][0]["totals"];
        const json& gaps = info["gaps"];
        EXPECT_EQ(gaps["lost_by_kind"], check["frames"]["lost_by_kind"]);
        EXPECT_EQ(gaps["clock_jumps"], check["findings"]["clock-jump"]);
        EXPECT_EQ(gaps["sequence_restarts"], check["findings"]["sequence-restart"]);
        EXPECT_EQ(info["damage"]["bytes_in_no_frame"], check["bytes"]["in_no_frame"]);
        EXPECT_EQ(info["damage"]["stretches"], check["findings"]["stretch"]);
        EXPECT_EQ(info["damage"]["unfinished_bytes"], check["bytes"]["unfinished"]);
        EXPECT_EQ(info["frames"]["good"].get<int>() + info["frames"]["not_indexed"].get<int>(),
                  check["frames"]["good"]);
        EXPECT_EQ(info["time"]["earliest"], check["earliest"]);
        EXPECT_EQ(info["time"]["latest"], check["latest"]);
    }
}

TEST_F(InfoOnFiles, TimesInTheOrderOfTheFileAndKeyDistancesMayDiffer)
{
    Bytes stream;
    uint32_t nSeq = 0;
    for (const auto& [nMinute, nPictures] : Rows<uint8_t, int>{{5, 2}, {6, 7}, {8, 2}, {3, 2}}) {
        for (int n = 0; n < nPictures; ++n)
            stream = stream + Frame(++nSeq, n == 0 ? ZOAV_FRAME::I : ZOAV_FRAME::P, nMinute);
    }
    Write("a", Frame(0, ZOAV_FRAME::P, 5) + stream); // a picture in front of the first key frame is no change of format
    const json info = Info();
    EXPECT_EQ(info["time"], (json{{"earliest", "2026-01-31T10:03:00.000"},
                                  {"latest", "2026-01-31T10:08:00.000"},
                                  {"first", "2026-01-31T10:05:00.000"},
                                  {"last", "2026-01-31T10:03:00.000"},
                                  {"duration_ms", 300000}}));
    EXPECT_EQ(info["key_frames"], (json{{"count", 4},
                                        {"distance_frames", {{"typical", 2}, {"largest", 7}}},
                                        {"distance_ms", {{"typical", 60000}, {"largest", 120000}}}}));
    EXPECT_EQ(info["video"]["changes"], 0);
}

TEST_F(InfoOnFiles, AKeyOpensWhatIsEnciphered)
{
    const std::string key = " --key 000102030405060708090a0b0c0d0e0f";
    Mux("--fps 25 --video " + SamplePath("h264/cif_baseline_25.h264") + " --video-codec h264 --cipher-head 89" + key);
    EXPECT_EQ(Info()["cipher"], (json{{"enciphered", {{"aes", 50}}}, {"deciphered", 0}}));
    const json info = Info(key);
    EXPECT_EQ(info["cipher"], (json{{"enciphered", json::object()}, {"deciphered", 50}}));
    EXPECT_EQ(info["damage"]["damaged_frames"], 0);
    const std::string index = RunFramesift("index --json" + key + " " + Path("a")).output;
    EXPECT_NE(index.find("\"cipher\":\"aes\",\"cipher_state\":\"deciphered\""), std::string::npos) << index;
}

TEST_F(InfoOnFiles, TellsOfEachFileWhateverHappensToTheOthers)
{
    Write("a", Frame(1) + Part(Frame(2), 0, 60));
    Write("empty", {});
    Write("text", Bytes(5000, 'x'));
    const std::string files = "info --json " + Path("none") + " " + Path("empty") + " " + Path("a") + " ";
    // /proc/self/mem: a file whose first byte cannot be read.
    const CommandResult info = RunFramesift(files + Path("text") + " - . /dev/null /proc/self/mem < /dev/null");
    EXPECT_EQ(info.nExitCode, 4);
    std::istringstream lines(info.output);
    std::vector<int> codes;
    for (std::string line; std::getline(lines, line);)
        codes.push_back(json::parse(line)["exit_code"]);
    EXPECT_EQ(codes, (std::vector<int>{3, 4, 0, 4, 3, 3, 3, 3}));
    for (const std::string text : {"none: No such file", "empty is empty", "no known stream format in 5000 bytes",
                                   "standard input: this verb needs the name of a regular file; \"framesift frames\"",
                                   "it is a directory", "/dev/null: this verb needs", "mem: Input/output error"})
        EXPECT_NE(info.errors.find(text), std::string::npos) << text << " in\n" << info.errors;
    EXPECT_EQ(RunFramesift("info " + Path("a") + " " + Path("none")).nExitCode, 3);
}

} // namespace Marvane::FrameSift
