// A road line: the polyline of a road's centre line, along which points are
// given a chainage and a distance. See doc/road_line.md for the geometry.
#ifndef KORVO_CONTEXT_VAGLINJE_H_
#define KORVO_CONTEXT_VAGLINJE_H_

#include "korvo/export.h"
#include "korvo/foundation/list0.h"

// One point of a road line, in the order a measurement file's "LINJE" block
// stores it. x is northing and y easting, as in the Nordic grids.
struct kovltype {
  double x;
  double y;
  double z;
  // Chainage of the point as the road's designer gives it. Only the first
  // point's value counts: it is the chainage at which the line begins.
  double sekt;
};

class KORVO_EXPORT CVaglinje : public list0<kovltype> {
 public:
  CVaglinje();
  ~CVaglinje() override;

  // Whether the point (x, y) lies within the area of the line: the band of
  // the perpendiculars to the line, between the perpendiculars at its two
  // ends, of any width. Returns 0 when it does, 1 when it lies before the
  // start or beyond the end, -1 when the line has fewer than two distinct
  // points. Non-null outputs receive the chainage and the signed distance as
  // Vagstv gives them, inside the area or not. `val` changes nothing.
  int PktIomr(double x, double y, double* profil, double* avst, int val);

  // The chainage of the point's foot on the line and its distance from the
  // line, positive to the right seen in the direction of rising chainage.
  // Before the start and beyond the end the first and last segments are
  // extended, so chainage runs below the start or above the end. Returns 0;
  // -1, with the outputs untouched, when the line has fewer than two distinct
  // points. `val` changes nothing.
  int Vagstv(double x, double y, double* profil, double* avst, int val);
};

#endif  // KORVO_CONTEXT_VAGLINJE_H_
