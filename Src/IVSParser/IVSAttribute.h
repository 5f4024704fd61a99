// The attributes of a common object: which there are, where their records stand, and who reads them.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSATTRIBUTE_H
#define FRAMESIFT_SRC_IVSPARSER_IVSATTRIBUTE_H

#include <cstddef>
#include <cstdint>

#include "framesift/ivs_attributes.h"

namespace Marvane::FrameSift {

class CBufferRead;

// Reads attributes until nLen bytes are used up or pb is. KX_ERROR_BAD_FORMATTED if one of them is damaged.
int ParseAttribute(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr, int nLen);

// Each fills its record as far as pb goes, which holds what follows the type and the length of the attribute. What lies
// behind its end keeps its value. Not 0: the attribute is damaged.
int ParseAttribute80(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute81(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute82(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute83(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute84(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute85(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute86(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute87(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute88(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute89(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute8C(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute8E(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute90(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute92(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute93(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute94(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
int ParseAttribute97(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);

struct IVS_ATTRIBUTE_ROW
{
    uint8_t nType;    // on the wire
    uint32_t nMask;   // its bit in KX_IVS_ATTRIBUTE::attrflag
    uint16_t nOffset; // of its record in KX_IVS_ATTRIBUTE
    uint16_t nSize;   // of its record
    int (*pfnParse)(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr);
};

inline constexpr uint8_t gsk_firstAttribute = 0x80;

// number: the two hex digits of the type, which also name the record and the parser.
#define IVS_ATTRIBUTE(number)                                                                                          \
    {                                                                                                                  \
        0x##number, uint32_t{1} << (0x##number - gsk_firstAttribute), offsetof(KX_IVS_ATTRIBUTE, arrtibute##number),   \
            sizeof(KX_IVS_ATTRIBUTE::arrtibute##number), &ParseAttribute##number                                       \
    }

// In ascending order. All other types are stepped over.
inline constexpr IVS_ATTRIBUTE_ROW gsk_ivsAttributes[] = {
    IVS_ATTRIBUTE(80), IVS_ATTRIBUTE(81), IVS_ATTRIBUTE(82), IVS_ATTRIBUTE(83), IVS_ATTRIBUTE(84), IVS_ATTRIBUTE(85),
    IVS_ATTRIBUTE(86), IVS_ATTRIBUTE(87), IVS_ATTRIBUTE(88), IVS_ATTRIBUTE(89), IVS_ATTRIBUTE(8C), IVS_ATTRIBUTE(8E),
    IVS_ATTRIBUTE(90), IVS_ATTRIBUTE(92), IVS_ATTRIBUTE(93), IVS_ATTRIBUTE(94), IVS_ATTRIBUTE(97),
};

#undef IVS_ATTRIBUTE

} // namespace Marvane::FrameSift

#endif
