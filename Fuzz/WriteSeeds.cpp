// framesift_fuzz_seeds TARGET FOLDER: writes what a fuzz target starts from, made by the frame writer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "IvsSeeds.h"
#include "LegacySeeds.h"

namespace Marvane::FrameSift {

namespace {

Bytes EveryExtHead()
{
    Bytes run;
    const auto add = [&run](std::initializer_list<uint8_t> head, size_t nSize) {
        const size_t nStart = run.size();
        run.insert(run.end(), head);
        run.resize(nStart + nSize, 0x11);
    };
    for (const uint8_t nTag : Bytes{0x80, 0x81, 0x83, 0x84, 0x85, 0x89, 0x8B, 0x94, 0x96, 0xA0, 0xA1})
        add({nTag, 1, 2, 1}, 4);
    for (const uint8_t nTag : Bytes{0x82, 0x88, 0x8A, 0x8C, 0x91, 0x92, 0x93, 0x95, 0x9A, 0x9B})
        add({nTag, 1, 2, 0}, 8);
    return run;
}

Bytes EverySizedExtHead()
{
    Bytes run = {0x99, 1, 1, 64, 0, 48, 0, 0};
    run.resize(24, 0x22);
    run = run + Bytes{0x9C, 4, 0, 0, 2, 0, 0, 0, 0x31, 0x32} + Bytes{0xB0, 10, 2, 0, 0, 0, 0, 2, 0x41, 0x42} +
          Bytes{0xB1, 4, 0x51, 0x52} + Bytes{0xB2, 4, 1, 0} + Bytes{0xB3, 8, 1, 2, 3, 4, 5, 6} + Bytes{0xB4, 4, 2, 2} +
          Bytes{0xB8, 8, 0, 0, 1, 2, 3, 4} + Bytes{0xB9, 8, 1, 0, 1, 0, 0, 0} +
          Bytes{0xBD, 12, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8} + Bytes{0xB7, 4, 0, 0};
    Bytes headB5 = {0xB5, 76, 1};
    headB5.resize(76, 0x55);
    Bytes headB6 = {0xB6, 80, 1};
    headB6.resize(80, 0x66);
    return run + headB5 + headB6;
}

Bytes SoundStream(ZOAV_FAMILY eFamily)
{
    const Bytes payload(40, 0xAB);
    const auto frame = [&](ZOAV_FRAME eType, uint8_t chSubType = 0) {
        return ZoavFrame().Family(eFamily).Type(eType, chSubType).Payload(payload);
    };
    return frame(ZOAV_FRAME::I).Seq(1).ExtHead(EveryExtHead()).Build() + frame(ZOAV_FRAME::P).Seq(2).Build() +
           frame(ZOAV_FRAME::Audio).Seq(3).ExtHead({0x83, 1, 26, 4}).Build() +
           frame(ZOAV_FRAME::B).Seq(4).ExtHead(EverySizedExtHead()).Build() +
           frame(ZOAV_FRAME::Data, 17)
               .Seq(5)
               .Payload(Bytes{20, 0, 1, 0, 2, 0, 3, 0, 0, 0, 4, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9})
               .Build() +
           frame(ZOAV_FRAME::Data, 18).Seq(6).Payload(Bytes{4, 1, 2, 3, 9, 9}).Build() +
           frame(ZOAV_FRAME::Jpeg).Seq(7).Build();
}

Bytes DamagedStream()
{
    const Bytes payload(40, 0xCD);
    const auto frame = [&](uint32_t dwSeq) { return ZoavFrame().Seq(dwSeq).Payload(payload); };
    return frame(1).Build() + frame(2).WrongSum().Build() + frame(3).WrongTailMagic().Build() +
           frame(4).WrongTailLength().Build() + frame(5).ClaimLength(20).Build() + frame(6).ClaimExtLength(90).Build() +
           Bytes{'z', 'o', 'a', 'v'} + Bytes{'Z', 'O', 'I', 'I', 12, 0, 0, 0, 1, 2, 3, 4} +
           frame(7).RawType(0x80).Build() + frame(8).Build();
}

// Checked, enciphered, watermarked, with pictures that tell their size.
Bytes FinishedStream()
{
    const Bytes sps = {0, 0, 0, 1, 0x67, 66, 0, 30, 0xAB, 0x40, 0xB0, 0x4B, 0x20, 0, 0, 0, 1, 0x65, 0x88, 0x80, 0x10};
    const Bytes jpeg = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 1, 2, 0xFF, 0xC0, 0, 11, 8, 1, 0xE0, 2, 0x80, 1, 1, 0x11, 0};
    Bytes waterMark = {'T', 'E', 'X', 'T', 0, 0, 0, 0, 20, 0, 0, 0};
    waterMark.resize(32, 0);
    const auto frame = [](ZOAV_FRAME eType, uint32_t dwSeq) {
        return ZoavFrame().Type(eType).Seq(dwSeq).Payload(Bytes(40, 0));
    };
    return frame(ZOAV_FRAME::I, 1).ExtHead({0x81, 0, 8, 25}).Payload(sps).Build() +
           frame(ZOAV_FRAME::P, 2).ExtHead({0x88, 0, 0, 0, 0, 0, 0, 1}).ExtHead({0x94, 2, 1, 0}).Build() +
           frame(ZOAV_FRAME::P, 5).ExtHead({0x89, 0, 0, 0}).ExtHead({0x81, 0, 8, 12}).Build() +
           frame(ZOAV_FRAME::I, 6).ExtHead({0x95, 0, 4, 0, 20, 0, 0, 0}).ExtHead({0x81, 0, 12, 25}).Build() +
           frame(ZOAV_FRAME::Jpeg, 7).ExtHead({0x81, 0, 5, 25}).Payload(jpeg).Build() +
           frame(ZOAV_FRAME::Data, 8).Type(ZOAV_FRAME::Data, 6).Payload(waterMark).Build();
}

bool Write(const std::string& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

bool WriteAll(const std::string& folder, const std::vector<Bytes>& seeds)
{
    bool bWritten = true;
    for (size_t n = 0; n < seeds.size(); ++n)
        bWritten = Write(folder + "/seed-" + std::to_string(n), seeds[n]) && bWritten;
    return bWritten;
}

// The front of each sample of a codec: headers stand there, and short inputs are fuzzed faster.
bool WriteSampleSeeds(const std::string& codec, const std::string& folder)
{
    constexpr size_t nFront = 1500;
    bool bWritten = true;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(FRAMESIFT_SAMPLES) + "/" + codec)) {
        std::ifstream file(entry.path(), std::ios::binary);
        Bytes bytes(nFront);
        file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(nFront));
        bytes.resize(static_cast<size_t>(file.gcount()));
        bWritten = Write(folder + "/seed-" + entry.path().filename().string(), bytes) && bWritten;
    }
    return bWritten;
}

// The codec of a target's samples; empty if it starts from something else.
std::string CodecOf(const std::string& target)
{
    const std::vector<std::pair<std::string, std::string>> rows = {{"FuzzH264", "h264"},
                                                                   {"FuzzH265", "h265"},
                                                                   {"FuzzMpeg2", "mpeg2"},
                                                                   {"FuzzMpeg4", "mpeg4"},
                                                                   {"FuzzJpeg", "jpeg"}};
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& each) { return each.first == target; });
    return row != rows.end() ? row->second : std::string();
}

bool WriteSeeds(const std::string& target, const std::string& folder)
{
    if (const std::string codec = CodecOf(target); !codec.empty())
        return WriteSampleSeeds(codec, folder);
    for (const std::vector<Bytes>& seeds : {IvsSeeds(target), LegacySeeds(target)}) {
        if (!seeds.empty())
            return WriteAll(folder, seeds);
    }
    if (target == "FuzzDecrypt")
        return Write(folder + "/seed-keys", SoundStream(ZOAV_FAMILY::ZOAV));
    if (target == "FuzzExtHeads") {
        const Bytes fixedHeads = EveryExtHead();
        const Bytes sizedHeads = EverySizedExtHead();
        const auto run = [](const Bytes& heads) { return Bytes{static_cast<uint8_t>(heads.size()), 1} + heads; };
        return Write(folder + "/seed-fixed", run(fixedHeads) + Bytes(8, 0)) &&
               Write(folder + "/seed-sized", run(sizedHeads) + Bytes(8, 0));
    }
    // Byte 0 chooses the cut, or the place to seek; some targets have a second one.
    const Bytes front = target == "FuzzZoav" || target == "FuzzRecording" ? Bytes{3, 30} : Bytes{30};
    return Write(folder + "/seed-zoav", front + SoundStream(ZOAV_FAMILY::ZOAV)) &&
           Write(folder + "/seed-myav", front + SoundStream(ZOAV_FAMILY::MYAV)) &&
           Write(folder + "/seed-damaged", front + DamagedStream()) &&
           Write(folder + "/seed-finished", front + FinishedStream());
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    if (argc != 3 || !Marvane::FrameSift::WriteSeeds(argv[1], argv[2])) {
        std::fputs("framesift_fuzz_seeds TARGET FOLDER: wrong call, or the folder cannot be written\n", stderr);
        return 1;
    }
    return 0;
}
