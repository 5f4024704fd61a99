#include "Ivs/Picture/IvsScene.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "FrameWriter/RecordingClock.h"
#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"

namespace Marvane::FrameSift {

namespace {

// Numbers of objects count within their kind.
enum OBJECT_KIND : int
{
    TrackObject,
    TrackExObject,
    A0Object,
    CommonObject
};

constexpr size_t sc_maxTail = 33; // one more than any record brings

bool IsSamePlace(const KX_IVS_POINT& left, const KX_IVS_POINT& right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

// How many of the places a tail ends with stand again at the front of the new ones: cameras send the newest places anew
// with every frame.
size_t OverlapOf(std::span<const KX_IVS_POINT> tail, std::span<const KX_IVS_POINT> places)
{
    for (size_t nCount = std::min(tail.size(), places.size()); nCount > 0; --nCount) {
        if (std::equal(tail.end() - static_cast<ptrdiff_t>(nCount), tail.end(), places.begin(), IsSamePlace))
            return nCount;
    }
    return 0;
}

// The first and the last place stay.
void ThinOut(std::vector<KX_IVS_POINT>& places)
{
    size_t nKept = 0;
    for (size_t n = 0; n < places.size(); ++n) {
        if (n % 2 == 0 || n + 1 == places.size())
            places[nKept++] = places[n];
    }
    places.resize(nKept);
}

// True if the key may be set: it is there already, or there is room. Notes if not.
template <class MAP>
bool HasRoom(const MAP& map, const typename MAP::key_type& key, size_t nMost, bool& bLeftOut)
{
    if (map.size() < nMost || map.count(key) > 0)
        return true;
    bLeftOut = true;
    return false;
}

} // namespace

void CIvsSceneMaker::TakePictureSize(int32_t nWidth, int32_t nHeight)
{
    if (nWidth <= 0 || nHeight <= 0)
        return;
    m_scene.nWidth = nWidth;
    m_scene.nHeight = nHeight;
}

void CIvsSceneMaker::BeginFrame(const IVS_FRAME& frame)
{
    ++m_scene.nFrames;
    m_time.reset();
    if (!frame.head || !IsCalendarTime(frame.head->time))
        return;
    m_time = frame.head->time;
    if (!m_scene.first)
        m_scene.first = m_time;
    m_scene.last = m_time;
}

void CIvsSceneMaker::EndFrame(const IVS_FRAME& frame, const IVS_OUTCOME& outcome)
{
    SCENE_LEFT_OUT& leftOut = m_scene.leftOut;
    leftOut.nRecords += outcome.nLeftOut;
    leftOut.bKeyHelps = leftOut.bKeyHelps || frame.WouldKeyHelp();
    if (frame.IsEnciphered())
        ++leftOut.nEnciphered;
    else if (!IvsErrorText(frame, outcome.result).empty())
        ++leftOut.nFailed;
}

template <class T>
void CIvsSceneMaker::TakeAll(std::span<const T> records)
{
    for (const T& record : records)
        Take(record);
}

void CIvsSceneMaker::Take(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen)
{
    switch (eType) {
    case IVS_TRACK:
        return TakeAll(RecordsOf<KX_IVS_OBJ>(pRecords, nLen));
    case IVS_TRACK_EX:
        return TakeAll(RecordsOf<KX_IVS_OBJ_EX>(pRecords, nLen));
    case IVS_TRACK_40:
        return TakeAll(RecordsOf<KX_IVS_COMMON_OBJ>(pRecords, nLen));
    case IVS_TRACK_A1:
        return TakeAll(RecordsOf<KX_IVS_OBJ_A0>(pRecords, nLen));
    case IVS_TRACK_A1_EX:
        for (const KX_IVS_OBJ_ALL& all : RecordsOf<KX_IVS_OBJ_ALL>(pRecords, nLen))
            TakeAll(ObjectsOf(all));
        return;
    case IVS_TRACK_EX3:
        return TakeAll(RecordsOf<KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR>(pRecords, nLen));
    case IVS_TRACK_ZOOP:
        return TakeAll(RecordsOf<KX_IVS_ZOOP_OBJ>(pRecords, nLen));
    case IVS_TRACK_B1:
        return TakeAll(RecordsOf<KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR>(pRecords, nLen));
    default:
        return;
    }
}

// A number that comes again after its track was finished is another object's.
SCENE_OBJECT& CIvsSceneMaker::Seen(int nKind, uint32_t nChannel, uint32_t nId, int32_t nClass, bool bLives)
{
    auto found = m_scene.objects.upper_bound({nKind, nChannel, nId, UINT64_MAX});
    const bool bKnown = found != m_scene.objects.begin() && std::get<0>((--found)->first) == nKind &&
                        std::get<1>(found->first) == nChannel && std::get<2>(found->first) == nId;
    if (!bKnown || (found->second.bFinished && bLives)) {
        if (m_scene.objects.size() >= gsk_maxSceneObjects)
            DropLongestUnseen();
        const IVS_SCENE::OBJECT_KEY key(nKind, nChannel, nId, m_nLives++);
        found = m_scene.objects.emplace(key, SCENE_OBJECT()).first;
        found->second.name = std::to_string(nId);
        found->second.nClass = nClass;
        found->second.first = m_time;
        ++m_scene.objectsByClass[nClass];
    }
    SCENE_OBJECT& object = found->second;
    if (object.nClass != nClass) { // the camera has thought better of it
        --m_scene.objectsByClass[object.nClass];
        ++m_scene.objectsByClass[nClass];
        object.nClass = nClass;
    }
    object.last = m_time;
    object.bFinished = !bLives;
    object.nLastSeen = m_scene.nFrames;
    return object;
}

void CIvsSceneMaker::DropLongestUnseen()
{
    const auto oldest =
        std::min_element(m_scene.objects.begin(), m_scene.objects.end(), [](const auto& left, const auto& right) {
            return left.second.nLastSeen < right.second.nLastSeen;
        });
    m_scene.objects.erase(oldest);
    ++m_scene.leftOut.nObjects;
}

void CIvsSceneMaker::AddPlaces(SCENE_OBJECT& object, std::span<const KX_IVS_POINT> places)
{
    for (const KX_IVS_POINT& place : places.subspan(OverlapOf(object.tail, places))) {
        object.places.push_back(place);
        object.tail.push_back(place);
    }
    if (object.tail.size() > sc_maxTail)
        object.tail.erase(object.tail.begin(), object.tail.end() - static_cast<ptrdiff_t>(sc_maxTail));
    if (object.places.size() > gsk_maxTrackPoints) {
        ThinOut(object.places);
        object.bThinned = true;
        m_scene.leftOut.bThinned = true;
    }
}

void CIvsSceneMaker::Take(const KX_IVS_OBJ& object)
{
    SCENE_OBJECT& seen = Seen(TrackObject, 0, object.obj_id, gsk_noClass, object.enable != 0);
    AddPlaces(seen, Front(object.track_point, object.trackpt_num));
}

void CIvsSceneMaker::Take(const KX_IVS_OBJ_EX& object)
{
    SCENE_OBJECT& seen = Seen(TrackExObject, static_cast<uint32_t>(object.decode_id),
                              static_cast<uint32_t>(object.obj_id), object.object_type, object.enable != 0);
    seen.name = std::to_string(object.obj_id); // it has a sign
    AddPlaces(seen, Front(object.track_point, static_cast<size_t>(std::max(object.trackpt_num, 0))));
}

void CIvsSceneMaker::Take(const KX_IVS_OBJ_A0& object)
{
    AddPlaces(Seen(A0Object, 0, object.objID, gsk_noClass, true), {&object.trackPoint, 1});
}

void CIvsSceneMaker::Take(const KX_IVS_OBJ_A0_Ex& object)
{
    AddPlaces(Seen(A0Object, 0, object.objID, object.Objtype, true), {&object.trackPoint, 1});
}

void CIvsSceneMaker::Take(const KX_IVS_COMMON_OBJ& object)
{
    if (object.attrUnionflag != OBJ_ATTR_COMM) {
        const IVS_SCENE::ROAD_KEY key(object.segInfo.funcType, object.groupID, object.objID, object.attrUnionflag);
        if (HasRoom(m_scene.roads, key, gsk_maxLaneObjects, m_scene.leftOut.bRoads))
            m_scene.roads[key] = RoadOf(object);
        return;
    }
    SCENE_OBJECT& seen = Seen(CommonObject, object.segInfo.funcType, object.objID, object.objType, true);
    const KX_IVS_ATTRIBUTE& attributes = object.attr.comm;
    const auto track = Front(attributes.arrtibute84.trackPoint, attributes.arrtibute84.pointCount);
    std::vector<KX_IVS_POINT> places(track.begin(), track.end());
    if (object.pointVailed != 0 && (places.empty() || !IsSamePlace(places.back(), object.trackPoint)))
        places.push_back(object.trackPoint);
    AddPlaces(seen, places);
    const auto& plate = attributes.arrtibute82;
    const auto& name = attributes.arrtibute8E;
    if (plate.plateInfoLen > 0)
        seen.title = CameraText(Front(plate.plateInfo, plate.plateInfoLen));
    else if (name.name_lenth > 0)
        seen.title = CameraText(Front(name.name, name.name_lenth));
}

void CIvsSceneMaker::Take(const KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR& title)
{
    if (!HasRoom(m_scene.regions, title.nIndex, gsk_maxSceneRegions, m_scene.leftOut.bRegions))
        return;
    SCENE_REGION region;
    region.title = CameraText(title.fristtile);
    region.titleAt = {title.sceneInfoPoint.x, title.sceneInfoPoint.y};
    region.bShown = title.enable != 0;
    for (const KX_IVS_POSITION& corner : Front(title.polygon, title.polygon_num))
        region.corners.push_back({corner.x, corner.y});
    m_scene.regions[title.nIndex] = region;
}

void CIvsSceneMaker::Take(const KX_IVS_ZOOP_OBJ& drawing)
{
    if (!HasRoom(m_scene.drawings, drawing.nId, gsk_maxSceneDrawings, m_scene.leftOut.bDrawings))
        return;
    m_scene.drawings[drawing.nId] = ShapesOf(drawing);
    m_scene.leftOut.bDrawings = m_scene.leftOut.bDrawings || drawing.chCount > gsk_maxDrawingElements;
}

void CIvsSceneMaker::Take(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record)
{
    for (const KX_IVS_TRAFFIC_PLAN& plan : Behind(record.pIVSTrafficPlan, record.nIVSTrafficPlanNum)) {
        for (const KX_IVS_TRAFFIC_REGION& region : Behind(plan.pRegion, plan.RegionNum)) {
            const std::tuple<uint32_t, uint32_t, uint32_t> key = {plan.PlanId, plan.RuleType, region.RegionId};
            if (!HasRoom(m_scene.counters, key, gsk_maxSceneCounters, m_scene.leftOut.bCounters))
                continue;
            const auto [place, bNew] = m_scene.counters.try_emplace(key);
            place->second.nNow = region.PeopleNum;
            place->second.nMost = bNew ? region.PeopleNum : std::max(place->second.nMost, region.PeopleNum);
            place->second.nState = region.State;
        }
    }
}

} // namespace Marvane::FrameSift
