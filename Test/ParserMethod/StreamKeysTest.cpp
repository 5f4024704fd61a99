// The keys of a stream: what is taken, what waits, what reaches the parser and when; and parameters.

#include <atomic>
#include <thread>

#include "IAnalyzer/ParamType.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "Support/RandomStream.h"
#include "Support/Testing.h"
#include "Tools/KXAes.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_plain(64, 0x5A);

std::string Key(char chFill, size_t nLen = 16)
{
    return std::string(nLen, chFill);
}

// A frame whose payload is sc_plain, enciphered with a key of 16 bytes.
Bytes EncipheredFrame(const std::string& key)
{
    CKXAes aes;
    EXPECT_TRUE(aes.SetKey(reinterpret_cast<const uint8_t*>(key.data()), static_cast<uint32_t>(key.size())));
    Bytes cipher = sc_plain;
    auto nLen = static_cast<uint32_t>(cipher.size());
    EXPECT_TRUE(aes.Encrypt(cipher.data(), nLen, cipher.data(), nLen));
    return ZoavFrame().ExtHead({0x89, 0, 0, 0}).Payload(cipher);
}

class CKeyed : public CStreamAnalyzer
{
public:
    CKeyed() : CStreamAnalyzer(0) { Init(); }

    int SetKey(unsigned int type, const std::string& key)
    {
        return SetExtInfo(type, reinterpret_cast<const unsigned char*>(key.data()), static_cast<int>(key.size()));
    }
    int SetKeyParam(unsigned int type, std::string key, std::string id = {}, KX_PUBLICKEY_PARAM* pPublic = nullptr)
    {
        KX_DECRYPT_PARAM param{};
        param.pKey = key.data();
        param.nKeyLen = static_cast<int32_t>(key.size());
        param.pKeyId = id.empty() ? nullptr : id.data();
        param.nKeyIdLen = static_cast<int32_t>(id.size());
        param.pPublicKey = pPublic;
        param.bSetPublicKey = pPublic != nullptr;
        return SetParamEx(type, &param, sizeof param);
    }
    // True if the last of the frames came out in clear.
    bool IsClear(Bytes stream)
    {
        m_stream = std::move(stream);
        ParseData(m_stream.data(), static_cast<int>(m_stream.size()));
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        Bytes payload;
        while (GetOneFrame(&frame, &ext) == KX_SUCCESS)
            payload.assign(frame.streamPointer, frame.streamPointer + frame.streamLen);
        return payload == sc_plain;
    }

private:
    Bytes m_stream;
};

} // namespace

TEST(StreamKeys, WhatIsTaken)
{
    CKeyed analyzer;
    const auto* pKey = reinterpret_cast<const unsigned char*>("0123456789abcdef");
    for (const auto& [nType, pBytes, nLen, nResult] :
         Rows<unsigned, const unsigned char*, int, int>{{KX_ENCRYPT_AES, nullptr, 16, KX_ERROR_PARAMETER},
                                                        {KX_ENCRYPT_AES, pKey, 0, KX_ERROR_PARAMETER},
                                                        {KX_ENCRYPT_AES, pKey, 16, KX_SUCCESS},
                                                        {KX_ENCRYPT_AES256, pKey, 16, KX_SUCCESS},
                                                        {2, pKey, 16, KX_ERROR_PARAMETER}})
        EXPECT_EQ(analyzer.SetExtInfo(nType, pBytes, nLen), nResult) << nType;
    KX_DECRYPT_PARAM param{};
    EXPECT_EQ(analyzer.SetParamEx(KX_PARAM_DECRYPT_AES, nullptr, 64), KX_ERROR_PARAMETER);
    EXPECT_EQ(analyzer.SetParamEx(KX_PARAM_DECRYPT_AES, &param, 0), KX_ERROR_PARAMETER);
    for (unsigned int nType = 0; nType <= KX_PARAM_PATH_ENCODE_TYPE; ++nType) {
        const bool bKey = nType >= KX_PARAM_DECRYPT_AES && nType <= KX_PARAM_DECRYPT_GM_SM4_OFB;
        // Of AES an empty key is taken as any other.
        EXPECT_EQ(analyzer.SetParamEx(nType, &param, sizeof param) == KX_SUCCESS, nType == KX_PARAM_DECRYPT_AES);
        EXPECT_EQ(analyzer.SetKeyParam(nType, Key('k'), Key('i')), bKey ? KX_SUCCESS : KX_ERROR_PARAMETER) << nType;
    }
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_AES256, Key('k')), KX_ERROR_PARAMETER); // no identifier
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_GM_SM4_ECB, Key('k')), KX_SUCCESS);
}

TEST(StreamKeys, TheLastOneCountsFromTheNextCycleOn)
{
    CKeyed analyzer;
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('a')), KX_SUCCESS); // before the type is known
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('b')), KX_SUCCESS);
    EXPECT_TRUE(analyzer.IsClear(EncipheredFrame(Key('b'))));
    EXPECT_FALSE(analyzer.IsClear(EncipheredFrame(Key('a'))));
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_AES, Key('a')), KX_SUCCESS);
    EXPECT_TRUE(analyzer.IsClear(EncipheredFrame(Key('a'))));
    // A key that AES cannot use takes the old one away; one that is longer than any is not even looked at.
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('b', 64)), KX_SUCCESS);
    EXPECT_TRUE(analyzer.IsClear(EncipheredFrame(Key('a'))));
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('b', 20)), KX_SUCCESS);
    EXPECT_FALSE(analyzer.IsClear(EncipheredFrame(Key('a'))));
}

TEST(StreamKeys, AnotherKindTakesTheDelivery)
{
    for (const unsigned int nType : {2U, unsigned{KX_ENCRYPT_AES256}}) {
        CKeyed analyzer;
        EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('a')), KX_SUCCESS);
        analyzer.SetKey(nType, Key('b', 49));
        EXPECT_FALSE(analyzer.IsClear(EncipheredFrame(Key('a')))) << nType;
    }
    // A parameter that is refused leaves the waiting key its kind.
    CKeyed analyzer;
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES, Key('a')), KX_SUCCESS);
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_RAWAUDIO_PARSER, Key('b')), KX_ERROR_PARAMETER);
    EXPECT_TRUE(analyzer.IsClear(EncipheredFrame(Key('a'))));
}

namespace {

// A parser that notes what it is given. The ring's blocks die behind the call, so they are copied.
class CNotingParser : public IStreamAnalzyer
{
public:
    int ParseData(CLogicData*, IFrameCallBack*) override { return KX_SUCCESS; }
    int GetType() override { return KX_STREAM_TYPE_ZOSTD; }
    int SetExtInfo(unsigned int type, const unsigned char* data, int len) override
    {
        std::string note = std::to_string(type) + ":";
        const auto add = [&note](const void* pText, int32_t nLen) {
            note.append(static_cast<const char*>(pText), pText == nullptr ? 0 : static_cast<size_t>(nLen));
        };
        if (type < KX_ENCRYPT_AES256_GDPR2) {
            add(data, len);
        } else {
            EXPECT_EQ(len, 64);
            KX_DECRYPT_PARAM param;
            std::memcpy(&param, data, sizeof param);
            add(param.pKey, param.nKeyLen);
            add(param.pKeyId, param.nKeyIdLen);
            note += param.bSetPublicKey ? "+" : "";
        }
        notes.push_back(note);
        return KX_SUCCESS;
    }
    void SetLowCpuPercentage(bool bLow) override { bLowCpu = bLow; }

    std::vector<std::string> notes; // "kind:key identifier", with a "+" if there is a public key
    bool bLowCpu = false;
};

class CNoted : public CKeyed
{
public:
    CNotingParser* Cycle()
    {
        if (m_pNoting == nullptr) {
            auto pNoting = std::make_unique<CNotingParser>();
            m_pNoting = pNoting.get();
            TakeParser(std::move(pNoting));
        }
        uint8_t nByte = 0;
        ParseData(&nByte, 1);
        return m_pNoting;
    }

private:
    CNotingParser* m_pNoting = nullptr;
};

} // namespace

TEST(StreamKeys, ManyAes256KeysWaitAtOnce)
{
    CNoted analyzer;
    EXPECT_EQ(analyzer.SetKey(KX_ENCRYPT_AES256, Key('x', 49)), KX_SUCCESS);
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_AES256, Key('k', 40), Key('i', 5)), KX_SUCCESS);
    // One of 49 bytes as it came; one made: 1, the identifier in 16 bytes, the key cut to 32. Delivered once.
    const std::string made = '\1' + Key('i', 5) + std::string(11, '\0') + Key('k', 32);
    for (int n = 0; n < 2; ++n)
        EXPECT_EQ(analyzer.Cycle()->notes, std::vector<std::string>{"8:" + Key('x', 49) + made});
}

TEST(StreamKeys, TheEleventhKeyOfTheRingReplacesTheFirst)
{
    CNoted analyzer;
    KX_PUBLICKEY_PARAM publicKey{};
    for (char chKey = 'a'; chKey < 'a' + 11; ++chKey)
        EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_GM_SM1_OFB, Key(chKey), chKey == 'c' ? "third" : "",
                                       chKey == 'd' ? &publicKey : nullptr),
                  KX_SUCCESS);
    std::vector<std::string> expected;
    for (const char chKey : std::string("kbcdefghij"))
        expected.push_back("11:" + Key(chKey) + (chKey == 'c' ? "third" : chKey == 'd' ? "+" : ""));
    const CNotingParser* pParser = analyzer.Cycle();
    EXPECT_EQ(pParser->notes, expected);
    // With a parser there, a key goes down at once, and the ring's entries, empty now, at the next cycle.
    EXPECT_EQ(analyzer.SetKeyParam(KX_PARAM_DECRYPT_AES256_GDPR2, Key('z')), KX_SUCCESS);
    expected.push_back("9:" + Key('z'));
    EXPECT_EQ(pParser->notes, expected);
    analyzer.Cycle();
    ASSERT_EQ(pParser->notes.size(), 21U);
    EXPECT_EQ(pParser->notes[20], "9:");
}

TEST(StreamParams, HaveNoNamesAndAFailureAnswersTrue)
{
    CKeyed analyzer;
    int64_t nValue = 7;
    EXPECT_TRUE(analyzer.GetParam("rate", nValue)); // no type yet
    EXPECT_EQ(analyzer.GetLastError(), KX_ERROR_UNGET_STREAM_TYPE);
    EXPECT_FALSE(analyzer.IsClear(EncipheredFrame(Key('a'))));
    EXPECT_TRUE(analyzer.SetParam("rate", 5));
    EXPECT_TRUE(analyzer.GetParam("rate", nValue));
    EXPECT_EQ(nValue, 7);
}

TEST(StreamParams, LowCpuIsToldAtEachCycleAndTheRestCanBeSeen)
{
    CNoted analyzer;
    EXPECT_FALSE(analyzer.Cycle()->bLowCpu);
    analyzer.SetLowCpuPercentageEnable();
    EXPECT_TRUE(analyzer.Cycle()->bLowCpu);

    CKeyed fed;
    Bytes frame = EncipheredFrame(Key('a'));
    unsigned char* pData = nullptr;
    int nLen = 0;
    EXPECT_NE(fed.GetRemainData(&pData, &nLen), KX_SUCCESS); // nothing was fed yet
    fed.ParseData(frame.data(), 60);
    ASSERT_EQ(fed.GetRemainData(&pData, &nLen), KX_SUCCESS);
    EXPECT_EQ(Bytes(pData, pData + nLen), Bytes(frame.begin(), frame.begin() + 60));
    EXPECT_EQ(fed.GetRemainData(nullptr, &nLen), KX_ERROR_PARAMETER);
    EXPECT_EQ(fed.GetLastError(), KX_ERROR_PARAMETER);
}

// Keys come while another thread parses: every frame comes out, in clear or not, and in the end the last key counts.
TEST(StreamKeysThreads, KeysComeWhileAStreamIsParsed)
{
    const auto analyzer = std::make_unique<CKeyed>();
    std::atomic<bool> bStop{false};
    std::array<std::thread, 2> setters;
    for (size_t n = 0; n < setters.size(); ++n)
        setters[n] = std::thread([&, n] {
            while (!bStop.load()) {
                analyzer->SetKey(KX_ENCRYPT_AES, Key(n == 0 ? 'a' : 'b'));
                analyzer->SetKeyParam(KX_PARAM_DECRYPT_AES, Key(n == 0 ? 'a' : 'b'));
                analyzer->SetKeyParam(KX_PARAM_DECRYPT_AES256, Key('c'), Key('i'));
                analyzer->SetKeyParam(KX_PARAM_DECRYPT_GM_SM4_ECB, Key('d'), Key('i'));
                std::this_thread::yield();
            }
        });
    const Bytes frame = EncipheredFrame(Key('a'));
    size_t nClear = 0;
    for (int n = 0; n < 300; ++n)
        nClear += analyzer->IsClear(frame) ? 1 : 0;
    bStop.store(true);
    for (std::thread& setter : setters)
        setter.join();
    EXPECT_LE(nClear, 300U);
    EXPECT_EQ(analyzer->SetKey(KX_ENCRYPT_AES, Key('a')), KX_SUCCESS);
    EXPECT_TRUE(analyzer->IsClear(frame));
}

} // namespace Marvane::FrameSift
