#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_front = Bytes{4, 3, 2, 0x81, 5, 6, 7, 8} + Bytes(64, 'T') + // nIndex, sceneInfoPoint, fristtile
                       Bytes{11, 12, 13, 14}; // enable, titleType, titleAttribute, sharpType
const Bytes sc_corners = Bytes(56, 0x22) + Bytes{1, 2, 3, 4, 5, 6, 7, 8};

Bytes Element(uint8_t nCorners)
{
    return sc_front + Bytes{nCorners, 0xEE, 0xEE, 0xEE} + sc_corners;
}

} // namespace

TEST(IVSTrackEx3, TitlesAndPolygons)
{
    // Of 17 corners the record has room for 16. A stray byte at the end does no harm.
    const Bytes golden = Element(2) + Element(17) + Bytes{0xEE};
    const IVS_RUN run = ParseIvs(IVS_TRACK_EX3, golden, [](KX_IVS_PARSE_TYPE, void* pRecords, int nLen) {
        const auto elements = IvsRecords<KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR>(pRecords, nLen);
        EXPECT_EQ(BytesOf(elements[0]), sc_front + Hex("02 00 00 00") + Bytes(8, 0x22) + Bytes(56));
        EXPECT_EQ(BytesOf(elements[1]), sc_front + Hex("11 00 00 00") + sc_corners);
    });
    EXPECT_EQ(run, (IVS_RUN{0, {{IVS_TRACK_EX3, 288}}}));
    ExpectSurvivesDamage(IVS_TRACK_EX3, golden, {0, 13, 18}, true);
}

TEST(IVSTrackEx3, WhatIsRefused)
{
    EXPECT_EQ(ExpectCases(IVS_TRACK_EX3, {{"7 bytes", Bytes(7), 18, {}},
                                          {"143 bytes", Bytes(143), 18, {}},
                                          {"512 elements", Bytes(73871), 0, {{IVS_TRACK_EX3, 73728}}},
                                          {"513 elements", Bytes(73872), 18, {}},
                                          {"16 corners", Element(16), 0, {{IVS_TRACK_EX3, 144}}},
                                          {"17 corners", Element(17), 13, {}}}),
              "warn [ParseIVSTrackEx3] data is not enough! len =  7\n"
              "warn [ParseIVSTrackEx3] scene_points is not allowed! nIvsObjNum =  0\n"
              "warn [ParseIVSTrackEx3] scene_points is not allowed! nIvsObjNum =  513\n"
              "warn [ParseIVSTrackEx3] some data wrong,148 , 144\n");
}

} // namespace Marvane::FrameSift
