// The records of the project database as a program holds them: the flags of
// a point (bhbit), one point (bhdbstype), the project header
// (korvoprjdattype), and the caller's archive entry of a project (arktype).
//
// Texts are fixed wide fields; a field of n units holds at most n - 1
// characters. How each record lies in the file is dbs_format.h's business.
#ifndef KORVO_DATABASE_DBS_RECORDS_H_
#define KORVO_DATABASE_DBS_RECORDS_H_

#include <cstdint>
#include <type_traits>

namespace korvo {

// One named piece of a point's seven flag bytes: the byte, and the bits of
// it that the piece owns.
struct BhFlag {
  uint8_t byte;
  uint8_t mask;
};

}  // namespace korvo

// What exists at a point, in seven bytes that the file stores as they stand.
// A point is of exactly one kind: Bh, Avp, Lad, Lje, a pipe (Ror not 0) or
// Vb. The method flags come with Bh.
struct bhbit {
  uint8_t b[7];

  using Flag = korvo::BhFlag;

  // Byte 0.
  static constexpr Flag Bh{0, 0x01};   // kind: borehole, a .SND file of method blocks
  static constexpr Flag Avp{0, 0x02};  // kind: a point of the Avp text file, no field file
  static constexpr Flag Lad{0, 0x04};  // kind: a .LAD slab measurement
  static constexpr Flag Lje{0, 0x08};  // kind: a .LJE line
  static constexpr Flag Dpt{0, 0x10};  // a dynamic probing block
  // Byte 1.
  static constexpr Flag Prv{1, 0x02};         // samples exist
  static constexpr Flag Prvtyp{1, 0x0C};      // kinds of sample rows: PrvtypC and PrvtypOld
  static constexpr Flag Startvarde{1, 0x40};  // samples or environmental data start above 0
  static constexpr Flag Vb{1, 0x80};          // kind: a vane boring
  // Byte 2.
  static constexpr Flag Skv{2, 0x01};  // only special samples ("SKV", "PG")
  static constexpr Flag Ror{2, 0x0E};  // kind pipe: one of the Ror... values below, 0 none
  static constexpr Flag Tlk{2, 0x80};  // interpreted layers exist
  // Byte 3.
  static constexpr Flag Mykod{3, 0x80};  // a row coded "MY"; the record's mykod is its depth
  // Byte 4.
  static constexpr Flag Cpt{4, 0x01};      // a CPT block
  static constexpr Flag Ror99{4, 0x02};    // the pipe's status code is "99"
  static constexpr Flag VattenF{4, 0x20};  // a water-loss block
  static constexpr Flag Mil{4, 0x40};      // environmental data exist
  // Byte 5: the sounding method blocks.
  static constexpr Flag Dreie{5, 0x01};      // rotary sounding
  static constexpr Flag Enkel{5, 0x02};      // simple sounding
  static constexpr Flag Dtrykk{5, 0x04};     // rotary pressure sounding
  static constexpr Flag Ram{5, 0x08};        // ram sounding
  static constexpr Flag Total{5, 0x10};      // total sounding
  static constexpr Flag Fjell{5, 0x20};      // rock control
  static constexpr Flag Prvvanlig{5, 0x40};  // plain sample rows, or rows coded "SKV"
  static constexpr Flag Karnborr{5, 0x80};   // core drilling
  // Byte 6.
  static constexpr Flag Mtntyp{6, 0x1F};     // 1 + index of the series type, 0 none
  static constexpr Flag Kommentar{6, 0x20};  // the document has a comment text
  static constexpr Flag Lutande{6, 0x40};    // inclined: the angle is not 90 degrees

  // Values of the piece Ror, as the byte masked with it.
  static constexpr int RorPz = 2;     // a pipe of type "PZ", or a Gvr document
  static constexpr int RorGv = 4;     // type "GV"
  static constexpr int RorGd = 6;     // type "GD"
  static constexpr int RorMtn = 8;    // a measurement series
  static constexpr int RorStud = 12;  // a settlement stud, type "DB" or "MP"
  // Bits of the piece Prvtyp.
  static constexpr int PrvtypOld = 4;  // cleared by the sample status, never set
  static constexpr int PrvtypC = 8;    // a sample row coded "CI", "CA" or "CC"

  // Whether any bit of `f` is set.
  bool Test(Flag f) const { return (b[f.byte] & f.mask) != 0; }
  void Set(Flag f) { b[f.byte] = static_cast<uint8_t>(b[f.byte] | f.mask); }
  void Clear(Flag f) { b[f.byte] = static_cast<uint8_t>(b[f.byte] & ~f.mask); }
  void SetTo(Flag f, bool on) { on ? Set(f) : Clear(f); }
  // The bits of a piece as they lie in the byte, not shifted: Ror gives 0, 2,
  // 4, 6, 8 or 12, Mtntyp 0 to 31.
  int Get(Flag f) const { return b[f.byte] & f.mask; }
  // Replaces the bits of a piece by those of `value` (not shifted).
  void SetValue(Flag f, int value) {
    b[f.byte] = static_cast<uint8_t>((b[f.byte] & ~f.mask) | (value & f.mask));
  }
};

static_assert(sizeof(bhbit) == 7 && std::is_trivially_copyable_v<bhbit>);

// One investigation point.
struct bhdbstype {
  wchar_t id[9];  // the name in capitals, at most 8 characters; empty: deleted
  bhbit bit;
  double x;
  double y;
  double z;     // ground level
  double sekt;  // chainage; CKorvoDbs::m_sek_noll for none
  double avst;  // distance from the line
  union {
    float djup;      // greatest depth, for every kind but Avp
    wchar_t kod[4];  // kind Avp: the point's code, at most 3 characters
  };
  int16_t stopp;   // stop code of the deepest method
  int32_t symbol;  // map symbol number, -1 when none is stored
  double berg;     // metres in rock
  double mykod;    // depth of the row coded "MY", when bit Mykod is set
  wchar_t datum[11];
  int32_t pos;  // byte offset of the record in the file; 0: never written
};

static_assert(std::is_trivially_copyable_v<bhdbstype>);

// The project header.
struct korvoprjdattype {
  wchar_t Dbsver[6];     // the whole part of the format version, "3.0"
  wchar_t Uppdnamn[31];  // name of the assignment ("Contractor:")
  wchar_t Prjnamn[36];
  wchar_t Uppdnr[13];  // number of the assignment ("Project No:")
  wchar_t Datum[11];   // "dd.mm.yyyy"
  wchar_t Rad1[36];    // free lines ("Remarks :")
  wchar_t Rad2[36];
  wchar_t Handl[21];   // person in charge ("Designer :")
  wchar_t Ritare[21];  // who drew ("Drawings :")
  wchar_t Ksyst[5];    // coordinate system: "LOK", "RAK" or "NGO"
  int16_t antbh;       // records of kind Bh
  int16_t antavp;      // of kind Avp
  int16_t reserv1;
  int16_t antrader;  // deleted records still in the file
  int16_t antror;    // pipes
  int16_t antvb;     // of kind Vb
  double minsekt;
  double maxsekt;
  double minx;
  double maxx;
  double miny;
  double maxy;
  double minz;
  double maxz;
  double verdel;      // version = number of Dbsver + verdel
  int32_t uppdnrfil;  // update number, raised by every writer
  uint16_t avskilj;   // the project's separator character, '+' or '/'
  int16_t antmil;     // records with bit Mil
  int16_t antlje;     // of kind Lje
  int16_t antlad;     // of kind Lad
  int16_t harguid;    // 1: guid holds the project's GUID
  double reserv2;
  int32_t slutpos;  // file offset where the next new record goes
  int32_t reserv3[9];
  // The project's GUID: the first group, the two 16-bit groups, and the
  // eight bytes of the last two groups, one word each.
  uint32_t guid[11];
};

static_assert(std::is_trivially_copyable_v<korvoprjdattype>);

// The caller's entry of the project in its archive. The library reads these
// three fields only; their widths are those of the header fields they are
// copied to.
struct arktype {
  wchar_t namn[36];    // the project's name, to Prjnamn
  wchar_t nummer[13];  // the assignment number, to Uppdnr
  wchar_t datum[11];   // the date, to Datum
};

#endif  // KORVO_DATABASE_DBS_RECORDS_H_
