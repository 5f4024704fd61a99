// The same for the records of intelligent video metadata as PublicRecordLayout.cpp does for those of frames. Their sizes are
// what existing callers step by; the offsets were worked out from the field lists, not printed by a compiler.
#include <cstddef>

#include "framesift/ivs.h"

static_assert(sizeof(KX_IVS_POINT) == 8);
static_assert(offsetof(KX_IVS_POINT, ySize) == 6);

static_assert(sizeof(KX_IVS_POSITION) == 4);
static_assert(offsetof(KX_IVS_POSITION, y) == 2);

static_assert(sizeof(KX_IVS_OBJ) == 92);
static_assert(offsetof(KX_IVS_OBJ, obj_id) == 0);
static_assert(offsetof(KX_IVS_OBJ, enable) == 4);
static_assert(offsetof(KX_IVS_OBJ, track_point) == 8);
static_assert(offsetof(KX_IVS_OBJ, trackpt_num) == 88);

static_assert(sizeof(KX_IVS_OBJ_EX) == 232);
static_assert(offsetof(KX_IVS_OBJ_EX, decode_id) == 0);
static_assert(offsetof(KX_IVS_OBJ_EX, obj_id) == 4);
static_assert(offsetof(KX_IVS_OBJ_EX, enable) == 8);
static_assert(offsetof(KX_IVS_OBJ_EX, track_point) == 12);
static_assert(offsetof(KX_IVS_OBJ_EX, trackpt_num) == 92);
static_assert(offsetof(KX_IVS_OBJ_EX, operator_type) == 96);
static_assert(offsetof(KX_IVS_OBJ_EX, frame_part_id) == 100);
static_assert(offsetof(KX_IVS_OBJ_EX, color) == 104);
static_assert(offsetof(KX_IVS_OBJ_EX, object_type) == 105);
static_assert(offsetof(KX_IVS_OBJ_EX, object_sub_type) == 106);
static_assert(offsetof(KX_IVS_OBJ_EX, ex_info_size) == 108);
static_assert(offsetof(KX_IVS_OBJ_EX, speed) == 110);
static_assert(offsetof(KX_IVS_OBJ_EX, speed_X) == 112);
static_assert(offsetof(KX_IVS_OBJ_EX, speed_Y) == 114);
static_assert(offsetof(KX_IVS_OBJ_EX, speed_unit) == 116);
static_assert(offsetof(KX_IVS_OBJ_EX, color_space) == 117);
static_assert(offsetof(KX_IVS_OBJ_EX, main_color_num) == 118);
static_assert(offsetof(KX_IVS_OBJ_EX, main_region_rect_x) == 120);
static_assert(offsetof(KX_IVS_OBJ_EX, main_region_rect_y) == 122);
static_assert(offsetof(KX_IVS_OBJ_EX, main_region_rect_width) == 124);
static_assert(offsetof(KX_IVS_OBJ_EX, main_region_rect_height) == 126);
static_assert(offsetof(KX_IVS_OBJ_EX, main_region_color) == 128);
static_assert(offsetof(KX_IVS_OBJ_EX, reserved) == 132);
static_assert(offsetof(KX_IVS_OBJ_EX, nRenderNum) == 228);

static_assert(sizeof(KX_IVS_OBJ_A0) == 24);
static_assert(offsetof(KX_IVS_OBJ_A0, objID) == 0);
static_assert(offsetof(KX_IVS_OBJ_A0, timeTag) == 1);
static_assert(offsetof(KX_IVS_OBJ_A0, trackPoint) == 4);
static_assert(offsetof(KX_IVS_OBJ_A0, trackTime) == 12);
static_assert(offsetof(KX_IVS_OBJ_A0, appearTime) == 16);
static_assert(offsetof(KX_IVS_OBJ_A0, disappearTime) == 20);

static_assert(sizeof(KX_IVS_OBJ_A0_Ex) == 60);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, trackPoint) == 4);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, trackTime) == 12);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, Objtype) == 24);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, speed) == 25);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, direct) == 26);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, globalColor) == 28);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, topColor) == 38);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, bottomColor) == 48);
static_assert(offsetof(KX_IVS_OBJ_A0_Ex, reserve) == 58);

static_assert(sizeof(KX_IVS_OBJ_ALL) == 24);
static_assert(offsetof(KX_IVS_OBJ_ALL, type) == 0);
static_assert(offsetof(KX_IVS_OBJ_ALL, ObjUnion) == 8);
static_assert(offsetof(KX_IVS_OBJ_ALL, ObjUnionLen) == 16);

static_assert(sizeof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR) == 144);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, nIndex) == 0);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, sceneInfoPoint) == 4);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, fristtile) == 8);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, enable) == 72);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, titleType) == 73);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, titleAttribute) == 74);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, sharpType) == 75);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, polygon_num) == 76);
static_assert(offsetof(KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR, polygon) == 80);

static_assert(sizeof(KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR) == 24);
static_assert(offsetof(KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR, NumberStat) == 0);
static_assert(offsetof(KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR, nIVSTrafficPlanNum) == 2);
static_assert(offsetof(KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR, pIVSTrafficPlan) == 8);
static_assert(offsetof(KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR, reserved) == 16);

static_assert(sizeof(KX_IVS_TRAFFIC_PLAN) == 24);
static_assert(offsetof(KX_IVS_TRAFFIC_PLAN, PlanId) == 0);
static_assert(offsetof(KX_IVS_TRAFFIC_PLAN, RuleType) == 2);
static_assert(offsetof(KX_IVS_TRAFFIC_PLAN, pRegion) == 8);
static_assert(offsetof(KX_IVS_TRAFFIC_PLAN, RegionNum) == 16);
static_assert(offsetof(KX_IVS_TRAFFIC_PLAN, reserved) == 18);

static_assert(sizeof(KX_IVS_TRAFFIC_REGION) == 12);
static_assert(offsetof(KX_IVS_TRAFFIC_REGION, RegionId) == 0);
static_assert(offsetof(KX_IVS_TRAFFIC_REGION, State) == 2);
static_assert(offsetof(KX_IVS_TRAFFIC_REGION, PeopleNum) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_REGION, reserved) == 8);

static_assert(sizeof(KX_IVS_ZOOP) == 16);
static_assert(offsetof(KX_IVS_ZOOP, chVersion) == 0);
static_assert(offsetof(KX_IVS_ZOOP, pObj) == 8);

static_assert(sizeof(KX_IVS_ZOOP_OBJ) == 32);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, nId) == 0);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, wCustom) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, chState) == 6);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, chCount) == 7);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, pElement) == 8);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, wInfoLen) == 16);
static_assert(offsetof(KX_IVS_ZOOP_OBJ, pInfo) == 24);

static_assert(sizeof(KX_IVS_ZOOP_OBJ_ELEMENT) == 16);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT, nType) == 0);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT, nLength) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT, pStruct) == 8);

static_assert(sizeof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR) == 20);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR, wRadius) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR, positionCircle) == 8);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR, chLineA) == 12);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR, chRegB) == 19);

static_assert(sizeof(KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE) == 16);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE, chCount) == 1);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE, chLineA) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE, pointer) == 8);

static_assert(sizeof(KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON) == 24);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON, chLineA) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON, chRegA) == 8);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON, pointer) == 16);

static_assert(sizeof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT) == 24);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, chCharset) == 1);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, stringPos) == 4);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, chLineA) == 8);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, chFontSize) == 12);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, chFontAlign) == 13);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, wTxtLen) == 14);
static_assert(offsetof(KX_IVS_ZOOP_OBJ_ELEMENT_TEXT, pString) == 16);

static_assert(sizeof(KX_IVS_SEGMENT_INFO) == 32);
static_assert(offsetof(KX_IVS_SEGMENT_INFO, funcType) == 0);
static_assert(offsetof(KX_IVS_SEGMENT_INFO, groupCount) == 1);
static_assert(offsetof(KX_IVS_SEGMENT_INFO, cameraID) == 2);
static_assert(offsetof(KX_IVS_SEGMENT_INFO, resv) == 22);

static_assert(sizeof(KX_IVS_COMMON_OBJ) == 2248);
static_assert(offsetof(KX_IVS_COMMON_OBJ, segInfo) == 0);
static_assert(offsetof(KX_IVS_COMMON_OBJ, groupID) == 32);
static_assert(offsetof(KX_IVS_COMMON_OBJ, objID) == 36);
static_assert(offsetof(KX_IVS_COMMON_OBJ, trackPoint) == 40);
static_assert(offsetof(KX_IVS_COMMON_OBJ, objType) == 48);
static_assert(offsetof(KX_IVS_COMMON_OBJ, pointVailed) == 49);
static_assert(offsetof(KX_IVS_COMMON_OBJ, operatorType) == 50);
static_assert(offsetof(KX_IVS_COMMON_OBJ, nStructSize) == 52);
static_assert(offsetof(KX_IVS_COMMON_OBJ, version) == 56);
static_assert(offsetof(KX_IVS_COMMON_OBJ, attrUnionflag) == 57);
static_assert(offsetof(KX_IVS_COMMON_OBJ, facedata) == 64);
static_assert(offsetof(KX_IVS_COMMON_OBJ, attr) == 72);
static_assert(offsetof(KX_IVS_COMMON_OBJ, pArrtibute95) == 2232);
static_assert(offsetof(KX_IVS_COMMON_OBJ, pArrtibute96) == 2240);

static_assert(sizeof(KX_IVS_ATTRIBUTE) == 2156);
static_assert(offsetof(KX_IVS_ATTRIBUTE, attrflag) == 0);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute80) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute81) == 68);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute82) == 132);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute83) == 388);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute84) == 452);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute85) == 964);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute86) == 1220);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute87) == 1284);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute88) == 1348);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute89) == 1412);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute8C) == 1668);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute8E) == 1924);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute90) == 1956);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute92) == 1972);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute93) == 2028);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute94) == 2084);
static_assert(offsetof(KX_IVS_ATTRIBUTE, arrtibute97) == 2124);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_80) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, brand) == 2);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, color_r) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, subbrand) == 8);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, year) == 10);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, windowPosition) == 12);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_80, nReliabilityOfVehicleBodyDetection) == 20);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_81) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_81, coPosition) == 8);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_81, mainSafetyBelt) == 16);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_81, coSunvisor) == 19);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_82) == 256);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_82, plateInfo) == 4);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_83) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_83, color) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_83, strCountry) == 8);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateType) == 12);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateWidth) == 14);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateConfidence) == 16);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_84) == 512);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_84, trackPoint) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_84, fatherID) == 260);

static_assert(sizeof(KX_IVS_ATTRIBUTE_MAINCOLOR) == 12);
static_assert(offsetof(KX_IVS_ATTRIBUTE_MAINCOLOR, mainColor) == 8);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_85) == 256);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_85, color) == 4);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_86) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_86, speed) == 2);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_86, speedX) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_86, speedY) == 6);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_87) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_87, staytime) == 8);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_88) == 64);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_88, pantstype) == 11);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_88, coatcolor) == 12);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_88, pantscolor) == 16);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_89) == 256);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_89, yawAngle) == 2);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_89, lEyePos) == 8);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_89, rMouthPos) == 24);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_89, feature) == 28);

static_assert(sizeof(KX_IVS_TRAFFIC_ATTRIBUTE_8C) == 256);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_8C, car_hanging_accessoryPos) == 4);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_8C, tissue_boxPos) == 36);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_8C, sun_visorPos) == 68);
static_assert(offsetof(KX_IVS_TRAFFIC_ATTRIBUTE_8C, annual_inspection_standardPos) == 100);

static_assert(sizeof(KX_IVS_ATTRIBUTE_8E) == 32);
static_assert(offsetof(KX_IVS_ATTRIBUTE_8E, name) == 2);

static_assert(sizeof(KX_IVS_ATTRIBUTE_90) == 16);
static_assert(offsetof(KX_IVS_ATTRIBUTE_90, m_QueuingTime) == 0);

static_assert(sizeof(KX_IVS_ATTRIBUTE_92) == 56);
static_assert(offsetof(KX_IVS_ATTRIBUTE_92, vehicles_type) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_92, cyclingnumber) == 5);

static_assert(sizeof(KX_IVS_ATTRIBUTE_93) == 56);
static_assert(offsetof(KX_IVS_ATTRIBUTE_93, ship_height) == 2);
static_assert(offsetof(KX_IVS_ATTRIBUTE_93, ship_speed) == 3);
static_assert(offsetof(KX_IVS_ATTRIBUTE_93, ship_distance) == 4);

static_assert(sizeof(KX_IVS_ATTRIBUTE_94) == 40);
static_assert(offsetof(KX_IVS_ATTRIBUTE_94, obj_Angle) == 2);
static_assert(offsetof(KX_IVS_ATTRIBUTE_94, obj_Speed) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_94, obj_type) == 6);
static_assert(offsetof(KX_IVS_ATTRIBUTE_94, obj_Id) == 8);

static_assert(sizeof(KX_IVS_ATTRIBUTE_97) == 32);
static_assert(offsetof(KX_IVS_ATTRIBUTE_97, obj_ID) == 4);

static_assert(sizeof(KX_IVS_LINE_POSITION) == 8);
static_assert(offsetof(KX_IVS_LINE_POSITION, endpoint) == 4);

static_assert(sizeof(KX_SIGNAL_FLOW_LANE_INFO) == 48);
static_assert(offsetof(KX_SIGNAL_FLOW_LANE_INFO, queneLenth) == 4);
static_assert(offsetof(KX_SIGNAL_FLOW_LANE_INFO, ltailCoordinates) == 8);
static_assert(offsetof(KX_SIGNAL_FLOW_LANE_INFO, rtailCoordinates) == 12);
static_assert(offsetof(KX_SIGNAL_FLOW_LANE_INFO, firstVirtualCoordinates1) == 16);
static_assert(offsetof(KX_SIGNAL_FLOW_LANE_INFO, secondVirtualCoordinates1) == 32);

static_assert(sizeof(KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D) == 256);
static_assert(offsetof(KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D, signal_flow_laneInfo) == 8);
static_assert(offsetof(KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D, reserved1) == 248);

static_assert(sizeof(KX_IVS_VIRTUAL_CIRCLE) == 180);
static_assert(offsetof(KX_IVS_VIRTUAL_CIRCLE, left_lane_position) == 2);
static_assert(offsetof(KX_IVS_VIRTUAL_CIRCLE, right_lane_position) == 10);
static_assert(offsetof(KX_IVS_VIRTUAL_CIRCLE, left_inflection_count) == 18);
static_assert(offsetof(KX_IVS_VIRTUAL_CIRCLE, left_inflection_position) == 20);
static_assert(offsetof(KX_IVS_VIRTUAL_CIRCLE, right_inflection_position) == 100);

static_assert(sizeof(KX_IVS_ATTRIBUTE_91_LANE_INFO) == 188);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91_LANE_INFO, left_lane_position) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_name) == 20);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_virtual_number) == 39);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_calibration) == 40);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91_LANE_INFO, reserved3) == 180);

static_assert(sizeof(KX_IVS_ATTRIBUTE_91) == 1798);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91, lane_info) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91, mark_number) == 944);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91, mark_position) == 948);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91, mark_value) == 1508);
static_assert(offsetof(KX_IVS_ATTRIBUTE_91, resv) == 1788);

static_assert(sizeof(KX_IVS_ATTRIBUTE_95_LANE_INFO) == 1434);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, left_lane_position) == 2);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, right_lane_position_num) == 82);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, right_lane_position) == 84);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, lane_virtual_number) == 164);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, virtual_circle) == 166);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95_LANE_INFO, reserved4) == 1426);

static_assert(sizeof(KX_IVS_ATTRIBUTE_95) == 11492);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95, lane_number) == 1);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95, lane_info) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_95, resv) == 11476);

static_assert(sizeof(KX_IVS_ATTRIBUTE_96_LANE_INFO) == 12792);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, left_lane_position) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, right_lane_position_num) == 84);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, right_lane_position) == 86);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, lane_name) == 166);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, lane_virtual_number) == 182);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, virtual_circle) == 184);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96_LANE_INFO, reserved4) == 12784);

static_assert(sizeof(KX_IVS_ATTRIBUTE_96) == 103200);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, lane_number) == 1);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, lane_info) == 4);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, mark_number) == 102340);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, mark_position) == 102344);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, mark_value) == 102904);
static_assert(offsetof(KX_IVS_ATTRIBUTE_96, resv) == 103184);

static_assert(sizeof(KX_IVS_OBJ_ATTR_UNIT) == 16);
static_assert(offsetof(KX_IVS_OBJ_ATTR_UNIT, nAttrDataLen) == 4);
static_assert(offsetof(KX_IVS_OBJ_ATTR_UNIT, pAttrBuf) == 8);

static_assert(sizeof(KX_IVS_OBJ_INFO) == 192);
static_assert(offsetof(KX_IVS_OBJ_INFO, objID) == 4);
static_assert(offsetof(KX_IVS_OBJ_INFO, trackPoint) == 8);
static_assert(offsetof(KX_IVS_OBJ_INFO, objType) == 16);
static_assert(offsetof(KX_IVS_OBJ_INFO, pointVailed) == 17);
static_assert(offsetof(KX_IVS_OBJ_INFO, operatorType) == 18);
static_assert(offsetof(KX_IVS_OBJ_INFO, reserved) == 19);
static_assert(offsetof(KX_IVS_OBJ_INFO, nAttrCount) == 48);
static_assert(offsetof(KX_IVS_OBJ_INFO, pAttrData) == 56);
static_assert(offsetof(KX_IVS_OBJ_INFO, reserved1) == 64);
