// framesift_fuzz_seeds TARGET FOLDER: writes what a fuzz target starts from, made by the frame writer.
#include <cstdio>
#include <fstream>
#include <string>

#include "FrameWriter/ZOAVFrameWriter.h"

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

bool Write(const std::string& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

bool WriteSeeds(const std::string& target, const std::string& folder)
{
    if (target == "FuzzExtHeads") {
        const Bytes fixedHeads = EveryExtHead();
        const Bytes sizedHeads = EverySizedExtHead();
        const auto run = [](const Bytes& heads) { return Bytes{static_cast<uint8_t>(heads.size()), 1} + heads; };
        return Write(folder + "/seed-fixed", run(fixedHeads) + Bytes(8, 0)) &&
               Write(folder + "/seed-sized", run(sizedHeads) + Bytes(8, 0));
    }
    // Byte 0 chooses the cut; FuzzZoav has a second one in front.
    const Bytes front = target == "FuzzZoav" ? Bytes{30, 1} : Bytes{30};
    return Write(folder + "/seed-zoav", front + SoundStream(ZOAV_FAMILY::ZOAV)) &&
           Write(folder + "/seed-myav", front + SoundStream(ZOAV_FAMILY::MYAV)) &&
           Write(folder + "/seed-damaged", front + DamagedStream());
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
