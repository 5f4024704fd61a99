#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "Check/FindingText.h"
#include "Ivs/Picture/IvsSvgParts.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_classRows = 16;
constexpr size_t sc_counterRows = 12;
constexpr double sc_textSize = 12;
constexpr double sc_noteSlack = 1.18; // running text is narrower than TextWidth fears
constexpr double sc_rowHeight = 19;
constexpr double sc_signWidth = 34;

// Writes downwards.
class CSide
{
public:
    CSide(std::string& svg, SVG_POINT corner) : m_svg(svg), m_x(corner.x), m_y(corner.y) {}

    void Heading(std::string_view text)
    {
        m_y += m_bEmpty ? 0 : 12;
        m_bEmpty = false;
        m_y += sc_rowHeight;
        m_svg += fmt::format("<text class=\"heading\" x=\"{}\" y=\"{}\">{}</text>\n", Number(m_x), Number(m_y - 5),
                             XmlText(text));
    }

    // sign: elements in a box of 26 by 13, from 0,0 on.
    void Row(std::string_view sign, std::string_view text)
    {
        m_svg += fmt::format("<g transform=\"translate({},{})\">{}</g>\n", Number(m_x), Number(m_y + 3), sign);
        Cell(sc_signWidth, text);
        m_y += sc_rowHeight;
    }

    // Rows of as many cells each. Columns are as wide as what stands in them.
    void Table(const std::vector<std::vector<std::string>>& rows)
    {
        constexpr double sc_leastGap = 7;
        constexpr double sc_mostGap = 22;
        std::vector<double> widths(rows.front().size());
        for (const auto& row : rows) {
            for (size_t n = 0; n < widths.size(); ++n)
                widths[n] = std::max(widths[n], TextWidth(row[n], sc_textSize));
        }
        const double dFree = gsk_sideWidth - std::accumulate(widths.begin(), widths.end(), 0.0);
        const double dGap = std::clamp(dFree / static_cast<double>(widths.size() - 1), sc_leastGap, sc_mostGap);
        for (const auto& row : rows) {
            double x = 0;
            for (size_t n = 0; n < widths.size(); ++n) {
                Cell(x, row[n]);
                x += widths[n] + dGap;
            }
            m_y += sc_rowHeight;
        }
    }

    void Line(std::string_view text)
    {
        Cell(0, text);
        m_y += sc_rowHeight;
    }

    void Note(const std::string& text)
    {
        std::string line;
        for (size_t nPos = 0; nPos < text.size();) {
            const size_t nEnd = std::min(text.find(' ', nPos), text.size());
            const std::string word = text.substr(nPos, nEnd - nPos);
            std::string longer = line;
            longer.append(line.empty() ? "" : " ").append(word);
            if (!line.empty() && TextWidth(longer, sc_textSize) > gsk_sideWidth * sc_noteSlack) {
                WriteLine(line);
                longer = word;
            }
            line = std::move(longer);
            nPos = nEnd + 1;
        }
        WriteLine(line);
        m_y += 5;
    }

    double End() const { return m_y; }

private:
    void Cell(double x, std::string_view text)
    {
        m_svg += fmt::format("<text class=\"side\" x=\"{}\" y=\"{}\">{}</text>\n", Number(m_x + x), Number(m_y + 14),
                             XmlText(text));
    }

    void WriteLine(std::string& line)
    {
        m_svg += fmt::format("<text class=\"note\" x=\"{}\" y=\"{}\">{}</text>\n", Number(m_x), Number(m_y + 13),
                             XmlText(line));
        m_y += 16;
        line.clear();
    }

    std::string& m_svg;
    double m_x;
    double m_y;
    bool m_bEmpty = true;
};

void WriteClasses(CSide& side, const IVS_SCENE& scene)
{
    if (scene.objectsByClass.empty())
        return;
    side.Heading("Objects by class");
    size_t nRow = 0;
    for (const auto& [nClass, nCount] : scene.objectsByClass) {
        if (nCount == 0)
            continue; // all of it are of another class now
        if (++nRow > sc_classRows)
            break;
        const SVG_CLASS_STYLE style = ClassStyle(scene, nClass);
        side.Row(fmt::format("<rect class=\"swatch\" width=\"26\" height=\"13\" stroke=\"{0}\" fill=\"{0}\" "
                             "stroke-dasharray=\"{1}\"/>",
                             style.colour, style.dashes.empty() ? "none" : style.dashes),
                 fmt::format("{}: {}", ClassName(nClass), Counted(nCount, "object")));
    }
    if (nRow > sc_classRows)
        side.Row("", "and more classes");
}

struct SIGN_ROW
{
    bool bShown;
    std::string_view sign;
    std::string_view text;
};

void WriteSigns(CSide& side, const IVS_SCENE& scene)
{
    const auto anyObject = [&](size_t nPlaces) {
        return std::any_of(scene.objects.begin(), scene.objects.end(),
                           [=](const auto& entry) { return entry.second.places.size() >= nPlaces; });
    };
    const auto anyLane = [&](auto has) {
        return std::any_of(scene.roads.begin(), scene.roads.end(), [=](const auto& entry) {
            return std::any_of(entry.second.lanes.begin(), entry.second.lanes.end(), has);
        });
    };
    const auto anyRoad = [&](auto has) {
        return std::any_of(scene.roads.begin(), scene.roads.end(),
                           [=](const auto& entry) { return has(entry.second); });
    };
    const SIGN_ROW rows[] = {
        {anyObject(1), R"(<rect class="box" width="26" height="13" stroke="#dddddd" fill="#dddddd"/>)",
         "where an object was last seen"},
        {anyObject(2), R"(<rect class="earlier" width="26" height="13" stroke="#dddddd"/>)", "where it was before"},
        {anyObject(2),
         R"(<polyline class="track" points="3,6.5 20,6.5" stroke="#dddddd"/><circle cx="3" cy="6.5" r="3.5" )"
         R"(fill="#dddddd"/><polygon class="arrow" points="26,6.5 15,1.5 15,11.5" fill="#dddddd"/>)",
         "its way, from the dot to the arrow"},
        {anyLane([](const SCENE_LANE& lane) { return !lane.left.empty(); }),
         R"(<polyline class="edge" points="0,6.5 26,6.5"/>)", "edge of a lane"},
        {anyLane([](const SCENE_LANE& lane) { return !lane.scale.empty(); }),
         R"(<polyline class="scale" points="0,6.5 26,6.5"/>)", "mark of its distance scale"},
        {anyLane([](const SCENE_LANE& lane) { return !lane.loops.empty(); }),
         R"(<rect class="loop" width="26" height="13"/>)", "virtual loop"},
        {anyLane([](const SCENE_LANE& lane) { return !lane.queue.empty(); }),
         R"(<polyline class="queue" points="0,6.5 26,6.5"/>)", "end of a queue"},
        {anyRoad([](const SCENE_ROAD& road) { return !road.marks.empty(); }),
         R"(<circle class="mark" cx="13" cy="6.5" r="2"/>)", "mark with its value"},
        {!scene.regions.empty(), R"(<rect class="region" width="26" height="13"/>)", "region of the scene, with title"},
        {!scene.drawings.empty(), R"(<text class="side" x="6" y="11">A</text>)",
         "overlay drawings have their own colours"},
    };
    if (std::none_of(std::begin(rows), std::end(rows), [](const SIGN_ROW& row) { return row.bShown; }))
        return;
    side.Heading("Signs");
    for (const SIGN_ROW& row : rows) {
        if (row.bShown)
            side.Row(row.sign, row.text);
    }
}

void WriteCounters(CSide& side, const IVS_SCENE& scene)
{
    if (scene.counters.empty())
        return;
    side.Heading("Counts");
    std::vector<std::vector<std::string>> rows = {{"plan", "rule", "region", "last", "most", "state"}};
    for (const auto& [key, counter] : scene.counters) {
        if (rows.size() > sc_counterRows)
            break;
        const auto& [nPlan, nRule, nRegion] = key;
        rows.push_back({std::to_string(nPlan), std::to_string(nRule), std::to_string(nRegion),
                        std::to_string(counter.nNow), std::to_string(counter.nMost), std::to_string(counter.nState)});
    }
    side.Table(rows);
    if (scene.counters.size() > sc_counterRows)
        side.Line(fmt::format("and {} more", scene.counters.size() - sc_counterRows));
}

void WriteAssumptions(CSide& side, const IVS_SCENE& scene, const IVS_UNITS& units)
{
    side.Heading("How it is drawn");
    side.Note(fmt::format(
        "Places count in units, {} across and {} down the whole picture{}.", units.nAcross, units.nDown,
        units.bAssumed ? "; this is assumed, as the data does not tell (--units sets others)" : ", as --units says"));
    side.Note("x and y of an object are taken as the middle of its box, xSize and ySize as its full width and height.");
    if (!scene.objects.empty() &&
        std::get<0>(scene.objects.begin()->first) != std::get<0>(scene.objects.rbegin()->first))
        side.Note("What is tracked in several formats counts once in each: they do not share their numbers.");
    if (scene.nWidth > 0)
        side.Note(fmt::format("The picture has the shape of the video, {}x{}.", scene.nWidth, scene.nHeight));
    else
        side.Note("The shape of the picture is assumed as 16:9: no video tells it.");
}

std::string EncipheredText(const SCENE_LEFT_OUT& leftOut)
{
    const bool bOne = leftOut.nEnciphered == 1;
    return fmt::format("{} that {} enciphered{}.", Counted(leftOut.nEnciphered, "payload"), bOne ? "is" : "are",
                       !leftOut.bKeyHelps ? ""
                       : bOne             ? ": --key deciphers it"
                                          : ": --key deciphers them");
}

void WriteLeftOut(CSide& side, const IVS_SCENE& scene, uint64_t nLabels)
{
    const SCENE_LEFT_OUT& leftOut = scene.leftOut;
    const auto nPlaceless = static_cast<uint64_t>(std::count_if(
        scene.objects.begin(), scene.objects.end(), [](const auto& entry) { return entry.second.places.empty(); }));
    const std::pair<bool, std::string> notes[] = {
        {leftOut.nEnciphered > 0, EncipheredText(leftOut)},
        {leftOut.nFailed > 0,
         Counted(leftOut.nFailed, "payload") + " that failed, in whole or in part: the listing tells why."},
        {leftOut.nRecords > 0,
         fmt::format("{} of payloads with more than {}.", Counted(leftOut.nRecords, "record"), gsk_maxIvsRecords)},
        {leftOut.nObjects > 0,
         fmt::format("{} not seen for the longest time: the picture holds {}. One that came back counts anew.",
                     Counted(leftOut.nObjects, "object"), gsk_maxSceneObjects)},
        {leftOut.bThinned, fmt::format("Places of long ways: of more than {} every other one.", gsk_maxTrackPoints)},
        {nPlaceless > 0, Counted(nPlaceless, "object") + " whose place the camera does not tell."},
        {leftOut.bRoads, fmt::format("Lanes of more than {} objects.", gsk_maxLaneObjects)},
        {leftOut.bRegions, fmt::format("More than {} regions.", gsk_maxSceneRegions)},
        {leftOut.bDrawings,
         fmt::format("More than {} drawings, or {} elements in one.", gsk_maxSceneDrawings, gsk_maxDrawingElements)},
        {leftOut.bCounters, fmt::format("More than {} counts.", gsk_maxSceneCounters)},
        {nLabels > 0, Counted(nLabels, "label") + " for which there was no room."},
    };
    if (std::none_of(std::begin(notes), std::end(notes), [](const auto& note) { return note.first; }))
        return;
    side.Heading("Left out");
    for (const auto& [bTrue, text] : notes) {
        if (bTrue)
            side.Note(text);
    }
}

} // namespace

double WriteSide(std::string& svg, SVG_POINT corner, const CSvgCanvas& canvas, const IVS_SCENE& scene,
                 const IVS_UNITS& units)
{
    CSide side(svg, corner);
    WriteClasses(side, scene);
    WriteSigns(side, scene);
    WriteCounters(side, scene);
    WriteAssumptions(side, scene, units);
    WriteLeftOut(side, scene, canvas.LabelsLeftOut());
    return side.End();
}

} // namespace Marvane::FrameSift
