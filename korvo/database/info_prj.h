// The project information file Info.prj: company, document, free text lines,
// and the project's coordinate system with its geographic bounds. The object
// reads the file when it is made; the property pages change its members and
// Uppdat writes the file back. See doc/info_prj.md.
#ifndef KORVO_DATABASE_INFO_PRJ_H_
#define KORVO_DATABASE_INFO_PRJ_H_

#include <string>

#include "korvo/export.h"
#include "korvo/foundation/stdio_file_mem.h"

class CProjPath;

class KORVO_EXPORT CInfoPrj {
 public:
  // With a project: reads its Info.prj, creating the file empty when the
  // project has none. What the file does not hold keeps its initial value:
  // texts empty, numbers 0, ksyst and hsyst -1. With null nothing is read.
  explicit CInfoPrj(CProjPath* proj);
  virtual ~CInfoPrj();
  CInfoPrj(const CInfoPrj&) = delete;
  CInfoPrj& operator=(const CInfoPrj&) = delete;

  // Writes all twelve lines of the file, replacing it. Returns 0; -1 when
  // there is no project or the file cannot be created. Leaves andrad alone.
  int Uppdat();

  // The EPSG number of plane system i; -1 when i is not in the table.
  static int EPGSsystem(int i);
  // The EPSG number of height system i; -1 when i is not in the table.
  static int EPGSsystemHeight(int i);
  // The name of plane system i; one blank when i is not in the table.
  static std::wstring TextSystem(int i);

  // Set by the property pages when something was edited.
  int andrad;
  std::wstring foretag;
  // Path of the project's document.
  std::wstring dokument;
  std::wstring textrad[3];
  double latmin, latmax, lonmin, lonmax;
  double latmedel, lonmedel;
  // Index of the plane and the height system in CTransformation's tables, -1
  // when unknown. A file may hold an index beyond the tables; it is kept.
  int ksyst;
  int hsyst;
  std::wstring hsysttext;
  std::wstring ksysttext;
  std::wstring transrad[3];
  // Not owned; may be null.
  CProjPath* proj;
  CStdioFileMem fil;

 private:
  std::wstring FilePath() const;
  void Read();
};

#endif  // KORVO_DATABASE_INFO_PRJ_H_
