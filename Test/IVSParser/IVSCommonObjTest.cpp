// Segments, groups and objects; what objects carry has tests of its own.
#include "IVSParser/IVSLaneStore.h"
#include "IVSParser/IVSObject.h"
#include "IVSParser/IvsObjectBytes.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_golden = {
    0x42, 0,    126,  0,    1,    0,    0,    0,    // segment: type, length, one group
    0,    0,    0,    0,    'c',  'a',  'm',  'e',  // cameraID
    'r',  'a',  0,    0,    0,    0,    0,    0,    //
    0,    0,    0,    0,    0,    0,    0,    'x',  //
    0x78, 0x56, 0x34, 0x12, 3,    0,    0,    0,    // groupID, three objects
    2,    0,    52,   0,    0x01, 0,    0,    0x80, // vehicle: size, objID
    1,    2,    3,    4,    5,    6,    7,    8,    // trackPoint
    1,    6,    0xEE, 0xEE,                         // pointVailed, operatorType
    0x93, 8,    44,   1,    20,   9,    0x10, 0x27, // a ship's length, height, speed, distance
    0x8F, 8,    1,    2,    3,    4,    5,    6,    // not known
    0x90, 8,    0xEE, 0xEE, 10,   0,    0,    1,    // m_QueuingTime
    0x97, 8,    1,    0xEE, 0xFF, 0xFF, 0xFF, 254,  // obj_Validity, obj_ID
    15,   0,    14,   0,    2,    0,    0,    0,    // face: size, objID
    4,    0xEE, 0xEE, 0xEE, 0xF0, 0xF1,             // version, data
    1,    0,    20,   0,    9,    0,    0,    0,    // another class: size, objID
    3,    0,    0,    0,                            // operatorType
    0x92, 8,    11,   2,    1,    2,    3,    4,    // vehicles_type, cyclingnumber, vehicles_color
};

int KeepObjects(KX_IVS_PARSE_TYPE, void* pRecords, int nLen, void* pUserData)
{
    const auto objects = IvsRecords<KX_IVS_COMMON_OBJ>(pRecords, nLen);
    static_cast<std::vector<KX_IVS_COMMON_OBJ>*>(pUserData)->assign(objects.begin(), objects.end());
    return 0;
}

std::vector<KX_IVS_COMMON_OBJ> ObjectsOf(const Bytes& segment)
{
    std::vector<KX_IVS_COMMON_OBJ> objects;
    IVS_LANE_STORE store;
    EXPECT_EQ(ParseIVSCommonObj(segment.data(), static_cast<int>(segment.size()), &KeepObjects, &objects, store),
              KX_SUCCESS);
    return objects;
}

} // namespace

TEST(IVSCommonObj, ObjectsOfAGroup)
{
    std::vector<KX_IVS_COMMON_OBJ> objects = ObjectsOf(sc_golden);
    ASSERT_EQ(objects.size(), 3U);
    EXPECT_EQ(objects[1].facedata, &sc_golden[104]);
    objects[1].facedata = nullptr;
    constexpr size_t nAttr = 72;
    const Bytes common = Bytes(2248) + At(0, Bytes{2, 1} + Part(sc_golden, 12, 20)) + At(32, {0x78, 0x56, 0x34, 0x12}) +
                         At(52, {2248 % 256, 2248 / 256});
    EXPECT_EQ(IvsBytesOf(objects[0]), common + At(36, Bytes{1, 0, 0, 0x80} + Counting(8, 1) + Bytes{2, 1, 6}) +
                                          At(nAttr, {0, 0, 0x89, 0}) + At(nAttr + 1956, {10, 0, 0, 1}) +
                                          At(nAttr + 2028, {44, 1, 20, 9, 0x10, 0x27}) +
                                          At(nAttr + 2124, {1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 254}));
    EXPECT_EQ(IvsBytesOf(objects[1]), common + At(36, {2}) + At(48, {15}) + At(56, {4}));
    EXPECT_EQ(IvsBytesOf(objects[2]),
              common + At(36, {9}) + At(48, {1, 0, 3}) + At(nAttr, {0, 0, 4}) + At(nAttr + 1972, {1, 2, 3, 4, 11, 2}));
    EXPECT_EQ(Part(sc_golden, 106), IvsPlainObject(1, IvsAttribute(0x92, {11, 2, 1, 2, 3, 4})));
}

TEST(IVSCommonObj, CallsBackForEachGroup)
{
    const Bytes object = IvsPlainObject(1, {});
    const Bytes group = IvsGroup({object});
    const Bytes damaged = IvsPlainObject(1, IvsAttribute(0x80, Bytes(4)));
    const IVS_EVENT nothing = {IVS_TRACK_40, 0};
    const IVS_EVENT one = {IVS_TRACK_40, sizeof(KX_IVS_COMMON_OBJ)};
    const IVS_EVENT two = {IVS_TRACK_40, 2 * sizeof(KX_IVS_COMMON_OBJ)};
    const Rows<const char*, Bytes, IVS_RUN> rows = {
        {"32 bytes", IvsSegment({}), {PARAM, {nothing}}},
        {"33 bytes, no group", IvsSegment({Bytes{0}}) + At(4, {0}), {KX_SUCCESS, {nothing}}},
        {"33 bytes, group cut off", IvsSegment({Bytes{0}}), {BAD, {}}},
        {"no object", IvsSegment({IvsGroup({})}), {KX_SUCCESS, {}}},
        {"two groups", IvsSegment({group, IvsGroup({object, object})}), {KX_SUCCESS, {one, two}}},
        {"second group damaged", IvsSegment({group, IvsGroup({object, damaged})}), {BAD, {one}}},
        {"second group missing", IvsSegment({group, {}}), {BAD, {one}}},
        {"second object missing", IvsSegment({IvsGroup({object, {}})}), {BAD, {}}},
        {"two segments", IvsSegment({group}) + IvsSegment({group}), {KX_SUCCESS, {one, one}}},
    };
    for (const auto& [pName, payload, run] : rows)
        EXPECT_EQ(ParseIvs(IVS_TRACK_EX2, payload), run) << pName;
}

TEST(IVSCommonObj, DamagedObjects)
{
    const Bytes vehicle = IvsPlainObject(2, Bytes(8)); // of 20 bytes: without attributes
    const Bytes faceWithoutData = IvsPlainObject(15, {}) + At(2, {13});
    const auto cutOff = [](const Bytes& object) { return Part(object, 0, object.size() - 1); };
    const auto wrap = [](const Bytes& object) { return object; };
    const Rows<int, Bytes, const char*> rows = {
        {KX_SUCCESS, vehicle, ""},
        {KX_SUCCESS, faceWithoutData, ""},
        {BAD, vehicle + At(2, {19}), "warn [ParseVehicleObject]VehicleObjectLen is not allowed.objsize = 19\n"},
        {BAD, IvsObject(15, Bytes(7)), "warn [ParseFaceObject]FaceObjectLen is not allowed.objsize = 11\n"},
        {BAD, IvsObject(27, Bytes(7)), "warn [ParseSignalFlow]SignalFlowLen is not allowed.objsize = 11\n"},
        {BAD, Bytes(4), "warn [ParseCommonObject]CommonObjectLen is not allowed.objsize = 0\n"},
        {BAD, cutOff(vehicle), ""},
        {BAD, cutOff(faceWithoutData), ""},
        {BAD, cutOff(IvsPlainObject(18, {0x8D, 4, 1, 0})), ""},
        {BAD, cutOff(IvsPlainObject(255, {})), ""},
        {BAD, Bytes{2, 0, 20}, ""},
    };
    ExpectAnswers(wrap, rows);
}

TEST(IVSCommonObj, FaceDataThatIsMissingIsReadAsTheNextObject)
{
    const Bytes face = IvsPlainObject(15, IvsPlainObject(1, {})) + At(2, {200});
    const auto objects = ObjectsOf(IvsSegment({IvsGroup({face, {}})}));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ((Fields{objects[0].objType, objects[1].objType}), (Fields{15, 1}));
    EXPECT_EQ(objects[0].facedata, nullptr);
}

TEST(IVSCommonObj, TakesNulls)
{
    const Bytes group = IvsGroup({IvsPlainObject(1, {})});
    CBufferRead pb(group.data(), LengthOf(group));
    IVS_LANE_STORE store;
    for (const auto pfnParse : {&ParseVehicleObject, &ParseFaceObject, &ParseCommonObject})
        EXPECT_EQ(pfnParse(pb, nullptr), KX_ERROR_EMPTY_PTR);
    for (const auto pfnParse : {&ParseObject, &ParseSignalFlow})
        EXPECT_EQ(pfnParse(pb, nullptr, store), KX_ERROR_EMPTY_PTR);
    std::vector<KX_IVS_COMMON_OBJ> objects(9);
    EXPECT_EQ(ParseIVSCommonObj(nullptr, 100, &KeepObjects, &objects, store), PARAM);
    EXPECT_TRUE(objects.empty());
    EXPECT_EQ(ParseGroup(pb, nullptr, &KeepObjects, &objects, store), KX_SUCCESS);
    EXPECT_EQ(objects.size(), 1U);
}

TEST(IVSCommonObj, SurvivesDamage)
{
    const Bytes lists =
        IvsAttribute(0x82, {0, 3, 'A', 'B', 'C', 0}) + IvsAttribute(0x84, Bytes{1, 1, 0, 0, 0, 0} + Counting(12)) +
        IvsAttribute(0x85, Bytes{0, 1} + Counting(12)) + IvsAttribute(0x89, Bytes(26) + Bytes{1, 0, 0, 0, 1, 0, 0, 0}) +
        IvsAttribute(0x8C, Bytes{0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0} + Bytes(35));
    const Bytes& g = sc_golden;
    ExpectSurvivesDamage({Part(g, 40, 52), Part(g, 92, 14), Part(g, 106), IvsPlainObject(1, lists)});
}

} // namespace Marvane::FrameSift
