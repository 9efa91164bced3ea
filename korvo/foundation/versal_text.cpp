#include "korvo/foundation/versal_text.h"

namespace {

// Beyond a-z only six values change: small Scandinavian letters of the 8-bit
// code pages as they look after a widening that kept the sign (0xE5 becomes
// 0xFFE5). Keys from such text must still compare equal; proper U+00E5 and
// its kin stay as they are, since existing keys were made without them.
wchar_t Versal(wchar_t c) {
  if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - L'a' + L'A');
  switch (static_cast<unsigned long>(c)) {
    case 0xFFE5:
      return static_cast<wchar_t>(0xFFC5);
    case 0xFFE6:
      return static_cast<wchar_t>(0xFFC6);
    case 0xFFF8:
      return static_cast<wchar_t>(0xFFD8);
    case 0xFF86:
      return static_cast<wchar_t>(0xFF8F);
    case 0xFF91:
      return static_cast<wchar_t>(0xFF92);
    case 0xFF9B:
      return static_cast<wchar_t>(0xFFED);
    default:
      return c;
  }
}

}  // namespace

void VersalText(wchar_t* text) {
  if (text == nullptr) return;
  for (; *text != L'\0'; ++text) *text = Versal(*text);
}

void VersalText(std::wstring& text) {
  for (wchar_t& c : text) c = Versal(c);
}
