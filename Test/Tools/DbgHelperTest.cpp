#include "Tools/DbgHelper.h"

#include <filesystem>
#include <sstream>

#include "Support/LogOf.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {
namespace {

std::string CaptureName(const std::string& directory, int type, const void* handle, const CDbgStreamSave& save)
{
    std::ostringstream name;
    name << directory << "//CDbgStreamSave_" << type << "_" << handle << "_" << &save << ".dat";
    return name.str();
}

TEST(DbgStreamSave, KeepsTheNewestStretch)
{
    const TempDirectory directory;
    int nHandle = 0;
    CDbgStreamSave save;
    const std::string name = CaptureName(directory.Path(), 1, &nHandle, save);
    ASSERT_TRUE(save.WriteFileInfo(&nHandle, directory.Path().c_str(), 1, 1000));
    ASSERT_TRUE(save.WriteFileInfo(nullptr, "/elsewhere", 0, 1)); // only the first arming counts

    std::string expected;
    for (const char ch : {'a', 'b', 'c', 'd'}) {
        const std::vector<uint8_t> chunk(600, static_cast<uint8_t>(ch));
        save.writeData(chunk.data(), 600);
        expected = ch == 'c' ? std::string(600, ch) : expected + std::string(600, ch);
        EXPECT_EQ(ReadText(name), expected) << ch;
    }
}

TEST(DbgStreamSave, WritesNothingUnlessArmedAndFed)
{
    const TempDirectory directory;
    const uint8_t byte = 1;
    CDbgStreamSave save;
    save.writeData(&byte, 1);
    EXPECT_FALSE(save.WriteFileInfo(nullptr, nullptr, 0, 10));
    save.writeData(&byte, 1);
    ASSERT_TRUE(save.WriteFileInfo(nullptr, directory.Path().c_str(), 0, 10));
    save.writeData(nullptr, 1);
    save.writeData(&byte, 0);
    save.writeData(&byte, -1);
    EXPECT_TRUE(std::filesystem::is_empty(directory.Path()));
    save.writeData(&byte, 1);
    EXPECT_EQ(ReadText(CaptureName(directory.Path(), 0, nullptr, save)), "\x01");
}

TEST(DbgStreamSave, NegativeLimitLeavesTheDefault)
{
    const TempDirectory directory;
    CDbgStreamSave save;
    ASSERT_TRUE(save.WriteFileInfo(nullptr, directory.Path().c_str(), 0, -1));
    const std::vector<uint8_t> chunk(0x500000);
    save.writeData(chunk.data(), 0x500000);
    save.writeData(chunk.data(), 1); // 5 MiB are not above the limit yet
    save.writeData(chunk.data(), 2);
    EXPECT_EQ(ReadText(CaptureName(directory.Path(), 0, nullptr, save)).size(), 2U);
}

TEST(DbgStreamSave, TellsTheLogOfAFileThatCannotBeOpened)
{
    EXPECT_EQ(LogOf([] {
                  const uint8_t byte = 1;
                  CDbgStreamSave save;
                  save.WriteFileInfo(nullptr, "/nowhere/at/all", 0, 10);
                  save.writeData(&byte, 1);
              }),
              "warn writeData open file error in save stream writeData.\n");
}

} // namespace
} // namespace Marvane::FrameSift
