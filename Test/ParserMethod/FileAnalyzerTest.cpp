#include "ParserMethod/FileAnalyzer.h"

#include "IAnalyzer/ParamType.h"
#include "Support/ParsedRecording.h"

namespace Marvane::FrameSift {

namespace {

// What the parser was told and asked, as a text.
struct FAKE_LOG
{
    std::string calls;
    int nResult = 0;
    int nProcess = 100;
};

class CFakeParser : public IFileAnalzyer
{
public:
    explicit CFakeParser(FAKE_LOG& log) : m_log(log) {}

    int ParseFile(IFileManipPtr& file, IIndexCallBack*) override
    {
        return Called(file->IsOpen() ? "file " : "closed ");
    }
    int ParseSlice(IFileManipPtr&, IIndexCallBack*, int64_t offset, int64_t size) override
    {
        return Called("slice " + std::to_string(offset) + "+" + std::to_string(size) + " ");
    }
    int BaseParseFile(IFileManipPtr&, IIndexCallBack*, bool bIndex) override
    {
        return Called(bIndex ? "fast-index " : "fast ");
    }
    int GetProcess(int* process) override
    {
        *process = m_log.nProcess;
        return 0;
    }
    int SetExtInfo(uint32_t type, unsigned char* key, int keylen) override
    {
        m_log.calls += "key " + std::to_string(static_cast<int32_t>(type)) + ":";
        if (keylen == 64) {
            KX_DECRYPT_PARAM param;
            std::memcpy(&param, key, sizeof param);
            m_log.calls.append(param.pKey, static_cast<size_t>(param.nKeyLen)).append("/");
            m_log.calls.append(param.pKeyId, static_cast<size_t>(param.nKeyIdLen));
            if (param.bSetPublicKey)
                m_log.calls.append("+").append(std::to_string(param.pPublicKey->y[31]));
        } else if (key != nullptr) {
            m_log.calls.append(reinterpret_cast<char*>(key), static_cast<size_t>(keylen));
        }
        return Called(" ");
    }
    int SetExtCommonInfo(uint32_t type, unsigned char* info, int) override
    {
        return Called("common " + std::to_string(static_cast<int32_t>(type)) + ":" +
                      (info != nullptr ? std::to_string(*info) : "null") + " ");
    }
    void StopParse() override {}
    int GetFrameByIndex(KX_INDEX_INFO*, FrameInfo*, ExtZOAVIFrameInfo*) override { return 71; }
    int GetOneIndex(int, KX_INDEX_INFO*, FrameInfo*, ExtZOAVIFrameInfo*) override { return 72; }
    int GetIndexCount(int, int*) override { return 73; }
    int GetAllIndex(int, KX_INDEX_INFO*, FrameInfo*, int, int*) override { return 74; }

private:
    int Called(const std::string& call)
    {
        m_log.calls += call;
        return m_log.nResult;
    }

    FAKE_LOG& m_log;
};

class CFakeAnalyzer : public CFileAnalyzer
{
public:
    ~CFakeAnalyzer() override { Uninit(); }
    std::unique_ptr<IFileAnalzyer> MakeParser(int) override { return std::make_unique<CFakeParser>(m_log); }

    FAKE_LOG m_log;
};

// The end mark, with what it sees of the last error.
int TakeEndMark(void* analyzer, KX_FRAME_INFO* frameInfo, KX_INDEX_INFO* indexInfo, int process, void* userData)
{
    EXPECT_TRUE(frameInfo == nullptr && indexInfo == nullptr && process == 100);
    *static_cast<std::string*>(userData) +=
        "end " + std::to_string(static_cast<CFileAnalyzer*>(analyzer)->GetLastError());
    return 0;
}

class FileAnalyzer : public testing::Test
{
protected:
    // To the end of the thread. Answers what the callback saw; what the parser saw is in m_log.
    std::string Parse(CFakeAnalyzer& analyzer, int nType)
    {
        std::string seen;
        EXPECT_EQ(analyzer.InitEx(nType, m_file.Path().c_str()), 0);
        EXPECT_EQ(analyzer.FileParse(TakeEndMark, nullptr, &seen), 0);
        analyzer.CloseThread();
        return seen;
    }

    RecordingFile m_file{ZoavFrame().Payload(Filler(1000))};
};

void SetRingKey(CFileAnalyzer& analyzer, const std::string& key, KX_PUBLICKEY_PARAM* pPublicKey)
{
    std::string id = "id" + key;
    std::string copy = key;
    KX_DECRYPT_PARAM param{
        copy.data(), static_cast<int32_t>(copy.size()), id.data(), static_cast<int32_t>(id.size()), true, pPublicKey,
        {}};
    EXPECT_EQ(analyzer.SetExtInfo(KX_ENCRYPT_SM4_OFB, reinterpret_cast<unsigned char*>(&param), 64), 0);
    std::fill(copy.begin(), copy.end(), '?'); // copied by then
}

} // namespace

// Every byte of both records says 0xA5, so each byte of the result that does not is one that is not copied.
TEST_F(FileAnalyzer, ACallBackGetsAllFieldsButTheseFew)
{
    FrameInfo frame;
    ExtZOAVIFrameInfo ext;
    std::memset(&frame, 0xA5, sizeof frame);
    std::memset(&ext, 0xA5, sizeof ext);
    ext.srcPicWidth = 1;
    KX_FRAME_INFO expected;
    std::memset(&expected, 0xA5, sizeof expected);
    expected.mediaFlag = 0;
    expected.customChangeInfo.nReserved = 0;
    std::memset(expected.nB6HeadGmIv, 0, sizeof expected.nB6HeadGmIv);
    expected.nB6HeadVekEncryptType = 0;
    std::memset(expected.nB6HeadVek, 0, sizeof expected.nB6HeadVek);
    expected.nYuvTimeStamp = 0;
    expected.bHasDecrypt = 0;
    expected.resv[0] = expected.nReserved2[0] = 0;
    std::memset(expected.nResv, 0, sizeof expected.nResv);
    std::memset(expected.nReserved, 0, sizeof expected.nReserved);

    KX_FRAME_INFO seen;
    const fFileIndex take = [](void*, KX_FRAME_INFO* frameInfo, KX_INDEX_INFO* indexInfo, int process, void* userData) {
        if (frameInfo != nullptr)
            *static_cast<KX_FRAME_INFO*>(userData) = *frameInfo;
        return frameInfo == nullptr ? 0 : process + static_cast<int>(indexInfo->index);
    };
    CFakeAnalyzer analyzer;
    KX_INDEX_INFO index{};
    index.index = 7;
    EXPECT_EQ(analyzer.OnIndex(&index, &frame, &ext), 0); // without a callback
    EXPECT_EQ(analyzer.OnFileInfo(nullptr), 1);
    analyzer.m_log.nProcess = 30;
    EXPECT_EQ(analyzer.Init(KX_STREAM_TYPE_ZOSTD, m_file.Path().c_str(), take, nullptr, &seen), 0);
    analyzer.CloseThread();
    EXPECT_EQ(analyzer.OnIndex(&index, &frame, &ext), 37);
    EXPECT_EQ(std::memcmp(&seen, &expected, sizeof seen), 0);
    analyzer.OnIndex(&index, &frame, nullptr);
    EXPECT_EQ((Fields{seen.srcPicWidth, seen.fishEyeRadius, seen.encryptCheckSum, seen.fogThrough.nMode}), Fields(4));
    EXPECT_EQ(seen.frameLen, expected.frameLen);
}

TEST_F(FileAnalyzer, ThePassThatWasAskedForRunsAndTheEndMarkIsAheadOfItsResult)
{
    // slice, fast, progress, what the parser sees, what the callback sees
    const Rows<int64_t, int64_t, bool, int, std::string, std::string> rows = {
        {-1, -1, false, 50, "file ", "end 0"},       {3, -1, false, 50, "file ", "end 0"},
        {5, 10, false, 50, "slice 5+10 ", "end 0"},  {5, 0, false, 50, "", "end 0"},
        {-1, -1, true, 100, "fast-index ", "end 0"}, {-1, -1, true, 99, "fast-index ", ""},
    };
    for (const auto& [nOffset, nSize, bFast, nProcess, calls, seen] : rows) {
        SCOPED_TRACE(calls);
        CFakeAnalyzer analyzer;
        analyzer.m_log.nProcess = nProcess;
        analyzer.SetSlice(nOffset, nSize);
        if (bFast)
            analyzer.SetBaseRead();
        EXPECT_EQ(Parse(analyzer, KX_STREAM_TYPE_ZOSTD), seen);
        EXPECT_EQ(analyzer.m_log.calls, "key -1: common -1:null " + calls);
    }
    CFakeAnalyzer analyzer;
    analyzer.m_log.nResult = 13;
    EXPECT_EQ(Parse(analyzer, KX_STREAM_TYPE_ZOSTD), "end 0");
    EXPECT_EQ(analyzer.GetLastError(), 13);
}

// Only a type that is found out here brings the ring and the encoding of the path.
TEST_F(FileAnalyzer, KeysReachTheParserByTwoWaysThatDiffer)
{
    KX_PUBLICKEY_PARAM publicKey{};
    publicKey.y[31] = 9;
    for (const auto& [nType, bAskedBefore] : Rows<int, bool>{{0, false}, {0, true}, {8, false}}) {
        CFakeAnalyzer analyzer;
        unsigned char key[] = {'a', 'e', 's'};
        unsigned char utf8 = KX_PATH_ENCODE_TYPE_UTF8;
        EXPECT_EQ(analyzer.SetExtInfo(KX_ENCRYPT_AES, key, 3), 0);
        for (int n = 1; n <= 11; ++n)
            SetRingKey(analyzer, std::to_string(n), n == 2 ? &publicKey : nullptr);
        analyzer.SetExtCommonInfo(KX_PARAM_PATH_ENCODE_TYPE, &utf8, 1);
        analyzer.SetExtCommonInfo(KX_PARAM_VOBTYPE_PARSER, nullptr, 0);
        EXPECT_EQ(analyzer.InitEx(nType, m_file.Path().c_str()), 0);
        Parse(analyzer, bAskedBefore ? analyzer.GetStreamType() : nType);
        if (nType != 0 || bAskedBefore) {
            EXPECT_EQ(analyzer.m_log.calls, "key 13:aes common 1:null file ");
            continue;
        }
        EXPECT_EQ(analyzer.m_log.calls,
                  "key 13:11/id11 key 13:2/id2+9 key 13:3/id3 key 13:4/id4 key 13:5/id5 key 13:6/id6 key 13:7/id7 "
                  "key 13:8/id8 key 13:9/id9 key 13:10/id10 common 1:null common 12:1 file ");
    }
}

TEST_F(FileAnalyzer, WithoutAParserQuestionsAboutTheIndexLeaveTheirCode)
{
    CFakeAnalyzer analyzer;
    const auto ask = [&](int nOneIndex) {
        int nProcess = 0;
        return Fields{analyzer.ReadOneFrame(nullptr, nullptr, nullptr),
                      analyzer.SeekByTime(0),
                      analyzer.SeekByFileOffset(0, 0),
                      analyzer.GetFrameByIndex(nullptr, nullptr, nullptr),
                      analyzer.GetLastError(),
                      analyzer.GetOneIndex(nOneIndex, nullptr, nullptr, nullptr),
                      analyzer.GetIndexCount(0, nullptr),
                      analyzer.GetAllIndex(0, nullptr, nullptr, 0, nullptr),
                      analyzer.GetLastError(),
                      analyzer.GetProcess(&nProcess) + nProcess,
                      analyzer.GetProcess(nullptr)};
    };
    EXPECT_EQ(ask(0), (Fields{6, 6, 6, 6, 0, 6, 6, 6, 6, 100, 6}));
    // Keys that are refused leave nothing either.
    unsigned char key = 1;
    for (const auto& [nType, pKey, nLen] : Rows<uint32_t, unsigned char*, int>{
             {9, nullptr, 64}, {8, nullptr, 16}, {1, &key, -1}, {0, &key, 1}, {14, &key, 1}, {~0U, &key, 1}})
        EXPECT_EQ(analyzer.SetExtInfo(nType, pKey, nLen), KX_ERROR_PARAMETER) << nType;
    analyzer.m_log.nProcess = 40;
    Parse(analyzer, KX_STREAM_TYPE_ZOSTD);
    EXPECT_EQ(ask(0), (Fields{0, 0, 0, 71, 0, 72, 73, 74, 0, 40, 6}));
}

} // namespace Marvane::FrameSift
