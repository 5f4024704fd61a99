#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_objects = Hex("A1 00 38 00 02 18 EE EE" // segType, segLength, objects, object length
                             " 01 02 EE EE 03 04 05 06 07 08 09 0A FD FF FF FF" // objID, timeTag, trackPoint, trackTime
                             " EE EE EE EE EE EE EE EE"                         // two more times, not read
                             " 0B 0C EE EE 00 00 00 00 00 00 00 00 01 02 03 04"
                             " EE EE EE EE EE EE EE EE");
const Bytes sc_extended = Hex("A1 00 44 00 01 3C EE EE"
                              " 01 02 EE EE 03 04 05 06 07 08 09 0A 05 00 00 00"
                              " EE EE EE EE EE EE EE EE"
                              " 29 2A 2B 2C") + // Objtype, speed, direct
                          Bytes(10, 51) +
                          Bytes(10, 52) + Bytes(10, 53) + Hex("EE EE"); // colours, reserve
const Bytes sc_none = {0xA1, 0, 6, 0, 0, 0};                            // shorter than its head, which needs no more
const Bytes sc_unknownLength = Bytes{0xA1, 0, 40, 0, 1, 32, 0, 0} + Bytes(32, 0xEE);

constexpr KX_IVS_POINT sc_point = {0x403, 0x605, 0x807, 0xA09};

void ExpectGolden(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen)
{
    if (eType == IVS_TRACK_A1 && nLen > 0) {
        const auto objects = IvsRecords<KX_IVS_OBJ_A0>(pRecords, nLen);
        EXPECT_EQ(BytesOf(objects[0]), BytesOf(KX_IVS_OBJ_A0{1, 2, 0, sc_point, 0xFFFFFFFD, 1, 5}));
        EXPECT_EQ(BytesOf(objects[1]), BytesOf(KX_IVS_OBJ_A0{11, 12, 0, {}, 0x4030201, 0x4030205, 0x4030209}));
    }
    if (eType == IVS_TRACK_A1_EX) {
        const auto& all = *static_cast<const KX_IVS_OBJ_ALL*>(pRecords);
        EXPECT_EQ(all.type, 1U);
        ASSERT_EQ(all.ObjUnionLen, 60U);
        const KX_IVS_OBJ_A0_Ex& object = *all.ObjUnion.IVSObjA0Ex;
        EXPECT_EQ(BytesOf(object, 0, 24), BytesOf(KX_IVS_OBJ_A0{1, 2, 0, sc_point, 5, 9, 13}));
        EXPECT_EQ(BytesOf(object, 24, 36), Part(sc_extended, 32, 34) + Bytes(2));
    }
}

} // namespace

TEST(IVSTrackEx2, ObjectsOfBothLengths)
{
    const Bytes golden = sc_objects + sc_unknownLength + sc_none + sc_extended;
    const std::vector<IVS_EVENT> events = {{IVS_TRACK_A1, 48}, {IVS_TRACK_A1, 0}, {IVS_TRACK_A1_EX, 24}};
    EXPECT_EQ(ParseIvs(IVS_TRACK_EX2, golden, &ExpectGolden), (IVS_RUN{0, events}));
    ExpectSurvivesDamage(IVS_TRACK_EX2, golden, {0, 6, 9, 18}, false);
}

// What comes before the damage is handed out all the same.
TEST(IVSTrackEx2, WhereTheWalkEnds)
{
    const std::vector<IVS_EVENT> first = {{IVS_TRACK_A1, 0}};
    const std::vector<IVS_EVENT> both = {{IVS_TRACK_A1, 0}, {IVS_TRACK_A1, 0}};
    const Bytes cutOff = Part(sc_extended, 0, sc_extended.size() - 1);
    EXPECT_EQ(ExpectCases(IVS_TRACK_EX2, {{"a head, nothing behind it", sc_none + Bytes{0xA1, 0, 0, 0}, 0, first},
                                          {"no length", sc_none + Bytes{0xA1, 0, 0, 0, 0}, 18, both},
                                          {"five bytes", sc_none + Bytes{0xA1, 0, 11, 0, 1}, 18, first},
                                          {"cut off, no object", sc_none + Bytes{0xA1, 0, 11, 0, 0}, 0, both},
                                          {"an object cut off", sc_none + cutOff, 18, first},
                                          {"longer than all", sc_none + Bytes{0x39, 0, 12, 0, 0}, 6, first},
                                          {"unknown type", sc_none + Bytes{0x3F, 0, 5, 0, 0}, 18, first}}),
              "warn ParseIVSTrackA1 object data is not enough! objCount = 1, objInfoLen = 0, dataLen = -3\n"
              "warn ParseIVSTrackA1 object data is not enough! objCount = 1, objInfoLen = 60, dataLen = 59\n"
              "warn ParseIVSTrackEx2 invailed segment length:12 input data length:11\n"
              "warn ParseIVSTrackEx2 invailed segment type = {63, 5}! \n");
}

} // namespace Marvane::FrameSift
