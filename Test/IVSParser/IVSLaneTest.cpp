#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSLaneStore.h"

#include "IVSParser/IvsObjectBytes.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t X = 0xEE; // bytes that are not used
const Bytes sc_point = {1, 0, 2, 0};
const Bytes sc_name = Counting(16, 'A');

// Lanes with edges of one point, up to their circles.
Bytes Lane95(uint8_t nCircles)
{
    return Bytes{1, 1} + sc_point + Bytes{1, X} + sc_point + Bytes{nCircles, X};
}
Bytes Lane96(uint8_t nCircles)
{
    return Bytes{1, 2, 1, X} + sc_point + Bytes{1, X} + sc_point + sc_name + Bytes{nCircles, X};
}
Bytes Lane91(uint8_t nCalibrations)
{
    return Bytes{1, 2} + Counting(16, 10) + sc_name + Bytes{X, nCalibrations};
}

// The record that a signal flow object leads to.
Bytes RecordOf(const KX_IVS_COMMON_OBJ& object)
{
    if (object.pArrtibute95 != nullptr)
        return IvsBytesOf(*object.pArrtibute95);
    if (object.pArrtibute96 != nullptr)
        return IvsBytesOf(*object.pArrtibute96);
    return IvsBytesOf(object.attr);
}

} // namespace

TEST(IVSLane, Records)
{
    const Bytes bends = Counting(80, 50);
    const Bytes circle = Bytes{5, 6} + Counting(16, 30) + Bytes{22, 1} + bends + Bytes(8, X) + sc_point;
    const Bytes circleKept = Bytes{5, 6} + Counting(16, 30) + Bytes{22, 1} + bends + sc_point;
    const Bytes lane = Bytes{3, 2} + Counting(8, 1) + Bytes{1, X} + Counting(4, 20) + Bytes{2, X};
    const Bytes front91 = Bytes{4, 7, 1, 0, 1, 2, 0, 0} + Counting(16, 10);
    const Bytes marks91 = Bytes{140, X} + Bytes(840, 8);
    const Bytes edge = Bytes{1, 0} + sc_point;
    const Rows<uint8_t, Bytes, WRITTEN> rows = {
        {1, Bytes{0x8D, 8, 2, X} + Counting(96, 1), At(0, {2}) + At(8, Counting(96, 1))},
        // What is left of the queue's length is read as the number behind it.
        {1, Bytes{0x8D, 8, 1, X} + Counting(7, 1), At(0, {1}) + At(8, {1, 2, 3, 4, 0, 0, 0, 0, 5, 6})},
        {2, Bytes{0x91, 4, 7, 1} + Lane91(2) + Bytes{1, 2, 3, 4, 2, X} + Counting(12, 1),
         At(0, front91 + sc_name) + At(43, {2, 1, 2, 3, 4}) + At(944, {2}) + At(948, {1, 2, 3, 4, 7, 8, 9, 10}) +
             At(1508, {5, 6, 11, 12})},
        {2, Bytes{0x91, 4, 7, 1} + Lane91(70) + Bytes(140, 9) + marks91,
         At(0, front91 + sc_name) + At(43, Bytes{70} + Bytes(140, 9)) + At(944, {140}) + At(948, Bytes(560, 8)) +
             At(1508, Bytes(280, 8))},
        // And what is left of the name too.
        {2, Bytes{0x91, 4, 7, 1, 1, 2} + Counting(16, 10) + Bytes{X, 2, 5, 6, 7},
         At(0, front91) + At(43, {2, 5, 6}) + At(944, {7})},
        {3, Bytes{0x95, 8, 1, X} + lane + circle + Bytes{7, 8} + Bytes(17) + Bytes{1} + sc_point,
         At(0, Bytes{8, 1, 0, 0, 3, 2} + Counting(8, 1)) + At(86, Bytes{1, 0} + Counting(4, 20)) + At(168, {2}) +
             At(170, circleKept) + At(350, {7, 8}) + At(369, {1}) + At(450, sc_point)},
        {3, Bytes{0x95, 8, 2, X} + Lane95(0) + Lane95(7) + Bytes(120) + Bytes{9} + Bytes(19),
         At(0, Bytes{8, 2, 0, 0, 1, 1} + sc_point) + At(86, edge) + At(1438, Bytes{1, 1} + sc_point) + At(1520, edge) +
             At(1602, {7}) + At(2684, {9})},
        {4, Bytes{0x96, 4, 1, X} + Lane96(1) + circle + Bytes{1, X} + Counting(6, 1),
         At(0, Bytes{4, 1, 0, 0, 1, 2, 1, 0} + sc_point) + At(88, edge) + At(170, sc_name + Bytes{1}) +
             At(188, circleKept) + At(102340, {1}) + At(102344, {1, 2, 3, 4}) + At(102904, {5, 6})},
    };
    for (const auto& [nUnionFlag, attribute, written] : rows) {
        Bytes record;
        const auto see = [&, nFlag = nUnionFlag](KX_IVS_PARSE_TYPE, void* pRecords, int) {
            EXPECT_EQ(static_cast<KX_IVS_COMMON_OBJ*>(pRecords)->attrUnionflag, nFlag);
            record = RecordOf(*static_cast<KX_IVS_COMMON_OBJ*>(pRecords));
        };
        ParseIvs(IVS_TRACK_EX2, IvsSegment({IvsGroup({IvsPlainObject(18, attribute)})}), see);
        ASSERT_FALSE(record.empty());
        EXPECT_EQ(record, Bytes(record.size()) + written) << testing::PrintToString(attribute);
    }
}

TEST(IVSLane, Damage)
{
    const auto wrap = [](const Bytes& attribute) { return IvsPlainObject(27, attribute); };
    const Rows<int, Bytes, const char*> rows = {
        {PARAM, Bytes{}, ""},
        {PARAM, Bytes{0x92, 4, 0, 0}, ""},
        {BAD, Bytes{0x8D, 6, 1}, "warn [ParseAttribute] attrtype len is wrong. attrtype = 141 ,attrtypeDataLen = 6\n"},
        {BAD, Bytes{0x8D, 4, 0}, ""},
        {BAD, Bytes{0x8D, 4, 6}, ""},
        {BAD, Bytes{0x91, 6, 0, 1},
         "warn [ParseAttribute] attrtype len is wrong. attrtype = 0x91 ,attrtypeDataLen = 6\n"},
        {PARAM, Bytes{0x91, 4, 0, 6}, "warn [ParseAttribute91] has error. arrtibute91.lane_number = 6 \n"},
        {PARAM, Bytes{0x91, 4, 0, 1} + Lane91(71), "warn [ParseAttribute91] has error. lane_virtual_number = 71 \n"},
        {PARAM, Bytes{0x91, 4, 0, 1} + Lane91(0) + Bytes{141},
         "warn [ParseAttribute91] has error. attr.arrtibute91.mark_number = 141 \n"},
        {BAD, Bytes{0x95, 0}, "warn [ParseAttribute] attrtype len is wrong. attrtype = 0x95 ,attrtypeDataLen = 0\n"},
        {PARAM, Bytes{0x95, 4, 9}, "warn [ParseAttribute95] has error. arrtibute95.lane_number = 9 \n"},
        {PARAM, Bytes{0x95, 4, 2, X} + Lane95(0) + Bytes{1, 21},
         "warn [ParseAttribute[95] has error. attr.lane_info[1]..left_lane_position_num = 21 \n"},
        {PARAM, Bytes{0x95, 4, 1, X, 1, 1} + sc_point,
         "warn [ParseAttribute96] has error. attr.lane_info[0]..right_lane_position_num = 0 \n"},
        {PARAM, Bytes{0x95, 4, 1, X} + Lane95(8), "warn [ParseAttribute95] has error. lane_virtual_number = 8 \n"},
        {BAD, Bytes{0x96, 255},
         "warn [ParseAttribute] attrtype len is wrong. attrtype = 0x96 ,attrtypeDataLen = 255\n"},
        {PARAM, Bytes{0x96, 4, 0}, "warn [ParseAttribute96] has error. arrtibute96.lane_number = 0 \n"},
        {PARAM, Bytes{0x96, 4, 1, X, 1, 2, 0},
         "warn [ParseAttribute[96] has error. attr.lane_info[0]..left_lane_position_num = 0 \n"},
        {PARAM, Bytes{0x96, 4, 1, X, 1, 2, 1, X} + sc_point + Bytes{21},
         "warn [ParseAttribute96] has error. attr.lane_info[0]..right_lane_position_num = 21 \n"},
        {PARAM, Bytes{0x96, 4, 1, X} + Lane96(71), "warn [ParseAttribute96] has error. lane_virtual_number = 71 \n"},
        {PARAM, Bytes{0x96, 4, 1, X} + Lane96(70) + Bytes(1400) + Bytes{141},
         "warn [ParseAttribute96] has error. attr.arrtibute96.mark_number = 141 \n"},
    };
    ExpectAnswers(wrap, rows);
}

TEST(IVSLane, FlagStandsThoughTheLanesAreDamaged)
{
    const Bytes bytes = Part(IvsPlainObject(18, {0x95, 4, 9}), 1);
    CBufferRead pb(bytes.data(), LengthOf(bytes));
    KX_IVS_COMMON_OBJ object{};
    IVS_LANE_STORE store;
    EXPECT_EQ(ParseSignalFlow(pb, &object, store), KX_ERROR_PARAMETER);
    EXPECT_EQ((Fields{object.attrUnionflag, object.objID, object.operatorType}), (Fields{OBJ_ATTR_0x95, 9, 3}));
}

// A damaged object takes the lanes of the sound ones in front of it along.
TEST(IVSLane, SurviveDamage)
{
    const Bytes circle = Bytes{5, 6} + Bytes(16) + Bytes{1, 1} + sc_point + sc_point;
    const Bytes lanes8D = IvsPlainObject(18, Bytes{0x8D, 8, 1, X} + Bytes(48));
    const Bytes lanes91 = IvsPlainObject(18, Bytes{0x91, 4, 7, 1} + Lane91(1) + Bytes{1, 0, 1, X} + Bytes(6));
    const Bytes lanes95 = IvsPlainObject(27, Bytes{0x95, 8, 1, X} + Lane95(1) + circle);
    const Bytes lanes96 = IvsPlainObject(27, Bytes{0x96, 4, 1, X} + Lane96(1) + circle + Bytes{1, X} + Bytes(6));
    ExpectSurvivesDamage({lanes8D, lanes91, lanes95, lanes96});
}

} // namespace Marvane::FrameSift
