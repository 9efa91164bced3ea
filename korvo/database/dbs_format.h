// The bytes of the project database file, and nothing else: where each field
// of the header and of both record forms lies and how wide it is. The file
// is described in doc/project_database.md; dbs_codec.cpp turns these places
// into values.
//
//   file   := header(408) reserved(92) record*
//   record := 62 bytes before version 4, 93 bytes from version 4 on
//
// Numbers are little-endian, floats IEEE 754, texts single-byte Windows-1252
// ended by a zero byte.
#ifndef KORVO_DATABASE_DBS_FORMAT_H_
#define KORVO_DATABASE_DBS_FORMAT_H_

namespace korvo::dbs {

// One field of the file: its offset from the start of the header or record,
// and its width in bytes.
struct Field {
  int offset;
  int width;
  constexpr int end() const { return offset + width; }
};

inline constexpr int kHeaderSize = 408;
// Bytes 408 to 499 are never read or written; the first record starts here.
inline constexpr int kFirstRecordOffset = 500;
inline constexpr int kShortRecordSize = 62;  // versions below 4
inline constexpr int kLongRecordSize = 93;   // version 4

namespace header {

inline constexpr Field kDbsver{0, 6};
inline constexpr Field kUppdnamn{6, 31};
inline constexpr Field kPrjnamn{37, 36};
inline constexpr Field kUppdnr{73, 13};
inline constexpr Field kDatum{86, 11};
inline constexpr Field kRad1{97, 36};
inline constexpr Field kRad2{133, 36};
inline constexpr Field kHandl{169, 21};
inline constexpr Field kRitare{190, 21};
inline constexpr Field kKsyst{211, 5};
inline constexpr Field kAntbh{216, 2};
inline constexpr Field kAntavp{218, 2};
inline constexpr Field kReserv1{220, 2};
inline constexpr Field kAntrader{222, 2};
inline constexpr Field kAntror{224, 2};
inline constexpr Field kAntvb{226, 2};
inline constexpr Field kMinsekt{228, 8};
inline constexpr Field kMaxsekt{236, 8};
inline constexpr Field kMinx{244, 8};
inline constexpr Field kMaxx{252, 8};
inline constexpr Field kMiny{260, 8};
inline constexpr Field kMaxy{268, 8};
inline constexpr Field kMinz{276, 8};
inline constexpr Field kMaxz{284, 8};
inline constexpr Field kVerdel{292, 8};
inline constexpr Field kUppdnrfil{300, 4};
inline constexpr Field kAvskilj{304, 2};
inline constexpr Field kAntmil{306, 2};
inline constexpr Field kAntlje{308, 2};
inline constexpr Field kAntlad{310, 2};
inline constexpr Field kHarguid{312, 2};
inline constexpr Field kUnused{314, 2};  // written as zeros, never read
inline constexpr Field kReserv2{316, 8};
inline constexpr Field kSlutpos{324, 4};
inline constexpr Field kReserv3{328, 36};  // nine 32-bit words
inline constexpr Field kGuid{364, 44};     // eleven 32-bit words

static_assert(kKsyst.end() == kAntbh.offset && kVerdel.end() == kUppdnrfil.offset &&
              kHarguid.end() == kUnused.offset && kUnused.end() == kReserv2.offset &&
              kSlutpos.end() == kReserv3.offset && kReserv3.end() == kGuid.offset &&
              kGuid.end() == kHeaderSize);

}  // namespace header

namespace record {

inline constexpr Field kId{0, 9};
inline constexpr Field kBit{9, 7};
inline constexpr Field kX{16, 8};
inline constexpr Field kY{24, 8};
inline constexpr Field kZ{32, 8};
inline constexpr Field kSekt{40, 8};
inline constexpr Field kAvst{48, 8};
// The depth as a 32-bit float; for a point of kind Avp, its code as text of
// at most three characters in the same four bytes.
inline constexpr Field kDjupKod{56, 4};
inline constexpr Field kStopp{60, 2};
// The long form only.
inline constexpr Field kSymbol{62, 4};
inline constexpr Field kBerg{66, 8};
inline constexpr Field kMykod{74, 8};
inline constexpr Field kDatum{82, 11};

static_assert(kBit.end() == kX.offset && kAvst.end() == kDjupKod.offset &&
              kStopp.end() == kShortRecordSize && kSymbol.offset == kShortRecordSize &&
              kDatum.end() == kLongRecordSize);

}  // namespace record

}  // namespace korvo::dbs

#endif  // KORVO_DATABASE_DBS_FORMAT_H_
