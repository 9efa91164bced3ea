#include "korvo/context/vaglinje.h"

#include <cmath>
#include <limits>

namespace {

// Where a point falls relative to the line.
struct Station {
  bool found = false;   // the line has a segment of positive length
  bool inside = false;  // the foot lies between the two ends
  double profil = 0;
  double avst = 0;
};

struct Segment {
  double ax, ay, dx, dy;  // start and direction
  double length;
  double start_chainage;
};

// The nearest point of a segment to (x, y), as the parameter along it
// (0 at the start, 1 at the end, unclamped) and the squared distance to the
// clamped foot.
struct Projection {
  double t;
  double dist2;
};

Projection Project(const Segment& s, double x, double y) {
  const double px = x - s.ax, py = y - s.ay;
  const double t = (px * s.dx + py * s.dy) / (s.length * s.length);
  const double c = std::fmin(1.0, std::fmax(0.0, t));
  const double ex = px - c * s.dx, ey = py - c * s.dy;
  return {t, ex * ex + ey * ey};
}

// Positive to the right of the direction of travel. With x northing and y
// easting the cross product of direction and offset is positive there.
double SideOf(const Segment& s, double x, double y) {
  return s.dx * (y - s.ay) - s.dy * (x - s.ax);
}

// Walks the segments of positive length and keeps the nearest one.
Station Locate(list0<kovltype>& line, double x, double y) {
  Station st;
  if (line.Home() != 0) return st;
  double prev_x = line.pael->x, prev_y = line.pael->y;
  double chainage = line.pael->sekt;

  Segment best{};
  Projection best_p{0, std::numeric_limits<double>::infinity()};
  int segments = 0, best_index = -1;
  while (line++) {
    const double dx = line.pael->x - prev_x, dy = line.pael->y - prev_y;
    const double length = std::hypot(dx, dy);
    if (length > 0) {
      const Segment seg{prev_x, prev_y, dx, dy, length, chainage};
      const Projection p = Project(seg, x, y);
      // Of equally near segments the first keeps the point: the lower chainage.
      if (p.dist2 < best_p.dist2) {
        best = seg;
        best_p = p;
        best_index = segments;
      }
      ++segments;
      chainage += length;
    }
    prev_x = line.pael->x;
    prev_y = line.pael->y;
  }
  if (best_index < 0) return st;  // no segment, or a point that is not a number

  st.found = true;
  const bool before = best_index == 0 && best_p.t < 0;
  const bool beyond = best_index == segments - 1 && best_p.t > 1;
  st.inside = !before && !beyond;
  const double side = SideOf(best, x, y);
  if (st.inside) {
    // Inside, the distance is to the nearest point of the line; on the outer
    // side of a bend that is the corner itself.
    const double t = std::fmin(1.0, std::fmax(0.0, best_p.t));
    st.profil = best.start_chainage + t * best.length;
    st.avst = side == 0 ? 0.0 : std::copysign(std::sqrt(best_p.dist2), side);
  } else {
    // Beyond an end the end segment goes on straight: the distance is
    // measured square to it.
    st.profil = best.start_chainage + best_p.t * best.length;
    st.avst = side / best.length;
  }
  return st;
}

}  // namespace

CVaglinje::CVaglinje() = default;
CVaglinje::~CVaglinje() = default;

int CVaglinje::PktIomr(double x, double y, double* profil, double* avst, int val) {
  (void)val;
  const Station st = Locate(*this, x, y);
  if (!st.found) return -1;
  if (profil != nullptr) *profil = st.profil;
  if (avst != nullptr) *avst = st.avst;
  return st.inside ? 0 : 1;
}

int CVaglinje::Vagstv(double x, double y, double* profil, double* avst, int val) {
  (void)val;
  const Station st = Locate(*this, x, y);
  if (!st.found) return -1;
  if (profil != nullptr) *profil = st.profil;
  if (avst != nullptr) *avst = st.avst;
  return 0;
}
