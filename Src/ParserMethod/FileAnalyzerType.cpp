// What a recording is, and the parser for it.
#include "IAnalyzer/ParamType.h"
#include "Memory/TryAlloc.h"
#include "ParserMethod/DecryptParam.h"
#include "ParserMethod/FileAnalyzer.h"
#include "ParserMethod/ParserCreator.h"

namespace Marvane::FrameSift {

namespace {

constexpr int64_t sc_detectBlock = 0x100000;

} // namespace

int CFileAnalyzer::GetStreamType()
{
    if (m_nStreamType.load(std::memory_order_relaxed) == KX_STREAM_TYPE_UNKNOWN)
        AnalyzeStreamType();
    return m_nStreamType.load(std::memory_order_relaxed);
}

int CFileAnalyzer::AnalyzeStreamType()
{
    if (m_opFile.get() == nullptr)
        m_opFile = OpenFile(m_FileName.c_str());
    if (!IsOpen())
        return KX_ERROR_FILE_OPEN;
    const int nResult = DetectType();
    m_logicData.ClearBuffer(); // it leads into a block that is gone
    m_opFile->SetPos(0, IFileManipulate::KX_FILE_BEGIN);
    return nResult;
}

// To the end of the file, if it must: a stream may show itself late. The detector keeps the window short.
int CFileAnalyzer::DetectType()
{
    const auto pBlock = TRY_ALLOC_ARRAY<uint8_t>(static_cast<size_t>(sc_detectBlock));
    if (pBlock == nullptr)
        return KX_ERROR_UNGET_STREAM_TYPE;
    m_bHasPreParse = true;
    CParserCreator creator;
    uint32_t nType = KX_STREAM_TYPE_UNKNOWN;
    while (nType == KX_STREAM_TYPE_UNKNOWN) {
        const int64_t nRead = m_opFile->ReadFile(pBlock.get(), sc_detectBlock);
        if (nRead == 0)
            return StoreError(KX_ERROR_UNGET_STREAM_TYPE);
        if (const int nResult = m_logicData.JoinData(pBlock.get(), static_cast<int>(nRead)); nResult != KX_SUCCESS)
            return nResult;
        nType = creator.GetAnalyType(&m_logicData);
    }
    m_nStreamType.store(static_cast<int32_t>(nType), std::memory_order_relaxed);
    return KX_SUCCESS;
}

std::unique_ptr<IFileAnalzyer> CFileAnalyzer::MakeParser(int nStreamType)
{
    return CParserCreator::CreateFileAnalyzer(static_cast<uint32_t>(nStreamType));
}

// The two ways differ, deliberately: only where the type is found out here do the ring of keys and the encoding of the
// path reach the parser. A type that was given, or asked for earlier, brings the bytes of m_aesKey alone, whatever the
// kind of the key.
bool CFileAnalyzer::CreateFileAnalzyer()
{
    m_pFileAnalzyer.reset();
    if (!IsOpen()) {
        StoreError(KX_ERROR_FILE_OPEN);
        return false;
    }
    if (m_nStreamType.load(std::memory_order_relaxed) != KX_STREAM_TYPE_UNKNOWN) {
        if (!CreateOfKnownType())
            return false;
        HandOverKey();
        m_pFileAnalzyer->SetExtCommonInfo(static_cast<uint32_t>(m_nExtCommonType), nullptr, 0);
        return true;
    }
    // Read once already, and nothing found: a second look would find nothing either.
    if (m_bHasPreParse || AnalyzeStreamType() != KX_SUCCESS || !CreateOfKnownType()) {
        StoreError(KX_ERROR_FILE_TYPE_NOSUPPORT);
        return false;
    }
    if (IsKeyRingKind(m_nExtInfoType))
        HandOverKeyRing();
    else
        HandOverKey();
    m_pFileAnalzyer->SetExtCommonInfo(static_cast<uint32_t>(m_nExtCommonType), nullptr, 0);
    if (m_nPathEncodeType != 0) {
        auto nPathEncodeType = static_cast<unsigned char>(m_nPathEncodeType);
        m_pFileAnalzyer->SetExtCommonInfo(KX_PARAM_PATH_ENCODE_TYPE, &nPathEncodeType, 0);
    }
    return true;
}

bool CFileAnalyzer::CreateOfKnownType()
{
    m_pFileAnalzyer = MakeParser(m_nStreamType.load(std::memory_order_relaxed));
    if (m_pFileAnalzyer == nullptr)
        StoreError(KX_ERROR_FILE_TYPE_NOSUPPORT);
    return m_pFileAnalzyer != nullptr;
}

} // namespace Marvane::FrameSift
