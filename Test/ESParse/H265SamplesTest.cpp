// What real encoders write, against the facts that are known of it.
#include <cmath>

#include "ESParse/H265Nal.h"
#include "ESParse/H265Units.h"
#include "Support/H265Facts.h"

namespace Marvane::FrameSift {

using namespace H265Units;

TEST(H265Samples, EachFrameIsToldRight)
{
    for (const json& sample : SamplesIn("h265")) {
        SCOPED_TRACE(sample["file"]);
        const json& facts = sample["facts"];
        // Frames per second in whole numbers: 29 for 30000/1001; 25 where a stream tells none.
        const json& timing = facts["timing"];
        const int32_t nRate =
            timing.is_null() ? 25 : timing["time_scale"].get<int32_t>() / timing["num_units_in_tick"].get<int32_t>();
        const Bytes stream = ReadSample(sample["file"]);
        CH265ESParser parser;
        for (const json& unit : sample["units"]) {
            SCOPED_TRACE(unit["offset"]);
            const Bytes bytes = UnitOf(stream, unit);
            FrameInfo frame{};
            EXPECT_EQ(parser.Parse(bytes.data(), LengthOf(bytes), frame), 0);
            EXPECT_EQ(int32_t{frame.frameSubType}, SubTypeOf(unit));
            EXPECT_EQ(int32_t{frame.frameRate}, nRate);
            ExpectH265Facts(frame, facts);
            // Also for the stream of fields: its timing messages are so short that the scan leaves them alone.
            EXPECT_EQ(int32_t{frame.pictrueStructure}, 0);
        }
    }
}

TEST(H265Samples, BordersAndOrderOfDisplay)
{
    for (const json& sample : SamplesIn("h265")) {
        SCOPED_TRACE(sample["file"]);
        const Bytes stream = ReadSample(sample["file"]);
        const std::string rate = sample["facts"]["source_frame_rate"];
        const double dFrames = std::stod(rate) / std::stod(rate.substr(rate.find('/') + 1)) / 1000;
        CH265ESParser full;
        CH265ESParser next;
        double dIdrTime = 0;
        for (const json& unit : sample["units"]) {
            SCOPED_TRACE(unit["offset"]);
            const Bytes bytes = UnitOf(stream, unit);
            // A slice with less than 9 bytes behind its header is not looked at: no border.
            const bool bTooShort = bytes.size() < 4 + gsk_h265NalHeaderLen + 9;
            EXPECT_EQ(full.IsFullFrame(bytes.data(), LengthOf(bytes)), !bTooShort);
            EXPECT_EQ(next.IsNextFrame(bytes.data(), LengthOf(bytes)), !bTooShort);
            ES_PARSER_INFO info; // the parameter sets, which borders rest on
            full.Parse_KX(bytes.data(), static_cast<int32_t>(bytes.size()), info);
            CH265ESParser ahead = full;
            size_t nSlices = 0;
            for (size_t nPos = 0; nPos + 5 < bytes.size(); ++nPos) {
                const uint8_t* pNal = &bytes[nPos + 3];
                h265Slice slice{};
                const bool bUnit = pNal[-3] == 0 && pNal[-2] == 0 && pNal[-1] == 1 && full.IsLegalNal(pNal, 2);
                if (!bUnit || !ahead.ParseSliceHeader(pNal, static_cast<int32_t>(bytes.size() - nPos - 3), slice))
                    continue;
                ++nSlices;
                if (slice.first_slice_segment_in_pic_flag == 0)
                    continue; // read out of step, as their address is not stepped over
                const double dTime = unit["pts"];
                dIdrTime = unit["idr"] ? dTime : dIdrTime;
                EXPECT_EQ(static_cast<int32_t>(slice.frame_num), std::lround((dTime - dIdrTime) * dFrames));
            }
            EXPECT_EQ(nSlices >= 1, !bTooShort);
            EXPECT_LE(nSlices, unit["slices"]);
        }
    }
}

} // namespace Marvane::FrameSift
