// How the tests ask the H.265 parser.
#ifndef FRAMESIFT_TEST_ESPARSE_H265TESTSUPPORT_H
#define FRAMESIFT_TEST_ESPARSE_H265TESTSUPPORT_H

#include <gtest/gtest.h>

#include <string>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Writer.h"
#include "Support/ChildProcess.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

inline uint32_t LengthOf(const Bytes& bytes)
{
    return static_cast<uint32_t>(bytes.size());
}

// The unit alone, behind its start code of four bytes.
inline int ReadUnit(CH265ESParser& parser, const Bytes& unit, ES_PARSER_INFO& info)
{
    return parser.ParseNal(&unit[4], static_cast<int32_t>(unit.size() - 4), info);
}

inline std::string Told(int64_t nWidth, int64_t nHeight, int64_t nCodedWidth, int64_t nCodedHeight, int64_t nDepth)
{
    return std::to_string(nWidth) + "x" + std::to_string(nHeight) + " of " + std::to_string(nCodedWidth) + "x" +
           std::to_string(nCodedHeight) + " in " + std::to_string(nDepth);
}

// "subtype WxH of WxH in depth @rate structure": the coded size second.
inline std::string Parse(CH265ESParser& parser, const Bytes& bytes, int nResult = 0)
{
    FrameInfo frame{};
    EXPECT_EQ(parser.Parse(bytes.data(), LengthOf(bytes), frame), nResult);
    return std::to_string(int32_t{frame.frameSubType}) + " " +
           Told(frame.width, frame.height, frame.cropBeforeWidth, frame.cropBeforeHeight, frame.nVideoBitDepth) + " @" +
           std::to_string(int32_t{frame.frameRate}) + " " + std::to_string(int32_t{frame.pictrueStructure});
}

// What the log has of what body does.
template <typename Body>
std::string LogOf(Body body)
{
    const auto run = RunInChild([&body] {
        CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelTrace);
        body();
        return 0;
    });
    EXPECT_EQ(run.nExitCode, 0);
    return run.output;
}

inline size_t CountOf(const std::string& text, const std::string& part)
{
    size_t nCount = 0;
    for (size_t nPos = text.find(part); nPos != std::string::npos; nPos = text.find(part, nPos + 1))
        ++nCount;
    return nCount;
}

} // namespace Marvane::FrameSift

#endif
