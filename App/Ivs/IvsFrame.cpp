#include "Ivs/IvsFrame.h"

#include <exception>

#include "Ivs/IvsRecords.h"

namespace Marvane::FrameSift {

namespace {

// A callback must not throw, so what it throws waits here until the call is over.
struct TAKER
{
    const TAKE_IVS_RECORDS& take;
    std::exception_ptr pThrown;

    static int OnRecords(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen, void* pUserData)
    {
        auto& taker = *static_cast<TAKER*>(pUserData);
        try {
            if (!taker.pThrown)
                taker.take(eType, pRecords, nLen);
        } catch (...) {
            taker.pThrown = std::current_exception();
        }
        return 0;
    }
};

std::string ResultText(const IVS_FRAME& frame, int nResult)
{
    if (frame.payload.empty())
        return "the payload is empty";
    switch (nResult) {
    case KX_SUCCESS:
        return {};
    case KX_ERROR_PARAMETER:
        return "a segment is too short or longer than the payload, or lanes have a number that cannot be or an unknown "
               "form";
    case KX_ERROR_BAD_FORMATTED:
        return "an object or one of its attributes is malformed";
    case KX_ERROR_SYSTEM_OUT_OF_MEMORY:
        return frame.pFormat->eParseType == IVS_TRACK_EX3 ? "the polygons are longer than the payload"
                                                          : "out of memory, or the payload asks for too much of it";
    case KX_ERROR_WRONG_VERSION:
        return "its version is not known, or it is of another format";
    case KX_ERROR_BAD_OBJ_COUNT:
        return "it announces more objects than there can be";
    case KX_ERROR_IVS_DATA_WRONG:
        return "it is cut off, or of another format";
    default:
        return "it cannot be decoded";
    }
}

} // namespace

std::optional<int> DecodeIvs(const IVS_FRAME& frame, const TAKE_IVS_RECORDS& take)
{
    if (frame.IsEnciphered())
        return std::nullopt;
    TAKER taker = {take, nullptr};
    auto* pPayload = const_cast<uint8_t*>(frame.payload.data()); // the call never writes to it
    const int nResult = KX_ParseIVS(pPayload, static_cast<int>(frame.payload.size()), frame.pFormat->eParseType,
                                    &TAKER::OnRecords, &taker);
    if (taker.pThrown)
        std::rethrow_exception(taker.pThrown);
    return nResult;
}

std::string IvsErrorText(const IVS_FRAME& frame, std::optional<int> result)
{
    std::string text;
    const auto add = [&](const std::string& more) {
        if (!more.empty())
            text.append(text.empty() ? "" : "; ").append(more);
    };
    if (frame.head && !frame.head->damage.empty())
        add("the frame is damaged (" + frame.head->damage + ")");
    if (frame.IsEnciphered())
        add("enciphered (" + frame.head->cipher + ")");
    if (result)
        add(ResultText(frame, *result));
    return text;
}

std::string IvsErrorAdvice(const IVS_FRAME& frame, std::optional<int> result)
{
    return IvsErrorText(frame, result).append(frame.WouldKeyHelp() ? "; --key deciphers it" : "");
}

IVS_COUNT CountIvsRecords(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen)
{
    switch (eType) {
    case IVS_TRACK:
        return {RecordsOf<KX_IVS_OBJ>(pRecords, nLen).size(), "object"};
    case IVS_TRACK_EX:
        return {RecordsOf<KX_IVS_OBJ_EX>(pRecords, nLen).size(), "object"};
    case IVS_TRACK_40:
        return {RecordsOf<KX_IVS_COMMON_OBJ>(pRecords, nLen).size(), "object"};
    case IVS_TRACK_A1:
        return {RecordsOf<KX_IVS_OBJ_A0>(pRecords, nLen).size(), "object"};
    case IVS_TRACK_A1_EX: {
        const auto wrapped = RecordsOf<KX_IVS_OBJ_ALL>(pRecords, nLen);
        return {wrapped.empty() ? 0 : ObjectsOf(wrapped[0]).size(), "object"};
    }
    case IVS_TRACK_EX3:
        return {RecordsOf<KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR>(pRecords, nLen).size(), "title"};
    case IVS_TRACK_ZOOP: {
        IVS_COUNT count = {0, "drawing"};
        for (const KX_IVS_ZOOP_OBJ& drawing : RecordsOf<KX_IVS_ZOOP_OBJ>(pRecords, nLen)) {
            ++count.nCount;
            count.nParts += drawing.chCount;
        }
        return count;
    }
    case IVS_TRACK_B1:
        return {RecordsOf<KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR>(pRecords, nLen).size(), "count"};
    default:
        return {0, "record"};
    }
}

} // namespace Marvane::FrameSift
