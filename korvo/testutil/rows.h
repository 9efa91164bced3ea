// The rows of a list class as texts, front to back, so that a test compares
// every field it cares about of every row in one assertion.
#ifndef KORVO_TESTUTIL_ROWS_H_
#define KORVO_TESTUTIL_ROWS_H_

#include <string>
#include <vector>

namespace korvo::test {

using Texts = std::vector<std::wstring>;

// `describe` turns one record into its text.
template <class List, class Describe>
Texts EachRow(List& list, Describe describe) {
  Texts out;
  if (list.Home() == 0) {
    do out.push_back(describe(*list.pael));
    while (list++);
  }
  return out;
}

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_ROWS_H_
