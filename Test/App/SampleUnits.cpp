#include "App/SampleUnits.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace Marvane::FrameSift {

namespace {

struct LISTED_UNIT
{
    std::string file;
    SAMPLE_UNIT unit;
};

std::vector<LISTED_UNIT> ReadList()
{
    std::ifstream list(SamplePath("units.tsv"));
    std::vector<LISTED_UNIT> units;
    for (std::string line; std::getline(list, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream fields(line);
        LISTED_UNIT row;
        int nIndex = 0;
        double dTime = 0;
        std::string key;
        fields >> row.file >> nIndex >> row.unit.nOffset >> row.unit.nLength >> row.unit.kind >> dTime >> key;
        row.unit.bKey = key == "1";
        units.push_back(row);
    }
    return units;
}

const std::vector<LISTED_UNIT>& List()
{
    static const std::vector<LISTED_UNIT> s_units = ReadList();
    return s_units;
}

} // namespace

std::vector<std::string> SampleFiles(const std::string& folder)
{
    std::vector<std::string> files;
    for (const LISTED_UNIT& row : List()) {
        if (row.file.starts_with(folder + "/") && (files.empty() || files.back() != row.file))
            files.push_back(row.file);
    }
    return files;
}

std::vector<SAMPLE_UNIT> ListedUnits(const std::string& file)
{
    std::vector<SAMPLE_UNIT> units;
    for (const LISTED_UNIT& row : List()) {
        if (row.file == file)
            units.push_back(row.unit);
    }
    return units;
}

std::vector<uint8_t> ReadSample(const std::string& file)
{
    std::ifstream stream(SamplePath(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string SamplePath(const std::string& file)
{
    return std::string(FRAMESIFT_SAMPLES) + "/" + file;
}

} // namespace Marvane::FrameSift
