#include "ParserMethod/DecryptParam.h"

#include <cstring>

#include "Memory/TryAlloc.h"

namespace Marvane::FrameSift {

bool ReplaceBlock(char*& pBlock, int32_t& nBlockLen, const char* pFrom, int32_t nLen)
{
    delete[] pBlock;
    pBlock = nullptr;
    nBlockLen = 0;
    if (pFrom == nullptr || nLen < 1)
        return true;
    pBlock = TRY_ALLOC_ARRAY<char>(static_cast<size_t>(nLen)).release();
    if (pBlock == nullptr)
        return false;
    std::memcpy(pBlock, pFrom, static_cast<size_t>(nLen));
    nBlockLen = nLen;
    return true;
}

void FreeDecryptParam(KX_DECRYPT_PARAM& param)
{
    delete[] param.pKey;
    delete[] param.pKeyId;
    delete param.pPublicKey;
    param.pKey = nullptr;
    param.pKeyId = nullptr;
    param.pPublicKey = nullptr;
    param.nKeyLen = 0;
    param.nKeyIdLen = 0;
    param.bSetPublicKey = false;
}

} // namespace Marvane::FrameSift
