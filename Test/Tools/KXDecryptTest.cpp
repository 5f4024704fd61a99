#include "Tools/KXDecrypt.h"

#include <climits>
#include <functional>
#include <new>

#include "Support/LogOf.h"
#include "Support/Mutations.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_key(32, 0x11);
const Bytes sc_version(20, 0x22);
const Bytes sc_long(64, 0x22);

// A store and the frame that it is asked for: AES256, no key named. Identifiers and versions may be short.
struct STORE
{
    STORE() { frame.nEncryptType = KX_ENCRYPT_AES256; }

    STORE& Key(Bytes key, Bytes id = {})
    {
        KX_DECRYPT_PARAM param{};
        param.pKey = reinterpret_cast<char*>(key.data());
        param.nKeyLen = static_cast<int32_t>(key.size());
        param.pKeyId = reinterpret_cast<char*>(id.data());
        param.nKeyIdLen = static_cast<int32_t>(id.size());
        bTaken = keys.SetKey(&param);
        return *this;
    }
    STORE& VEK(const Bytes& id, const Bytes& version, int nUserType = 0, uint32_t nType = KX_ENCRYPT_AES256)
    {
        DECRYPT_PARAM param = {sc_long.data(), 64, {}, nType, version.data(), static_cast<int>(version.size()), {1},
                               nUserType};
        std::copy(id.begin(), id.end(), param.VekId.begin());
        bTaken = keys.SetVEKInfo(1, &param, 0);
        return *this;
    }
    STORE& GM(const Bytes& version)
    {
        bTaken = keys.SetKey(GMVEK, sc_key.data(), 16) && keys.SetKey(GMIV, sc_key.data(), 16) &&
                 keys.SetKey(GMVKEKENCRYPTTYPE, sc_key.data(), 4) &&
                 keys.SetKey(GMVKEKVERSION, version.data(), LengthOf(version));
        return *this;
    }
    STORE& Info(uint32_t dataType, const void* data)
    {
        bTaken = keys.SetVEKInfo(dataType, data, 0);
        return *this;
    }
    STORE& Type(int32_t nEncryptType)
    {
        frame.nEncryptType = nEncryptType;
        return *this;
    }
    STORE& Name(const Bytes& id)
    {
        std::copy(id.begin(), id.end(), frame.nB5HeadEncryptVKid);
        return *this;
    }
    bool Decrypt()
    {
        Bytes dst(32);
        uint32_t dstLen = 32;
        return keys.Decrypt(frame, sc_key.data(), 32, dst.data(), dstLen);
    }

    CKXDecrypt keys;
    FrameInfo frame{};
    bool bTaken = true; // the last that was given
};

} // namespace

// What the log says while a frame goes the way that was laid for it; nothing if the way led to a cipher, which is not
// there.
TEST(KXDecrypt, EachWayToAKey)
{
    const auto hundred = [](STORE& s) -> STORE& {
        for (uint8_t n = 1; n <= 101; ++n)
            s.Key(sc_key, {n});
        return s;
    };
    const auto manyVEKs = [](STORE& s) -> STORE& {
        for (uint8_t n = 1; n <= 100; ++n)
            s.VEK({n}, sc_version);
        return s;
    };
    const auto key = [](STORE& s) -> STORE& { return s.Key(sc_key, sc_version); };
    PBKDF2_PARAM derive;
    derive.KDFType = 1;
    const std::string sFound = "warn InnerDecrypt failed.\n";
    const std::string sNoVK = "warn find VK failed.\n";
    const std::string sNoVEK = "warn find VEK failed.\n";
    const std::string sNoVKEK = "warn find VKEK failed.\n";
    const std::string sNoUserKey = "warn allockey userKey failed.\n";
    const Rows<std::string, std::function<void(STORE&)>, std::string> rows = {
        {"no key: slot 0, though empty", [](STORE&) {}, ""},
        {"check value", [](STORE& s) { s.frame.nB5HeadEncryptCrc16 = 0x10000; }, "warn CRC Verify failed.\n"},
        {"no such cipher", [](STORE& s) { s.Type(14); }, "warn Decrypt failed. Invalid encrypt.14\n"},
        {"nor this", [](STORE& s) { s.Type(-1); }, "warn Decrypt failed. Invalid encrypt.-1\n"},
        {"short key", [](STORE& s) { s.Key(Bytes(31, 1)); }, sNoUserKey},
        {"short key, other cipher", [](STORE& s) { s.Key(Bytes(20, 1)).Type(KX_ENCRYPT_SM4_OFB); }, ""},
        {"whole key", [](STORE& s) { s.Key(sc_key); }, ""},
        {"key of 40 bytes counts as 32", [](STORE& s) { s.Key(Bytes(40, 1)); }, ""},
        {"unknown identifier", [](STORE& s) { s.Key(sc_key, {8}).Name({9}); }, sNoVK},
        {"known by 16 bytes", [](STORE& s) { s.Key(sc_key, sc_long).Name(Bytes(16, 0x22)); }, ""},
        // A hundred keys are kept.
        {"first", [&](STORE& s) { hundred(s).Name({1}); }, sNoVK},
        {"second", [&](STORE& s) { hundred(s).Name({2}); }, ""},
        {"overwritten by one without", [&](STORE& s) { hundred(s).Key(sc_key).Name({2}); }, sNoVK},
        {"last", [&](STORE& s) { hundred(s).Name({101}); }, ""},
        // In two stages.
        {"found", [&](STORE& s) { key(s).VEK({7}, sc_version); }, sFound},
        {"named", [&](STORE& s) { key(s).VEK({7}, sc_version).Name({7}); }, sFound},
        {"unknown VEK", [&](STORE& s) { key(s).VEK({7}, sc_version).Name({8}); }, sNoVEK},
        {"compared whole", [&](STORE& s) { key(s).VEK({7}, sc_long); }, sNoVKEK},
        {"no version: the first key without one", [&](STORE& s) { key(s).VEK({7}, {}); }, sFound},
        {"wrapped by no cipher", [&](STORE& s) { key(s).VEK({7}, sc_version, 0, KX_ENCRYPT_ANHENG); },
         "warn Decrypt failed. Invalid encrypt.14\n" + sFound},
        {"user key", [](STORE& s) { s.VEK({7}, sc_long, 1); }, sFound},
        {"user key to be derived", [&](STORE& s) { s.VEK({7}, sc_long, 1).Info(2, &derive).Info(2, nullptr); },
         sNoUserKey},
        {"no such user type", [](STORE& s) { s.VEK({7}, sc_version, 2); }, "warn unknown userType.\n"},
        {"the hundred and first", [&](STORE& s) { manyVEKs(s).VEK({101}, {}).Name({1}); }, sNoVEK},
        {"a slot keeps what is longer", [&](STORE& s) { manyVEKs(key(s)).VEK({101}, {0x22}); }, sFound},
        {"no such kind of data", [](STORE& s) { s.Info(3, nullptr); }, "info unknown dataType.\n"},
        // GM goes first.
        {"GM without version", [](STORE& s) { s.GM(Bytes(32, 0)); }, sFound},
        {"no key of that version", [](STORE& s) { s.GM(sc_version); }, sNoVKEK},
        {"compared by 20 bytes",
         [](STORE& s) { s.Key(Bytes(20, 1), sc_long).VEK({1}, {}).GM(sc_version + Bytes{1}).Name({9}); }, sFound},
        {"a part is missing", [](STORE& s) { s.keys.SetKey(GMVKEKVERSION, sc_key.data(), 32); }, ""}};
    std::string expected;
    for (const auto& [name, prepare, log] : rows)
        expected += name + "\n" + log;
    EXPECT_EQ(LogOf(
                  [&] {
                      for (const auto& [name, prepare, log] : rows) {
                          std::puts(name.c_str());
                          STORE store;
                          prepare(store);
                          EXPECT_TRUE(store.bTaken && !store.Decrypt()) << name;
                      }
                  },
                  false),
              expected);
}

TEST(KXDecrypt, RefusesIncompleteKeys)
{
    STORE store;
    EXPECT_FALSE(store.keys.SetKey(nullptr));
    EXPECT_FALSE(store.Key({}).bTaken);
    KX_DECRYPT_PARAM noKey{};
    noKey.nKeyLen = 32;
    EXPECT_FALSE(store.keys.SetKey(&noKey));
    EXPECT_FALSE(store.keys.SetVEKInfo(1, nullptr, 0));
    EXPECT_FALSE(store.VEK({}, sc_version).bTaken); // all zero
    DECRYPT_PARAM param;
    param.pVek = sc_key.data();
    param.nVekLen = 32;
    param.VekId = {1};
    EXPECT_FALSE(store.keys.SetVEKInfo(1, &param, 0)); // no vector
    param.VkekIV = {1};
    EXPECT_TRUE(store.keys.SetVEKInfo(1, &param, 0));
    param.nVekLen = 0;
    EXPECT_FALSE(store.keys.SetVEKInfo(1, &param, 0));
    for (const auto& [eType, nMost, bShorter] : Rows<GMParamType, uint32_t, bool>{
             {GMVEK, 16, true}, {GMVKEKVERSION, 32, true}, {GMIV, 16, true}, {GMVKEKENCRYPTTYPE, 4, false}}) {
        EXPECT_TRUE(store.keys.SetKey(eType, sc_long.data(), nMost));
        EXPECT_EQ(store.keys.SetKey(eType, sc_long.data(), nMost - 1), bShorter);
        EXPECT_FALSE(store.keys.SetKey(eType, sc_long.data(), nMost + 1) || store.keys.SetKey(eType, nullptr, nMost));
    }
    for (const int nType : {int{GMVKEK}, int{GMVIDEOENCRYPTTYPE}, 6, -1})
        EXPECT_FALSE(store.keys.SetKey(static_cast<GMParamType>(nType), sc_long.data(), 4));
}

TEST(KXDecrypt, SignaturesAreNotChecked)
{
    CKXDecrypt keys;
    EXPECT_FALSE(keys.VerifyFrame(sc_key.data(), 32, 0) || keys.Verify(sc_key.data(), 32U));
    EXPECT_TRUE(keys.Verify(0, sc_key.data(), 32U) && keys.SignHashFlush());
    EXPECT_FALSE(keys.SetKey(0U, sc_key.data(), 32U));
    FrameInfo frame{};
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    EXPECT_FALSE(keys.IsAes128Key(frame)); // none was set, as none can be
}

TEST(KXDecrypt, KeysAreWiped)
{
    alignas(STORE) static std::array<uint8_t, sizeof(STORE)> memory;
    const auto holdsKey = [] {
        return std::search(memory.begin(), memory.end(), sc_key.begin(), sc_key.end()) != memory.end();
    };
    auto* pStore = new (memory.data()) STORE;
    pStore->Key(sc_key, sc_version).VEK({1}, sc_key).GM(sc_key);
    EXPECT_TRUE(holdsKey());
    pStore->~STORE();
    EXPECT_FALSE(holdsKey());
}

// Bytes as calls, four for each, with wild lengths. No more of a key is told than there is to copy of it.
TEST(KXDecrypt, SurvivesMutations)
{
    Bytes bytesOfKey = sc_long;
    uint8_t* pKey = bytesOfKey.data();
    auto* pText = reinterpret_cast<char*>(pKey);
    const auto lengthOf = [](uint8_t nWish) { return nWish == 0xFF ? INT_MAX : nWish == 0xFE ? INT_MIN : nWish % 65; };
    const Bytes seed = {15, 0,  0, 0, 0, 32, 16, 0, 35, 0,  0, 0x22, 1, 32,  20, 0x22, 39, 0, 0, 9, 35, 0, 0, 0,
                        2,  16, 0, 0, 2, 32, 0,  2, 2,  16, 0, 3,    0, 255, 64, 1,    2,  4, 0, 4, 35, 0, 0, 0};
    auto pStore = std::make_unique<STORE>();
    size_t nScripts = 0;
    ForEachMutation({seed}, 100000, 71, [&](std::span<uint8_t> bytes) {
        if (++nScripts % 100 == 0) // seldom: the rings are to come round
            pStore = std::make_unique<STORE>();
        for (; bytes.size() >= 4; bytes = bytes.subspan(4)) {
            const int nLen = lengthOf(bytes[1]);
            const int nIdLen = lengthOf(bytes[2]);
            const KX_DECRYPT_PARAM key = {pText, nLen, pText, nIdLen, false, nullptr, {}};
            const DECRYPT_PARAM vek = {pKey, nLen, {bytes[3]}, bytes[3], pKey, nIdLen, {1}, bytes[3] % 3};
            if (bytes[0] % 4 == 0)
                ASSERT_EQ(pStore->keys.SetKey(&key), nLen > 0);
            else if (bytes[0] % 4 == 1)
                ASSERT_EQ(pStore->keys.SetVEKInfo(1, &vek, 0), nLen > 0 && bytes[3] != 0);
            else if (bytes[0] % 4 == 2)
                pStore->keys.SetKey(static_cast<GMParamType>(bytes[3]), pKey, static_cast<uint32_t>(nLen));
            else
                ASSERT_FALSE(pStore->Type(bytes[0] / 4).Name({bytes[3]}).Decrypt());
        }
    });
}

} // namespace Marvane::FrameSift
