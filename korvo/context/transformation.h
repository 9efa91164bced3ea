// The plane and height coordinate systems a project can be given, each with
// its EPSG number as its reference number.
//
// A project stores the index of its systems in these tables (Info.prj), so a
// row once given never moves: new systems are appended at the end.
#ifndef KORVO_CONTEXT_TRANSFORMATION_H_
#define KORVO_CONTEXT_TRANSFORMATION_H_

#include <array>

#include "korvo/export.h"

class KORVO_EXPORT CTransformation {
 public:
  // The highest valid index of the plane and the height tables.
  static constexpr int SIZE = 58;
  static constexpr int SIZEHEIGHT = 9;

  // EPSG number and display name of each plane system.
  static const std::array<int, SIZE + 1> nrSystem;
  static const std::array<const wchar_t*, SIZE + 1> defSystem;
  // EPSG number and display name of each height system.
  static const std::array<int, SIZEHEIGHT + 1> nrSystemHeight;
  static const std::array<const wchar_t*, SIZEHEIGHT + 1> defSystemHeight;
};

#endif  // KORVO_CONTEXT_TRANSFORMATION_H_
