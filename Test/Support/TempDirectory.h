// A directory that lives as long as a test.
#ifndef FRAMESIFT_TEST_SUPPORT_TEMPDIRECTORY_H
#define FRAMESIFT_TEST_SUPPORT_TEMPDIRECTORY_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

namespace Marvane::FrameSift {

class TempDirectory
{
public:
    TempDirectory() { EXPECT_NE(mkdtemp(m_path.data()), nullptr); }
    ~TempDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;

    const std::string& Path() const { return m_path; }

private:
    std::string m_path = testing::TempDir() + "framesift.XXXXXX";
};

// Empty if there is no such file.
inline std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace Marvane::FrameSift

#endif
