#include "korvo/database/dbs_codec.h"

#include <cstring>

#include "korvo/database/dbs_format.h"
#include "korvo/foundation/coding.h"

namespace korvo {
namespace {

using dbs::Field;

// Small writers and readers of one field at its place.
template <size_t N>
void PutText(uint8_t* base, Field f, const wchar_t (&text)[N]) {
  EncodeFixedText(base + f.offset, f.width, FieldText(text));
}

template <size_t N>
void GetText(const uint8_t* base, Field f, wchar_t (&text)[N]) {
  DecodeFixedText(base + f.offset, f.width, text);
}

void PutInt16(uint8_t* base, Field f, int16_t v) {
  EncodeFixed16(base + f.offset, static_cast<uint16_t>(v));
}

int16_t GetInt16(const uint8_t* base, Field f) {
  return static_cast<int16_t>(DecodeFixed16(base + f.offset));
}

void PutInt32(uint8_t* base, Field f, int32_t v) {
  EncodeFixed32(base + f.offset, static_cast<uint32_t>(v));
}

int32_t GetInt32(const uint8_t* base, Field f) {
  return static_cast<int32_t>(DecodeFixed32(base + f.offset));
}

void PutDouble(uint8_t* base, Field f, double v) {
  EncodeDouble(base + f.offset, v);
}

double GetDouble(const uint8_t* base, Field f) {
  return DecodeDouble(base + f.offset);
}

void EncodeHeaderTexts(const korvoprjdattype& h, uint8_t* out) {
  namespace hd = dbs::header;
  PutText(out, hd::kDbsver, h.Dbsver);
  PutText(out, hd::kUppdnamn, h.Uppdnamn);
  PutText(out, hd::kPrjnamn, h.Prjnamn);
  PutText(out, hd::kUppdnr, h.Uppdnr);
  PutText(out, hd::kDatum, h.Datum);
  PutText(out, hd::kRad1, h.Rad1);
  PutText(out, hd::kRad2, h.Rad2);
  PutText(out, hd::kHandl, h.Handl);
  PutText(out, hd::kRitare, h.Ritare);
  PutText(out, hd::kKsyst, h.Ksyst);
}

void DecodeHeaderTexts(const uint8_t* in, korvoprjdattype* h) {
  namespace hd = dbs::header;
  GetText(in, hd::kDbsver, h->Dbsver);
  GetText(in, hd::kUppdnamn, h->Uppdnamn);
  GetText(in, hd::kPrjnamn, h->Prjnamn);
  GetText(in, hd::kUppdnr, h->Uppdnr);
  GetText(in, hd::kDatum, h->Datum);
  GetText(in, hd::kRad1, h->Rad1);
  GetText(in, hd::kRad2, h->Rad2);
  GetText(in, hd::kHandl, h->Handl);
  GetText(in, hd::kRitare, h->Ritare);
  GetText(in, hd::kKsyst, h->Ksyst);
}

void EncodeHeaderNumbers(const korvoprjdattype& h, uint8_t* out) {
  namespace hd = dbs::header;
  PutInt16(out, hd::kAntbh, h.antbh);
  PutInt16(out, hd::kAntavp, h.antavp);
  PutInt16(out, hd::kReserv1, h.reserv1);
  PutInt16(out, hd::kAntrader, h.antrader);
  PutInt16(out, hd::kAntror, h.antror);
  PutInt16(out, hd::kAntvb, h.antvb);
  PutDouble(out, hd::kMinsekt, h.minsekt);
  PutDouble(out, hd::kMaxsekt, h.maxsekt);
  PutDouble(out, hd::kMinx, h.minx);
  PutDouble(out, hd::kMaxx, h.maxx);
  PutDouble(out, hd::kMiny, h.miny);
  PutDouble(out, hd::kMaxy, h.maxy);
  PutDouble(out, hd::kMinz, h.minz);
  PutDouble(out, hd::kMaxz, h.maxz);
  PutDouble(out, hd::kVerdel, h.verdel);
  PutInt32(out, hd::kUppdnrfil, h.uppdnrfil);
  EncodeFixed16(out + hd::kAvskilj.offset, h.avskilj);
  PutInt16(out, hd::kAntmil, h.antmil);
  PutInt16(out, hd::kAntlje, h.antlje);
  PutInt16(out, hd::kAntlad, h.antlad);
  PutInt16(out, hd::kHarguid, h.harguid);
  EncodeFixed16(out + hd::kUnused.offset, 0);
  PutDouble(out, hd::kReserv2, h.reserv2);
  PutInt32(out, hd::kSlutpos, h.slutpos);
  for (int i = 0; i < 9; ++i) {
    EncodeFixed32(out + hd::kReserv3.offset + 4 * i, static_cast<uint32_t>(h.reserv3[i]));
  }
  for (int i = 0; i < 11; ++i) EncodeFixed32(out + hd::kGuid.offset + 4 * i, h.guid[i]);
}

void DecodeHeaderNumbers(const uint8_t* in, korvoprjdattype* h) {
  namespace hd = dbs::header;
  h->antbh = GetInt16(in, hd::kAntbh);
  h->antavp = GetInt16(in, hd::kAntavp);
  h->reserv1 = GetInt16(in, hd::kReserv1);
  h->antrader = GetInt16(in, hd::kAntrader);
  h->antror = GetInt16(in, hd::kAntror);
  h->antvb = GetInt16(in, hd::kAntvb);
  h->minsekt = GetDouble(in, hd::kMinsekt);
  h->maxsekt = GetDouble(in, hd::kMaxsekt);
  h->minx = GetDouble(in, hd::kMinx);
  h->maxx = GetDouble(in, hd::kMaxx);
  h->miny = GetDouble(in, hd::kMiny);
  h->maxy = GetDouble(in, hd::kMaxy);
  h->minz = GetDouble(in, hd::kMinz);
  h->maxz = GetDouble(in, hd::kMaxz);
  h->verdel = GetDouble(in, hd::kVerdel);
  h->uppdnrfil = GetInt32(in, hd::kUppdnrfil);
  h->avskilj = DecodeFixed16(in + hd::kAvskilj.offset);
  h->antmil = GetInt16(in, hd::kAntmil);
  h->antlje = GetInt16(in, hd::kAntlje);
  h->antlad = GetInt16(in, hd::kAntlad);
  h->harguid = GetInt16(in, hd::kHarguid);
  h->reserv2 = GetDouble(in, hd::kReserv2);
  h->slutpos = GetInt32(in, hd::kSlutpos);
  for (int i = 0; i < 9; ++i) {
    h->reserv3[i] = static_cast<int32_t>(DecodeFixed32(in + hd::kReserv3.offset + 4 * i));
  }
  for (int i = 0; i < 11; ++i) h->guid[i] = DecodeFixed32(in + hd::kGuid.offset + 4 * i);
}

// The four bytes that hold either the depth or, for kind Avp, the code.
void EncodeDjupKod(const bhdbstype& rec, uint8_t* out) {
  const Field f = dbs::record::kDjupKod;
  if (rec.bit.Test(bhbit::Avp)) {
    PutText(out, f, rec.kod);
  } else {
    EncodeFloat(out + f.offset, rec.djup);
  }
}

void DecodeDjupKod(const uint8_t* in, bhdbstype* rec) {
  const Field f = dbs::record::kDjupKod;
  std::memset(rec->kod, 0, sizeof rec->kod);
  if (rec->bit.Test(bhbit::Avp)) {
    GetText(in, f, rec->kod);
  } else {
    rec->djup = DecodeFloat(in + f.offset);
  }
}

}  // namespace

void EncodeDbsHeader(const korvoprjdattype& header, uint8_t* out) {
  EncodeHeaderTexts(header, out);
  EncodeHeaderNumbers(header, out);
}

void DecodeDbsHeader(const uint8_t* in, korvoprjdattype* header) {
  DecodeHeaderTexts(in, header);
  DecodeHeaderNumbers(in, header);
}

void EncodeDbsRecord(const bhdbstype& rec, int size, uint8_t* out) {
  namespace rd = dbs::record;
  PutText(out, rd::kId, rec.id);
  std::memcpy(out + rd::kBit.offset, rec.bit.b, rd::kBit.width);
  PutDouble(out, rd::kX, rec.x);
  PutDouble(out, rd::kY, rec.y);
  PutDouble(out, rd::kZ, rec.z);
  PutDouble(out, rd::kSekt, rec.sekt);
  PutDouble(out, rd::kAvst, rec.avst);
  EncodeDjupKod(rec, out);
  PutInt16(out, rd::kStopp, rec.stopp);
  if (size < dbs::kLongRecordSize) return;
  PutInt32(out, rd::kSymbol, rec.symbol);
  PutDouble(out, rd::kBerg, rec.berg);
  PutDouble(out, rd::kMykod, rec.mykod);
  PutText(out, rd::kDatum, rec.datum);
}

void DecodeDbsRecord(const uint8_t* in, int size, bhdbstype* rec) {
  namespace rd = dbs::record;
  GetText(in, rd::kId, rec->id);
  std::memcpy(rec->bit.b, in + rd::kBit.offset, rd::kBit.width);
  rec->x = GetDouble(in, rd::kX);
  rec->y = GetDouble(in, rd::kY);
  rec->z = GetDouble(in, rd::kZ);
  rec->sekt = GetDouble(in, rd::kSekt);
  rec->avst = GetDouble(in, rd::kAvst);
  DecodeDjupKod(in, rec);
  rec->stopp = GetInt16(in, rd::kStopp);
  if (size < dbs::kLongRecordSize) {
    rec->symbol = -1;
    rec->berg = 0.0;
    rec->mykod = 0.0;
    std::memset(rec->datum, 0, sizeof rec->datum);
    return;
  }
  rec->symbol = GetInt32(in, rd::kSymbol);
  rec->berg = GetDouble(in, rd::kBerg);
  rec->mykod = GetDouble(in, rd::kMykod);
  GetText(in, rd::kDatum, rec->datum);
}

}  // namespace korvo
