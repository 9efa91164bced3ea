#include "korvo/soundings/cpt_presentation.h"

#include <cmath>
#include <string>
#include <string_view>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/platform/env.h"
#include "korvo/platform/file.h"

namespace {

constexpr unsigned kOpenWrite = 0x1001;
// What each reading adds to the numbers of lines 1 to 6, so that a value
// written with four decimals is not cut to the whole number below it.
constexpr double kReadNudge = 0.0001;
// The settings stand on the first seven lines. Line 8 and on, up to a marker,
// are passed over; from the 100th line on, a file without a marker has its
// rows there.
constexpr int kFirstRowLine = 99;

// `value` cut towards zero to a whole number, held to the range of an int.
int WholeNumber(double value) {
  if (!(value > -2147483648.0)) return value < 0 ? -2147483647 - 1 : 0;
  if (value >= 2147483647.0) return 2147483647;
  return static_cast<int>(value);
}

}  // namespace

namespace korvo {

std::wstring CptFileName(const std::wstring& namn) {
  return namn.substr(0, namn.size() >= 4 ? namn.size() - 4 : 0) + L".cpt";
}

}  // namespace korvo

int CKorvoCptPresentation::Init(const std::wstring& namn) {
  const std::wstring path = korvo::CptFileName(namn);
  if (!korvo::FileExists(path)) return -1;
  CStdioFile file;
  if (!file.Open(path.c_str(), 0)) return -1;
  std::wstring line;
  for (int number = 0; file.ReadString(line); ++number) {
    std::wstring_view numbers = line;
    if (number == 0) numbers = korvo::SplitGuidToken(line, guid);
    if (korvo::IsMarker(line)) {
      number = kFirstRowLine - 1;
      continue;
    }
    double a = 0.0;
    double b = 0.0;
    korvo::Scan(numbers, L"%lf %lf", &a, &b);
    switch (number) {
      case 0:
        rad1a = WholeNumber(a + kReadNudge);
        rad1b = WholeNumber(b + kReadNudge);
        break;
      case 1:
        rad2a = a + kReadNudge;
        rad2b = b + kReadNudge;
        break;
      case 2:
        rad3a = a + kReadNudge;
        rad3b = b + kReadNudge;
        break;
      case 3:
        rad4a = WholeNumber(a + kReadNudge);
        rad4b = WholeNumber(b + kReadNudge);
        break;
      case 4:
        rad5a = WholeNumber(a + kReadNudge);
        rad5b = b;
        break;
      case 5:
        rad6a = WholeNumber(a + kReadNudge);
        rad6b = WholeNumber(b + kReadNudge);
        break;
      case 6:
        korvo::Scan(numbers, L"%lf %lf %lf %lf", &rad7a, &rad7b, &rad7c, &rad7d);
        break;
      default:
        if (number >= kFirstRowLine) {
          cptpresentationtype row{};
          if (korvo::Scan(numbers, L"%lf %lf %lf", &row.varde1, &row.varde2, &row.varde3) == 3) {
            Ny(1, &row);
          }
        }
        break;
    }
  }
  file.Close();
  return 0;
}

int CKorvoCptPresentation::Uppdat(const std::wstring& namn, int skapa) {
  const std::wstring path = korvo::CptFileName(namn);
  // An unchanged presentation makes no new file.
  if (skapa == 0 && !korvo::FileExists(path)) return -1;
  CStdioFile file;
  if (!file.Open(path.c_str(), kOpenWrite)) return -1;
  korvo::EnsureGuid(guid);
  std::wstring out;
  korvo::AppendFormat(out, L"%.4lf %.4lf GUID %s\n", static_cast<double>(rad1a),
                      static_cast<double>(rad1b), guid);
  korvo::AppendFormat(out, L"%.4lf %.4lf\n%.4lf %.4lf\n", rad2a, rad2b, rad3a, rad3b);
  korvo::AppendFormat(out, L"%.4lf %.4lf\n%.4lf %.4lf\n%.4lf %.4lf\n", static_cast<double>(rad4a),
                      static_cast<double>(rad4b), static_cast<double>(rad5a), rad5b,
                      static_cast<double>(rad6a), static_cast<double>(rad6b));
  korvo::AppendFormat(out, L"%.4lf %.4lf %.4lf %.4lf\n*\n", rad7a, rad7b, rad7c, rad7d);
  if (Home() == 0) {
    do {
      korvo::AppendFormat(out, L"%.2lf %.1lf %.3lf\n", pael->varde1, pael->varde2, pael->varde3);
    } while (operator++(0) != nullptr);
  }
  out += L"*\n";
  file.WriteString(out);
  const bool written = file.Flush();
  file.Close();
  return written ? 0 : -1;
}
