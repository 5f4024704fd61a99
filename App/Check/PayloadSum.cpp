#include "Check/PayloadSum.h"

#include <cstring>
#include <span>

namespace Marvane::FrameSift {

bool CPayloadSum::WasChecked(const FrameInfo& frame)
{
    // The sum is of the bytes on the wire. The parser does not check it where it has deciphered them, nor for ciphers
    // that it does not know.
    const bool bOnTheWire =
        frame.nEncryptType == KX_ENCRYPT_UNKOWN || (frame.nEncryptType == KX_ENCRYPT_AES && frame.bHasDecrypt == 0);
    if (!bOnTheWire || frame.framePointer == nullptr || frame.frameLen < gsk_stdFrameHeadSize)
        return false;
    STD_FRAME_HEAD head = {};
    std::memcpy(&head, frame.framePointer, sizeof head);
    if (!IfZavHeaderBigEndian(__builtin_bswap32(head.dwFlag)))
        return false;
    const std::span<const uint8_t> bytes(frame.framePointer, static_cast<size_t>(frame.frameLen));
    FrameInfo unused = frame;
    ExtZOAVIFrameInfo ext = {};
    m_parser.DoInit(); // drops what it has copied of the frame before
    m_parser.ParseExtHead(bytes.subspan(sizeof head), head.nExtFrameLen, unused, ext);
    return m_parser.GetExtFrameHead().pHead88 != nullptr;
}

} // namespace Marvane::FrameSift
