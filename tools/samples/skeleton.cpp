#include "samples/skeleton.h"

#include <array>
#include <cmath>

namespace ei4::samples {

namespace {

constexpr double kRadiansPerDegree = 3.14159265 / 180;

constexpr Point kSacrum{512, 1478};  // the middle of its upper end
constexpr double kSacrumTilt = 2;

struct Level {
  double width;
  double height;
  double discBelow;
  double tilt;  ///< degrees, positive where the spine leans to the left on its way down
};

// From the fifth neck vertebra down to the fifth of the loin. The ends of the curves are the fifth and the
// twelfth of the chest (38 degrees between them) and the fourth of the loin (27 degrees from the twelfth).
constexpr std::array<Level, 20> kLevels{
    {{52, 29, 11, -2},  {54, 29, 11, -2},  {58, 31, 11, -1},  {66, 37, 11, 1},   {64, 39, 10, 5},
     {62, 40, 10, 10},  {62, 41, 10, 15},  {64, 43, 10, 19},  {66, 45, 10, 18},  {68, 46, 10, 13},
     {70, 48, 11, 6},   {74, 50, 12, -2},  {78, 53, 13, -10}, {84, 57, 15, -16}, {90, 61, 18, -19},
     {98, 65, 21, -15}, {102, 67, 23, -7}, {106, 69, 25, 2},  {112, 70, 26, 8},  {118, 68, 24, 6}}};
constexpr std::size_t kFirstOfChest = 3;
constexpr std::size_t kFirstOfLoin = 15;

constexpr std::array<Rib, 12> kRibs{{{136, 22, 2.5},
                                     {212, 46, 2.5},
                                     {256, 70, 2.5},
                                     {286, 92, 2.5},
                                     {306, 112, 2.45},
                                     {322, 130, 2.4},
                                     {334, 146, 2.35},
                                     {338, 158, 2.2},
                                     {336, 168, 2.1},
                                     {328, 172, 1.95},
                                     {300, 190, 1.25},
                                     {250, 190, 0.85}}};

std::vector<Vertebra> layVertebrae() {
  std::vector<Vertebra> spine(kLevels.size());
  Point below = kSacrum;
  double tiltBelow = kSacrumTilt;
  for (std::size_t i = kLevels.size(); i-- > 0;) {
    const Level& level = kLevels[i];
    const Point across = direction(level.tilt * kRadiansPerDegree);
    const Point down{-across.y, across.x};
    const Point disc = direction((level.tilt + tiltBelow) / 2 * kRadiansPerDegree);
    const Point foot = below - Point{-disc.y, disc.x} * level.discBelow;
    const double tiltAbove = i == 0 ? level.tilt : kLevels[i - 1].tilt;
    spine[i] = {foot - down * (level.height / 2),
                across,
                down,
                level.width,
                level.height,
                0.0045 * level.width * (tiltAbove - tiltBelow)};
    below = foot - down * level.height;
    tiltBelow = level.tilt;
  }
  return spine;
}

double ring(double depth, double width) { return coverage(depth, 3) * smoothStep(width, 0, depth); }

}  // namespace

Skeleton::Skeleton() : spine_(layVertebrae()), bone_(kWidth, kHeight), onePiece_(kWidth, kHeight) {
  for (std::size_t i = 0; i < spine_.size(); ++i) layVertebra(spine_[i], i);
  for (int side = -1; side <= 1; side += 2) {
    for (std::size_t i = 0; i < kRibs.size(); ++i) layRib(kRibs[i], spine_[kFirstOfChest + i], side);
    layShoulder(side);
    layHip(side);
  }
  laySacrum();
  layJaw();
}

double Skeleton::spineAt(double y) const {
  for (std::size_t i = 1; i < spine_.size(); ++i) {
    const Point above = spine_[i - 1].centre;
    const Point here = spine_[i].centre;
    if (y < here.y) return above.x + (here.x - above.x) * smoothStep(above.y, here.y, y);
  }
  return spine_.back().centre.x;
}

template <typename Share>
void Skeleton::layBent(const std::vector<Rod>& pieces, double dense, double shell, Share shareOf) {
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const Rod& rod = pieces[i];
    const double share = shareOf(i);
    onePiece_.paintAround(rod.a, rod.b, std::max(rod.ra, rod.rb), [&](Point p, double& value) {
      const RodPlace place = placeIn(rod, p);
      if (place.depth <= 0) return;
      const double full = place.depth * (2 * place.radius - place.depth);
      const double inner = (place.depth - shell) * (2 * place.radius - shell - place.depth);
      value = std::max(value, share * dense * (std::sqrt(full) - 0.72 * std::sqrt(std::max(0.0, inner))));
    });
  }
}

void Skeleton::layBent(const std::vector<Rod>& pieces, double dense, double shell) {
  layBent(pieces, dense, shell, [](std::size_t) { return 1.0; });
}

void Skeleton::layPlate(const Outline& outline, double thickness, double rim) {
  Point least = outline[0];
  Point most = least;
  for (const Point& p : outline) {
    least = {std::min(least.x, p.x), std::min(least.y, p.y)};
    most = {std::max(most.x, p.x), std::max(most.y, p.y)};
  }
  onePiece_.paintAround(least, most, 8, [&](Point p, double& value) {
    const double depth = depthIn(outline, p);
    if (depth < -8) return;
    const double threads = texture_.rough(p * 0.06 + Point{300, 0}, 3);
    const double v = thickness * (1 + 0.16 * threads) + rim * smoothStep(22, 3, depth);
    value = std::max(value, coverage(depth, 5) * v);
  });
}

void Skeleton::settle() {
  bone_.paintAll([this](Point p, double& value) {
    double& piece = onePiece_.at(static_cast<int>(p.x), static_cast<int>(p.y));
    value += piece;
    piece = 0;
  });
}

void Skeleton::layVertebra(const Vertebra& vertebra, std::size_t level) {
  const double w = vertebra.width;
  const double h = vertebra.height;
  const bool isLoin = level >= kFirstOfLoin;
  const double process = level < kFirstOfChest ? 16 : (isLoin ? 56 : 34);
  const double turned = vertebra.turned;
  bone_.paintAround(vertebra.centre, vertebra.centre, w + process, [&](Point p, double& value) {
    const Point d = p - vertebra.centre;
    const double u = dot(d, vertebra.across);
    const double v = dot(d, vertebra.down);
    const double half = w / 2 * (0.91 + 0.09 * (4 * v * v) / (h * h));  // with a waist
    constexpr double kCorner = 7;
    const Point out{std::max(0.0, std::abs(u) - half + kCorner),
                    std::max(0.0, std::abs(v) - h / 2 + kCorner)};
    const double inside = std::min(half - std::abs(u), h / 2 - std::abs(v));
    const double depth = out.x > 0 && out.y > 0 ? kCorner - length(out) : inside;
    const double body = coverage(depth, 4);
    const double threads = texture_.rough(Point{u * 0.09 + vertebra.centre.y, v * 0.05}, 3);
    value += body * (225 + 32 * threads);
    value += body * 170 * smoothStep(7, 1, h / 2 - std::abs(v));  // end plates
    value += body * 110 * smoothStep(6, 1, half - std::abs(u));

    for (int side = -1; side <= 1; side += 2) {
      const double s = side;
      const double pedicle =
          depthIn(Ellipse{{s * 0.3 * w + turned, -0.13 * h}, 0.085 * w, 0.19 * h, 0}, {u, v});
      value += 150 * ring(pedicle, 6) + 45 * coverage(pedicle, 3);
      const Rod wing{{s * 0.4 * w, -0.12 * h}, {s * (0.42 * w + process), -0.16 * h}, isLoin ? 9.0 : 10.0, 7};
      const double isProcess = depthIn(wing, {u, v});
      value += 62 * coverage(isProcess, 4) + 60 * ring(isProcess, 5);
    }
    const double arch = depthIn(Ellipse{{turned * 0.7, 0.12 * h}, 0.31 * w, 0.42 * h, 0}, {u, v});
    value += 55 * smoothStep(-2, 10, arch);
    const double spinous = depthIn(Ellipse{{turned * 1.7, 0.3 * h}, 0.065 * w, 0.33 * h, 0}, {u, v});
    value += 120 * ring(spinous, 5) + 60 * coverage(spinous, 3);
  });
}

void Skeleton::layRib(const Rib& rib, const Vertebra& vertebra, int side) {
  const Point head = vertebra.centre + vertebra.across * (side * 0.46 * vertebra.width) -
                     vertebra.down * (0.34 * vertebra.height);
  const double middle = 512 + 0.3 * (vertebra.centre.x - 512);
  constexpr int kPieces = 26;
  std::vector<Rod> pieces;
  Point from = head;
  for (int i = 1; i <= kPieces; ++i) {
    const double angle = rib.end * i / kPieces;
    const Point around = direction(angle);
    const double pulled = smoothStep(0, 1.2, angle);
    const double x = head.x + (middle - head.x) * pulled + side * rib.reach * around.y;
    const double lean = vertebra.across.y * 0.45 * (x - head.x) * smoothStep(2.6, 0.6, angle);
    const Point to{x, head.y + rib.drop * (1 - around.x) + lean -
                          10 * smoothStep(0, 0.3, angle) * smoothStep(1.2, 0.4, angle)};
    const double radius = 10.5 + 4.5 * smoothStep(0.1, 1.6, angle);
    pieces.push_back({from, to, radius, radius});
    from = to;
  }
  layBent(pieces, 11, 3.4, [&](std::size_t i) {  // the front ends in cartilage
    const double t = static_cast<double>(i) / kPieces;
    return (1 - 0.42 * smoothStep(0.4, 0.85, t)) * smoothStep(1.02, 0.9, t);
  });
  settle();
}

void Skeleton::layShoulder(int side) {
  const double s = side;
  const auto at = [&](double x, double y) { return Point{512 + s * x, y}; };
  layBent({{at(42, 424), at(120, 398), 19, 13},
           {at(120, 398), at(210, 384), 13, 12},
           {at(210, 384), at(300, 352), 12, 13},
           {at(300, 352), at(372, 346), 13, 15}},
          9, 4);
  settle();
  layBent({{at(428, 432), at(424, 446), 62, 60},
           {at(424, 446), at(458, 560), 52, 32},
           {at(458, 560), at(560, 900), 32, 30}},
          6.2, 7);
  settle();
  const Outline blade = rounded({at(176, 420), at(188, 560), at(232, 742), at(262, 730), at(318, 560),
                                 at(368, 480), at(362, 424), at(280, 430)},
                                3);
  layPlate(blade, 50, 75);
  layBent({{at(196, 476), at(310, 416), 9, 12}, {at(310, 416), at(408, 358), 12, 16}}, 6, 3.5);
  settle();
}

void Skeleton::layHip(int side) {
  const double s = side;
  const Point axis = direction(kSacrumTilt * kRadiansPerDegree);
  const auto at = [&](double x, double y) {
    const Point d{s * x, y - kSacrum.y};
    return kSacrum + Point{axis.x * d.x - axis.y * d.y, axis.y * d.x + axis.x * d.y};
  };
  layPlate(rounded({at(96, 1462), at(150, 1402), at(236, 1380), at(312, 1420), at(352, 1506), at(340, 1560),
                    at(306, 1630), at(298, 1710), at(318, 1780), at(300, 1840), at(240, 1868), at(176, 1836),
                    at(150, 1740), at(146, 1690), at(108, 1640), at(84, 1590), at(78, 1530)},
                   3),
           130, 170);
  layBent({{at(206, 1820), at(110, 1876), 34, 23},
           {at(110, 1876), at(34, 1932), 23, 28},
           {at(34, 1932), at(30, 1990), 26, 23},
           {at(30, 1990), at(104, 2080), 22, 20}},
          8, 5);
  layBent({{at(226, 1846), at(206, 1960), 40, 34}, {at(206, 1960), at(150, 2080), 34, 36}}, 6, 6);
  layBent({{at(196, 1690), at(184, 1830), 6, 10}}, 22, 6);  // the rim of the pelvic inlet
  settle();
  layBent({{at(262, 1822), at(262, 1826), 66, 66},
           {at(266, 1828), at(366, 1924), 46, 56},
           {at(366, 1924), at(384, 2090), 60, 52},
           {at(366, 1924), at(394, 1890), 40, 32}},
          5, 8);
  settle();
}

void Skeleton::laySacrum() {
  const Point axis = direction(kSacrumTilt * kRadiansPerDegree);
  const auto at = [&](double x, double y) {
    return kSacrum + Point{axis.x * x - axis.y * y, axis.y * x + axis.x * y};
  };
  layPlate(rounded({at(-58, 0), at(58, 0), at(112, 22), at(118, 70), at(88, 150), at(44, 232), at(0, 262),
                    at(-44, 232), at(-88, 150), at(-118, 70), at(-112, 22)},
                   2),
           210, 60);
  settle();
  bone_.paintAround(at(0, 0), at(0, 240), 130, [&](Point p, double& value) {
    const Point d = p - kSacrum;
    const Point q{dot(d, axis), d.y * axis.x - d.x * axis.y};
    value += 190 * smoothStep(6, 0, std::abs(q.y - 4)) * coverage(56 - std::abs(q.x), 6);
    for (int i = 0; i < 4; ++i) {
      const double y = 58 + 46.0 * i;
      const Ellipse hole{{0, 0}, 13.0 - 1.6 * i, 9.0 - i, 0.3};
      const double depth = depthIn(hole, {std::abs(q.x) - 46 + 6.0 * i, q.y - y});
      value -= 80 * smoothStep(-1, 6, depth);
      value += 55 * smoothStep(4, 0, std::abs(depth));
      value += 34 * coverage(depthIn(Ellipse{{0, y - 20}, 7, 15, 0}, q), 6);
    }
  });
  layBent({{at(0, 262), at(3, 300), 17, 11}}, 5, 4);
  settle();
}

void Skeleton::layJaw() {
  layBent({{{392, -30}, {420, 62}, 30, 28},
           {{420, 62}, {474, 112}, 28, 25},
           {{474, 112}, {556, 112}, 25, 25},
           {{556, 112}, {610, 62}, 25, 28},
           {{610, 62}, {640, -30}, 28, 30}},
          9, 7);
  settle();
  bone_.paintAround({512, -80}, {512, -80}, 220, [](Point p, double& value) {
    value += 480 * smoothStep(-8, 70, depthIn(Ellipse{{515, -60}, 128, 150, 0}, p));
  });
}

}  // namespace ei4::samples
