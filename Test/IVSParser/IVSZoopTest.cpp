#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

const Bytes sc_golden = Hex("01 EE EE EE"                          // version
                            " 01 02 03 04 05 06 07 04"             // nId, wCustom, chState, chCount
                            " 01 11 12 13 14 15 16 17 18 19 1A 1B" // circle: line, chRes0, wRadius, wRes1, middle
                            " 1C 1D 1E 1F 20 21 22 23"             // colours
                            " 02 02 31 32 33 34 35 36"             // broken line: chCount, chWidth, chStyle, colour
                            " 01 02 03 04 05 06 07 08"             // points
                            " 03 01 41 42 43 44 45 46 47 48 49 4A" // polygon: chCount, chWidth, chStyle, colours
                            " 09 0A 0B 0C"                         // corner
                            " 04 51 52 53 54 55 56 57 58 59 5A 5B" // text: chCharset, chRes1, stringPos, colour
                            " 5C 5D 03 00 61 62 63"                // chFontSize, chFontAlign, wTxtLen, letters
                            " 02 00 78 79"                         // wInfoLen, info
                            " 09 00 00 00 00 00 00 00 00 00");     // a drawing of nothing

Bytes BytesAt(const void* pBytes, size_t nSize)
{
    return BytesOf(*static_cast<const uint8_t*>(pBytes), 0, nSize);
}

void ExpectGolden(KX_IVS_PARSE_TYPE, void* pRecords, int)
{
    const auto& object = *static_cast<const KX_IVS_ZOOP_OBJ*>(pRecords);
    if (object.nId == 9)
        return;
    const auto& line = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE*>(object.pElement[1].pStruct);
    const auto& polygon = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON*>(object.pElement[2].pStruct);
    const auto& text = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT*>(object.pElement[3].pStruct);
    Bytes seen = BytesOf(object, 0, 8);
    Fields typesAndLengths;
    for (const size_t nFront : {20, 8, 12, 16}) { // a record begins as its element does on the wire
        const KX_IVS_ZOOP_OBJ_ELEMENT& element = object.pElement[typesAndLengths.size() / 2];
        typesAndLengths.insert(typesAndLengths.end(), {element.nType, element.nLength});
        seen = seen + BytesAt(element.pStruct, nFront);
        if (&line == element.pStruct)
            seen = seen + BytesAt(line.pointer, 8);
        if (&polygon == element.pStruct)
            seen = seen + BytesAt(polygon.pointer, 4);
    }
    seen = seen + BytesAt(text.pString, 3) + BytesOf(object.wInfoLen) + BytesAt(object.pInfo, 2);
    EXPECT_EQ(typesAndLengths, (Fields{1, 20, 2, 16, 3, 16, 4, 19}));
    EXPECT_EQ(seen, Part(sc_golden, 4, seen.size()));
    EXPECT_EQ(seen.size(), sc_golden.size() - 14);
}

} // namespace

TEST(IVSZoop, ShapesOfEveryKind)
{
    EXPECT_EQ(ParseIvs(IVS_TRACK_ZOOP, sc_golden, &ExpectGolden), (IVS_RUN{0, {2, {IVS_TRACK_ZOOP, 32}}}));
    ExpectSurvivesDamage(IVS_TRACK_ZOOP, sc_golden, {0, 18}, false);
}

// Drawings are counted by the sizes that they claim, whatever the data holds.
TEST(IVSZoop, DrawingsThatAreNotWhole)
{
    const std::vector<IVS_EVENT> one(1, {IVS_TRACK_ZOOP, 32});
    const std::vector<IVS_EVENT> two(2, {IVS_TRACK_ZOOP, 32});
    const Bytes head = {1, 0, 0, 0};
    const Bytes object = head + Bytes{9, 0, 0, 0, 0, 0, 0, 1};
    const Bytes longText = Bytes{4} + Bytes(13) + Bytes{0, 1, 'a'}; // claims 256 letters
    EXPECT_EQ(ExpectCases(IVS_TRACK_ZOOP, {{"2 bytes", {1, 0}, 18, {}},
                                           {"a lone version", {1, 0, 0}, 0, {}},
                                           {"version", {2, 0, 0}, 18, {}},
                                           {"head", head, 0, {}},
                                           {"line without points: 8", object + Bytes{2} + Bytes(10), 0, two},
                                           {"and no byte more", object + Bytes{2} + Bytes(9), 0, one},
                                           {"unknown type: 0", object + Bytes{5, 0}, 0, one},
                                           {"so one byte more is a drawing", object + Bytes{5, 0, 0}, 0, two},
                                           {"text: 272", object + longText + Bytes(257), 0, one},
                                           {"and one byte more", object + longText + Bytes(258), 0, two}}),
              "warn [ParserIVSTrack] data is not enough! len =  2\n"
              "warn [ParserIVSTrack] version is not 0x1! version =  2\n"
              "warn [ParserIVSTrackOPObjElement] chType is not support! chType =  5\n"
              "warn [ParserIVSTrackOPObjElement] chType is not support! chType =  5\n");
    const IVS_SEE cutOff = [](KX_IVS_PARSE_TYPE, void* pRecords, int) {
        const auto& drawing = *static_cast<const KX_IVS_ZOOP_OBJ*>(pRecords);
        EXPECT_EQ(BytesOf(drawing, 0, 8), (Bytes{0, 0, 0, 0, 7, 8, 9, 0})); // too few for nId, not for what follows
        EXPECT_TRUE(drawing.pInfo != nullptr);
    };
    EXPECT_EQ(ParseIvs(IVS_TRACK_ZOOP, head + Bytes{7, 8, 9}, cutOff), (IVS_RUN{0, one}));
    const IVS_SEE noText = [](KX_IVS_PARSE_TYPE, void* pRecords, int) {
        const auto& drawing = *static_cast<const KX_IVS_ZOOP_OBJ*>(pRecords);
        const auto* pText = static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT*>(drawing.pElement->pStruct);
        EXPECT_EQ(pText->wTxtLen, 256);
        EXPECT_TRUE(pText->pString == nullptr);
        EXPECT_EQ(drawing.wInfoLen, 'a'); // the reader has not moved
        EXPECT_TRUE(drawing.pInfo == nullptr);
    };
    EXPECT_EQ(ParseIvs(IVS_TRACK_ZOOP, object + longText + Bytes(3), noText), (IVS_RUN{0, one}));
}

} // namespace Marvane::FrameSift
