// An axial chest slice at the height of the heart. Lengths are millimetres from the middle of the picture,
// values Hounsfield units.
#include <vector>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kSize = 512;
constexpr double kMillimetres = 0.70;  // of a pixel
constexpr double kStoredOffset = 1024;

constexpr double kAir = -1000;
constexpr double kFat = -105;
constexpr double kMuscle = 58;
constexpr double kLung = -860;

constexpr Ellipse kBody{{0, 2}, 168, 112, 0};
constexpr Ellipse kThorax{{0, -6}, 134, 85, 0};
constexpr Ellipse kMediastinum{{6, -6}, 37, 78, 0.1};
constexpr Ellipse kHeart{{24, -27}, 54, 40, 0.5};

class CtSlice {
 public:
  CtSlice() {
    growVessels(-1);
    growVessels(1);
    for (int side = -1; side <= 1; side += 2) layRibs(side);
  }

  [[nodiscard]] double at(Point p) const {
    const Point wobble{3.0 * shape_.rough(p * 0.02, 3), 3.0 * shape_.rough(p * 0.02 + Point{50, 50}, 3)};
    const Point q = p + wobble;
    double v = kAir;
    blend(v, wallAt(q), coverage(depthIn(kBody, q), edge_));
    blend(v, kFat, coverage(depthIn(kThorax, q), edge_));
    const double mediastinum = std::max(depthIn(kMediastinum, q), depthIn(kHeart, q));
    blend(v, lungAt(p, q), coverage(std::min(depthIn(kThorax, q) - 2, -mediastinum - 1.5), edge_));
    paintHeart(v, q);
    paintVessels(v, q);
    paintBones(v, p);
    paintTable(v, p);
    return v;
  }

 private:
  static void blend(double& v, double with, double share) { v += (with - v) * share; }

  [[nodiscard]] double wallAt(Point q) const {
    const double depth = depthIn(kBody, q);
    const double fatThickness = 15 + 6 * shape_.at(q * 0.03) + 5 * smoothStep(-40, -100, q.y);
    double v = kFat + 12 * shape_.rough(q * 0.15, 3);
    blend(v, kMuscle, coverage(depth - fatThickness, 1.5));
    const double planes = std::abs(shape_.rough(q * 0.045 + Point{9, 3}, 2));  // fat between the muscles
    const double isWall = coverage(depth - fatThickness - 3, 2) * coverage(-depthIn(kThorax, q) - 3, 2);
    blend(v, kFat + 20, isWall * smoothStep(0.05, 0.02, planes));
    blend(v, 40, coverage(2.2 - depth, 1));  // skin
    return v;
  }

  [[nodiscard]] double lungAt(Point p, Point q) const {
    double v = kLung + 55 * smoothStep(-60, 80, p.y) + 18 * shape_.rough(p * 0.25, 3);
    for (const Rod& vessel : lungVessels_) {
      if (std::abs(vessel.a.x - q.x) > 30 || std::abs(vessel.a.y - q.y) > 30) continue;
      blend(v, 45, coverage(depthIn(vessel, q), 1.2));
    }
    return v;
  }

  void paintHeart(double& v, Point q) const {
    blend(v, 25, coverage(depthIn(kHeart, q) - 1, edge_));
    blend(v, kFat + 10, coverage(depthIn(kHeart, q) - 2.5, edge_));
    blend(v, 105, coverage(depthIn(kHeart, q) - 5, edge_));
    const auto chamber = [&](const Ellipse& e, double value) { blend(v, value, coverage(depthIn(e, q), 2)); };
    chamber({{44, -17}, 21, 13, 0.55}, 195);  // left ventricle
    chamber({{11, -45}, 24, 13, 0.35}, 172);  // right ventricle
    chamber({{-16, -28}, 15, 20, 0.1}, 178);  // right atrium
    chamber({{12, 3}, 20, 11, -0.1}, 190);    // left atrium
  }

  void paintVessels(double& v, Point q) const {
    const auto round = [&](Point c, double r, double value) {
      blend(v, value, coverage(depthIn(Ellipse{c, r, r, 0}, q), 1.4));
    };
    round({24, 41}, 14.0, 70);
    round({24, 41}, 12.4, 205);  // descending aorta
    round({1, 33}, 7.0, 42);     // oesophagus
    round({2, 32}, 2.0, -650);
    round({-12, 41}, 3.0, 160);                                                // azygos vein
    blend(v, 185, coverage(depthIn(Rod{{30, 8}, {62, 20}, 7, 4.5}, q), 1.4));  // lower pulmonary veins
    blend(v, 185, coverage(depthIn(Rod{{-4, 6}, {-50, 18}, 7, 4.5}, q), 1.4));
  }

  /// A shell of dense bone around marrow.
  void paintBone(double& v, double depth, double shell, double dense, double marrow, Point p) const {
    const double inside = marrow + 70 * shape_.rough(p * 0.4, 2);
    blend(v, dense + (inside - dense) * smoothStep(shell * 0.6, shell * 1.4, depth), coverage(depth, edge_));
  }

  void paintBones(double& v, Point p) const {
    for (const Rod& rib : ribs_) paintBone(v, depthIn(rib, p), 1.6, 850, 260, p);
    paintBone(v, depthIn(Rod{{-15, -96}, {17, -97}, 6, 6}, p), 1.5, 520, 150, p);  // sternum
    for (int side = -1; side <= 1; side += 2) {                                    // shoulder blades
      const double s = side;
      paintBone(v, depthIn(Rod{{s * 90, 76}, {s * 127, 37}, 3.6, 4.6}, p), 1.6, 700, 250, p);
    }
    const Ellipse body{{0, 61}, 20, 15.5, 0};
    const Ellipse canal{{0, 83}, 10, 8.5, 0};
    for (int side = -1; side <= 1; side += 2) {
      const double s = side;
      paintBone(v, depthIn(Rod{{s * 13, 71}, {s * 14, 88}, 5, 5}, p), 1.8, 720, 300, p);
      paintBone(v, depthIn(Rod{{s * 13, 88}, {s * 37, 96}, 5, 3.6}, p), 1.6, 650, 280, p);
      paintBone(v, depthIn(Rod{{s * 12, 90}, {0, 98}, 4.5, 4.5}, p), 1.8, 720, 300, p);
    }
    paintBone(v, depthIn(Rod{{0, 96}, {2, 108}, 4.2, 2.8}, p), 1.6, 700, 300, p);
    paintBone(v, depthIn(body, p), 1.7, 600, 190, p);
    blend(v, 15, coverage(depthIn(canal, p), edge_));
    blend(v, 45, coverage(depthIn(Ellipse{{0, 83}, 5.8, 4.6, 0}, p), edge_));  // spinal cord
  }

  static void paintTable(double& v, Point p) {
    const double curve = 127 + p.x * p.x / 900;
    const double inX = coverage(176 - std::abs(p.x), 2);
    blend(v, -250, inX * coverage(1.6 - std::abs(p.y - curve), 1));
    blend(v, -900, inX * coverage(5.5 - std::abs(p.y - curve - 8), 1));
    blend(v, -250, inX * coverage(1.6 - std::abs(p.y - curve - 15), 1));
  }

  void growVessels(int side) {
    for (int i = 0; i < 7; ++i) {
      const double angle = (side > 0 ? 0.0 : 3.14159265) + random_.between(-1.35, 1.35);
      branch({side * 44.0 + 8, 4}, angle, random_.between(2.0, 3.6), 6);
    }
    for (int i = 0; i < 150; ++i) {  // those that cross the slice show as dots
      const Point c{side * random_.between(45, 128), random_.between(-78, 74)};
      const Point d{random_.between(-2, 2), random_.between(-2, 2)};
      const double r = random_.between(0.5, 1.7);
      lungVessels_.push_back({c, c + d, r, r * 0.8});
    }
  }

  void branch(Point from, double angle, double radius, int generations) {
    if (generations == 0 || radius < 0.35) return;
    const Point to = from + direction(angle) * random_.between(9, 22);
    // Most branches leave the slice again; the few that lie in it show along their length.
    if (random_.unit() < 0.62) lungVessels_.push_back({from, to, radius, radius * 0.8});
    const double thinner = radius * random_.between(0.62, 0.82);  // named: arguments have no order
    branch(to, angle + random_.between(-0.5, 0.3), thinner, generations - 1);
    if (random_.unit() < 0.75) {
      const double side = radius * random_.between(0.45, 0.7);
      branch(to, angle + random_.between(0.2, 0.9), side, generations - 1);
    }
  }

  void layRibs(int side) {
    for (const double angle : {-1.02, -0.62, -0.2, 0.24, 0.66, 1.02}) {
      const double half = random_.between(0.06, 0.13);
      const auto place = [&](double a) {
        const Point d = direction(a);
        return Point{side * 139.5 * d.x, -6 + 90.0 * d.y};
      };
      const double radius = random_.between(3.6, 4.6);
      ribs_.push_back({place(angle - half), place(angle), radius * 0.85, radius});
      ribs_.push_back({place(angle), place(angle + half), radius, radius * 0.8});
    }
  }

  Random random_{512};
  Landscape shape_{2024};
  std::vector<Rod> lungVessels_;
  std::vector<Rod> ribs_;
  static constexpr double edge_ = 1.3;
};

}  // namespace

SamplePicture makeCtSlice() {
  const CtSlice slice;
  Canvas canvas(kSize, kSize);
  canvas.paintAll([&slice](Point pixel, double& value) {
    value = slice.at((pixel - Point{kSize / 2.0, kSize / 2.0}) * kMillimetres);
  });
  Random random(77);
  const Canvas noise = softNoise(kSize, kSize, random);
  canvas.paintAll([&noise](Point p, double& value) {
    const double spread = value < -900 ? 6 : 11;  // where nothing absorbs, the detector counts more
    value += kStoredOffset + spread * noise.at(static_cast<int>(p.x), static_cast<int>(p.y));
  });

  SamplePicture picture{"ct_512", kSize, kSize, 2, 12, {}, {-1024, 1, 400, 40, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(4095));
  return picture;
}

}  // namespace ei4::samples
