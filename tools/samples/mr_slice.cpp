// An axial slice of a head at the height of the ventricles, T1-weighted: fat and white matter bright, fluid
// dark. Lengths are millimetres from the middle of the picture; values are those that are stored.
#include <algorithm>
#include <cmath>
#include <vector>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kSize = 384;
constexpr double kMillimetres = 0.58;  // of a pixel

constexpr double kFluid = 95;
constexpr double kGrey = 345;
constexpr double kWhite = 505;
constexpr double kScalp = 760;
constexpr double kBone = 55;
constexpr double kMarrow = 420;

constexpr Ellipse kHead{{0, 2}, 83, 102, 0};
constexpr Ellipse kBrain{{0, 1}, 67.5, 85, 0};

class MrSlice {
 public:
  MrSlice() { layFolds(); }

  [[nodiscard]] double at(Point p) const {
    const Point q = p + Point{shape_.rough(p * 0.025, 2), shape_.rough(p * 0.025 + Point{40, 7}, 2)} * 3.0;
    double v = 0;
    const double depth = depthIn(kHead, q);
    blend(v, 330, coverage(depth, 1));                                           // skin
    blend(v, kScalp + 60 * shape_.rough(p * 0.2, 2), coverage(depth - 1.6, 1));  // fat
    blend(v, kBone, coverage(depth - 6.8, 0.9));
    blend(v, kMarrow + 60 * shape_.rough(p * 0.3, 2), coverage(depth - 8.8, 1) * coverage(11.6 - depth, 1));
    const double brain = depthIn(kBrain, q);
    blend(v, kFluid, coverage(brain + 1.6, 0.9));
    blend(v, matterAt(q, brain), coverage(brain, 0.9));
    paintDeep(v, q);
    return v;
  }

 private:
  static void blend(double& v, double with, double share) { v += (with - v) * share; }

  /// Grey matter lines the surface and the folds, which are narrow bent clefts filled with fluid.
  [[nodiscard]] double matterAt(Point q, double depth) const {
    const Point bent = q + Point{shape_.rough(q * 0.11, 2), shape_.rough(q * 0.11 + Point{3, 90}, 2)} * 4.5;
    double fromFluid = depth + 0.5;
    for (const Rod& fold : folds_) {
      const Point d = bent - fold.a;
      if (std::abs(d.x) < 20 && std::abs(d.y) < 20) fromFluid = std::min(fromFluid, -depthIn(fold, bent));
    }
    const double midline = std::abs(q.x + 0.8 * shape_.at(q * 0.07));
    if (q.y < -30 || q.y > 42)
      fromFluid = std::min(fromFluid, midline - 0.3);  // in the middle the halves are joined
    double v = kFluid;
    blend(v, kGrey + 12 * shape_.rough(q * 0.3, 2), smoothStep(-0.1, 0.8, fromFluid));
    blend(v, kWhite + 14 * shape_.rough(q * 0.12, 3), smoothStep(2.7, 4.0, fromFluid));
    return v;
  }

  void layFolds() {
    constexpr int kCount = 46;
    for (int i = 0; i < kCount; ++i) {
      const Point out = direction((i + random_.between(0.15, 0.85)) * 2 * 3.14159265 / kCount);
      const Point start{kBrain.rx * out.x, kBrain.centre.y + kBrain.ry * out.y};
      if (std::abs(start.x) < 7) continue;  // the cleft between the halves is there
      const bool isLateral = std::abs(start.y - 8) < 5 && std::abs(start.x) > 50;
      const int pieces = isLateral ? 4 : 1 + static_cast<int>(random_.between(0, 2.99));
      layFold(start, Point{0, kBrain.centre.y} - start, pieces);
    }
    for (const double y : {-74.0, -62.0, -50.0, -38.0, 49.0, 59.0, 70.0}) {  // those that open to the middle
      for (int side = -1; side <= 1; side += 2) {
        const double slope = random_.between(-3, 3);  // named: arguments have no order
        layFold({side * 0.5, y + random_.between(-3, 3)}, {side * 10.0, slope}, 1);
      }
    }
  }

  void layFold(Point from, Point inward, int pieces) {
    const Point along = inward * (1 / length(inward));
    double turn = random_.between(-0.35, 0.35);
    for (int i = 0; i < pieces; ++i) {
      const Point bend = direction(turn);
      const Point step{along.x * bend.x - along.y * bend.y, along.x * bend.y + along.y * bend.x};
      const Point to = from + step * random_.between(6, 9.5);
      folds_.push_back({from, to, i == 0 ? 0.9 : 0.45, 0.4});
      from = to;
      turn += random_.between(-0.8, 0.8);
    }
  }

  void paintDeep(double& v, Point q) const {
    const Point m{std::abs(q.x), q.y};  // the halves mirror each other
    const auto part = [&](double depth, double value) { blend(v, value, coverage(depth, 1.1)); };
    part(depthIn(Rod{{0, -27}, {17, -34}, 4.5, 5}, m), kWhite + 45);  // corpus callosum, in front and behind
    part(depthIn(Rod{{0, 31}, {20, 36}, 5.5, 5}, m), kWhite + 45);
    part(depthIn(Ellipse{{21.5, 1}, 7, 17, -0.28}, m), kGrey + 62);  // putamen and pallidum
    part(depthIn(Ellipse{{18.5, 5}, 3.4, 9, -0.4}, m), kGrey + 105);
    part(depthIn(Ellipse{{9.5, 13}, 7.5, 11.5, -0.42}, m), kGrey + 55);    // thalamus
    part(depthIn(Rod{{10.2, -20}, {13.5, -8}, 4.4, 2.6}, m), kGrey + 25);  // head of the caudate
    part(depthIn(Rod{{2.2, -17}, {10, -27}, 2.2, 3.2}, m),
         kFluid);  // ventricles: front horns, third, back horns
    part(depthIn(Rod{{2.2, -17}, {4.2, -4}, 2.2, 1.0}, m), kFluid);
    part(depthIn(Rod{{0, 6}, {0, 19}, 1.3, 1.5}, m), kFluid);
    part(depthIn(Rod{{19, 27}, {25, 43}, 2.2, 3.4}, m), kFluid);
    part(depthIn(Rod{{0, -17}, {0, -6}, 0.5, 0.5}, m), kWhite);      // the wall between the front horns
    part(depthIn(Rod{{0, 24}, {0, 26}, 1.9, 1.9}, m), kGrey + 70);   // pineal gland
    part(depthIn(Rod{{0, 86}, {0, 82}, 3.0, 1.0}, m), kFluid - 40);  // sagittal sinus
  }

  Random random_{1946};
  Landscape shape_{1977};
  std::vector<Rod> folds_;
};

}  // namespace

SamplePicture makeMrSlice() {
  const MrSlice slice;
  Canvas canvas(kSize, kSize);
  canvas.paintAll([&slice](Point pixel, double& value) {
    const Point middle{kSize / 2.0, kSize / 2.0};
    value = slice.at((pixel - middle) * kMillimetres);
  });
  Random random(64);
  const Landscape coil(8);
  const Canvas first = softNoise(kSize, kSize, random);
  const Canvas second = softNoise(kSize, kSize, random);
  canvas.paintAll(
      [&](Point p, double& value) {  // the magnitude of a signal with noise in both of its channels
        const int x = static_cast<int>(p.x);
        const int y = static_cast<int>(p.y);
        const double real = value * (1 + 0.09 * coil.at(p * 0.006)) + 9 * first.at(x, y);
        const double imaginary = 9 * second.at(x, y);
        value = std::sqrt(real * real + imaginary * imaginary);
      });

  SamplePicture picture{"mr", kSize, kSize, 2, 10, {}, {0, 1, 760, 370, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(1023));
  return picture;
}

}  // namespace ei4::samples
