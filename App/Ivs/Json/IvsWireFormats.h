// A payload of each format from its records. IvsPayload picks one.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSWIREFORMATS_H
#define FRAMESIFT_APP_IVS_JSON_IVSWIREFORMATS_H

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Ivs/Json/IvsWirePlace.h"

namespace Marvane::FrameSift {

// records: a list of what a decoder hands out, one entry for each callback. Throw CIvsJsonError.
Bytes TrackPayload(const CJsonPlace& records);
Bytes TrackExPayload(const CJsonPlace& records);
Bytes SegmentsPayload(const CJsonPlace& records);
Bytes ScenePayload(const CJsonPlace& records);
Bytes OverlayPayload(const CJsonPlace& records);
Bytes TrafficPayload(const CJsonPlace& records);

// Fails if the record says that it is of another type.
void RequireType(const CJsonPlace& record, std::string_view type);
// Fails if a payload has become longer than frames are. A count of a few digits may ask for many bytes, so formats with
// any number of records ask after each.
void RequireRoom(const Bytes& wire, const CJsonPlace& record);
// The one record of a format that has no more.
CJsonPlace OnlyRecord(const CJsonPlace& records, std::string_view type);

// A signal flow object's lanes, or an object's attributes: {"80": {...}, "8C": {...}}.
void PutLanes(Bytes& wire, const CJsonPlace& lanes);
void PutAttributes(Bytes& wire, const CJsonPlace& attributes);

} // namespace Marvane::FrameSift

#endif
