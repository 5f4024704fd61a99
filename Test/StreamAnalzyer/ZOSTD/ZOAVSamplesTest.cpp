// Real encoders' payloads through whole frames: what the payload says wins over what the heads announce, is passed on to
// the frames behind it, and no byte of a payload is touched.
#include "FrameWriter/ExtHeads.h"
#include "Support/H265Facts.h"
#include "Support/ZoavParse.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint16_t sc_announced = 8; // of both sides: no sample is as small

ZOAV_FRAME TypeOf(const json& unit, bool bJpeg)
{
    return bJpeg                 ? ZOAV_FRAME::Jpeg
           : unit["kind"] == "I" ? ZOAV_FRAME::I
           : unit["kind"] == "P" ? ZOAV_FRAME::P
                                 : ZOAV_FRAME::B;
}

Bytes Wrapped(const json& sample, const Bytes& stream, uint8_t nWireCodec)
{
    Bytes wrapped;
    uint32_t nSeq = 0;
    for (const json& unit : sample["units"])
        wrapped = std::move(wrapped) + ZoavFrame()
                                           .Type(TypeOf(unit, nWireCodec == 5))
                                           .Seq(++nSeq)
                                           .ExtHead(ExtHead81(nWireCodec, 25))
                                           .ExtHead(ExtHead82(sc_announced, sc_announced))
                                           .Payload(UnitOf(stream, unit))
                                           .Build();
    return wrapped;
}

// Width, height, width and height before cropping.
using Size = std::vector<int32_t>;

Size SizeOf(const FrameInfo& frame)
{
    return {frame.width, frame.height, frame.cropBeforeWidth, frame.cropBeforeHeight};
}

const Size sc_asAnnounced = {sc_announced, sc_announced, 0, 0};

Size H264Size(const json& facts)
{
    // The parser crops by two pixels a unit for every chroma format; the standard's unit is one pixel high for 4:2:2, and
    // one each way for 4:4:4. So more is cropped there than the encoder meant.
    const int32_t nTimesX = facts["chroma"] == "4:4:4" ? 2 : 1;
    const int32_t nTimesY = facts["chroma"] == "4:2:0" ? 1 : 2;
    const int32_t nWidth = facts["coded_width"];
    const int32_t nHeight = facts["coded_height"];
    return {nWidth - nTimesX * (nWidth - facts["width"].get<int32_t>()),
            nHeight - nTimesY * (nHeight - facts["height"].get<int32_t>()), nWidth, nHeight};
}

// What a key frame has to say of its size.
Size KeySize(const std::string& folder, const json& facts, const json& unit)
{
    const Size plain = {facts["width"], facts["height"], facts["coded_width"], facts["coded_height"]};
    if (folder == "h264") {
        // An I picture inside a group has no parameter set of its own: the announced size stands.
        const bool bSet = std::ranges::count(unit["nals"].get<std::vector<int>>(), 7) > 0;
        return bSet ? H264Size(facts) : sc_asAnnounced;
    }
    if (folder == "h265") {
        // The same. And no more than 4096 bytes are looked at: a picture that begins behind them tells nothing.
        const bool bSet =
            std::ranges::count(unit["nals"].get<std::vector<int>>(), 33) > 0 && facts["first_slice_offset"] < 4096;
        return bSet ? plain : sc_asAnnounced;
    }
    // Frame heads of arithmetic coding are not read, nor the payloads of MPEG-2: the announced size stands.
    const bool bRead = folder == "mpeg4" || (folder == "jpeg" && facts["sof_marker"] != "SOF9");
    return bRead ? Size{facts["width"], facts["height"], facts["width"], facts["height"]} : sc_asAnnounced;
}

} // namespace

TEST(ZoavSamples, PicturesAreToldByTheirPayloads)
{
    for (const auto& [folder, nWireCodec] :
         Rows<std::string, uint8_t>{{"h264", 8}, {"h265", 12}, {"jpeg", 5}, {"mpeg4", 1}, {"mpeg2", 9}}) {
        for (const json& sample : SamplesIn(folder)) {
            SCOPED_TRACE(sample["file"]);
            const json& facts = sample["facts"];
            const Bytes stream = ReadSample(sample["file"]);
            const Bytes wrapped = Wrapped(sample, stream, nWireCodec);
            CZoavParse parse;
            const auto frames = parse.Feed(wrapped);
            ASSERT_EQ(frames.size(), sample["units"].size());
            Size key; // of the last key frame
            const uint8_t* pNext = frames[0].frame.framePointer;
            for (size_t n = 0; n < frames.size(); ++n) {
                SCOPED_TRACE(n);
                const FrameInfo& frame = frames[n].frame;
                const json& unit = sample["units"][n];
                EXPECT_EQ(int32_t{frame.errorFlags}, KX_ERROR_FLAGS_NOERROR);
                EXPECT_EQ(int32_t{frame.frameSeq}, static_cast<int32_t>(n + 1));
                EXPECT_EQ(Bytes(frame.streamPointer, frame.streamPointer + frame.streamLen), UnitOf(stream, unit));
                EXPECT_TRUE(frame.framePointer == pNext);
                pNext = frame.framePointer + frame.frameLen;
                if (unit["kind"] == "I")
                    key = KeySize(folder, facts, unit);
                EXPECT_EQ(SizeOf(frame), key);
                if (folder == "h265" && key != sc_asAnnounced)
                    ExpectH265Facts(frame, facts);
            }
            const uint8_t* pFirst = frames[0].frame.framePointer;
            EXPECT_EQ(Bytes(pFirst, pNext), wrapped);
        }
    }
}

} // namespace Marvane::FrameSift
