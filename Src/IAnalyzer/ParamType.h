// Parameters that a client of an analyzer can set.
#ifndef FRAMESIFT_SRC_IANALYZER_PARAMTYPE_H
#define FRAMESIFT_SRC_IANALYZER_PARAMTYPE_H

namespace Marvane::FrameSift {

// A stream analyzer takes the keys, 2 to 8, and refuses the others. Clients know the numbers: never renumber.
enum KX_PARAM_TYPE : unsigned int
{
    KX_PARAM_RTPTYPE_PARSER = 0,
    KX_PARAM_VOBTYPE_PARSER = 1,
    KX_PARAM_DECRYPT_AES = 2,
    KX_PARAM_DECRYPT_AES256 = 3,
    KX_PARAM_DECRYPT_AES256_GDPR2 = 4,
    KX_PARAM_DECRYPT_GM_SM1_ECB = 5,
    KX_PARAM_DECRYPT_GM_SM1_OFB = 6,
    KX_PARAM_DECRYPT_GM_SM4_ECB = 7,
    KX_PARAM_DECRYPT_GM_SM4_OFB = 8,
    KX_PARAM_RAWAUDIO_PARSER = 9,
    KX_PARAM_FILEPARSER_NO_FRAME_OUT_LESS_SEEK = 10,
    KX_READ_BY_NO_INDEX = 11,
    KX_PARAM_PATH_ENCODE_TYPE = 12
};

} // namespace Marvane::FrameSift

#endif
