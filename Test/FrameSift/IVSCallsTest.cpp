// The exported calls of intelligent video metadata: what they refuse, and the plain form of objects.

#include "Support/IvsEvents.h"
#include "Support/LogOf.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

struct TAKEN
{
    std::vector<KX_IVS_OBJ_INFO> objects;
    std::vector<KX_IVS_OBJ_ATTR_UNIT> units;
    std::vector<uint8_t> firstBytes; // of the units' records
};

void Take(unsigned char* pObjInfo, int nLen, void* pReserved, void* pUserData)
{
    ASSERT_EQ(nLen, 192);
    EXPECT_EQ(pReserved, nullptr);
    auto& taken = *static_cast<TAKEN*>(pUserData);
    const auto& info = *reinterpret_cast<const KX_IVS_OBJ_INFO*>(pObjInfo);
    taken.objects.push_back(info);
    for (uint32_t n = 0; n < info.nAttrCount; ++n) {
        taken.units.push_back(info.pAttrData[n]);
        taken.firstBytes.push_back(*static_cast<const uint8_t*>(info.pAttrData[n].pAttrBuf));
    }
}

int TakeNothing(KX_IVS_PARSE_TYPE, void*, int, void*)
{
    return 0;
}

Bytes Point(uint8_t nX)
{
    return {nX, 0, 2, 0, 3, 0, 4, 0};
}

// Objects 1, 2 and 3, of which the first has two places, the second none and the third ten.
Bytes TrackPayload()
{
    const auto object = [](uint8_t nId, uint8_t nPoints) { return Bytes{nId, 0, 0, 0, 2, nPoints, 7, 0, 0, 0, 5, 9}; };
    Bytes payload = Bytes{1, 0, 3, 0} + object(1, 2) + Point(10) + Point(11) + object(2, 0) + object(3, 10);
    for (uint8_t nX = 20; nX < 30; ++nX)
        payload = payload + Point(nX);
    return payload;
}

// One group: a vehicle with a body and a time in a queue, a lane, and an object without attributes.
Bytes SegmentPayload()
{
    const Bytes body = {0x80, 4, 0x61, 0x62};
    const Bytes queue = {0x90, 8, 0, 0, 0x63, 0, 0, 0};
    const Bytes vehicle = Bytes{2, 0, 32, 0, 8, 0, 0, 0} + Point(40) + Bytes{1, 6, 0, 0} + body + queue;
    Bytes lane = {18, 0, 64, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0x8D, 52, 1, 0};
    lane.resize(64);
    const Bytes plain = {30, 0, 12, 0, 10, 0, 0, 0, 4, 0, 0, 0};
    Bytes segment = {0x41, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
    segment.resize(32);
    segment = segment + Bytes{77, 0, 0, 0, 3, 0, 0, 0} + vehicle + lane + plain;
    segment[2] = static_cast<uint8_t>(segment.size());
    return segment;
}

class IvsCalls : public testing::Test
{
protected:
    void TearDown() override { KX_Destroy(handle); }
    int Parse(Bytes payload, int frameSubType)
    {
        taken = {};
        EXPECT_EQ(KX_SetIVSObjAttrCBFun(handle, &Take, &taken), KX_SUCCESS);
        return KX_ParseIVSEx(handle, payload.data(), static_cast<int>(payload.size()), frameSubType);
    }

    void* handle = KX_CreateFrameSift(0);
    TAKEN taken;
};

} // namespace

TEST_F(IvsCalls, RefuseWhatIsNoPayloadAndNoFormat)
{
    uint8_t payload[] = {1, 0, 0, 0};
    EXPECT_EQ(LogOf([&] {
                  EXPECT_EQ(KX_ParseIVS(nullptr, 4, IVS_TRACK, &TakeNothing, nullptr), KX_ERROR_PARAMETER);
                  EXPECT_EQ(KX_ParseIVS(payload, 4, IVS_TRACK_40, &TakeNothing, nullptr),
                            KX_ERROR_PARSE_TYPE_NO_SUPPORT);
              }),
              "warn KX_ParseIVS [KX_ParseIVS] input param buffer (nil),len 4 is invailed! \n"
              "warn KX_ParseIVS [KX_ParseIVS] ivs parsetype 64 is invailed \n");
    EXPECT_EQ(KX_ParseIVS(payload, 0, IVS_TRACK, &TakeNothing, nullptr), KX_ERROR_PARAMETER);
    for (const int nType : {-1, 4, 19, 22, 161, 162, 177, INT32_MAX})
        EXPECT_EQ(KX_ParseIVS(payload, 4, static_cast<KX_IVS_PARSE_TYPE>(nType), nullptr, nullptr),
                  KX_ERROR_PARSE_TYPE_NO_SUPPORT);
    for (const auto eType : {IVS_TRACK, IVS_TRACK_EX, IVS_TRACK_EX3, IVS_TRACK_ZOOP, IVS_TRACK_15})
        EXPECT_EQ(KX_ParseIVS(payload, -1, eType, nullptr, nullptr), KX_ERROR_IVS_DATA_WRONG) << eType;
    EXPECT_EQ(KX_ParseIVS(payload, -1, IVS_TRACK_EX2, nullptr, nullptr), KX_SUCCESS); // no segment begins
}

TEST_F(IvsCalls, NeedAStreamHandle)
{
    uint8_t payload[] = {1, 0, 0, 0};
    void* file = KX_CreateFileHandle(0, "");
    for (void* bad : {static_cast<void*>(nullptr), file}) {
        EXPECT_EQ(KX_ParseIVSEx(bad, payload, 4, 7), KX_ERROR_PARAMETER);
        EXPECT_EQ(KX_SetIVSObjAttrCBFun(bad, &Take, nullptr), KX_ERROR_PARAMETER);
    }
    KX_Destroy(file);
    EXPECT_EQ(KX_ParseIVSEx(handle, payload, 4, 0), KX_SUCCESS); // no metadata, no failure
    EXPECT_EQ(KX_ParseIVSEx(handle, payload, 3, 7), KX_ERROR_IVS_DATA_WRONG);
}

TEST_F(IvsCalls, APayloadThatIsNotThereKeepsTheHandle)
{
    uint8_t payload[] = {1, 0, 0, 0};
    EXPECT_EQ(KX_ParseIVSEx(handle, nullptr, 4, 7), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_ParseIVSEx(handle, payload, 0, 0), KX_ERROR_PARAMETER);
    EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
    EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
    EXPECT_EQ(KX_ParseIVSEx(handle, payload, 4, 7), KX_SUCCESS);
    EXPECT_EQ(KX_Destroy(handle), KX_SUCCESS);
    EXPECT_EQ(KX_Destroy(handle), KX_ERROR_INVALID_HANDLE);
}

TEST_F(IvsCalls, TrackedObjectsComeWithTheirNewestPlace)
{
    ASSERT_EQ(Parse(TrackPayload(), KX_FRAME_SUB_TYPE_DATA_INTL), KX_SUCCESS);
    ASSERT_EQ(taken.objects.size(), 3U);
    for (size_t n = 0; n < 3; ++n) {
        const KX_IVS_OBJ_INFO& info = taken.objects[n];
        // The second has no place and the third a full list: both stay where the first was.
        EXPECT_EQ(
            (Fields{info.classID, info.objID, info.objType, info.pointVailed, info.operatorType, info.nAttrCount}),
            (Fields{5, static_cast<int64_t>(n + 1), 7, 1, 2, 0}));
        EXPECT_EQ((Fields{info.trackPoint.x, info.trackPoint.y, info.trackPoint.xSize, info.trackPoint.ySize}),
                  (Fields{11, 2, 3, 4}));
        EXPECT_EQ(info.pAttrData, nullptr);
    }
}

TEST_F(IvsCalls, CommonObjectsComeWithTheirAttributesAndLanesNot)
{
    ASSERT_EQ(Parse(SegmentPayload(), KX_FRAME_SUB_TYPE_DATA_INTLEX), KX_SUCCESS);
    ASSERT_EQ(taken.objects.size(), 2U);
    const KX_IVS_OBJ_INFO& vehicle = taken.objects[0];
    EXPECT_EQ((Fields{vehicle.classID, vehicle.objID, vehicle.objType, vehicle.pointVailed, vehicle.operatorType,
                      vehicle.nAttrCount, vehicle.trackPoint.x}),
              (Fields{1, 8, 2, 1, 6, 2, 40}));
    ASSERT_EQ(taken.units.size(), 2U);
    EXPECT_EQ((Fields{taken.units[0].nAttrFlag, taken.units[0].nAttrDataLen, taken.firstBytes[0]}),
              (Fields{0x1, 64, 0x61}));
    EXPECT_EQ((Fields{taken.units[1].nAttrFlag, taken.units[1].nAttrDataLen, taken.firstBytes[1]}),
              (Fields{0x10000, 16, 0x63}));
    const KX_IVS_OBJ_INFO& plain = taken.objects[1];
    EXPECT_EQ((Fields{plain.objID, plain.objType, plain.operatorType, plain.nAttrCount}), (Fields{10, 30, 4, 0}));
    EXPECT_NE(plain.pAttrData, nullptr);
}

// A1 objects are no part of the plain form, and without a callback the payload is judged all the same.
TEST_F(IvsCalls, WhatIsNotHandedOutIsStillJudged)
{
    Bytes segment = {0xA1, 0, 32, 0, 1, 24, 0, 0};
    segment.resize(32);
    EXPECT_EQ(ParseIvs(IVS_TRACK_EX2, segment).events, (std::vector<IVS_EVENT>{{IVS_TRACK_A1, 24}}));
    EXPECT_EQ(Parse(segment, KX_FRAME_SUB_TYPE_DATA_INTLEX), KX_SUCCESS);
    EXPECT_TRUE(taken.objects.empty());
    EXPECT_EQ(KX_SetIVSObjAttrCBFun(handle, nullptr, nullptr), KX_SUCCESS);
    Bytes payload = TrackPayload();
    EXPECT_EQ(KX_ParseIVSEx(handle, payload.data(), static_cast<int>(payload.size()), 7), KX_SUCCESS);
    EXPECT_EQ(KX_ParseIVSEx(handle, payload.data(), 20, 7), KX_ERROR_IVS_DATA_WRONG);
}

} // namespace Marvane::FrameSift
