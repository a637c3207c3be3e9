// A standing patient's whole spine from the front, with a scoliosis. Everything absorbs along the ray and adds
// up; the lungs and the gas in the bowel take away. Lengths are pixels of 0.4 mm; the patient's right is on the
// left of the picture.
#include <cmath>
#include <vector>

#include "samples/canvas.h"
#include "samples/outline.h"
#include "samples/sample_pictures.h"
#include "samples/skeleton.h"

namespace ei4::samples {

namespace {

constexpr int kWidth = Skeleton::kWidth;
constexpr int kHeight = Skeleton::kHeight;

constexpr double kAir = 110;
constexpr double kShutter = 20;

class Torso {
 public:
  /// 0 outside.
  [[nodiscard]] double at(Point p) const {
    const double v = softTissueAt(p);
    return v <= 0 ? 0 : std::max(0.0, v + skeleton_.at(p) * smoothStep(0, 60, v));
  }

 private:
  /// A smooth way through stops of y and the value there.
  [[nodiscard]] static double along(double y, const std::vector<Point>& stops) {
    for (std::size_t i = 1; i < stops.size(); ++i) {
      if (y < stops[i].x) {
        return stops[i - 1].y + (stops[i].y - stops[i - 1].y) * smoothStep(stops[i - 1].x, stops[i].x, y);
      }
    }
    return stops.back().y;
  }

  [[nodiscard]] double softTissueAt(Point p) const {
    const double middle = 512 + 0.3 * (skeleton_.spineAt(p.y) - 512);
    const double half = along(p.y, halfWidth_);
    const double u = (p.x - middle + 5 * shape_.at(p * 0.004)) / half;
    double v = std::abs(u) < 1 ? along(p.y, thickness_) * std::sqrt(1 - u * u) : 0;
    for (int side = -1; side <= 1; side += 2) {  // shoulder and upper arm
      const double depth = depthIn(Rod{{512.0 + side * 395, 455}, {512.0 + side * 560, 830}, 118, 100}, p);
      v = std::max(v, 700 * std::sqrt(std::clamp(depth / 100, 0.0, 1.0)));
    }
    if (v <= 0) return 0;
    const double spread = shape_.rough(p * 0.006, 3);
    v *= 1 + 0.05 * spread;

    const double lungs = std::max(depthIn(rightLung_, p), depthIn(leftLung_, p)) + 6 * spread;
    v -= 430 * smoothStep(-4, 110, lungs) + 90 * smoothStep(-3, 7, lungs);
    const double fromHeart = depthIn(Ellipse{{566, 905}, 152, 118, 0.55}, p);
    v += 330 * smoothStep(-6, 105, fromHeart) + 25 * smoothStep(-5, 5, fromHeart);
    v += 60 * coverage(depthIn(Rod{{548, 610}, {556, 800}, 58, 66}, p), 26);  // great vessels
    v += 75 * smoothStep(-5, 30, depthIn(Ellipse{{576, 600}, 46, 44, 0}, p));
    const double windpipe = std::max(depthIn(Rod{{520, 130}, {512, 610}, 21, 22}, p),
                                     std::max(depthIn(Rod{{512, 610}, {452, 690}, 15, 11}, p),
                                              depthIn(Rod{{512, 610}, {590, 690}, 14, 10}, p)));
    v -= 120 * coverage(windpipe, 16);
    v -= gasAt(p);
    return std::max(v, 40.0);
  }

  /// The stomach's bubble under the left diaphragm, and bowel.
  [[nodiscard]] double gasAt(Point p) const {
    static constexpr Ellipse kGas[] = {
        {{668, 1118}, 74, 40, 0.2},  {{292, 1338}, 38, 52, 0.3}, {{330, 1290}, 44, 30, -0.3},
        {{724, 1330}, 34, 62, -0.1}, {{700, 1250}, 36, 30, 0.4}, {{452, 1392}, 44, 22, 0.2},
        {{620, 1460}, 40, 26, -0.4}, {{556, 1690}, 44, 30, 0.2}, {{300, 1420}, 32, 40, 0}};
    double gas = 0;
    const Point q = p + Point{shape_.rough(p * 0.022, 2), shape_.rough(p * 0.022 + Point{60, 5}, 2)} * 16;
    for (const Ellipse& e : kGas) gas = std::max(gas, smoothStep(-2, 26, depthIn(e, q)));
    return gas * (190 + 50 * shape_.at(p * 0.02));
  }

  Skeleton skeleton_;
  Landscape shape_{12};

  const std::vector<Point> halfWidth_{{-60, 168}, {90, 160},   {150, 122},  {250, 130},
                                      {330, 250}, {420, 440},  {520, 420},  {640, 384},
                                      {860, 374}, {1230, 330}, {1640, 432}, {2060, 446}};
  const std::vector<Point> thickness_{{0, 640},     {180, 620},  {330, 760},   {480, 900},   {700, 980},
                                      {1000, 1010}, {1200, 960}, {1500, 1040}, {1800, 1060}, {2060, 900}};
  const Outline rightLung_ = rounded({{392, 352},
                                      {452, 400},
                                      {476, 520},
                                      {462, 700},
                                      {440, 900},
                                      {450, 1010},
                                      {380, 992},
                                      {300, 996},
                                      {226, 1040},
                                      {188, 1100},
                                      {172, 1010},
                                      {180, 840},
                                      {222, 600},
                                      {290, 420}},
                                     3);
  const Outline leftLung_ = rounded({{640, 352},
                                     {584, 400},
                                     {560, 520},
                                     {566, 700},
                                     {560, 920},
                                     {580, 1040},
                                     {660, 1022},
                                     {740, 1030},
                                     {806, 1070},
                                     {842, 1128},
                                     {852, 1030},
                                     {846, 850},
                                     {806, 600},
                                     {740, 420}},
                                    3);
};

/// A lead letter "L" beside the neck.
double depthInMarker(Point p) {
  const Point at{868, 120};
  return std::max(depthIn(Rod{at, at + Point{0, 92}, 7, 7}, p),
                  depthIn(Rod{at + Point{0, 92}, at + Point{50, 92}, 7, 7}, p));
}

}  // namespace

SamplePicture makeSpine() {
  Canvas canvas(kWidth, kHeight);
  {
    const Torso torso;
    canvas.paintAll([&](Point p, double& value) {
      const double absorbed = torso.at(p);
      value = kAir + 1.9 * absorbed / (1 + absorbed / 5200);
      value += (3500 - value) * coverage(depthInMarker(p), 3);
    });
  }
  canvas.blur(1, 2);  // the focal spot and the detector

  Random random(1948);
  const Canvas noise = softNoise(kWidth, kHeight, random);
  canvas.paintAll([&noise](Point p, double& value) {
    value += (0.5 + value * 0.0003) * noise.at(static_cast<int>(p.x), static_cast<int>(p.y));
    const double inField =
        std::min(std::min(p.x - 26, kWidth - 26 - p.x), std::min(p.y - 22, kHeight - 22 - p.y));
    value = kShutter + (value - kShutter) * coverage(inField, 5);
  });

  SamplePicture picture{"spine", kWidth, kHeight, 2, 12, {}, {0, 1, 2200, 1400, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(4095));
  return picture;
}

}  // namespace ei4::samples
