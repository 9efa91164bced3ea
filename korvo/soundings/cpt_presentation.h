// How a cone penetration test is shown: a set of fixed numbers and a table of
// rows, kept in a small text file beside the point's .SND file, with the same
// stem and the extension ".cpt" in lower case (doc/cpt_presentation_format.md).
// The library only stores these values; the calling programs give them their
// meaning. The file is a plain text file and never goes into the memory form
// of a document.
#ifndef KORVO_SOUNDINGS_CPT_PRESENTATION_H_
#define KORVO_SOUNDINGS_CPT_PRESENTATION_H_

#include <string>

#include "korvo/export.h"
#include "korvo/foundation/list0.h"

// One row of the presentation table.
struct cptpresentationtype {
  double varde1;
  double varde2;
  double varde3;
};

class KORVO_EXPORT CKorvoCptPresentation : public list0<cptpresentationtype> {
 public:
  // The defaults below, no rows.
  CKorvoCptPresentation() = default;

  // Reads the .cpt file that belongs to `namn`, the name of the .SND file or
  // any name with a three-letter extension. 0, or -1 when the file does not
  // exist or will not open; the fields then keep what they hold. Rows are
  // appended. Each reading adds 0.0001 to the values of lines 1 to 6 before
  // the whole numbers are cut, so rad2a, rad2b, rad3a and rad3b creep up by
  // that much at every reading.
  int Init(const std::wstring& namn);

  // Writes the .cpt file that belongs to `namn`, giving the presentation a
  // GUID first if it has none. With `skapa` 0 only a file that exists already
  // is rewritten. 0, or -1 when there is no file to rewrite or it could not
  // be written.
  int Uppdat(const std::wstring& namn, int skapa);

  double rad7a = 1.0;   // line 7, first
  double rad7d = 0.0;   // line 7, fourth
  double rad7b = 0.1;   // line 7, second
  double rad7c = 0.08;  // line 7, third
  int rad4a = 10;
  int rad4b = 2;
  double rad2a = 0.1;
  double rad2b = 0.05;
  double rad3a = 0.8;
  double rad3b = 0.2;
  int rad6a = 8;
  int rad6b = 1;
  int rad5a = 1;
  double rad5b = 0.5;
  int rad1a = 10;
  int rad1b = 2;
  std::wstring guid;  // on line 1, behind the word GUID
  // Not stored: a caller sets it to 1 to have the file written with the block.
  unsigned char andrad = 0;
};

namespace korvo {

// The name of the .cpt file of `namn`: its last four characters replaced by
// ".cpt".
KORVO_EXPORT std::wstring CptFileName(const std::wstring& namn);

}  // namespace korvo

#endif  // KORVO_SOUNDINGS_CPT_PRESENTATION_H_
