// The project header and the point records turned into the bytes of the
// project database and back, field by field at the places of dbs_format.h.
#ifndef KORVO_DATABASE_DBS_CODEC_H_
#define KORVO_DATABASE_DBS_CODEC_H_

#include <cstdint>

#include "korvo/database/dbs_records.h"
#include "korvo/export.h"

namespace korvo {

// Writes the 408 bytes of the header. The two bytes without meaning behind
// harguid are written as zeros.
// REQUIRES: `out` holds dbs::kHeaderSize bytes.
KORVO_EXPORT void EncodeDbsHeader(const korvoprjdattype& header, uint8_t* out);

// Reads the header from its 408 bytes; every field of `header` is set.
// REQUIRES: `in` holds dbs::kHeaderSize bytes.
KORVO_EXPORT void DecodeDbsHeader(const uint8_t* in, korvoprjdattype* header);

// Writes a record in the form of `size` bytes, 62 or 93; the short form
// leaves out symbol, berg, mykod and datum. A point of kind Avp stores its kod
// where the others store djup. `pos` is not stored.
// REQUIRES: `out` holds `size` bytes.
KORVO_EXPORT void EncodeDbsRecord(const bhdbstype& rec, int size, uint8_t* out);

// Reads a record of `size` bytes, 62 or 93. A short record gets symbol -1,
// berg and mykod 0 and an empty datum. `pos` is left as it was.
// REQUIRES: `in` holds `size` bytes.
KORVO_EXPORT void DecodeDbsRecord(const uint8_t* in, int size, bhdbstype* rec);

}  // namespace korvo

#endif  // KORVO_DATABASE_DBS_CODEC_H_
