#include "Ivs/Picture/IvsSvg.h"

#include <fmt/format.h>

#include "FrameWriter/RecordingClock.h"
#include "Ivs/Json/IvsWire.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

class Recording
{
public:
    Recording& Add(const std::string& format, const std::string& records)
    {
        const Bytes payload = IvsPayload(*FindIvsFormat(format), Json::parse(records));
        IVS_FRAME_HEAD head;
        head.time = *ClockToTime(*ParseClock("2026-01-31T10:00:00") + m_nStep * m_nFrames++);
        return Take({FindIvsFormat(format), payload, head});
    }

    Recording& Take(const IVS_FRAME& frame)
    {
        m_maker.BeginFrame(frame);
        DecodeIvs(frame, [&](auto eType, const void* pRecords, int nLen) { m_maker.Take(eType, pRecords, nLen); });
        return *this;
    }

    // nState: from 3 on the track is finished.
    Recording& Object(int nId, int nClass, const std::string& points, int nState = 0)
    {
        return Add("track-ex", fmt::format(R"([{{"type": "track-ex", "objects": [{{"obj_id": {}, "object_type": {},
            "operator_type": {}, "track_point": [{}]}}]}}])",
                                           nId, nClass, nState, points));
    }

    std::string Svg(const std::string& name = "x") const { return IvsSvg(m_maker.Scene(), {}, name); }
    Recording& Step(CLOCK_MS nStep)
    {
        m_nStep = nStep;
        return *this;
    }
    CIvsSceneMaker& Maker() { return m_maker; }

private:
    CIvsSceneMaker m_maker;
    int64_t m_nFrames = 0;
    CLOCK_MS m_nStep = 1; // between two frames
};

size_t CountOf(const std::string& text, const std::string& part)
{
    size_t nCount = 0;
    for (size_t nPos = text.find(part); nPos != std::string::npos; nPos = text.find(part, nPos + 1))
        ++nCount;
    return nCount;
}

// Every tag is closed in its turn, and what stands between them holds no bare sign.
void ExpectWellFormed(const std::string& svg)
{
    std::vector<std::string> open;
    for (size_t nPos = svg.find("?>") + 2; nPos < svg.size();) {
        const size_t nTag = std::min(svg.find('<', nPos), svg.size());
        for (size_t n = svg.find('&', nPos); n < nTag; n = svg.find('&', n + 1))
            EXPECT_LT(svg.find(';', n) - n, 6U) << svg.substr(n, 20);
        EXPECT_GE(svg.find('>', nPos), nTag) << svg.substr(nPos, 40);
        if (nTag == svg.size())
            break;
        const size_t nEnd = svg.find('>', nTag);
        ASSERT_NE(nEnd, std::string::npos);
        const std::string tag = svg.substr(nTag + 1, nEnd - nTag - 1);
        EXPECT_EQ(tag.find('<'), std::string::npos) << tag;
        EXPECT_EQ(CountOf(tag, "\"") % 2, 0U) << tag;
        if (tag.front() == '/') {
            ASSERT_FALSE(open.empty());
            EXPECT_EQ(tag.substr(1), open.back());
            open.pop_back();
        } else if (tag.back() != '/') {
            open.push_back(tag.substr(0, tag.find(' ')));
        }
        nPos = nEnd + 1;
    }
    EXPECT_TRUE(open.empty());
}

size_t LastBoxes(const std::string& svg)
{
    return CountOf(svg, "class=\"box\"") - CountOf(svg, "class=\"box\" width"); // but for the legend's
}

} // namespace

TEST(IvsSvg, DrawsWhatTheRecordingHolds)
{
    Recording recording;
    recording.Maker().TakePictureSize(640, 480);
    recording.Object(7, 2, "[4096, 4096, 819, 819]").Object(8, 200, "[100, 100, 30, 40], [200, 100, 30, 40]");
    recording.Add("scene", R"([{"type": "scene", "points": [{"nIndex": 1, "fristtile": "A<b>&\"\u0001",
        "enable": 1, "polygon": [[1000, 1000], [2000, 1000], [1000, 2000]]}]}])");
    recording.Add("overlay", R"([{"type": "overlay", "nId": 6, "elements": [
        {"type": "circle", "wRadius": 100, "positionCircle": [500, 500], "chLineA": 255, "chLineR": 17},
        {"type": "text", "stringPos": [100, 8000], "chLineA": 255, "chLineG": 34, "pString": "5 < 6"}]}])");
    recording.Add("segments",
                  R"([{"type": "common-objects", "objects": [{"objType": 18, "objID": 8, "lanes": {"type": "8D",
        "signal_flow_laneInfo": [{"LaneNum": 3, "virtualLoopTotalNum": 2, "queneLenth": 40}]}}]}])");
    recording.Add("traffic",
                  R"([{"type": "traffic", "records": [{"NumberStat": 13, "plans": [{"PlanId": 1, "RuleType": 2,
        "regions": [{"RegionId": 3, "PeopleNum": 4711}]}]}]}])");
    const std::string svg = recording.Svg("/some/where/n<1>&.zoav");
    ExpectWellFormed(svg);
    EXPECT_EQ(LastBoxes(svg), 2U);
    for (const char* pPart : {"<title>n&lt;1&gt;&amp;.zoav</title>", "class 2: 1 object<", "class 200: 1 object<",
                              "A&lt;b&gt;&amp;&quot;\\x01", "stroke=\"#110000\"", "fill=\"#002200\"", "5 &lt; 6",
                              "lane 3, queue 40", ">4711<", "640x480",
                              // A tenth of the width and height around the middle of an area of 4 to 3.
                              "<rect x=\"592\" y=\"492\" width=\"128\" height=\"96\" class=\"box\""})
        EXPECT_NE(svg.find(pPart), std::string::npos) << pPart;
    EXPECT_EQ(CountOf(svg, "<polygon class=\"loop\""), 2U);
}

TEST(IvsSvg, JoinsTheTrackOfAnObjectOverItsFrames)
{
    Recording recording;
    recording.Object(1, 2, "[100, 0, 9, 9], [200, 0, 9, 9]")
        .Object(1, 2, "[100, 0, 9, 9], [200, 0, 9, 9], [300, 0, 9, 9]");
    recording.Object(1, 2, "[200, 0, 9, 9], [300, 0, 9, 9], [400, 0, 9, 9]").Object(1, 2, "[400, 0, 9, 9]", 3);
    recording.Object(1, 2, "[5000, 0, 9, 9]"); // the number is given anew
    const auto& objects = recording.Maker().Scene().objects;
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects.begin()->second.places.size(), 4U);
    EXPECT_EQ(objects.rbegin()->second.places.size(), 1U);
    EXPECT_EQ(LastBoxes(recording.Svg()), 2U);
}

TEST(IvsSvg, TellsTimesInFullWhereTheClockAloneWouldNotDo)
{
    for (const auto& [nStep, span, label] : Rows<CLOCK_MS, std::string, std::string>{
             {0, "10:00:00.000<", ">-7<"},
             {250, "10:00:00.000 to 2026-01-31T10:00:00.250<", ">-7 10:00:00.250<"},
             {60'000, "10:00:00.000 to 2026-01-31T10:01:00.000<", ">-7 10:01:00<"},
             {86'400'000, "10:00:00.000 to 2026-02-01T10:00:00.000<", ">-7 2026-02-01 10:00:00<"}}) {
        const std::string svg =
            Recording().Step(nStep).Object(-7, 2, "[99, 0, 9, 9]").Object(-7, 2, "[999, 0, 9, 9]").Svg();
        EXPECT_NE(svg.find(span), std::string::npos) << span;
        EXPECT_NE(svg.find(label), std::string::npos) << label;
    }
}

TEST(IvsSvg, StaysReadableWhateverTheRecordingHolds)
{
    const std::string none = Recording().Svg();
    ExpectWellFormed(none);
    EXPECT_NE(none.find("no metadata in this recording"), std::string::npos);

    Recording many;
    for (size_t n = 0; n < gsk_maxSceneObjects + 10; ++n)
        many.Object(static_cast<int>(n), static_cast<int>(n % 256), fmt::format("[{}, {}, 99, 99]", n * 19, n * 7));
    for (size_t n = 0; n < 3 * gsk_maxTrackPoints; ++n)
        many.Object(399, 1, fmt::format("[{}, 8000, 9, 9]", n));
    const std::string svg = many.Svg();
    ExpectWellFormed(svg);
    EXPECT_EQ(LastBoxes(svg), gsk_maxSceneObjects);
    EXPECT_NE(svg.find("10 objects not seen for the longest time"), std::string::npos);
    EXPECT_NE(svg.find("Places of long ways"), std::string::npos);
    const auto& scene = many.Maker().Scene();
    for (const auto& [key, object] : scene.objects) {
        EXPECT_LE(object.places.size(), gsk_maxTrackPoints);
        if (object.name == "399") { // what stays is spread over the whole way
            EXPECT_EQ(object.places.back().x, 3 * gsk_maxTrackPoints - 1);
            EXPECT_GT(object.places.size(), gsk_maxTrackPoints / 2);
        }
    }
}

} // namespace Marvane::FrameSift
