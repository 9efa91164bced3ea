// The paths of one project: its directory, its database, the directory of its
// field files, and the names of the files a project holds.
#ifndef KORVO_CONTEXT_PROJ_PATH_H_
#define KORVO_CONTEXT_PROJ_PATH_H_

#include <string>

#include "korvo/export.h"

class KORVO_EXPORT CProjPath {
 public:
  CProjPath();
  CProjPath(const CProjPath&) = default;
  CProjPath& operator=(const CProjPath&) = default;
  virtual ~CProjPath();

  // Fills every member from a project directory (a trailing separator is
  // dropped). Returns 0.
  int SetPath(const wchar_t* dir);

  // The project directory, without a separator at the end.
  std::wstring ProjKat;
  // The project database: ProjKat, separator, AutoDbsNamn.
  std::wstring DbsFil;
  // The field files' directory: ProjKat, separator, AutoDbfKat.
  std::wstring DbfKat;
  // The text file of the points of kind Avp: ProjKat, separator, AvpNamn.
  std::wstring AvpFil;

  // File and directory names of a project; see doc/project_files.md. They are
  // names only, joined to ProjKat with the path separator.
  static const wchar_t* const AutoDbsNamn;   // "Korvodal.dbs"
  static const wchar_t* const AutoDbkNamn;   // "Korvodal.dbk", the lock file
  static const wchar_t* const AutoParNamn;   // "KORVO", the settings section
  static const wchar_t* const AutoDbfKat;    // "Dbf"
  static const wchar_t* const AvpNamn;       // "Avp.txt"
  static const wchar_t* const Gvrref;        // "Gvrref.txt"
  static const wchar_t* const KlippDbkNamn;  // "Klippvik.dbk"
  static const wchar_t* const KlippDbfKat;   // "Klipp"
};

#endif  // KORVO_CONTEXT_PROJ_PATH_H_
