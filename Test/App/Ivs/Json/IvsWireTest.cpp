#include "Ivs/Json/IvsWire.h"

#include <gtest/gtest.h>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

Bytes PayloadOf(const char* pFormat, const std::string& records)
{
    return IvsPayload(*FindIvsFormat(pFormat), ordered_json::parse(records));
}

// A message of IvsPayload; "" if it takes the records.
std::string Refusal(const char* pFormat, const std::string& records)
{
    try {
        PayloadOf(pFormat, records);
    } catch (const CIvsJsonError& error) {
        return error.what();
    }
    return "";
}

// One object of a group: {"objType": 1, ...}
std::string Group(const std::string& object)
{
    return R"([{"type": "common-objects", "objects": [)" + object + "]}]";
}

} // namespace

TEST(IvsWire, TracksStandAsInTheFormat)
{
    EXPECT_EQ(PayloadOf("track", R"([{"objects": [
                {"obj_id": 258, "enable": 1, "track_point": [[1, 2, 3, 4]]},
                {"obj_id": 7, "enable": 0, "trackpt_num": 2, "track_point": [[5, 6, 7, 8]]}]}])"),
              (Bytes{1, 0, 2, 0, // version, count
                     2, 1, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 1, 0, 2, 0, 3, 0, 4, 0, 7, 0, 0, 0,
                     3, 2, 0, 0, 0, 0, 0, 0, 5, 0, 6, 0, 7, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(PayloadOf("track-ex", R"([{"type": "track-ex", "objects": [
                {"obj_id": -2, "enable": 0, "color": 9, "object_type": 3, "object_sub_type": 4, "decode_id": 5,
                 "track_point": [[1, 2, 3, 4]], "frame_part_id": 77},
                {"obj_id": 6, "operator_type": 1, "color": 9, "ex_info_size": 30, "speed": 10, "speed_X": 11,
                 "speed_Y": 12, "speed_unit": 13, "color_space": 14, "main_color_num": 15, "main_region_rect_x": 16,
                 "main_region_rect_y": 17, "main_region_rect_width": 18, "main_region_rect_height": 19,
                 "main_region_color": 16909060}]}])"),
              (Bytes{2,   0,   2,   9,                                       // the version with extension records
                     254, 255, 255, 255, 3,  1, 3,  0, 0,  0, 5,  4,         // first object
                     1,   0,   2,   0,   3,  0, 4,  0,                       // its place
                     6,   0,   0,   0,   1,  0, 0,  0, 0,  0, 0,  0,         // second object
                     30,  0,   6,   0,   0,  0, 10, 0, 11, 0, 12, 0, 13, 14, // its extension
                     15,  0,   16,  0,   17, 0, 18, 0, 19, 0, 4,  3, 2,  1,  0, 0}));
}

TEST(IvsWire, SegmentsStandAsInTheFormat)
{
    EXPECT_EQ(PayloadOf("segments", R"([{"type": "common-objects", "funcType": 1, "cameraID": "c\\xff", "groupID": 513,
                "objects": [
                  {"objType": 2, "objID": 3, "trackPoint": [1, 2, 3, 4], "pointVailed": 1, "operatorType": 2,
                   "attributes": {"81": {"mainPosition": [5, 6, 7, 8], "mainSafetyBelt": 2, "coSafetyBelt": 1},
                                  "82": {"plateEncode": 1, "plateInfo": "AB1"}}},
                  {"objType": 15, "objID": 4, "version": 5, "facedata": [9, 8]},
                  {"objType": 18, "objID": 6, "operatorType": 7, "lanes": {"type": "91", "increment_id": 2,
                   "lane_info": [{"lane_id": 1, "left_lane_position": [[-1, 2], [3, 4]], "lane_name": "L",
                                  "lane_calibration": [-2]}],
                   "mark_position": [[1, -1]], "mark_value": [3]}}]}])"),
              (Bytes{0x41, 0,    164, 0,   1,   0,   0,   0, 0, 0, 0, 0,                            // segment
                     'c',  0xFF, 0,   0,   0,   0,   0,   0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,    // cameraID
                     1,    2,    0,   0,   3,   0,   0,   0,                                        // group
                     2,    0,    48,  0,   3,   0,   0,   0, 1, 0, 2, 0, 3, 0, 4, 0, 1, 2, 0, 0,    // vehicle
                     0x81, 20,   5,   0,   6,   0,   7,   0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x09, //
                     0x82, 8,    1,   3,   'A', 'B', '1', 0,                                        //
                     15,   0,    14,  0,   4,   0,   0,   0, 5, 0, 0, 0, 9, 8,                      // face
                     18,   0,    62,  0,   6,   0,   0,   0, 7, 0, 0, 0,                            // signal flow
                     0x91, 52,   2,   1,                                                            //
                     1,    0,    255, 255, 2,   0,   3,   0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0,          // lane
                     'L',  0,    0,   0,   0,   0,   0,   0, 0, 0, 0, 0, 0, 0, 0, 0,                // lane_name
                     0,    1,    254, 255,                                                          // lane_calibration
                     1,    0,    1,   0,   255, 255, 3,   0}));
    EXPECT_EQ(PayloadOf("segments", R"([{"type": "a0-objects", "objects": [
                {"objID": 1, "timeTag": 2, "trackPoint": [3, 4, 5, 6], "trackTime": 7, "appearTime": 99}]},
                {"type": "common-objects", "funcType": 96}])"),
              (Bytes{0xA1, 0, 32, 0, 1, 24, 0, 0, 1, 2,    0, 0,  3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 0,
                     0,    0, 0,  0, 0, 0,  0, 0, 0, 0xA0, 0, 36, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                     0,    0, 0,  0, 0, 0,  0, 0, 0, 0,    0, 0,  0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(IvsWire, SceneDrawingsAndCountsStandAsInTheirFormats)
{
    Bytes scene = {255, 255, 255, 255, 1, 0, 2, 0, 'T', 195, 164};
    scene.resize(72);
    scene = scene + Bytes{1, 2, 3, 4, 1, 0, 0, 0, 5, 0, 6, 0};
    scene.resize(144);
    EXPECT_EQ(PayloadOf("scene", R"([{"points": [{"nIndex": -1, "sceneInfoPoint": [1, 2], "fristtile": "T\u00e4",
                "enable": 1, "titleType": 2, "titleAttribute": 3, "sharpType": 4, "polygon": [[5, 6]]}]}])"),
              scene);
    EXPECT_EQ(PayloadOf("overlay", R"([{"nId": 1, "wCustom": 2, "chState": 3, "elements": [
                {"type": "circle", "chWidth": 1, "wRadius": 258, "positionCircle": [3, 4], "chRegB": 5},
                {"type": "line", "pointer": [[1, 2]]}, {"type": "text", "stringPos": [6, 7], "pString": "\\\\"}],
                "info": "i"}])"),
              (Bytes{1, 0, 0,  0, 1, 0, 0, 0, 2, 0, 3, 3, 1, 1, 0, 0, 2,
                     1, 0, 0,  3, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 5,          // circle
                     2, 1, 0,  0, 0, 0, 0, 0, 1, 0, 2, 0,                   // line
                     4, 0, 0,  0, 6, 0, 7, 0, 0, 0, 0, 0, 0, 0, 1, 0, '\\', // text
                     1, 0, 'i'}));
    EXPECT_EQ(PayloadOf("traffic", R"([{"records": [
                {"NumberStat": 13, "plans": [{"PlanId": 13, "RuleType": 2}]},
                {"NumberStat": 13, "plans": [{"PlanId": 3, "regions": [{"RegionId": 4, "State": 5, "PeopleNum": -2}]}]}
                ]}])"),
              (Bytes{13, 0, 0, 0, 24, 0, 0, 0, 13, 0, 2, 0, 0, 0, 8,  0, 0, 0, 0, 0, 0,   0,   0,   0,
                     13, 0, 0, 0, 24, 0, 0, 0, 3,  0, 0, 0, 0, 0, 16, 0, 4, 5, 0, 0, 254, 255, 255, 255}));
}

TEST(IvsWire, ErrorsNameThePlace)
{
    const std::string record = "records[0]";
    const std::string object = record + ".objects[0]";
    std::string longText(65, 'x');
    const struct
    {
        const char* pFormat;
        std::string records;
        std::string message;
    } rows[] = {
        {"track-ex", R"([{"objects": [{"obj_id": 5000000000}]}])",
         object + ".obj_id: 5000000000 does not fit: -2147483648 to 2147483647"},
        {"track", R"([{"objects": [{"obj_id": 18446744073709551615}]}])",
         object + ".obj_id: 18446744073709551615 does not fit: 0 to 4294967295"},
        {"track", R"([{"objects": [{"obj_id": 99999999999999999999}]}])",
         object + ".obj_id: 1e+20 does not fit: 0 to 4294967295"},
        {"track", R"([{"objects": [{"obj_id": null}]}])", object + ".obj_id: is no whole number"},
        {"track", R"([{"objects": null}])", record + ".objects: is no list"},
        {"track", R"([{"objects": [{")" + std::string(59, 'x') + R"(\u00e4xx": 1}]}])",
         object + "." + std::string(59, 'x') + "...: there is no such field"},
        {"track", R"([{"objects": [{"obj_id": 1.5}]}])", object + ".obj_id: is no whole number"},
        {"track", R"([{"objects": [{"objid": 1}]}])", object + ".objid: there is no such field"},
        {"track", R"([{"type": "scene"}])", record + ".type: only track stands here"},
        {"track", "[]", "records: there must be one"},
        {"track", "[{}, {}]", "records: 2 entries are too many: at most 1"},
        {"track", R"([{"objects": 1}])", record + ".objects: is no list"},
        {"track", R"([{"objects": [7]}])", object + ": is no object"},
        {"track", R"([{"objects": [{"track_point": [[1, 2]]}]}])",
         object + ".track_point[0]: is not of the form [x, y, xSize, ySize]"},
        {"track-ex", R"([{"objects": [{"trackpt_num": 11}]}])", object + ".trackpt_num: 11 does not fit: 0 to 10"},
        {"track-ex", R"([{"objects": [{"trackpt_num": 0, "track_point": [[1, 2, 3, 4]]}]}])",
         object + ".trackpt_num: 0 is less than the 1 entries that there are"},
        {"track-ex", R"([{"objects": [{"ex_info_size": 27}]}])",
         object + ".ex_info_size: 27 does not fit: 0, or 28 to 65535"},
        {"track-ex", R"([{"objects": [{"color": 1}, {"color": 2}]}])",
         record + ".objects[1].color: 2 differs from the 1 of the first object: a payload has one"},
        {"scene", R"([{"points": [{"fristtile": ")" + longText + "\"}]}]",
         record + ".points[0].fristtile: 65 bytes are too many: at most 64"},
        {"scene", R"([{"points": [{"fristtile": "\\y"}]}])",
         record + ".points[0].fristtile: a backslash stands for itself as \\\\, and for a byte as \\xNN"},
        {"scene", R"([{"points": [{"fristtile": null, "polygon_num": 17}]}])",
         record + ".points[0].polygon_num: 17 does not fit: the points have 144 bytes, and would need 148 up to here"},
        {"scene", R"([{"points": [{"polygon_num": 32}, {}]}])", ""},
        {"segments", Group(R"({"objType": 15, "operatorType": 1})"),
         object + ".operatorType: an object of objType 15 has no such field; its fields go by that"},
        {"segments", Group(R"({"objType": 18})"), object + ".lanes: is missing"},
        {"segments", Group(R"({"objType": 2, "attributes": {"8A": {}}})"),
         object +
             ".attributes.8A: there is no such type; there are 80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 8C, 8E, 90, "
             "92, 93, 94, 97"},
        {"segments", Group(R"({"attributes": {"84": {"fatherCount": 62}}})"),
         object + ".attributes.84: 256 bytes are too many: at most 252"},
        {"segments", Group(R"({"attributes": {"81": {"coSafetyBelt": 4}}})"),
         object + ".attributes.81.coSafetyBelt: 4 does not fit: 0 to 3"},
        {"segments", Group(R"({"objType": 18, "lanes": {"type": "95", "packet_length": 6}})"),
         object + ".lanes.packet_length: is no multiple of 4 above 0"},
        {"segments", Group(R"({"objType": 18, "lanes": {"type": "8D"}})"),
         object + ".lanes.laneCount: 0 does not fit: 1 to 5"},
        {"segments", Group(R"({"objType": 27, "lanes": {"type": "96", "lane_info": [{"left_lane_position": [[1, 2]],
              "right_lane_position": [[1, 2]], "lane_virtual_number": 70, "virtual_circle": [
              {"left_inflection_count": 255, "right_inflection_count": 255}]}], "mark_number": 140}})"),
         ""},
        {"segments", R"([{"type": "common-objects", "funcType": 97, "objects": [{}]}])",
         record + ".funcType: 97 is how A0 objects are told from common ones"},
        {"segments", R"([{"type": "overlay"}])",
         record + ".type: only common-objects, a0-objects and a0-ex-objects stand here"},
        {"overlay", R"([{"elements": [{"type": 3}]}])", record + ".elements[0].type: 3 has a name: \"polygon\""},
        {"traffic", R"([{"records": [{"plans": [{}]}]}])",
         record + ".records[0].NumberStat: must be 13 here, or it would not be read"},
        {"traffic", R"([{"records": [{"NumberStat": 13, "plans": [{}]}, {"plans": [{}]}]}])",
         record + ".records[0].plans[0].PlanId: must be 13 if a record follows, or that would not be read"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Refusal(row.pFormat, row.records), row.message);
    std::string face = R"({"objType": 15, "facedata": [0)";
    for (int n = 0; n < 65523; ++n)
        face += ",0";
    EXPECT_EQ(Refusal("segments", Group(face + "]}")), object + ": 65536 bytes are too many: at most 65535");
    face.erase(face.size() - 80);
    EXPECT_EQ(Refusal("segments", Group(face + "]}")), record + ": 65536 bytes are too many: at most 65535");
}

} // namespace Marvane::FrameSift
