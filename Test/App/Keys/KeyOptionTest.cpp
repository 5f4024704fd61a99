#include "Keys/KeyOption.h"

#include "App/CommandRun.h"
#include "Io/AppError.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

using Key = std::vector<uint8_t>;

const std::string sc_hex = "00112233445566778899aAbBcCdDeEfF";
const Key sc_key = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};

Key Parse(const std::string& value)
{
    CLI::App app;
    Key key;
    AddKeyOption(app, key);
    app.parse(std::vector<std::string>{"--key=" + value});
    return key;
}

class KeyOption : public testing::Test
{
protected:
    std::string KeyFile(const std::string& content)
    {
        std::ofstream(m_path, std::ios::binary) << content;
        return "@" + m_path;
    }

    const TempDirectory m_directory;
    const std::string m_path = m_directory.Path() + "/key";
};

} // namespace

TEST_F(KeyOption, DigitsAndFilesGiveTheKey)
{
    EXPECT_EQ(Parse(sc_hex), sc_key);
    EXPECT_EQ(Parse(sc_hex + sc_hex).size(), 32U);
    EXPECT_EQ(Parse(sc_hex + "0123456789ABCDEF").size(), 24U);
    for (const std::string end : {"", "\n", " \r\n\t"})
        EXPECT_EQ(Parse(KeyFile(sc_hex + end)), sc_key);
    // Bare bytes, also such as look like white space or, being as many as no key has digits, like digits.
    EXPECT_EQ(Parse(KeyFile(std::string(sc_key.begin(), sc_key.end()))), sc_key);
    EXPECT_EQ(Parse(KeyFile("\xFF" + std::string(15, '\n'))).size(), 16U);
    EXPECT_EQ(Parse(KeyFile("0123456789abcdef")).size(), 16U);
    EXPECT_EQ(Parse(KeyFile(std::string(24, '\0'))).size(), 24U);
    EXPECT_EQ(Parse(KeyFile(std::string(32, '\x80'))).size(), 32U);
}

TEST_F(KeyOption, WhatIsNoKeyIsWrongUsage)
{
    for (const std::string value : {"", "@", "@-", "0", "00", "xyz"})
        EXPECT_THROW(Parse(value), CLI::ParseError) << value;
    for (const std::string& value : {sc_hex.substr(1), sc_hex + "0", sc_hex + " ", " " + sc_hex, "0x" + sc_hex})
        EXPECT_THROW(Parse(value), CLI::ValidationError) << value;
    for (const std::string& content :
         {std::string(), sc_hex.substr(1), sc_hex.substr(1) + "\n", sc_hex + "\n" + sc_hex, std::string(5000, 'a')})
        EXPECT_THROW(Parse(KeyFile(content)), CLI::ValidationError) << content;
    EXPECT_THROW(Parse("@" + m_directory.Path() + "/none"), CAppError);
}

TEST_F(KeyOption, NeitherOutputNorLogShowsAKey)
{
    const std::string recording = m_directory.Path() + "/recording";
    const std::string log = " --log " + m_directory.Path() + " --log-level 7 ";
    const std::string mux = "mux -o " + recording + " --video-codec h264 --video " + SamplePath("h264/16x16.h264");
    const std::string broken = sc_hex.substr(0, 31) + "g";
    for (const auto& [arguments, nExitCode] :
         Rows<std::string, int>{{mux + " --key " + sc_hex, 0},
                                {"frames --json --key " + sc_hex + log + recording, 0},
                                {"frames --key " + sc_hex + log + m_path, 3},
                                {"frames --key " + broken + log + recording, 2},
                                {"frames --key " + sc_hex.substr(1) + log + recording, 2},
                                {"frames --key @" + sc_hex + log + recording, 2},
                                {"frames --key " + sc_hex + " --key " + sc_hex + log + recording, 2},
                                {"frames " + recording + " --kye " + sc_hex, 2},
                                {"frames " + recording + " --kye=" + broken, 2},
                                {"frames " + recording + " -k" + sc_hex, 2},
                                {"frames " + recording + " --key" + sc_hex, 2},
                                {"frames " + recording + " " + sc_hex, 2},
                                {"frames --key " + sc_hex + " --limit 0 " + recording, 2},
                                {"--key " + sc_hex + " frames " + recording, 2},
                                {mux + " --key " + broken, 2},
                                {mux + " --cipher-head 89 --kye " + sc_hex, 2}}) {
        SCOPED_TRACE(arguments);
        const CommandResult result = RunFramesift(arguments);
        EXPECT_EQ(result.nExitCode, nExitCode) << result.errors;
        const std::string shown = result.output + result.errors + ReadText(m_directory.Path() + "/SiftKit.log");
        for (size_t n = 0; n + 8 <= sc_hex.size(); ++n) // nor a piece of it
            EXPECT_EQ(shown.find(sc_hex.substr(n, 8)), std::string::npos) << shown;
    }
}

} // namespace Marvane::FrameSift
