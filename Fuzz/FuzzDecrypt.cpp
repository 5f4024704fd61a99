// The key store, by a script of calls. Properties: no crash, no read outside a key; a key with bytes is taken and one
// without is not, whatever was asked in between; and without ciphers no frame is deciphered.
#include <algorithm>
#include <climits>
#include <memory>

#include "Require.h"
#include "Tools/BufferRead.h"
#include "Tools/KXDecrypt.h"

namespace Marvane::FrameSift {

namespace {

// A key as a caller hands it over: at wild lengths, but with all the bytes that may be copied, in a block of just their
// size.
class CFuzzKey
{
public:
    explicit CFuzzKey(CBufferRead& script)
    {
        const uint8_t nWish = script.ReadInt8();
        m_nLen = nWish == 0xFF ? INT_MAX : nWish == 0xFE ? INT_MIN : nWish % 70;
        const uint32_t nBytes = m_nLen == INT_MAX ? 64 : static_cast<uint32_t>(std::max(m_nLen, 0));
        const uint8_t* pBytes = script.ReadBuffer(nBytes);
        if (pBytes == nullptr)
            return;
        m_pBlock = std::make_unique<uint8_t[]>(nBytes);
        std::memcpy(m_pBlock.get(), pBytes, nBytes);
    }
    const uint8_t* Bytes() const { return m_pBlock.get(); }
    char* Text() const { return reinterpret_cast<char*>(m_pBlock.get()); }
    int Length() const { return m_nLen; }
    bool IsSound() const { return m_pBlock != nullptr && m_nLen > 0; }

private:
    std::unique_ptr<uint8_t[]> m_pBlock;
    int m_nLen = 0;
};

void Ask(CKXDecrypt& keys, uint8_t nType, uint8_t nId)
{
    FrameInfo frame{};
    frame.nEncryptType = nType;
    frame.nB5HeadEncryptVKid[0] = nId;
    const uint8_t src[16] = {};
    uint8_t dst[16];
    uint32_t nDstLen = sizeof dst;
    Require(!keys.Decrypt(frame, src, sizeof src, dst, nDstLen));
}

void RunCall(CKXDecrypt& keys, uint8_t nCall, CBufferRead& script)
{
    const CFuzzKey key(script);
    const CFuzzKey id(script);
    const uint8_t nByte = script.ReadInt8();
    if (nCall % 4 == 0) {
        const KX_DECRYPT_PARAM param = {key.Text(), key.Length(), id.Text(), id.Length(), false, nullptr, {}};
        Require(keys.SetKey(&param) == key.IsSound());
    } else if (nCall % 4 == 1) {
        const DECRYPT_PARAM param = {key.Bytes(), key.Length(), {nByte}, nByte,
                                     id.Bytes(),  id.Length(),  {1},     nByte % 3};
        Require(keys.SetVEKInfo(1, &param, 0) == (key.IsSound() && nByte != 0));
    } else if (nCall % 4 == 2) {
        PBKDF2_PARAM param;
        param.KDFType = nByte;
        keys.SetVEKInfo(2, &param, 0);
        keys.SetKey(static_cast<GMParamType>(nByte), key.Bytes(), static_cast<uint32_t>(key.Length()));
    }
    Ask(keys, nCall / 4, nByte);
}

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    CKXDecrypt keys;
    CBufferRead script(pData, static_cast<uint32_t>(nSize));
    for (uint8_t nCall = 0; script.ReadUint8(nCall);)
        RunCall(keys, nCall, script);
    return 0;
}
