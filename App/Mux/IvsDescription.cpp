#include "Mux/IvsDescription.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "Io/AppError.h"
#include "Ivs/Json/IvsJsonText.h"
#include "Ivs/Json/IvsWireFields.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

constexpr size_t sc_chunk = size_t{1} << 16;
constexpr size_t sc_maxText = size_t{64} << 20;    // hours of metadata; it is kept whole in memory
constexpr size_t sc_maxPayloads = size_t{1} << 30; // and so are the payloads, until they are written

std::string ReadAll(CInputFile& file)
{
    std::string text;
    std::vector<uint8_t> chunk(sc_chunk);
    for (size_t nRead = file.Read(chunk); nRead > 0; nRead = file.Read(chunk)) {
        text.append(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(nRead));
        if (text.size() > sc_maxText)
            throw CIvsJsonError(fmt::format("is too long for a description: at most {} MiB", sc_maxText >> 20));
    }
    return text;
}

Bytes HexPayload(const CJsonPlace& place)
{
    const std::string_view text = place.Text();
    Bytes payload(text.size() / 2);
    for (size_t n = 0; n < payload.size(); ++n) {
        const char* pDigits = text.data() + 2 * n;
        const auto result = std::from_chars(pDigits, pDigits + 2, payload[n], 16);
        if (result.ec != std::errc() || result.ptr != pDigits + 2)
            place.Fail("is no list of bytes, and no text of hexadecimal digits");
    }
    if (text.size() % 2 != 0)
        place.Fail("has half a byte at its end");
    return payload;
}

// As it stands, also damaged: what a decoder makes of that is what one wants to try.
Bytes RawPayload(const CJsonPlace& place)
{
    if (!place.Json().is_array())
        return HexPayload(place);
    Bytes payload(place.Size(gsk_maxUnitSize));
    for (size_t n = 0; n < payload.size(); ++n)
        payload[n] = static_cast<uint8_t>(place.At(n).Number(0, UINT8_MAX));
    return payload;
}

Bytes RecordsPayload(const IVS_FORMAT_ROW& format, const CJsonPlace& frame)
{
    try {
        return IvsPayload(format, frame.At("records").Json());
    } catch (const CIvsJsonError& error) {
        throw CIvsJsonError(fmt::format("{}.{}", frame.Name(), error.what()));
    }
}

IVS_UNIT UnitOf(const CJsonPlace& frame, uint64_t nMaxAtMs)
{
    RequireNames(frame, {}, {"at_ms", "format", "records", "payload"});
    const CJsonPlace name = frame.At("format");
    name.RequireGiven();
    const IVS_FORMAT_ROW* pFormat = FindIvsFormat(name.Text());
    if (pFormat == nullptr)
        name.Fail("is none of " + IvsFormatNames());
    if (frame.Has("records") == frame.Has("payload"))
        frame.Fail("must have records or a payload, and not both");
    IVS_UNIT unit;
    unit.nDueMs = static_cast<uint64_t>(frame.At("at_ms").Number(0, static_cast<int64_t>(nMaxAtMs)));
    unit.chSubType = pFormat->chSubType;
    unit.payload = frame.Has("payload") ? RawPayload(frame.At("payload")) : RecordsPayload(*pFormat, frame);
    if (unit.payload.size() > gsk_maxUnitSize)
        frame.Fail(fmt::format("a payload of {} bytes is too long: at most {}", unit.payload.size(), gsk_maxUnitSize));
    return unit;
}

} // namespace

std::vector<IVS_UNIT> ParseIvsDescription(const std::string& text, uint64_t nMaxAtMs)
{
    const ordered_json json = ParseIvsJsonText(text);
    const CJsonPlace description(json, "");
    if (!json.is_object())
        throw CIvsJsonError("holds no object with frames");
    RequireNames(description, {}, {"frames"});
    const CJsonPlace frames = description.At("frames");
    frames.RequireGiven();
    const size_t nCount = frames.Size(UINT32_MAX);
    if (nCount == 0)
        frames.Fail("there must be one at least");
    std::vector<IVS_UNIT> units;
    size_t nTotal = 0;
    for (size_t n = 0; n < nCount; ++n) {
        units.push_back(UnitOf(frames.At(n), nMaxAtMs));
        nTotal += units.back().payload.size();
        if (nTotal > sc_maxPayloads)
            frames.At(n).Fail(
                fmt::format("the payloads up to here are too long: at most {} MiB", sc_maxPayloads >> 20));
    }
    std::stable_sort(units.begin(), units.end(),
                     [](const IVS_UNIT& left, const IVS_UNIT& right) { return left.nDueMs < right.nDueMs; });
    return units;
}

CIvsTrack::CIvsTrack(const std::string& path, uint64_t nMaxAtMs) : m_file(path)
{
    try {
        m_units = ParseIvsDescription(ReadAll(m_file), nMaxAtMs);
    } catch (const CIvsJsonError& error) {
        throw CAppError(EXIT_CODE::Format, fmt::format("{}: {}", m_file.Name(), error.what()));
    }
}

} // namespace Marvane::FrameSift
