#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "App/CommandRun.h"
#include "FrameWriter/ExtHeads.h"
#include "Ivs/IvsFrame.h"
#include "Ivs/IvsText.h"
#include "Ivs/Json/IvsWire.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

const std::vector<std::pair<const char*, const char*>> sc_payloads = {
    {"track-ex",
     R"([{"type": "track-ex", "objects": [{"obj_id": 7, "object_type": 2, "track_point": [[100, 200, 30, 40]]}]}])"},
    {"segments", R"([{"type": "common-objects", "funcType": 1, "cameraID": "gate", "groupID": 4, "objects": [
        {"objType": 18, "objID": 8, "lanes": {"type": "95", "lane_info": [{"lane_id": 3, "left_lane_position": [[1, 2]],
         "right_lane_position": [[3, 4], [5, 6]]}]}}]}])"},
    {"scene",
     R"([{"type": "scene", "points": [{"nIndex": 5, "sceneInfoPoint": [4000, 4000], "fristtile": "Gate", "enable": 1, "polygon": [[1, 2], [3, 4]]}]}])"},
    {"overlay",
     R"([{"type": "overlay", "nId": 6, "elements": [{"type": "text", "chLineA": 255, "pString": "hello"}]}])"},
    {"traffic", R"([{"type": "traffic", "records": [{"NumberStat": 13, "plans": [{"PlanId": 1, "RuleType": 2,
        "regions": [{"RegionId": 3, "PeopleNum": 44}]}]}]}])"},
};

Bytes PayloadOf(const std::string& format)
{
    for (const auto& [pName, pRecords] : sc_payloads) {
        if (pName == format)
            return IvsPayload(*FindIvsFormat(format), Json::parse(pRecords));
    }
    return {};
}

ZoavFrame DataFrame(uint8_t chSubType, uint32_t nSeq, const Bytes& payload)
{
    return ZoavFrame().Type(ZOAV_FRAME::Data, chSubType).Seq(nSeq).Payload(payload);
}

class Ivs : public testing::Test
{
protected:
    Ivs()
    {
        Bytes recording;
        uint32_t nSeq = 0;
        for (const auto& [pName, pRecords] : sc_payloads)
            recording = recording + DataFrame(FindIvsFormat(pName)->chSubType, ++nSeq, PayloadOf(pName));
        // A sound segment in front of one that claims to be too long.
        const Bytes cut = PayloadOf("segments") + Bytes{0x41, 0, 0xFF, 0xFF, 0, 0, 0, 0};
        recording = recording + DataFrame(14, ++nSeq, cut);
        recording = recording + DataFrame(5, ++nSeq, Bytes(16)).ExtHead(ExtHead89(0));
        recording = recording + DataFrame(25, ++nSeq, Bytes(40)); // no metadata
        m_recording = Write("all.zoav", recording);
    }

    std::string Write(const std::string& name, const Bytes& bytes) const
    {
        const std::string path = m_directory.Path() + "/" + name;
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        return path;
    }

    const TempDirectory m_directory;
    std::string m_recording;
};

void ExpectHolds(const std::string& text, const std::vector<std::string>& parts)
{
    for (const std::string& part : parts)
        EXPECT_NE(text.find(part), std::string::npos) << part << "\nin\n" << text;
}

} // namespace

TEST_F(Ivs, ListsEveryFormatAndGoesOnBehindDamage)
{
    const CommandResult run = RunFramesift("ivs " + m_recording);
    EXPECT_EQ(run.nExitCode, 1);
    ExpectHolds(run.output, {"2020-01-02T03:04:05.000  seq 1  intl: track-ex, 24 bytes, 1 object\n",
                             "object 7 class 2.0 at 100,200 size 30x40", "object 8 class 18",
                             "lane 3: 0 loops, left 1,2, right 3,4 5,6\n", "title 5 \"Gate\"", "polygon 1,2 3,4\n",
                             "text at 0,0 in #FF000000: \"hello\"\n", "plan 1 rule 2 region 3: count 44", "(code 6)\n",
                             "seq 7  intl: track-ex, 16 bytes  ERROR: enciphered (aes); --key deciphers it\n"});
    ExpectHolds(run.errors, {"metadata  7 payloads", "2 segments", "failures  2 payloads", "3 of objects",
                             "not read  other data frames: 1 smart-motion"});
    EXPECT_EQ(run.output.find("seq 8"), std::string::npos);

    // Whatever the chunk, and deciphered noise is no metadata.
    EXPECT_EQ(RunFramesift("ivs --chunk 7 - < " + m_recording).output, run.output);
    const std::string key(32, 'a');
    ExpectHolds(RunFramesift("ivs --key " + key + " " + m_recording).output, {"its version is not known"});
}

TEST_F(Ivs, JsonHoldsAllRecordsAndSaysWhatFailed)
{
    std::istringstream lines(RunFramesift("ivs --json " + m_recording).output);
    std::vector<Json> objects;
    for (std::string line; std::getline(lines, line);)
        objects.push_back(Json::parse(line));
    ASSERT_EQ(objects.size(), 7U);
    for (size_t n = 0; n < sc_payloads.size(); ++n) {
        const auto& [pName, pRecords] = sc_payloads[n];
        SCOPED_TRACE(pName);
        EXPECT_EQ(objects[n]["format"], pName);
        EXPECT_EQ(objects[n]["result"], 0);
        EXPECT_TRUE(objects[n]["error"].is_null());
        EXPECT_EQ(objects[n]["sequence"], n + 1);
        ASSERT_EQ(objects[n]["records"].size(), 1U);
        EXPECT_EQ(objects[n]["records"][0]["type"], Json::parse(pRecords)[0]["type"]);
    }
    EXPECT_EQ(objects[5]["result"], KX_ERROR_PARAMETER);
    EXPECT_EQ(objects[5]["records"], objects[1]["records"]); // what stands in front of the damage
    EXPECT_TRUE(objects[6]["result"].is_null());
    EXPECT_EQ(objects[6]["error"], "enciphered (aes)");
}

TEST_F(Ivs, ReadsWhatItIsTold)
{
    const std::string payload = Write("payload", PayloadOf("track-ex"));
    const std::string foreign = Write("foreign.zoav", DataFrame(25, 1, PayloadOf("overlay")));
    const std::string damaged = Write("damaged.zoav", DataFrame(5, 1, PayloadOf("track-ex")).WrongTailLength());
    const Bytes frame = DataFrame(5, 1, PayloadOf("track-ex"));
    const std::string cut = Write("cut.zoav", frame + Part(frame, 0, 30));
    const std::string torn = Write("torn.zoav", frame + Part(frame, 8) + frame);
    const std::string old = Write("old.svg", {'o', 'l', 'd'});
    const std::string crowd = Write("crowd", Bytes{1, 0, 0, 0} + Bytes(10 * (gsk_maxIvsRecords + 5)));
    for (const auto& [arguments, nExitCode, output, errors] : Rows<std::string, int, std::string, std::string>{
             {"--limit 2 " + m_recording, 0, "object 8", "metadata  2 payloads"},
             {foreign, 0, "", "not read  other data frames: 1 "},
             {"--as 28=overlay " + foreign, 0, "\"hello\"", "1 overlay"},
             {"--as smart-motion=overlay " + foreign, 0, "\"hello\"", "1 overlay"},
             {"--as smart-motion=scene --as intl=track " + foreign, 1, "ERROR", "1 scene"},
             {damaged, 1, "ERROR: the frame is damaged", "failures  1 payload"},
             {"--raw track-ex " + payload, 0, "track-ex, 24 bytes, 1 object\n  object 7", "failures  none"},
             {"--raw track-ex - < " + payload, 0, "object 7", ""},
             {"--raw scene " + payload, 1, "ERROR: it is cut off", ""},
             {"--raw scene /dev/null", 4, "", "is empty"},
             {"--raw scene - < /dev/zero", 4, "", "longer than 64 MiB"},
             {"--raw foo " + payload, 2, "", "is no format: track, track-ex"},
             {"--raw scene --limit 3 " + payload, 2, "", "excludes"},
             {"--as foo=scene " + foreign, 2, "", "is no subtype"},
             {"--as scene " + foreign, 2, "", "SUBTYPE=FORMAT"},
             {"--units 5x5 " + foreign, 2, "", "--svg"},
             {"--svg " + foreign + " " + foreign, 2, "", "would overwrite"},
             {"--svg - --units 0x5 " + foreign, 2, "", "WxH"},
             {"--as 5=track " + foreign, 0, "", "no data frame of subtype 5"},
             {"--as 28=scene --as smart-motion=track " + foreign, 2, "", "second time"},
             {"--svg '' " + foreign, 2, "", "--svg"},
             {"--svg " + old + " " + payload, 4, "", "no known"},
             {"--svg " + old + " --raw scene /dev/null", 4, "", "is empty"},
             {"--svg " + m_directory.Path() + " " + foreign, 3, "", "cannot create"},
             {torn, 0, "object 7", "damage    1 damaged frame, 48 bytes in no frame; "},
             {"--raw overlay " + crowd, 0, " and 5 left out", "left out  5 records"},
             {cut, 0, "object 7", "end       30 bytes wait for the rest of a frame"},
             {payload, 4, "", "no known stream format"},
             {"--svg /no/such/place.svg " + foreign, 3, "", "/no/such/place.svg"}}) {
        SCOPED_TRACE(arguments);
        const CommandResult run = RunFramesift("ivs " + arguments);
        EXPECT_EQ(run.nExitCode, nExitCode) << run.errors;
        ExpectHolds(run.output, {output});
        ExpectHolds(run.errors, {errors});
    }
    EXPECT_EQ(std::filesystem::file_size(old), 3U); // what was no recording left it alone
    const std::string svg = RunFramesift("ivs --svg - --units 9000x4500 " + m_recording).output;
    ExpectHolds(svg, {"<svg ", ">9000 across, 4500 down<", "Gate", "hello", "1 payload that is enciphered: --key"});
}

TEST(IvsText, LeavesNothingThatATerminalObeys)
{
    for (const auto& [bytes, text] :
         Rows<std::string, std::string>{{"plain \xC3\xA4", "plain \xC3\xA4"},
                                        {"\x1B[2J\\", "\\x1b[2J\\\\"},
                                        {"\xC2\x9B[2J", "\\xc2\\x9b[2J"},    // the same in one character
                                        {"\xE2\x80\xAE", "\\xe2\\x80\\xae"}, // writes backwards
                                        {"\xEF\xBF\xBE\xFF", "\\xef\\xbf\\xbe\\xff"}}) {
        EXPECT_EQ(CameraText({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}), text);
    }
}

} // namespace Marvane::FrameSift
