#include "FileAnalzyer/SimulateByStream/IndexList.h"
#include "Support/Testing.h"

#include <array>
#include <map>
#include <set>
#include <thread>

namespace Marvane::FrameSift {

namespace {

constexpr int32_t I = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
constexpr int32_t P = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
constexpr int32_t Jpeg = KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME;
constexpr int32_t SmartP = KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME;

using Records = std::vector<FILE_INDEX_INFO>;

FILE_INDEX_INFO Record(int32_t nType, int32_t nSubType, int64_t nOffset = 0, int32_t nStreamType = KX_STREAM_TYPE_ZOSTD)
{
    FILE_INDEX_INFO record{};
    record.indexInfo.frameOffset = nOffset;
    record.frameInfo.frameType = nType;
    record.frameInfo.frameSubType = nSubType;
    record.frameInfo.streamType = nStreamType;
    return record;
}

ExtZOAVIFrameInfo Ext(const FILE_INDEX_INFO& record, uint32_t nMark)
{
    ExtZOAVIFrameInfo ext{};
    ext.encryptCheckSum = nMark;
    ext.refIFrameSeq = 99;
    ext.frameSubType = record.frameInfo.frameSubType;
    return ext;
}

int32_t Put(CIndexList& list, FILE_INDEX_INFO record, ExtZOAVIFrameInfo* pExt = nullptr)
{
    return list.InputFrame(&record.indexInfo, &record.frameInfo, pExt);
}

bool Same(const FILE_INDEX_INFO& record, const KX_INDEX_INFO& index, const FrameInfo& frame)
{
    return std::memcmp(&record.indexInfo, &index, sizeof index) == 0 &&
           std::memcmp(&record.frameInfo, &frame, sizeof frame) == 0;
}

// What the obvious list would hold.
FILE_INDEX_INFO Kept(FILE_INDEX_INFO record, int64_t nIndex)
{
    record.indexInfo.index = nIndex;
    FrameInfo& frame = record.frameInfo;
    frame.framePointer = frame.streamPointer = frame.extDataPtr = nullptr;
    frame.pSvacOsdInfo = nullptr;
    return record;
}

bool Matches(const FrameInfo& frame, uint32_t nFlags)
{
    const auto isVideo = [&](int32_t nSubType) { return frame.frameType == 1 && frame.frameSubType == nSubType; };
    return nFlags == 0xFFFFFFFF || ((nFlags & 1) != 0 && isVideo(0)) || ((nFlags & 2) != 0 && isVideo(1)) ||
           ((nFlags & 4) != 0 && isVideo(2)) || ((nFlags & 8) != 0 && frame.frameType == 2) ||
           ((nFlags & 16) != 0 && frame.frameType == 3);
}

bool IsOfFamily(const FrameInfo& frame)
{
    return frame.frameType == 1 && std::set<int32_t>{8, 13, 195, 196, 197}.count(int32_t{frame.streamType}) != 0;
}

bool IsKey(const FrameInfo& frame)
{
    return std::set<int32_t>{0, 8, 18, 19, 20}.count(int32_t{frame.frameSubType}) != 0;
}

// Frames that say anything, follow each other in a sound way, or differ at many places.
class CRecordMaker
{
public:
    FILE_INDEX_INFO Next()
    {
        auto* pBytes = reinterpret_cast<uint8_t*>(&m_record);
        const unsigned nKind = m_random() % 4;
        if (nKind == 0)
            std::generate_n(pBytes, gsk_indexRecordSize, [&] { return static_cast<uint8_t>(m_random()); });
        else if (nKind == 1)
            for (size_t n = m_random() % 9; n < gsk_indexRecordSize; n += 4 + m_random() % 11)
                pBytes[n] = static_cast<uint8_t>(m_random());
        else
            m_record.indexInfo.frameOffset += uint16_t(m_record.frameInfo.frameLen = uint16_t(m_random()));
        FrameInfo& frame = m_record.frameInfo;
        frame.errorFlags = Pick<int32_t>({0, 4, 8, 13});
        frame.frameType = Pick<int32_t>({0, 1, 1, 1, 2, 3, -1});
        frame.frameSubType = Pick<int32_t>({I, P, P, P, 2, Jpeg, 18, SmartP, 20, -1});
        frame.streamType = Pick<int32_t>({8, 13, 195, 196, 197, KX_STREAM_TYPE_NEW, KX_STREAM_TYPE_HBStreamV30});
        return m_record;
    }

private:
    template <class T>
    T Pick(std::initializer_list<T> values)
    {
        return values.begin()[m_random() % values.size()];
    }

    std::mt19937 m_random{5};
    FILE_INDEX_INFO m_record{};
};

void ExpectSelection(CIndexList& list, const Records& records, uint32_t nFlags, int32_t nRoom)
{
    Records expected;
    std::copy_if(records.begin(), records.end(), std::back_inserter(expected),
                 [&](const auto& record) { return Matches(record.frameInfo, nFlags); });
    const auto flags = static_cast<int32_t>(nFlags);
    int32_t nCount = -1;
    EXPECT_EQ(list.GetIndexCount(flags, &nCount), KX_SUCCESS);
    ASSERT_EQ(static_cast<size_t>(nCount), expected.size()) << nFlags;
    expected.resize(std::min(expected.size(), static_cast<size_t>(nRoom)));
    std::vector<KX_INDEX_INFO> indexes(expected.size());
    std::vector<FrameInfo> frames(expected.size());
    EXPECT_EQ(list.GetAllIndex(flags, indexes.data(), frames.data(), nRoom, &nCount), KX_SUCCESS);
    ASSERT_EQ(static_cast<size_t>(nCount), expected.size());
    for (size_t n = 0; n < expected.size(); ++n)
        ASSERT_TRUE(Same(expected[n], indexes[n], frames[n])) << n << " of flags " << nFlags;
}

} // namespace

TEST(IndexList, AnyContentComesBackButForThePointers)
{
    CIndexList list;
    CRecordMaker maker;
    Records records;
    for (int64_t n = 0; n < 3000; ++n) {
        FILE_INDEX_INFO record = maker.Next();
        records.push_back(Kept(record, n));
        ASSERT_EQ(list.InputFrame(&record.indexInfo, &record.frameInfo, nullptr), KX_SUCCESS);
        ASSERT_EQ(record.indexInfo.index, n);
    }
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    std::mt19937 random(6);
    for (size_t n = 0; n < 2 * records.size(); ++n) {
        const size_t nAt = n < records.size() ? n : random() % records.size();
        ASSERT_EQ(list.GetOneIndex(static_cast<int64_t>(nAt), &index, &frame, nullptr), KX_SUCCESS);
        ASSERT_TRUE(Same(records[nAt], index, frame)) << nAt;
    }
    for (const FILE_INDEX_INFO& record : records) {
        ASSERT_EQ(list.GetIndexInfo(index), KX_SUCCESS);
        ASSERT_TRUE(Same(record, index, record.frameInfo));
    }
    for (const uint32_t nFlags : {1U, 2U, 4U, 8U, 16U, 11U, 31U, 0U, 32U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        for (const int32_t nRoom : {5000, 100, 0})
            ExpectSelection(list, records, nFlags, nRoom);
        EXPECT_TRUE(std::all_of(records.begin(), records.end(), [&](FILE_INDEX_INFO record) {
            return list.IsAccordWithFlags(&record, static_cast<int32_t>(nFlags)) == Matches(record.frameInfo, nFlags);
        }));
    }
}

TEST(IndexList, ExtensionDataAreThoseOfThePlainMap)
{
    CIndexList list;
    CRecordMaker maker;
    std::map<int64_t, ExtZOAVIFrameInfo> keys;
    for (int64_t n = 0; n < 2000; ++n) {
        const FILE_INDEX_INFO record = maker.Next();
        ExtZOAVIFrameInfo ext = Ext(record, static_cast<uint32_t>(n));
        const bool bGiven = n % 5 != 0;
        if (bGiven && IsOfFamily(record.frameInfo) && IsKey(record.frameInfo))
            keys[n] = ext;
        ext.osdExtDataPtr = ext.svacEncryptKeyData = ext.digtalSignatureEncdecDataPtr = &ext.osdExtDataLen;
        ASSERT_EQ(Put(list, record, bGiven ? &ext : nullptr), KX_SUCCESS);
    }
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    for (int64_t n = 0; n < 2000; ++n) {
        ExtZOAVIFrameInfo expected{};
        expected.encryptCheckSum = 0xFFFFFFFF; // as before the call
        ExtZOAVIFrameInfo ext = expected;
        ASSERT_EQ(list.GetOneIndex(n, &index, &frame, &ext), KX_SUCCESS);
        if (const auto next = keys.lower_bound(n); IsOfFamily(frame) && IsKey(frame)) {
            expected = keys.count(n) != 0 ? keys[n] : expected;
        } else if (IsOfFamily(frame) && next != keys.begin()) {
            expected = std::prev(next)->second;
            expected.refIFrameSeq = expected.frameSubType == SmartP ? 0 : 99;
        }
        ASSERT_EQ(std::memcmp(&ext, &expected, sizeof ext), 0) << n;
    }
}

TEST(IndexList, AlikeFramesTakeFewBytes)
{
    INDEX_STATES bases;
    CIndexCoder coder(bases);
    FILE_INDEX_INFO record = Record(KX_FRAME_TYPE_VIDEO, P, 1000);
    size_t nBytes = 0;
    for (int32_t n = 0; n < 1000; ++n) {
        record.frameInfo.frameLen = 4000 + n * 7919 % 4000;
        record.frameInfo.streamLen = record.frameInfo.frameLen - 60;
        record.indexInfo.streamOffset = record.indexInfo.frameOffset + 52;
        record.frameInfo.frameSeq = n;
        record.frameInfo.timeStamp = n * 40;
        std::array<uint8_t, gsk_maxCodedRecord> coded{};
        nBytes += coder.Encode(record, coded.data());
        coder.Decode(coded.data());
        record.indexInfo.frameOffset += record.frameInfo.frameLen;
    }
    EXPECT_LT(nBytes, 6 * 1000U);
}

TEST(IndexList, RefusesWhatItCannotAnswer)
{
    CIndexList list;
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    FILE_INDEX_INFO record{};
    int nCount = -1;
    EXPECT_EQ(list.GetOneIndex(0, &index, &frame, nullptr), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(list.GetFrameByOffset(0, &record, nullptr), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(list.GetIndexInfo(index), -1);
    for (int32_t nErrorFlags = -1; nErrorFlags < 20; ++nErrorFlags) {
        const bool bTaken = nErrorFlags == 0 || nErrorFlags == 4 || nErrorFlags == 8 || nErrorFlags == 13;
        FILE_INDEX_INFO damaged = Record(KX_FRAME_TYPE_VIDEO, P);
        damaged.frameInfo.errorFlags = nErrorFlags;
        EXPECT_EQ(Put(list, damaged), bTaken ? KX_SUCCESS : KX_ERROR_PARAMETER) << nErrorFlags;
    }
    EXPECT_EQ(list.GetIndexCount(-1, &nCount), KX_SUCCESS);
    EXPECT_EQ(nCount, 4);
    for (const int64_t nIndex : {int64_t{-1}, INT64_MIN, int64_t{4}, INT64_MAX})
        EXPECT_EQ(list.GetOneIndex(nIndex, &index, &frame, nullptr), KX_ERROR_INVALID_INDEX) << nIndex;
    EXPECT_EQ(list.GetFrameByOffset(0, &record, nullptr), KX_ERROR_INVALID_INDEX);
    for (const int32_t nResult :
         {list.InputFrame(nullptr, &frame, nullptr), list.InputFrame(&index, nullptr, nullptr),
          list.GetOneIndex(0, nullptr, &frame, nullptr), list.GetOneIndex(0, &index, nullptr, nullptr),
          list.GetFrameByOffset(0, nullptr, nullptr), list.GetIndexCount(-1, nullptr),
          list.GetAllIndex(-1, nullptr, nullptr, 1, nullptr)})
        EXPECT_EQ(nResult, KX_ERROR_PARAMETER);
    EXPECT_FALSE(list.IsAccordWithFlags(nullptr, -1));
}

TEST(IndexList, ByOffsetAJpegPictureTakesTheKeyFrameBefore)
{
    struct CFilledList : CIndexList
    {
        void Fill(int64_t nOffset, uint32_t nIndex) { m_mapOffsetToIndex[nOffset] = nIndex; }
    } list;
    for (const auto& [nSubType, nOffset] : Rows<int32_t, int64_t>{{I, 100}, {Jpeg, 200}, {SmartP, 300}, {P, 400}}) {
        const FILE_INDEX_INFO record = Record(KX_FRAME_TYPE_VIDEO, nSubType, nOffset);
        ExtZOAVIFrameInfo ext = Ext(record, static_cast<uint32_t>(nOffset));
        ASSERT_EQ(Put(list, record, &ext), KX_SUCCESS);
        list.Fill(nOffset, static_cast<uint32_t>(nOffset / 100 - 1));
    }
    list.Fill(500, 4); // no such record
    for (const auto& [nOffset, nMark, nRef] :
         Rows<int64_t, uint32_t, uint32_t>{{100, 100, 99}, {200, 100, 99}, {300, 300, 99}, {400, 300, 0}}) {
        FILE_INDEX_INFO record{};
        ExtZOAVIFrameInfo ext{};
        EXPECT_EQ(list.GetFrameByOffset(nOffset, &record, &ext), KX_SUCCESS);
        EXPECT_EQ((Fields{record.indexInfo.frameOffset, ext.encryptCheckSum, ext.refIFrameSeq}),
                  (Fields{nOffset, nMark, nRef}));
    }
    FILE_INDEX_INFO record{};
    EXPECT_EQ(list.GetFrameByOffset(500, &record, nullptr), KX_ERROR_INVALID_INDEX);
}

TEST(IndexList, SeeksAmongVideoFramesOnceThereAreAny)
{
    CIndexList list;
    list.SetBaseRead(true);
    uint32_t nIndex = 7;
    EXPECT_EQ(list.GetPureIndexSeqByOffset(0, nIndex), -1);
    EXPECT_EQ(nIndex, 7U);
    ASSERT_EQ(Put(list, Record(KX_FRAME_TYPE_AUDIO, 0, 1000)), KX_SUCCESS);
    EXPECT_EQ(list.SeekByFileOffset(1000, 0), KX_SUCCESS);
    for (int64_t n = 1; n <= 2500; ++n)
        ASSERT_EQ(Put(list, Record(n % 2 != 0 ? KX_FRAME_TYPE_VIDEO : KX_FRAME_TYPE_DATA, P, 1000 + n * 10)), 0);
    KX_INDEX_INFO index{};
    for (int64_t n = 0; n <= 2500; ++n) {
        const bool bVideo = n % 2 != 0;
        ASSERT_EQ(list.SeekByFileOffset(1000 + n * 10, 0), bVideo ? 0 : -1) << n;
        if (bVideo) {
            ASSERT_EQ(list.GetIndexInfo(index), KX_SUCCESS);
            ASSERT_EQ(index.index, n);
        }
    }
    EXPECT_EQ(list.SeekByFileOffset(1015, 0), -1);
    EXPECT_EQ(list.GetIndexInfo(index), KX_SUCCESS);
    EXPECT_EQ(index.index, 2500); // a vain search moves nothing
}

TEST(IndexList, TheSearchEndsInAListWithoutOrder)
{
    std::mt19937 random(8);
    for (int nSize = 1; nSize < 40; ++nSize) {
        CIndexList list;
        list.SetBaseRead(true);
        std::vector<int64_t> offsets;
        for (int n = 0; n < nSize; ++n) {
            offsets.push_back(static_cast<int64_t>(random() % 50) - 2);
            list.PushBack(offsets.back(), n, KX_FRAME_TYPE_VIDEO);
        }
        for (int64_t nOffset = -3; nOffset < 50; ++nOffset) {
            uint32_t nIndex = UINT32_MAX;
            const int32_t nResult = list.GetPureIndexSeqByOffset(static_cast<uint64_t>(nOffset), nIndex);
            ASSERT_LT(nIndex, offsets.size());
            ASSERT_EQ(nResult == KX_SUCCESS, offsets[nIndex] == nOffset);
        }
    }
}

TEST(IndexList, FramesCountedWithoutRecordReadAsEmpty)
{
    CIndexList list;
    list.PushBackIncrease(100, 0, KX_FRAME_TYPE_VIDEO); // nothing without SetBaseRead
    list.SetBaseRead(true);
    for (int n = 0; n < 3; ++n)
        list.PushBackIncrease(int64_t{100} * n, n, KX_FRAME_TYPE_VIDEO);
    KX_INDEX_INFO index{1, 2, 3, {4}};
    FrameInfo frame{};
    EXPECT_EQ(list.GetOneIndex(0, &index, &frame, nullptr), KX_ERROR_LIST_EMPTY);
    EXPECT_EQ(list.SeekByFileOffset(200, 0), KX_SUCCESS);
    EXPECT_EQ(list.GetIndexInfo(index), KX_SUCCESS);
    EXPECT_EQ((Fields{index.streamOffset, index.frameOffset, index.index, index.reserved[0]}), (Fields{0, 0, 2, 4}));
    EXPECT_EQ(list.GetIndexInfo(index), -1);
    ASSERT_EQ(Put(list, Record(KX_FRAME_TYPE_AUDIO, 0, 300)), KX_SUCCESS);
    list.PushBackIncrease(400, 4, KX_FRAME_TYPE_VIDEO);
    list.SetIndexComplete(true);
    list.SetIndex(0);
    for (const int64_t nOffset : {0, 0, 0, 300, 0}) {
        EXPECT_EQ(list.GetIndexInfo(index), KX_SUCCESS);
        EXPECT_EQ(index.frameOffset, nOffset);
        EXPECT_EQ(list.GetOneIndex(index.index, &index, &frame, nullptr), KX_SUCCESS);
        EXPECT_EQ(index.frameOffset, nOffset);
    }
    EXPECT_EQ(list.GetIndexInfo(index), KX_ERROR_READ_FILE_END);
}

TEST(IndexListThreads, AReaderSeesWholeRecordsWhileThePassGoesOn)
{
    constexpr int64_t nFrames = 4000;
    CIndexList list;
    list.SetBaseRead(true);
    std::thread pass([&] {
        for (int64_t n = 0; n < nFrames; ++n) {
            FILE_INDEX_INFO record = Record(KX_FRAME_TYPE_VIDEO, n % 50 == 0 ? I : P, n * 1000);
            record.frameInfo.frameSeq = static_cast<int32_t>(n);
            ExtZOAVIFrameInfo ext = Ext(record, static_cast<uint32_t>(n));
            EXPECT_EQ(Put(list, record, &ext), KX_SUCCESS);
        }
        list.SetIndexComplete(true);
    });
    KX_INDEX_INFO index{};
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    int64_t nSeen = 0;
    for (int32_t nResult = -1; nResult != KX_ERROR_READ_FILE_END;) {
        nResult = list.GetIndexInfo(index);
        if (nResult != KX_SUCCESS) {
            std::this_thread::yield();
            continue;
        }
        EXPECT_EQ(index.frameOffset, nSeen * 1000);
        const int64_t nEarlier = nSeen / 2;
        EXPECT_EQ(list.GetOneIndex(nEarlier, &index, &frame, &ext), KX_SUCCESS);
        EXPECT_EQ((Fields{index.frameOffset, frame.frameSeq, ext.encryptCheckSum}),
                  (Fields{nEarlier * 1000, nEarlier, nEarlier / 50 * 50}));
        EXPECT_EQ(list.SeekByFileOffset(++nSeen * 1000 - 1000, 0), KX_SUCCESS);
        list.SetIndex(static_cast<int>(nSeen));
    }
    pass.join();
    EXPECT_EQ(nSeen, nFrames);
}

} // namespace Marvane::FrameSift
