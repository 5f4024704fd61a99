/**
 * @mainpage
 * Start with framesift.h: it tells the life of a stream and the rules that every caller needs. The calls stand in
 * stream.h, those for recordings in file.h, those for metadata in ivs.h, the record of a frame in frame_info.h.
 */

/**
 * @file
 * FrameSift: separates a surveillance stream, live or recorded, into described frames. Include this header; it brings
 * all others.
 *
 * The life of a stream:
 *  1. KX_CreateFrameSift makes a handle.
 *  2. KX_ParseData takes the next chunk, of any size, cut anywhere.
 *  3. KX_GetOneFrame hands out the frames found, in stream order, until it answers KX_ERROR_LIST_EMPTY. Back to 2.
 *  4. KX_Destroy ends the handle.
 *
 * The life of a recording, a file that is indexed, read and sought in, stands in file.h.
 *
 * What every caller needs to know:
 *  - A frame is a record with two pointers; payload is not copied. The pointers lead into the caller's own chunk or
 *    into memory of the handle. They end at the next KX_ParseData or KX_Destroy on the handle, and the chunk must stay
 *    in place unchanged until then. Copy what is needed for longer. (Pointers of a recording's frames: see file.h.)
 *  - Frames not fetched before the next KX_ParseData are dropped.
 *  - Damaged frames are delivered like good ones. KX_FRAME_INFO::errorFlags tells them apart.
 *  - The library finds out the stream's type by itself. Until then KX_ParseData answers KX_ERROR_UNGET_STREAM_TYPE.
 *  - No call throws, aborts or writes anything but the log and the capture that KX_CreatePrintLog switches on.
 */
#ifndef FRAMESIFT_FRAMESIFT_H
#define FRAMESIFT_FRAMESIFT_H

#include "framesift/codec_codes.h"  // IWYU pragma: export
#include "framesift/export.h"       // IWYU pragma: export
#include "framesift/file.h"         // IWYU pragma: export
#include "framesift/frame_codes.h"  // IWYU pragma: export
#include "framesift/frame_info.h"   // IWYU pragma: export
#include "framesift/ivs.h"          // IWYU pragma: export
#include "framesift/log_level.h"    // IWYU pragma: export
#include "framesift/records.h"      // IWYU pragma: export
#include "framesift/result.h"       // IWYU pragma: export
#include "framesift/stream.h"       // IWYU pragma: export
#include "framesift/stream_types.h" // IWYU pragma: export

#endif
