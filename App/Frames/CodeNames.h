// Names for the codes of a frame record. A code without a name is printed as its number.
#ifndef FRAMESIFT_APP_FRAMES_CODENAMES_H
#define FRAMESIFT_APP_FRAMES_CODENAMES_H

#include <cstdint>
#include <string>

namespace Marvane::FrameSift {

// The names are part of the output that scripts read: add some, but change none.
std::string FrameTypeName(int32_t nFrameType);   // KX_FRAME_TYPE_*
std::string StreamTypeName(int32_t nStreamType); // KX_STREAM_TYPE_*
// Which of the older formats a stream is: "new", "hb", "zopt", "audio" for one that has shown no video, "raw-mpeg4". Empty
// for a stream of another kind.
std::string InnerFormatName(int32_t nStreamType, int32_t nInnerType);
// "old (194): new".
std::string StreamFormatText(int32_t nStreamType, int32_t nInnerType);
std::string ErrorName(int32_t nErrorFlags); // KX_ERROR_FLAGS_*; empty for a good frame

std::string CipherName(int32_t nEncryptType);    // KX_ENCRYPT_*; empty for a clear frame
std::string InterlaceName(int32_t nDeinterlace); // KX_DEINTERLACE_*

// The compact codes of a record; empty for 0, which tells nothing.
std::string ColourPrimariesName(int32_t nColorPrimaries);
std::string ColourTransferName(int32_t nColorTransfer);
std::string ColourMatrixName(int32_t nColorSpace);

// These depend on the frame type. Empty if the frame has none: audio knows no subtypes, data no codecs.
std::string SubTypeName(int32_t nFrameType, int32_t nFrameSubType);
std::string CodecName(int32_t nFrameType, int32_t nFrameEncodeType);

} // namespace Marvane::FrameSift

#endif
