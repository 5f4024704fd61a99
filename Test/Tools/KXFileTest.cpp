#include "Tools/KXFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include "Support/TempDirectory.h"
#include "Support/Testing.h"
#include "Tools/FileFactory.h"

namespace Marvane::FrameSift {

using Mode = IFileManipulate::OPEN_MODE;

TEST(KXFile, ReadsAndSeeksAndItsSizeMovesNothing)
{
    TempDirectory directory;
    const std::string path = directory.Path() + "/bytes";
    std::ofstream(path) << "0123456789";
    CKXFile file(0);
    char bytes[16] = {};
    EXPECT_EQ((Fields{file.IsOpen(), file.GetSize(), file.ReadFile(bytes, 4), file.WriteFile("x", 1),
                      file.SetPos(0, IFileManipulate::KX_FILE_BEGIN), file.CloseFile()}),
              (Fields{0, 0, 0, 0, 0, 0}));
    ASSERT_TRUE(file.OpenFile(path.c_str(), IFileManipulate::READ_ONLY));
    EXPECT_STREQ(file.GetFileName(), path.c_str());
    EXPECT_EQ(file.ReadFile(bytes, 4), 4);
    EXPECT_EQ(file.GetSize(), 10);
    EXPECT_FALSE(file.SetPos(-1, IFileManipulate::KX_FILE_BEGIN));
    EXPECT_FALSE(file.SetPos(0, static_cast<IFileManipulate::MOVE_MODE>(7)));
    EXPECT_EQ((Fields{file.ReadFile(bytes, -1), file.ReadFile(nullptr, 4), file.ReadFile(bytes, 2)}),
              (Fields{0, 0, 2}));
    EXPECT_EQ(std::string(bytes, 2), "45"); // none of that moved
    EXPECT_TRUE(file.SetPos(-3, IFileManipulate::KX_FILE_END));
    EXPECT_EQ((Fields{file.ReadFile(bytes, 16), file.ReadFile(bytes, 16)}), (Fields{3, 0}));
    EXPECT_TRUE(file.SetPos(int64_t{5} << 32, IFileManipulate::KX_FILE_BEGIN)); // beyond 32 bits, and the end
    EXPECT_EQ(file.GetPos(), 0);                                                // always

    EXPECT_TRUE(file.OpenFile(path.c_str(), IFileManipulate::READ_ONLY));
    EXPECT_STREQ(file.GetFileName(), ""); // the close in between takes the new name along
    EXPECT_TRUE(file.CloseFile());
    EXPECT_FALSE(file.CloseFile());
}

TEST(KXFile, ModesAreThoseOfTheCLibrary)
{
    const Rows<Mode, bool, std::string> rows = {
        {IFileManipulate::READ_ONLY, false, "old"},     {IFileManipulate::WRITE_ONLY, true, "NEW"},
        {IFileManipulate::READ_WRITE, false, "NEW"},    {IFileManipulate::READ_WRITE_SUPER, true, "oldNEW"},
        {IFileManipulate::WRITE_SUPER, true, "oldNEW"}, {static_cast<Mode>(5), false, "old"},
        {static_cast<Mode>(-1), false, "old"},
    };
    for (const auto& [eMode, bCreates, content] : rows) {
        SCOPED_TRACE(eMode);
        TempDirectory directory;
        const std::string path = directory.Path() + "/file";
        EXPECT_EQ(CKXFile(0).OpenFile(path.c_str(), eMode), bCreates);
        EXPECT_EQ(access(path.c_str(), F_OK) == 0, bCreates);
        std::ofstream(path) << "old";
        CKXFile file(0);
        file.OpenFile(path.c_str(), eMode);
        file.WriteFile("NEW", 3);
        file.CloseFile();
        EXPECT_EQ(ReadText(path), content);
    }
}

// Above all none of them hangs.
TEST(FileFactory, WhatIsNoRunOfBytesCountsAsNotOpened)
{
    TempDirectory directory;
    const std::string fifo = directory.Path() + "/fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string missing = directory.Path() + "/missing";
    for (const char* pPath : {static_cast<const char*>(nullptr), "", "tvf://host/file", "tvf://", "/dev/null",
                              "/dev/tty", directory.Path().c_str(), fifo.c_str(), missing.c_str()}) {
        SCOPED_TRACE(pPath != nullptr ? pPath : "null");
        for (const Mode eMode : {IFileManipulate::READ_ONLY, IFileManipulate::READ_WRITE}) {
            const IFileManipPtr file = CFileFactory::createFileManipObj(pPath, eMode, 0);
            ASSERT_NE(file.get(), nullptr);
            EXPECT_FALSE(file->IsOpen());
            EXPECT_STREQ(file->GetFileName(), "Null");
            EXPECT_EQ((Fields{file->GetSize(), file->GetPos(), file->OpenFile("/etc/passwd", eMode)}),
                      (Fields{1, 0, 0}));
        }
    }
}

// A name of fewer bytes than the scheme is a name.
TEST(FileFactory, ABeginningOfTheSchemeIsAnOrdinaryPath)
{
    TempDirectory directory;
    const std::string former = std::filesystem::current_path();
    std::filesystem::current_path(directory.Path());
    for (const char* pPath : {"t", "tvf", "tvf:"}) {
        std::ofstream(pPath) << "x";
        EXPECT_TRUE(CFileFactory::createFileManipObj(pPath, IFileManipulate::READ_ONLY, 1)->IsOpen()) << pPath;
    }
    std::filesystem::current_path(former);
}

} // namespace Marvane::FrameSift
