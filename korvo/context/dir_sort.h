// A directory listing as a record list: the names of the regular files that
// match a mask, walked with Home and operator++ like every other list.
#ifndef KORVO_CONTEXT_DIR_SORT_H_
#define KORVO_CONTEXT_DIR_SORT_H_

#include <string_view>

#include "korvo/export.h"
#include "korvo/foundation/list0.h"

// One file of a listing.
struct dirsorttype {
  // The file name without directory. 260 units hold the longest name a
  // Windows share allows.
  wchar_t namn[260];
};

class KORVO_EXPORT CDirSort : public list0<dirsorttype> {
 public:
  CDirSort();
  ~CDirSort() override;

  // Lists the regular files that match `pattern`: a directory, the path
  // separator and a mask in which "*" stands for any run of characters and
  // "?" for one. Names match without regard to case, and a mask ending in
  // ".*" also takes a name without an extension, as on Windows ("*.*" takes
  // every file). Rows already held are dropped first; the new rows are in
  // order of their names without regard to case, and the cursor stands on
  // the first. The four numbers are accepted for the callers' sake and narrow
  // nothing: every matching file is listed.
  // Returns the number of files listed, or -1 when the directory is missing.
  int Init(const wchar_t* pattern, int a, int b, int c, int d);
};

namespace korvo {

// Whether `name` matches `mask` by the rules of CDirSort::Init.
KORVO_EXPORT bool MatchFileMask(std::wstring_view mask, std::wstring_view name);

}  // namespace korvo

#endif  // KORVO_CONTEXT_DIR_SORT_H_
