#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

// The second object announces 12 points and brings 10; the third has the id of the first.
const Bytes sc_objects = Hex("02 00 04 C0"                          // version, objects, color
                             " 09 00 00 80 02 01 15 01 EE EE 1F 29" // obj_id, operator_type, points, object_type,
                                                                    // extra words, -, decode_id, object_sub_type
                             " EE EE EE EE"                         // extra word
                             " 01 02 03 04 05 06 07 08"             // x, y, xSize, ySize
                             " 07 00 00 00 03 0C 16 00 EE EE 20 2A") +
                         Bytes(80, 0x22) +
                         Hex("09 00 00 80 FF 00 17 00 EE EE 21 2B 08 00 00 00 00 00 18 00 EE EE 22 2C");
const Bytes sc_extension = Hex("1C 00 09 00 00 80"              // ex_info_size, object_id
                               " 01 02 03 04 05 06 07 08 09 0A" // speeds, speed_unit, color_space, main_color_num
                               " 0B 0C 0D 0E 0F 10 11 12 13 14 15 16"); // main_region_rect_*, main_region_color
constexpr size_t sc_extensionAt = offsetof(KX_IVS_OBJ_EX, ex_info_size);

// Behind it one for no object, one of 6 bytes, which reads on into the next, and one that the data cuts off.
const Bytes sc_golden = sc_objects + sc_extension + Hex("06 00 01 00 00 00") + Hex("06 00 07 00 00 00") +
                        Hex("0A 00 09 00 00 80 66 00 77 00");

std::vector<KX_IVS_OBJ_EX> ObjectsOf(const Bytes& payload)
{
    std::vector<KX_IVS_OBJ_EX> all;
    const IVS_RUN run = ParseIvs(IVS_TRACK_EX, payload, [&](KX_IVS_PARSE_TYPE, void* pRecords, int nLen) {
        const auto objects = IvsRecords<KX_IVS_OBJ_EX>(pRecords, nLen);
        all.assign(objects.begin(), objects.end());
    });
    EXPECT_EQ(run, (IVS_RUN{0, {{IVS_TRACK_EX, all.size() * 232}}}));
    all.resize(4);
    return all;
}

} // namespace

TEST(IVSTrackEx, ObjectsOfEveryKind)
{
    Bytes payload = sc_golden;
    payload[0] = 1; // this version knows no extensions
    const auto objects = ObjectsOf(payload);
    const KX_IVS_POINT point = {0x201, 0x403, 0x605, 0x807};
    const KX_IVS_OBJ_EX first = {
        31, INT32_MIN + 9, 1, {point}, 1, 2, 0, 0xC0, 21, 41, 0, 0, 65535, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, {}, 0};
    EXPECT_EQ(BytesOf(objects[0]), BytesOf(first));
    EXPECT_EQ(objects[1].trackpt_num, 10);
    EXPECT_EQ(objects[1].track_point[9].ySize, 0x2222);
    EXPECT_EQ(objects[2].decode_id, 33);
    EXPECT_EQ(objects[3].frame_part_id, 3);
    for (size_t n = 0; n < 4; ++n)
        EXPECT_EQ(objects[n].enable, n == 0 || n == 3 ? 1 : 0) << n;
}

TEST(IVSTrackEx, Extensions)
{
    const Bytes whole = Hex("1C 00") + Part(sc_extension, 6);
    EXPECT_EQ(BytesOf(ObjectsOf(sc_objects + sc_extension)[0], sc_extensionAt, 24), whole);
    const Bytes last = Hex("0A 00 66 00 77 00") + Part(whole, 6); // the last one wins, as far as it goes
    const auto objects = ObjectsOf(sc_golden);
    EXPECT_EQ(BytesOf(objects[0], sc_extensionAt, 24), last);
    EXPECT_EQ(BytesOf(objects[1], sc_extensionAt, 10), Hex("06 00 0A 00 09 00 00 80 66 00"));
    EXPECT_EQ(BytesOf(objects[2], sc_extensionAt, 24), last);
    EXPECT_EQ(objects[3].speed, 65535);
    const Bytes endless = Bytes{0, 0} + sc_extension; // a record of no size ends the walk
    for (const Bytes& rest : {endless, Bytes{33, 0} + endless, Bytes{2, 0}, Bytes{1, 0, 0}})
        EXPECT_EQ(ObjectsOf(sc_objects + rest)[0].speed, 65535);
    ExpectSurvivesDamage(IVS_TRACK_EX, sc_golden, {0, 15, 16, 18}, true);
}

TEST(IVSTrackEx, WhatIsRefused)
{
    EXPECT_EQ(ExpectCases(IVS_TRACK_EX, {{"half a head", {1, 0, 0}, 18, {}},
                                         {"version", {1, 1, 201, 0}, 15, {}},
                                         {"201 objects", {1, 0, 201, 0}, 16, {}},
                                         {"200 objects missing", {1, 0, 200, 0}, 18, {}},
                                         {"no objects", {2, 0, 0, 0, 28, 0, 0}, 0, {{IVS_TRACK_EX, 0}}}}),
              "warn [ParseIVSTrackEx] data is not enough! 3\n"
              "warn [ParseIVSTrackEx] version is invailed! version = 257\n"
              "warn [ParseIVSTrack] object num is invailed! nIvsObjNum = 201\n");
}

} // namespace Marvane::FrameSift
