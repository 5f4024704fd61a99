#include "Tools/KXDecrypt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <memory>
#include <new>
#include <sstream>
#include <string>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Support/ChildProcess.h"
#include "Support/Mutations.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_otherCipher = KX_ENCRYPT_SM4_OFB;

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
        DECRYPT_PARAM param;
        param.pVek = sc_long.data();
        param.nVekLen = 64;
        std::copy(id.begin(), id.end(), param.VekId.begin());
        param.nDecryptType = nType;
        param.pVkekId = version.data();
        param.nVkekIdLen = static_cast<int>(version.size());
        param.VkekIV = {1};
        param.nUserType = nUserType;
        bTaken = keys.SetVEKInfo(1, &param, 0);
        return *this;
    }
    STORE& GM(const Bytes& version)
    {
        bTaken = keys.SetKey(GMVEK, sc_key.data(), 16) && keys.SetKey(GMIV, sc_key.data(), 16) &&
                 keys.SetKey(GMVKEKENCRYPTTYPE, sc_key.data(), 4) &&
                 keys.SetKey(GMVKEKVERSION, version.data(), static_cast<uint32_t>(version.size()));
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

struct ROW
{
    const char* pName;
    std::function<void(STORE&)> prepare;
    // What the log says while a frame goes the way that prepare has laid, as "warn find VK failed.;" for each line.
    // Empty: the way led to a cipher, which is not there.
    const char* pLog;
};

std::string LogOf(const ROW& row)
{
    const ChildResult result = RunInChild([&row] {
        CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelInfo);
        STORE store;
        row.prepare(store);
        return store.bTaken && !store.Decrypt() ? 0 : 1;
    });
    EXPECT_EQ(result.nExitCode, 0) << row.pName;
    std::string messages;
    std::istringstream lines(result.output);
    for (std::string date, time, level, module, place, thread, function, message;
         lines >> date >> time >> level >> module >> place >> thread >> function && std::getline(lines, message);)
        messages += level + message + ";";
    return messages;
}

void ExpectLogs(const std::vector<ROW>& rows)
{
    for (const ROW& row : rows)
        EXPECT_EQ(LogOf(row), row.pLog) << row.pName;
}

} // namespace

TEST(KXDecrypt, ByKey)
{
    ExpectLogs({
        {"no key: slot 0, though empty", [](STORE&) {}, ""},
        {"check value", [](STORE& s) { s.frame.nB5HeadEncryptCrc16 = 0x10000; }, "warn CRC Verify failed.;"},
        {"no such cipher", [](STORE& s) { s.Type(14); }, "warn Decrypt failed. Invalid encrypt.14;"},
        {"nor this", [](STORE& s) { s.Type(-1); }, "warn Decrypt failed. Invalid encrypt.-1;"},
        {"short key", [](STORE& s) { s.Key(Bytes(31, 1)); }, "warn allockey userKey failed.;"},
        {"short key, other cipher", [](STORE& s) { s.Key(Bytes(20, 1)).Type(sc_otherCipher); }, ""},
        {"whole key", [](STORE& s) { s.Key(sc_key); }, ""},
        {"key of 40 bytes counts as 32", [](STORE& s) { s.Key(Bytes(40, 1)); }, ""},
        {"unknown identifier", [](STORE& s) { s.Key(sc_key, {8}).Name({9}); }, "warn find VK failed.;"},
        {"known by 16 bytes", [](STORE& s) { s.Key(sc_key, sc_long).Name(Bytes(16, 0x22)); }, ""},
    });
}

TEST(KXDecrypt, HundredKeysAreKept)
{
    const auto fill = [](STORE& s) -> STORE& {
        for (uint8_t n = 1; n <= 101; ++n)
            s.Key(sc_key, {n});
        return s;
    };
    ExpectLogs(
        {{"first", [&](STORE& s) { fill(s).Name({1}); }, "warn find VK failed.;"},
         {"second", [&](STORE& s) { fill(s).Name({2}); }, ""},
         {"overwritten by one without", [&](STORE& s) { fill(s).Key(sc_key).Name({2}); }, "warn find VK failed.;"},
         {"last", [&](STORE& s) { fill(s).Name({101}); }, ""}});
}

TEST(KXDecrypt, TwoStages)
{
    constexpr auto pFound = "warn InnerDecrypt failed.;";
    const auto key = [](STORE& s) -> STORE& { return s.Key(sc_key, sc_version); };
    const auto manyVEKs = [](STORE& s) -> STORE& {
        for (uint8_t n = 1; n <= 100; ++n)
            s.VEK({n}, sc_version);
        return s;
    };
    PBKDF2_PARAM derive;
    derive.KDFType = 1;
    ExpectLogs({
        {"found", [&](STORE& s) { key(s).VEK({7}, sc_version); }, pFound},
        {"named", [&](STORE& s) { key(s).VEK({7}, sc_version).Name({7}); }, pFound},
        {"unknown identifier", [&](STORE& s) { key(s).VEK({7}, sc_version).Name({8}); }, "warn find VEK failed.;"},
        {"compared whole", [&](STORE& s) { key(s).VEK({7}, sc_long); }, "warn find VKEK failed.;"},
        {"no version: the first key without one", [&](STORE& s) { key(s).VEK({7}, {}); }, pFound},
        {"wrapped by no cipher", [&](STORE& s) { key(s).VEK({7}, sc_version, 0, KX_ENCRYPT_ANHENG); },
         "warn Decrypt failed. Invalid encrypt.14;warn InnerDecrypt failed.;"},
        {"user key", [](STORE& s) { s.VEK({7}, sc_long, 1); }, pFound},
        {"user key to be derived", [&](STORE& s) { s.VEK({7}, sc_long, 1).Info(2, &derive).Info(2, nullptr); },
         "warn allockey userKey failed.;"},
        {"no such user type", [](STORE& s) { s.VEK({7}, sc_version, 2); }, "warn unknown userType.;"},
        {"the hundred and first", [&](STORE& s) { manyVEKs(s).VEK({101}, {}).Name({1}); }, "warn find VEK failed.;"},
        {"a slot keeps what is longer", [&](STORE& s) { manyVEKs(key(s)).VEK({101}, {0x22}); }, pFound},
        {"no such kind of data", [](STORE& s) { s.Info(3, nullptr); }, "info unknown dataType.;"},
    });
}

TEST(KXDecrypt, GMGoesFirst)
{
    const Bytes shortKey(20, 1);
    ExpectLogs({
        {"no version", [](STORE& s) { s.GM(Bytes(32, 0)); }, "warn InnerDecrypt failed.;"},
        {"no key of that version", [](STORE& s) { s.GM(sc_version); }, "warn find VKEK failed.;"},
        {"compared by 20 bytes",
         [&](STORE& s) { s.Key(shortKey, sc_long).VEK({1}, {}).GM(sc_version + Bytes{1}).Name({9}); },
         "warn InnerDecrypt failed.;"},
        {"a part is missing", [](STORE& s) { s.keys.SetKey(GMVKEKVERSION, sc_key.data(), 32); }, ""},
    });
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
    DECRYPT_PARAM noIV;
    noIV.pVek = sc_key.data();
    noIV.nVekLen = 32;
    noIV.VekId = {1};
    EXPECT_FALSE(store.keys.SetVEKInfo(1, &noIV, 0));
    noIV.VkekIV = {1};
    EXPECT_TRUE(store.keys.SetVEKInfo(1, &noIV, 0));
    noIV.nVekLen = 0;
    EXPECT_FALSE(store.keys.SetVEKInfo(1, &noIV, 0));

    const struct
    {
        GMParamType eType;
        uint32_t nMost;
        bool bShorter;
    } rows[] = {{GMVEK, 16, true}, {GMVKEKVERSION, 32, true}, {GMIV, 16, true}, {GMVKEKENCRYPTTYPE, 4, false}};
    for (const auto& row : rows) {
        EXPECT_TRUE(store.keys.SetKey(row.eType, sc_long.data(), row.nMost));
        EXPECT_EQ(store.keys.SetKey(row.eType, sc_long.data(), row.nMost - 1), row.bShorter);
        EXPECT_FALSE(store.keys.SetKey(row.eType, sc_long.data(), row.nMost + 1));
        EXPECT_FALSE(store.keys.SetKey(row.eType, nullptr, row.nMost));
    }
    for (const int nType : {int{GMVKEK}, int{GMVIDEOENCRYPTTYPE}, 6, -1})
        EXPECT_FALSE(store.keys.SetKey(static_cast<GMParamType>(nType), sc_long.data(), 4));
}

TEST(KXDecrypt, SignaturesAreNotChecked)
{
    CKXDecrypt keys;
    EXPECT_FALSE(keys.VerifyFrame(sc_key.data(), 32, 0));
    EXPECT_FALSE(keys.Verify(sc_key.data(), 32U));
    EXPECT_TRUE(keys.Verify(0, sc_key.data(), 32U));
    EXPECT_TRUE(keys.SignHashFlush());
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
    const auto pKey = std::make_unique<uint8_t[]>(64);
    std::fill_n(pKey.get(), 64, uint8_t{0x22});
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
            auto* pText = reinterpret_cast<char*>(pKey.get());
            const KX_DECRYPT_PARAM key = {pText, nLen, pText, nIdLen, false, nullptr, {}};
            const DECRYPT_PARAM vek = {pKey.get(), nLen, {bytes[3]}, bytes[3], pKey.get(), nIdLen, {1}, bytes[3] % 3};
            switch (bytes[0] % 4) {
            case 0:
                ASSERT_EQ(pStore->keys.SetKey(&key), nLen > 0);
                break;
            case 1:
                ASSERT_EQ(pStore->keys.SetVEKInfo(1, &vek, 0), nLen > 0 && bytes[3] != 0);
                break;
            case 2:
                pStore->keys.SetKey(static_cast<GMParamType>(bytes[3]), pKey.get(), static_cast<uint32_t>(nLen));
                break;
            default:
                ASSERT_FALSE(pStore->Type(bytes[0] / 4).Name({bytes[3]}).Decrypt());
            }
        }
    });
}

} // namespace Marvane::FrameSift
