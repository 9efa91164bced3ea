// The GUID register: while a project database is rebuilt from its field files,
// every GUID that comes by (the project's, each point's, each method block's
// and each other part's) is entered here with what it belongs to, so that the
// same GUID on two different things can be found by sorting the register.
#ifndef KORVO_DATABASE_DBS_GUID_H_
#define KORVO_DATABASE_DBS_GUID_H_

#include <string_view>

#include "korvo/export.h"
#include "korvo/foundation/list0.h"

// One entry of the register.
struct guidtype {
  int metod;         // what the GUID belongs to: a korvo::Guid... code below
  wchar_t guid[37];  // the GUID in its text form
  wchar_t id[9];     // name of the investigation point; empty for the project
};

class KORVO_EXPORT CDbsGUID : public list0<guidtype> {
 public:
  // An empty register. Entries are added with Ny(1, nullptr) and filled
  // through pael, or with korvo::RegisterGuid.
  CDbsGUID() = default;
  ~CDbsGUID() override = default;

 protected:
  // Orders by `guid` as point names are ordered: key 1 by the number the
  // text begins with (99999999 when none), ascending, then by the text;
  // key -1 the other way round. Any other key gives 0. Equal GUIDs end up
  // side by side, which is all that this order is for.
  int Sortval(int key) override;
};

namespace korvo {

// What a register entry belongs to. The block codes are those of the .SND
// file; the project's own entry has a code of its own.
enum GuidOwner : int {
  kGuidCpt = 7,
  kGuidKarnborr = 13,
  kGuidVattenF = 14,
  kGuidVb = 20,
  kGuidDreie = 21,
  kGuidEnkel = 22,
  kGuidDtrykk = 23,
  kGuidRam = 24,
  kGuidTotal = 25,
  kGuidFjell = 26,
  kGuidDpt = 35,
  kGuidPrv = 40,
  kGuidMil = 45,
  kGuidGvr = 50,
  kGuidBorehole = 97,
  kGuidProject = 1000,
};

// The name under which the fault log prints an entry's `metod`; "Unknown
// method" for the project's own entry and for any code without a name.
KORVO_EXPORT const wchar_t* GuidMethodName(int metod);

// Appends an entry to `reg`, the texts cut to their fields.
KORVO_EXPORT void RegisterGuid(CDbsGUID& reg, int metod, std::wstring_view guid,
                               std::wstring_view id);

// The order of point names under Sortval key 1 or -1, for any two texts:
// 1 when `left` goes before `right`, else 0 (also for any other key). Both
// are compared in capitals, by the number they begin with ("%ld", 99999999
// when none) and then by their 16-bit code units. Texts longer than 40
// characters are compared on their first 40.
KORVO_EXPORT int NameOrder(const wchar_t* left, const wchar_t* right, int key);

}  // namespace korvo

#endif  // KORVO_DATABASE_DBS_GUID_H_
