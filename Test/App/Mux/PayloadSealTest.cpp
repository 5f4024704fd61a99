#include "Mux/PayloadSeal.h"

#include "FrameWriter/ExtHeads.h"
#include "Frames/FrameSource.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

// FIPS 197, appendix C.1.
const Bytes sc_key = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
const Bytes sc_plain = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
const Bytes sc_cipher = {0x69, 0xC4, 0xE0, 0xD8, 0x6A, 0x7B, 0x04, 0x30,
                         0xD8, 0xCD, 0xB7, 0x80, 0x70, 0xB4, 0xC5, 0x5A};

Bytes Sealed(const SEAL_OPTIONS& options, const Bytes& payload)
{
    ZoavFrame frame;
    CPayloadSeal(options).Put(payload, frame);
    return frame;
}

std::vector<int32_t> ErrorsOf(Bytes stream)
{
    CFrameSource source;
    source.Feed(stream);
    std::vector<int32_t> errors;
    for (LISTED_FRAME listed; source.Next(listed);)
        errors.push_back(listed.frame.errorFlags);
    return errors;
}

} // namespace

// Cipher and sums from the standard and from another program: reader and writer could be wrong in the same way.
TEST(PayloadSeal, GoldenFrames)
{
    const Bytes payload = sc_plain + Bytes{1, 2, 3};
    const Bytes onWire = sc_cipher + Bytes{1, 2, 3};
    for (const auto& [eKind, head88] :
         Rows<CHECKSUM, Bytes>{{CHECKSUM::Sum32, {0x88, 0x1C, 0xC4, 0x65, 0xE4, 0, 0, 0}},
                               {CHECKSUM::Xor32, {0x88, 0xAA, 0xC4, 0x95, 0x32, 0, 0, 1}},
                               {CHECKSUM::Crc32, {0x88, 0xD4, 0xB1, 0xC9, 0x0F, 0, 0, 2}}}) {
        const Bytes whole = ZoavFrame().ExtHead({0x89, 0, 0, 0}).ExtHead(head88).Payload(onWire);
        EXPECT_EQ(Sealed({sc_key, CIPHER_HEAD::Whole, eKind}, payload), whole);
        const Bytes part = ZoavFrame().ExtHead({0x95, 0, 0, 0, 19, 0, 0, 0}).ExtHead(head88).Payload(onWire);
        EXPECT_EQ(Sealed({sc_key, CIPHER_HEAD::Part, eKind}, payload), part);
    }
    EXPECT_EQ(Sealed({}, payload), ZoavFrame().Payload(payload).Build());
}

TEST(PayloadSeal, APartEndsAtItsLimit)
{
    const Bytes payload(gsk_maxPart + 100, 0x42);
    const Bytes frame = Sealed({sc_key, CIPHER_HEAD::Part, {}}, payload);
    const auto begin = frame.begin() + 24 + 8;
    EXPECT_NE(*(begin + gsk_maxPart - 1), 0x42);
    EXPECT_EQ(Bytes(begin + gsk_maxPart, begin + gsk_maxPart + 100), Bytes(100, 0x42));
}

TEST(PayloadSeal, ADamagedPayloadIsFoundInItsOwnFrameOnly)
{
    const Bytes payload = Filler(101); // no whole number of words
    for (const CHECKSUM eKind : {CHECKSUM::Sum32, CHECKSUM::Xor32, CHECKSUM::Crc32}) {
        for (const Bytes& key : {Bytes(), sc_key}) {
            const SEAL_OPTIONS options = {key, CIPHER_HEAD::Whole, eKind};
            CPayloadSeal seal(options);
            for (const size_t nDamaged : {0U, 50U, 100U}) {
                Bytes stream;
                for (uint32_t nSeq = 1; nSeq <= 3; ++nSeq) {
                    ZoavFrame frame;
                    seal.Put(payload, frame.Seq(nSeq));
                    stream = stream + (nSeq == 2 ? frame.DamagedPayload(nDamaged) : frame).Build();
                }
                EXPECT_EQ(ErrorsOf(stream), (std::vector<int32_t>{0, KX_ERROR_FLAGS_DATA_VERIFY, 0}));
            }
        }
    }
}

} // namespace Marvane::FrameSift
