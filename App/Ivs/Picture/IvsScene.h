// What a picture of intelligent video metadata shows: everything of a recording laid over each other, within bounds.
#ifndef FRAMESIFT_APP_IVS_PICTURE_IVSSCENE_H
#define FRAMESIFT_APP_IVS_PICTURE_IVSSCENE_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Ivs/IvsFrame.h"

namespace Marvane::FrameSift {

// Bounds, so that an endless stream ends as a picture that can be read.
inline constexpr size_t gsk_maxSceneObjects = 400;   // then those go that were not seen for the longest time
inline constexpr size_t gsk_maxTrackPoints = 200;    // of an object; then every other one goes
inline constexpr size_t gsk_maxLaneObjects = 16;     // from here on the first ones stay
inline constexpr size_t gsk_maxSceneRegions = 64;    // the same
inline constexpr size_t gsk_maxSceneDrawings = 64;   // the same
inline constexpr size_t gsk_maxDrawingElements = 64; // of a drawing
inline constexpr size_t gsk_maxSceneCounters = 64;   // the same as lanes
inline constexpr size_t gsk_maxSceneTextBytes = 200; // of a text in a drawing

struct SCENE_POINT
{
    int32_t x;
    int32_t y;
};
using SCENE_LINE = std::vector<SCENE_POINT>;

inline constexpr int32_t gsk_noClass = -1; // the format tells none

struct SCENE_OBJECT
{
    std::string name;  // its number
    std::string title; // of its plate, or its own name; escaped
    int32_t nClass = gsk_noClass;
    std::vector<KX_IVS_POINT> places; // oldest first; may be empty
    std::vector<KX_IVS_POINT> tail;   // the newest places before thinning, for the joint with the next ones
    std::optional<KX_TIME> first;     // frames in which it was seen
    std::optional<KX_TIME> last;
    uint64_t nLastSeen = 0; // number of the frame
    bool bFinished = false;
    bool bThinned = false;
};

struct SCENE_LANE
{
    std::string name;
    SCENE_LINE left; // edges; empty if the attribute has none
    SCENE_LINE right;
    std::vector<SCENE_LINE> loops; // closed
    std::vector<int32_t> scale;    // marks of distance, from the top edge
    SCENE_LINE queue;              // its tail, from left to right
    uint32_t nQueue = 0;
};

struct SCENE_MARK
{
    SCENE_POINT at;
    int32_t nValue;
};

struct SCENE_ROAD
{
    std::vector<SCENE_LANE> lanes;
    std::vector<SCENE_MARK> marks;
};

struct SCENE_REGION
{
    std::string title;
    SCENE_POINT titleAt = {};
    SCENE_LINE corners;
    bool bShown = false;
};

struct SCENE_COLOUR
{
    uint8_t chA;
    uint8_t chR;
    uint8_t chG;
    uint8_t chB;
};

struct SCENE_SHAPE
{
    uint32_t nType = 0;  // KX_IVS_ZOOP_ELEMENT_TYPE
    SCENE_LINE points;   // of a circle its middle, of a text where it begins
    uint32_t nSize = 0;  // radius, or size of the letters
    uint32_t nWidth = 0; // of the line
    SCENE_COLOUR line = {};
    SCENE_COLOUR area = {};
    std::string text;
};

struct SCENE_COUNTER
{
    int32_t nNow = 0;
    int32_t nMost = 0;
    uint32_t nState = 0;
};

// What the bounds kept out of the picture.
struct SCENE_LEFT_OUT
{
    uint64_t nEnciphered = 0; // payloads
    bool bKeyHelps = false;   // against some of them
    uint64_t nFailed = 0;     // payloads
    uint64_t nRecords = 0;    // of payloads that hold too many
    uint64_t nObjects = 0;
    bool bThinned = false;
    bool bRoads = false;
    bool bRegions = false;
    bool bDrawings = false;
    bool bCounters = false;
};

struct IVS_SCENE
{
    using OBJECT_KEY = std::tuple<int, uint32_t, uint32_t, uint64_t>; // kind, channel, number, which to bear it

    using ROAD_KEY = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>; // segment, group, object, OBJ_ATTR_UNION_FLAG

    std::map<OBJECT_KEY, SCENE_OBJECT> objects;
    std::map<int32_t, uint64_t> objectsByClass; // of all that were seen
    std::map<ROAD_KEY, SCENE_ROAD> roads;
    std::map<int32_t, SCENE_REGION> regions;                                    // by number
    std::map<uint32_t, std::vector<SCENE_SHAPE>> drawings;                      // by number
    std::map<std::tuple<uint32_t, uint32_t, uint32_t>, SCENE_COUNTER> counters; // plan, rule, region
    std::optional<KX_TIME> first;
    std::optional<KX_TIME> last;
    uint64_t nFrames = 0;
    int32_t nWidth = 0; // of the video picture; 0: not known
    int32_t nHeight = 0;
    SCENE_LEFT_OUT leftOut;
};

class CIvsSceneMaker
{
public:
    void TakePictureSize(int32_t nWidth, int32_t nHeight);
    // The records that follow are of this frame.
    void BeginFrame(const IVS_FRAME& frame);
    void Take(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen);
    // They were all of it.
    void EndFrame(const IVS_FRAME& frame, const IVS_OUTCOME& outcome);
    const IVS_SCENE& Scene() const { return m_scene; }

private:
    void Take(const KX_IVS_OBJ& object);
    void Take(const KX_IVS_OBJ_EX& object);
    void Take(const KX_IVS_OBJ_A0& object);
    void Take(const KX_IVS_OBJ_A0_Ex& object);
    void Take(const KX_IVS_COMMON_OBJ& object);
    void Take(const KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR& title);
    void Take(const KX_IVS_ZOOP_OBJ& drawing);
    void Take(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record);
    template <class T>
    void TakeAll(std::span<const T> records);

    SCENE_OBJECT& Seen(int nKind, uint32_t nChannel, uint32_t nId, int32_t nClass, bool bLives);
    void AddPlaces(SCENE_OBJECT& object, std::span<const KX_IVS_POINT> places);
    void DropLongestUnseen();

    IVS_SCENE m_scene;
    std::optional<KX_TIME> m_time; // of the frame
    uint64_t m_nLives = 0;
};

// The lanes of a signal flow object.
SCENE_ROAD RoadOf(const KX_IVS_COMMON_OBJ& object);
std::vector<SCENE_SHAPE> ShapesOf(const KX_IVS_ZOOP_OBJ& drawing);

} // namespace Marvane::FrameSift

#endif
