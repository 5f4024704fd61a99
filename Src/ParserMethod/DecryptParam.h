// Keys with identifiers, kept as copies of what the caller's record leads to.
#ifndef FRAMESIFT_SRC_PARSERMETHOD_DECRYPTPARAM_H
#define FRAMESIFT_SRC_PARSERMETHOD_DECRYPTPARAM_H

#include <cstdint>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// The length that goes to a parser with such a record.
inline constexpr int gsk_decryptParamSize = 64;
static_assert(sizeof(KX_DECRYPT_PARAM) == gsk_decryptParamSize);

// Kinds whose keys come as such a record and wait in a ring of ten.
inline constexpr bool IsKeyRingKind(int64_t nKind)
{
    return nKind >= KX_ENCRYPT_AES256_GDPR2 && nKind <= KX_ENCRYPT_SM4_OFB;
}

// A copy of its own in place of the block that pBlock owns; no block for no bytes. False without memory: there is then
// no block either.
bool ReplaceBlock(char*& pBlock, int32_t& nBlockLen, const char* pFrom, int32_t nLen);

// Frees what a record of copies owns.
void FreeDecryptParam(KX_DECRYPT_PARAM& param);

} // namespace Marvane::FrameSift

#endif
