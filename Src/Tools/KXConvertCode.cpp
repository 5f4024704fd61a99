#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

struct WAVE_FORMAT_ROW
{
    int nCode; // wave format tag, on the wire
    KX_ENCODE_AUDIO_TYPE nResult;
};
constexpr WAVE_FORMAT_ROW sc_waveFormats[] = {
    {1, KX_ENCODE_AUDIO_PCM16},  {2, KX_ENCODE_MS_ADPCM},    {6, KX_ENCODE_AUDIO_G711A},    {7, KX_ENCODE_PCM_MULAW},
    {17, KX_ENCODE_MS_ADPCM},    {20, KX_ENCODE_AUDIO_G723}, {64, KX_ENCODE_AUDIO_G721},    {68, KX_ENCODE_AUDIO_G729},
    {80, KX_ENCODE_AUDIO_MP2},   {85, KX_ENCODE_AUDIO_MP3},  {101, KX_ENCODE_AUDIO_G722_1}, {255, KX_ENCODE_AUDIO_AAC},
    {16897, KX_ENCODE_AUDIO_AMR}};

struct PRIMARIES_ROW
{
    hxxx_colour_primaries nCode;
    KX_COLOR_PRIMARIES nResult;
};
// One code for BT.601 with either line count, and for SMPTE 240M; deliberate.
constexpr PRIMARIES_ROW sc_primaries[] = {
    {HXXX_PRIMARIES_BT709, KX_COLOR_PRIMARIES_BT709},         {HXXX_PRIMARIES_BT470BG, KX_COLOR_PRIMARIES_BT601_625},
    {HXXX_PRIMARIES_BT601_525, KX_COLOR_PRIMARIES_BT601_625}, {HXXX_PRIMARIES_SMTPE_240M, KX_COLOR_PRIMARIES_BT601_625},
    {HXXX_PRIMARIES_BT2020, KX_COLOR_PRIMARIES_BT2020},
};

struct TRANSFER_ROW
{
    hxxx_transfer_characteristics nCode;
    KX_TRANSFER_FUNC nResult;
};
// The gamma 2.2 of BT.470 M is what goes by the name of sRGB here; the sRGB curve itself (13) is not mapped. Both are
// deliberate.
constexpr TRANSFER_ROW sc_transfers[] = {
    {HXXX_TRANSFER_BT709, KX_TRANSFER_FUNC_BT709},
    {HXXX_TRANSFER_BT470M, KX_TRANSFER_FUNC_SRGB},
    {HXXX_TRANSFER_BT601_525, KX_TRANSFER_FUNC_BT709},
    {HXXX_TRANSFER_LINEAR, KX_TRANSFER_FUNC_LINEAR},
    {HXXX_TRANSFER_BT2020_V14, KX_TRANSFER_FUNC_BT709},
    {HXXX_TRANSFER_BT2020_V15, KX_TRANSFER_FUNC_BT709},
    {HXXX_TRANSFER_SMPTE_ST_2084, KX_TRANSFER_FUNC_SMPTE_ST2084},
    {HXXX_TRANSFER_ARIB_STD_B67, KX_TRANSFER_FUNC_HLG},
};

struct MATRIX_ROW
{
    hxxx_matrix_coeffs nCode;
    KX_COLOR_SPACE nResult;
};
constexpr MATRIX_ROW sc_matrices[] = {
    {HXXX_MATRIX_BT709, KX_COLOR_SPACE_BT709},      {HXXX_MATRIX_BT470BG, KX_COLOR_SPACE_BT601},
    {HXXX_MATRIX_BT601_525, KX_COLOR_SPACE_BT601},  {HXXX_MATRIX_BT2020_NCL, KX_COLOR_SPACE_BT2020},
    {HXXX_MATRIX_BT2020_CL, KX_COLOR_SPACE_BT2020},
};

// The result of the row of nCode, else nDefault.
template <typename Row, size_t nRows, typename Result>
constexpr Result LookUp(const Row (&rows)[nRows], int nCode, Result nDefault)
{
    const auto row = std::find_if(std::begin(rows), std::end(rows), [nCode](const Row& r) { return r.nCode == nCode; });
    return row != std::end(rows) ? row->nResult : nDefault;
}

} // namespace

int CKXConvert::WaveFormatToEncodeType(int format)
{
    return LookUp(sc_waveFormats, format, KX_ENCODE_AUDIO_UNKNOWN);
}

int CKXConvert::WaveFormatToEncodeType(const char* name, int length)
{
    constexpr int nPrefix = 4;
    if (name == nullptr || (length >= 0 && length < nPrefix))
        return KX_ENCODE_AUDIO_UNKNOWN;
    const auto text = length < 0 ? std::string_view(name) : std::string_view(name, nPrefix);
    const bool bG711 = text.starts_with("G711") || text.starts_with("g711");
    return bG711 ? KX_ENCODE_AUDIO_G711A : KX_ENCODE_AUDIO_UNKNOWN;
}

KX_COLOR_PRIMARIES CKXConvert::ConvertHxxxColourPrimaries(int code)
{
    return LookUp(sc_primaries, code, KX_COLOR_PRIMARIES_UNDEF);
}

KX_TRANSFER_FUNC CKXConvert::ConvertHxxxTransferCharacteristics(int code)
{
    return LookUp(sc_transfers, code, KX_TRANSFER_FUNC_UNDEF);
}

KX_COLOR_SPACE CKXConvert::ConvertHxxxMatrixCoeffs(int code)
{
    return LookUp(sc_matrices, code, KX_COLOR_SPACE_UNDEF);
}

} // namespace Marvane::FrameSift
