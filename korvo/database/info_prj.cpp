#include "korvo/database/info_prj.h"

#include "korvo/context/file_names.h"
#include "korvo/context/proj_path.h"
#include "korvo/context/transformation.h"
#include "korvo/foundation/format.h"
#include "korvo/platform/env.h"

namespace {

constexpr unsigned kRead = 0x0000;
constexpr unsigned kCreateWrite = 0x1001;

constexpr const wchar_t* kBoundsFormat = L"%lf %lf %lf %lf %d %d";
constexpr const wchar_t* kMeansFormat = L"%lf %lf";

}  // namespace

CInfoPrj::CInfoPrj(CProjPath* p)
    : andrad(0),
      latmin(0),
      latmax(0),
      lonmin(0),
      lonmax(0),
      latmedel(0),
      lonmedel(0),
      ksyst(-1),
      hsyst(-1),
      proj(p) {
  if (proj == nullptr) return;
  const std::wstring path = FilePath();
  if (!korvo::FileExists(path)) {
    // The first look at a project leaves it an (empty) information file.
    if (fil.Open(path.c_str(), kCreateWrite)) fil.Close();
    return;
  }
  if (!fil.Open(path.c_str(), kRead)) return;
  Read();
  fil.Close();
}

CInfoPrj::~CInfoPrj() = default;

std::wstring CInfoPrj::FilePath() const {
  return korvo::Format(L"%s%s%s", proj->ProjKat, korvo::kPathSeparator, korvo::kInfoFile);
}

void CInfoPrj::Read() {
  std::wstring line;
  // A line that is not there leaves its member as it is.
  const auto next = [&](std::wstring* out) {
    if (!fil.ReadString(line)) return false;
    if (out != nullptr) *out = line;
    return true;
  };
  next(&foretag);
  next(&dokument);
  for (std::wstring& t : textrad) next(&t);
  if (next(nullptr)) {
    // Fields are taken in order as far as they can be read; an older file
    // stops after the bounds, or after ksyst.
    const int fields =
        korvo::Scan(line, kBoundsFormat, &latmin, &latmax, &lonmin, &lonmax, &ksyst, &hsyst);
    if (fields < 6) hsyst = -1;
    if (fields < 5) ksyst = -1;
  }
  next(&ksysttext);
  next(&hsysttext);
  for (std::wstring& t : transrad) next(&t);
  if (next(nullptr)) {
    korvo::Scan(line, kMeansFormat, &latmedel, &lonmedel);
  } else {
    // Files from before the means were kept: the middle of the bounds.
    latmedel = (latmin + latmax) / 2;
    lonmedel = (lonmin + lonmax) / 2;
  }
}

int CInfoPrj::Uppdat() {
  if (proj == nullptr) return -1;
  const std::wstring path = FilePath();
  if (!fil.Open(path.c_str(), kCreateWrite)) return -1;
  std::wstring out;
  const auto text_line = [&](const std::wstring& t) { korvo::AppendFormat(out, L"%s\n", t); };
  text_line(foretag);
  text_line(dokument);
  for (const std::wstring& t : textrad) text_line(t);
  korvo::AppendFormat(out, L"%lf %lf %lf %lf %d %d\n", latmin, latmax, lonmin, lonmax, ksyst,
                      hsyst);
  text_line(ksysttext);
  text_line(hsysttext);
  for (const std::wstring& t : transrad) text_line(t);
  korvo::AppendFormat(out, L"%lf %lf\n", latmedel, lonmedel);
  fil.WriteString(out);
  fil.Close();
  return 0;
}

int CInfoPrj::EPGSsystem(int i) {
  return i >= 0 && i <= CTransformation::SIZE ? CTransformation::nrSystem[i] : -1;
}

int CInfoPrj::EPGSsystemHeight(int i) {
  return i >= 0 && i <= CTransformation::SIZEHEIGHT ? CTransformation::nrSystemHeight[i] : -1;
}

std::wstring CInfoPrj::TextSystem(int i) {
  return i >= 0 && i <= CTransformation::SIZE ? CTransformation::defSystem[i] : L" ";
}
