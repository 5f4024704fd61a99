#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

// The last object announces 12 points and brings 10.
const Bytes sc_golden = Hex("01 00 03 EE"                                      // version, objects
                            " 04 03 02 01 01 02 EE 01 EE EE EE EE"             // obj_id, state, points, -, extra words
                            " EE EE EE EE"                                     // extra word
                            " 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10" // x, y, xSize, ySize
                            " 05 00 00 00 04 00 EE 00 EE EE EE EE"             // no point
                            " 06 00 00 00 03 0C EE 00 EE EE EE EE") +          // finished
                        Bytes(80, 0x22);

} // namespace

TEST(IVSTrack, ObjectsOfEveryKind)
{
    const IVS_RUN run = ParseIvs(IVS_TRACK, sc_golden, [](KX_IVS_PARSE_TYPE, void* pRecords, int nLen) {
        const auto objects = IvsRecords<KX_IVS_OBJ>(pRecords, nLen);
        const KX_IVS_OBJ first = {0x01020304, 1, {{0x201, 0x403, 0x605, 0x807}, {0xA09, 0xC0B, 0xE0D, 0x100F}}, 2};
        EXPECT_EQ(BytesOf(objects[0]), BytesOf(first));
        EXPECT_EQ(BytesOf(objects[1]), BytesOf(KX_IVS_OBJ{5, 1, {}, 0}));
        EXPECT_EQ(BytesOf(objects[2]), (Bytes{6, 0, 0, 0, 0, 0, 0, 0} + Bytes(80, 0x22) + Bytes{12, 0, 0, 0}));
    });
    EXPECT_EQ(run, (IVS_RUN{0, {{IVS_TRACK, 276}}}));
    ExpectSurvivesDamage(IVS_TRACK, sc_golden, {0, 15, 18}, true);
}

TEST(IVSTrack, WhatIsRefused)
{
    EXPECT_EQ(ExpectCases(IVS_TRACK, {{"half a version", {2}, 18, {}},
                                      {"version", {1, 1}, 15, {}},
                                      {"no count", {1, 0}, 18, {}},
                                      {"half a head", {1, 0, 0}, 18, {}},
                                      {"no objects", {1, 0, 0, 0, 0xEE}, 0, {{IVS_TRACK, 0}}},
                                      {"one object missing", {1, 0, 1, 0}, 18, {}}}),
              "warn [ParseIVSTrack] Len wrong  0,1\n"
              "warn [ParseIVSTrack] version is invailed! version 257.\n"
              "warn [ParseIVSTrack] ObjNum Len wrong 3,2\n"
              "warn [ParseIVSTrack] Len wrong 4,3\n");
}

TEST(IVSTrack, LengthsBelowZero)
{
    Bytes bytes(1);
    for (const KX_IVS_PARSE_TYPE eType : {IVS_TRACK, IVS_TRACK_EX, IVS_TRACK_EX3, IVS_TRACK_ZOOP, IVS_TRACK_15})
        EXPECT_EQ(KX_ParseIVS(bytes.data(), -144, eType, nullptr, nullptr), 18) << eType;
    EXPECT_EQ(KX_ParseIVS(bytes.data(), -144, IVS_TRACK_EX2, nullptr, nullptr), 0); // no room for a segment
}

} // namespace Marvane::FrameSift
