// The fields of a table, from JSON to the wire.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSWIREFIELDS_H
#define FRAMESIFT_APP_IVS_JSON_IVSWIREFIELDS_H

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Ivs/Json/IvsFields.h"
#include "Ivs/Json/IvsWirePlace.h"

namespace Marvane::FrameSift {

// Throw CIvsJsonError.

// Appends the fields of a record, in the order of the table. Names that the table does not have are passed over.
void PutFields(Bytes& wire, const JSON_TABLE& table, const CJsonPlace& record);
// That all names of an object are those of tables, or others that are known. unknown: what is said of one that is not.
void RequireNames(const CJsonPlace& record, std::initializer_list<const JSON_TABLE*> tables,
                  std::initializer_list<std::string_view> others = {},
                  const std::string& unknown = "there is no such field");

void AppendLsb(Bytes& wire, uint64_t nValue, uint32_t nBytes);
// Sets a length that is known only now.
void SetLsb(Bytes& wire, size_t nAt, uint64_t nValue, uint32_t nBytes);
// Zeros, up to a length.
void PadTo(Bytes& wire, size_t nSize);

} // namespace Marvane::FrameSift

#endif
