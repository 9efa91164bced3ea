// The statuses a project can have ("Active", "Avslutat", ...), with the one
// a project holds now. The names come from the language resources; until a
// language module is read, the Swedish names of the library's own resources
// stand in.
#ifndef KORVO_CONTEXT_PROJEKT_STATUS_H_
#define KORVO_CONTEXT_PROJEKT_STATUS_H_

#include <string>

#include "korvo/export.h"
#include "korvo/foundation/list0.h"

namespace korvo {
// A loaded language module (an instance handle on Windows).
using ModuleHandle = void*;
}  // namespace korvo

// One status: its code, then its name.
struct projektstatustype {
  int kod;
  wchar_t namn[80];
};

class KORVO_EXPORT CProjektStatus : public list0<projektstatustype> {
 public:
  // The codes of the statuses. A code is also the status's place in the
  // list, which is how the property page selects it.
  enum Kod { kAktiv = 0, kAvslutat, kArkiverat, kLevererat, kVilande, kSkaArkiveras, kOkand };
  // The string number of the name of code 0 in a language module; the others
  // follow in the order of the codes.
  static constexpr unsigned kForstaNamnId = 5006;

  CProjektStatus();
  ~CProjektStatus() override;

  // Names the language module the names are read from; null for none.
  void SetHandle(korvo::ModuleHandle lang);
  korvo::ModuleHandle GetHandle() const { return sprak_; }
  // Fills the list, one row for each code in order, dropping what it held.
  void Load();
  // The name of the status held in `kod`; the name of kOkand when no row has
  // that code, empty before Load.
  std::wstring GetStatus();
  // The code of the status named `name`, without regard to case; -1 when no
  // status has that name.
  int Find(const std::wstring& name);

  // The code of the status the project holds; kOkand in a new object.
  int kod;
  // Who created the project, shown and saved beside the status.
  std::wstring text;

 private:
  korvo::ModuleHandle sprak_ = nullptr;
};

#endif  // KORVO_CONTEXT_PROJEKT_STATUS_H_
