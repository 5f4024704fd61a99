/**
 * @file
 * IVS records of traffic counts (IVS_TRACK_B1): a record holds rule plans, a plan holds regions, a region a count. What
 * stands in ivs_types.h holds for all of them; the arrays end with the callback.
 */
#ifndef FRAMESIFT_IVS_TRAFFIC_H
#define FRAMESIFT_IVS_TRAFFIC_H

#include <stdint.h>

/** How many people or vehicles there are in a region. 12 bytes. */
typedef struct KX_IVS_TRAFFIC_REGION
{
    /** number of the region, 0 to 255 */
    uint16_t RegionId;
    /** state of the region, 0 to 255, the camera's own */
    uint16_t State;
    /** the count */
    int32_t PeopleNum;
    /** not used */
    uint8_t reserved[4];
} KX_IVS_TRAFFIC_REGION;

/** A rule and its regions. 24 bytes. */
typedef struct KX_IVS_TRAFFIC_PLAN
{
    /** number of the plan, 0 to 255 */
    uint16_t PlanId;
    /** kind of the rule, the camera's own */
    uint16_t RuleType;
    /** RegionNum regions; null if there is none */
    KX_IVS_TRAFFIC_REGION* pRegion;
    /** 0 to 32 */
    uint16_t RegionNum;
    /** not used */
    uint8_t reserved[2];
} KX_IVS_TRAFFIC_PLAN;

/** One record of counts. 24 bytes. */
typedef struct KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR
{
    /** type of the record: 13 in the first one of a buffer */
    uint16_t NumberStat;
    /** 0 to 32 */
    uint16_t nIVSTrafficPlanNum;
    /** nIVSTrafficPlanNum plans; null if there is none */
    KX_IVS_TRAFFIC_PLAN* pIVSTrafficPlan;
    /** not used */
    uint8_t reserved[4];
} KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR;

#endif
