// A curved-array scan of a liver with its vessels and a kidney, colour Doppler in a box over the portal vein,
// and the bars, ticks and frame of a machine's screen. Lengths are pixels.
#include <array>
#include <cmath>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;

constexpr Point kCentre{305, -62};  // of the array's curve
constexpr double kNearest = 100;
constexpr double kFarthest = 508;
constexpr double kHalfAngle = 0.61;

using Colour = std::array<double, 3>;

constexpr Rod kPortalVein{{232, 250}, {396, 206}, 15, 12};
constexpr Rod kHepaticArtery{{226, 222}, {384, 182}, 3.6, 3.0};
constexpr Ellipse kKidney{{446, 300}, 72, 38, 0.5};

struct Beam {
  double range = 0;  ///< from the centre of the array's curve
  double angle = 0;  ///< from straight down, growing to the right
};

Beam beamAt(Point p) {
  const Point d = p - kCentre;
  return {length(d), arcTangent(d.x / d.y)};
}

bool isInSector(const Beam& beam) {
  return beam.range > kNearest && beam.range < kFarthest && std::abs(beam.angle) < kHalfAngle;
}

class Scan {
 public:
  /// Brightness, 0..255.
  [[nodiscard]] double at(Point p) const {
    const Beam beam = beamAt(p);
    if (!isInSector(beam)) return 0;
    const double depth = (beam.range - kNearest) / (kFarthest - kNearest);
    const double gain = 1.05 - 0.45 * depth + 0.18 * smoothStep(0, 0.25, depth);
    const double edges = smoothStep(kHalfAngle, kHalfAngle - 0.05, std::abs(beam.angle));
    const double echo = tissueAt(p, beam) * gain * (0.75 + 0.25 * edges);
    return std::clamp(echo * speckle(beam, depth), 0.0, 255.0);
  }

 private:
  /// Scatterers that a focused beam blurs along the arc more than along the ray, and more the deeper they
  /// lie.
  [[nodiscard]] double speckle(const Beam& beam, double depth) const {
    const double across = beam.angle * (430 - 150 * depth);
    const Point fine{across * 0.36 + beam.range * 0.11,
                     beam.range * 0.43 - across * 0.09};  // askew: no fringes
    const double a = grain_.at(fine);
    const double b = grain_.at(fine * 1.07 + Point{900, 300});
    const double c = grain_.at({across * 0.2 + 300, beam.range * 0.33});
    return 0.22 + 1.2 * std::sqrt(a * a + b * b) + 0.24 * c;
  }

  [[nodiscard]] double tissueAt(Point p, const Beam& beam) const {
    const Point q = p + Point{shape_.rough(p * 0.02, 2), shape_.rough(p * 0.02 + Point{30, 30}, 2)} * 7.0;
    double v = 104 + 22 * shape_.rough(p * 0.025, 3);
    const double wall = beam.range - kNearest + 5 * shape_.at({beam.angle * 6, 3});
    v += 85 * smoothStep(5, 0, std::abs(wall - 3)) + 70 * smoothStep(5, 0, std::abs(wall - 34));
    v += 45 * smoothStep(3, 0, std::abs(wall - 22 - 3 * shape_.at({beam.angle * 9, 8})));
    blend(v, 82, smoothStep(40, 30, wall) * smoothStep(6, 12, wall) * 0.6);

    vessel(v, q, kPortalVein, 1.0);
    vessel(v, q, {{396, 206}, {452, 172}, 12, 6}, 1.0);
    vessel(v, q, {{300, 232}, {336, 300}, 8, 4}, 0.8);
    vessel(v, q, kHepaticArtery, 0.7);
    vessel(v, q, {{196, 150}, {150, 236}, 7, 11}, 0.2);  // liver veins, with a thin wall
    vessel(v, q, {{262, 128}, {190, 214}, 4, 8}, 0.2);
    vessel(v, q, {{150, 236}, {122, 300}, 11, 13}, 0.2);

    const double kidney = depthIn(kKidney, q);
    blend(v, 205, coverage(2.6 - std::abs(kidney), 2));
    blend(v, 70 + 14 * shape_.rough(p * 0.06, 2), coverage(kidney - 2, 3));
    const Ellipse sinus{kKidney.centre, 40, 12, kKidney.turn};
    blend(v, 172 + 50 * shape_.rough(p * 0.12, 2),
          coverage(depthIn(sinus, q + Point{0, 5 * shape_.at(p * 0.05)}), 8));

    // The diaphragm: a bright arc, with weaker mirror echoes behind it.
    const double arc = length(q - Point{262, 150}) - 262;
    blend(v, 232, smoothStep(4.5, 0, std::abs(arc)) * smoothStep(440, 360, q.x));
    blend(v, 38, smoothStep(2, 12, arc) * smoothStep(450, 380, q.x));

    // A stone in the gall bladder and the shadow that it throws.
    const Ellipse bladder{{246, 330}, 36, 17, 0.35};
    blend(v, 190, coverage(depthIn(bladder, q) + 2.5, 3));
    blend(v, 5, coverage(depthIn(bladder, q), 3));
    const Beam stone = beamAt({252, 340});
    const double behind = smoothStep(stone.range - 2, stone.range + 6, beam.range);
    blend(v, 18, 0.85 * behind * smoothStep(0.026, 0.014, std::abs(beam.angle - stone.angle)));
    blend(v, 250, coverage(depthIn(Ellipse{{252, 340}, 8, 4.5, 0.1}, q), 2));
    return v;
  }

  static void blend(double& v, double with, double share) { v += (with - v) * share; }

  static void vessel(double& v, Point q, const Rod& rod, double wall) {
    const double depth = depthIn(rod, q);
    blend(v, 200, wall * coverage(depth + 2.6, 2.5));
    blend(v, 6, coverage(depth, 2.5));
  }

  Landscape grain_{90210};
  Landscape shape_{31};
};

/// Speed -1..1 as the machine shows it: red towards the probe, blue away from it, brighter when faster.
Colour flowColour(double speed) {
  const double s = std::abs(speed);
  const double main = 90 + 165 * smoothStep(0, 0.5, s);
  const double second = 235 * smoothStep(0.35, 1, s);
  return speed > 0 ? Colour{main, second, 25 * s} : Colour{25 * s, second, main};
}

/// Fastest in the middle of a vessel; 0 outside.
double flowAt(Point p, const Landscape& swirl) {
  const auto profile = [&](const Rod& rod, double fastest) {
    const RodPlace place = placeIn(rod, p + Point{0, 2.2 * swirl.at(p * 0.05)});
    if (place.depth < 1) return 0.0;
    const double t = place.depth / place.radius;
    return fastest * t * (2 - t) * (0.85 + 0.25 * swirl.at(p * 0.12));
  };
  const double artery = profile({{226, 222}, {384, 182}, 5.0, 4.4}, -0.8);
  return artery != 0 ? artery : profile(kPortalVein, 0.95);
}

bool isInDopplerBox(const Beam& beam) {
  return beam.range > 252 && beam.range < 334 && beam.angle > -0.2 && beam.angle < 0.27;
}

bool isOnDopplerFrame(const Beam& beam) {
  const bool isNear = beam.range > 250.5 && beam.range < 335.5 && beam.angle > -0.205 && beam.angle < 0.275;
  return isNear && !isInDopplerBox(beam);
}

class Screen {
 public:
  Screen() : pixels_(static_cast<std::size_t>(kWidth) * kHeight * 3, 0) {}

  void set(int x, int y, const Colour& colour) {
    for (std::size_t i = 0; i < 3; ++i) {
      const double v = std::clamp(std::floor(colour[i] + 0.5), 0.0, 255.0);
      pixels_[3 * (static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)) + i] =
          static_cast<unsigned char>(v);
    }
  }

  template <typename ColourAt>
  void fill(int left, int top, int width, int height, ColourAt colourAt) {
    for (int y = top; y < top + height; ++y) {
      for (int x = left; x < left + width; ++x) set(x, y, colourAt(x - left, y - top));
    }
  }

  [[nodiscard]] const std::vector<unsigned char>& pixels() const { return pixels_; }

 private:
  std::vector<unsigned char> pixels_;
};

void drawScan(Screen& screen) {
  const Scan scan;
  Canvas grey(kWidth, kHeight);
  grey.paintAll([&scan](Point p, double& value) { value = scan.at(p); });
  const Landscape swirl(7);
  grey.paintAll([&](Point p, double& value) {
    const Beam beam = beamAt(p);
    const double flow = isInDopplerBox(beam) ? flowAt(p, swirl) : 0;
    Colour colour{value, value, value};
    if (std::abs(flow) > 0.08) colour = flowColour(flow);
    if (isOnDopplerFrame(beam)) colour = {220, 220, 120};
    screen.set(static_cast<int>(p.x), static_cast<int>(p.y), colour);
  });
}

void drawBars(Screen& screen) {
  const auto frame = [](int, int) { return Colour{150, 150, 150}; };
  screen.fill(19, 39, 18, 162, frame);  // the grey scale
  screen.fill(20, 40, 16, 160, [](int, int y) {
    const double v = 255 - y * 255.0 / 159;
    return Colour{v, v, v};
  });
  screen.fill(19, 259, 18, 142, frame);  // the colours of the flow
  screen.fill(20, 260, 16, 140, [](int, int y) {
    const double speed = 1 - y / 69.5;
    return std::abs(speed) < 0.04 ? Colour{0, 0, 0} : flowColour(speed);
  });
  for (int i = 0; i <= 16; ++i) {  // one tick a centimetre, a long one every five
    const int y = 38 + i * 26;
    screen.fill(600, y, i % 5 == 0 ? 14 : 7, 2, [](int, int) { return Colour{200, 200, 200}; });
  }
  for (int i = 0; i < 9; ++i) {  // the focus mark
    screen.fill(590 - i, 270 - i / 2, 1, 1 + i, [](int, int) { return Colour{240, 200, 60}; });
  }
}

}  // namespace

SamplePicture makeUltrasound() {
  Screen screen;
  drawScan(screen);
  drawBars(screen);
  return {"ultrasound", kWidth, kHeight, 3, 8, screen.pixels(), {0, 1, 256, 128, tools::kShortestPreamble}};
}

}  // namespace ei4::samples
