#include "FileAnalzyer/SimulateByStream/IndexKeyFrames.h"

namespace Marvane::FrameSift {

void CIndexKeyFrames::Append(int64_t nIndex, const ExtZOAVIFrameInfo& ext)
{
    KEY_FRAME key{nIndex, ext};
    key.ext.digtalSignatureEncdecDataPtr = nullptr;
    key.ext.svacEncryptKeyData = nullptr;
    key.ext.osdExtDataPtr = nullptr;
    m_keys.Append(key);
}

size_t CIndexKeyFrames::FirstNotBelow(int64_t nIndex) const
{
    size_t nLow = 0;
    for (size_t nHigh = m_keys.Size(); nLow < nHigh;) {
        const size_t nMid = nLow + (nHigh - nLow) / 2;
        if (m_keys[nMid].nIndex < nIndex)
            nLow = nMid + 1;
        else
            nHigh = nMid;
    }
    return nLow;
}

const ExtZOAVIFrameInfo* CIndexKeyFrames::Find(int64_t nIndex) const
{
    const size_t nPlace = FirstNotBelow(nIndex);
    return nPlace < m_keys.Size() && m_keys[nPlace].nIndex == nIndex ? &m_keys[nPlace].ext : nullptr;
}

const ExtZOAVIFrameInfo* CIndexKeyFrames::FindBefore(int64_t nIndex) const
{
    const size_t nPlace = FirstNotBelow(nIndex);
    return nPlace > 0 ? &m_keys[nPlace - 1].ext : nullptr;
}

} // namespace Marvane::FrameSift
