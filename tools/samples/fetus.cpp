// A screen of four obstetric scans: head, belly and thigh bone of a fetus in its twentieth week, and the sac with
// the embryo eleven weeks before. Lengths are pixels of 0.35 mm from the upper left corner of a quarter.
#include <array>
#include <cmath>
#include <iterator>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr int kQuarterWidth = kWidth / 2;
constexpr int kQuarterHeight = kHeight / 2;
constexpr double kPixelsPerCentimetre = 10 / 0.35;

constexpr Point kCentre{199.5, -78};  // of the array's curve
constexpr double kNearest = 92;
constexpr double kFarthest = 366;
constexpr double kHalfAngle = 0.56;

constexpr double kFluid = 7;
constexpr double kMuscle = 92;

struct Beam {
  double range = 0;  ///< from the centre of the array's curve
  double angle = 0;  ///< from straight down, growing to the right
};

Beam beamAt(Point p) {
  const Point d = p - kCentre;
  return {length(d), arcTangent(d.x / d.y)};
}

void blend(double& v, double with, double share) { v += (with - v) * share; }
void fill(double& v, double with, double depth, double softness = 2.5) {
  blend(v, with, coverage(depth, softness));
}
/// A thin echo along a surface.
void line(double& v, double bright, double depth, double half) {
  blend(v, std::max(v, bright), smoothStep(half, half * 0.3, std::abs(depth)));
}

/// How squarely the beam meets the ellipse near p: 1 in its middle above and below, 0 at its sides.
double facing(const Ellipse& e, Point p) {
  const Point d = p - e.centre;
  const Point normal{d.x / (e.rx * e.rx), d.y / (e.ry * e.ry)};
  const Beam beam = beamAt(p);
  const Point ray = (p - kCentre) * (1 / beam.range);
  return std::abs(dot(normal, ray)) / std::max(length(normal), 1e-9);
}

/// What each scan shows; all take the brightness so far and a point a little bent, as tissue is.
class Scans {
 public:
  [[nodiscard]] double at(int quarter, Point p) const {
    const Beam beam = beamAt(p);
    if (beam.range < kNearest || beam.range > kFarthest || std::abs(beam.angle) > kHalfAngle) return 0;
    const double depth = (beam.range - kNearest) / (kFarthest - kNearest);
    const Point shift{700.0 * quarter, 0};
    const Point bent =
        p + Point{shape_.rough(p * 0.03 + shift, 2), shape_.rough(p * 0.03 + shift + Point{40, 40}, 2)} * 3.5;
    double v = wallAt(bent, beam, shift);
    switch (quarter) {
      case 0:
        paintHead(v, p, bent);
        break;
      case 1:
        paintBelly(v, p, bent);
        break;
      case 2:
        paintThigh(v, p, bent);
        break;
      default:
        paintSac(v, p, bent);
    }
    const double gain = 0.95 + 0.2 * smoothStep(0, 0.3, depth) - 0.3 * smoothStep(0.45, 1, depth);
    const double edges = 0.7 + 0.3 * smoothStep(kHalfAngle, kHalfAngle - 0.06, std::abs(beam.angle));
    return std::clamp(v * gain * edges * speckle(beam, depth, shift), 0.0, 255.0);
  }

 private:
  /// Blurred along the arc more than along the ray, and more the deeper it lies.
  [[nodiscard]] double speckle(const Beam& beam, double depth, Point shift) const {
    const double across = beam.angle * (330 - 110 * depth);
    const Point fine = Point{across * 0.38 + beam.range * 0.1, beam.range * 0.46 - across * 0.08} +
                       shift;  // askew: no fringes
    const double a = grain_.at(fine);
    const double b = grain_.at(fine * 1.07 + Point{900, 300});
    const double c = grain_.at(Point{across * 0.2 + 300, beam.range * 0.3} + shift);
    return 0.4 + 0.95 * std::sqrt(a * a + b * b) + 0.2 * c;
  }

  [[nodiscard]] double wallAt(Point p, const Beam& beam, Point shift) const {
    const double from = beam.range - kNearest + 3 * shape_.at(Point{beam.angle * 7, 3} + shift);
    double v = kMuscle + 18 * shape_.rough(p * 0.03 + shift, 3);
    line(v, 200, from - 3, 5);
    line(v, 165, from - 13, 3);
    line(v, 185, from - 24, 4);
    return v;
  }

  void womb(double& v, Point bent, const Ellipse& e) const {
    const double depth = depthIn(e, bent);
    line(v, 150, depth, 3);
    fill(v, kFluid, depth - 1, 5);
  }

  void paintHead(double& v, Point p, Point bent) const {
    womb(v, bent, {{200, 164}, 186, 104, 0});
    const Ellipse skull{{200, 162}, 87, 67, 0};  // its outer edge
    const double depth = depthIn(skull, p);
    fill(v, 78, depth + 5);
    fill(v, 46 + 16 * shape_.rough(bent * 0.05, 3) + 10 * smoothStep(150, 190, p.y), depth - 3);

    const double folds = shape_.rough(bent * 0.075 + Point{11, 5}, 2);  // the brain's surface
    blend(v, 118,
          0.6 * smoothStep(22, 8, depth) * coverage(depth - 6, 3) * smoothStep(0.08, 0.02, std::abs(folds)));
    for (int side = -1; side <= 1; side += 2) {
      const Point m{bent.x, 162 + side * (bent.y - 162)};
      fill(v, 27, depthIn(Ellipse{{217, 149}, 21, 10, 0.2}, m), 4);      // thalamus
      line(v, 105, depthIn(Ellipse{{204, 134}, 62, 17, 0.06}, m), 1.6);  // side of the ventricle
      fill(v, 128, depthIn(Ellipse{{248, 136}, 17, 6, 0.25}, m), 4);     // choroid plexus
      line(v, 140,
           std::max(std::abs(m.y - 116 - 0.004 * (m.x - 190) * (m.x - 190)), std::abs(m.x - 190) - 22), 2);
    }
    const double across = std::abs(p.y - 162 + 0.8 * shape_.at({p.x * 0.05, 6}));
    const bool isCavum = p.x > 141 && p.x < 172;
    const bool isThird = p.x > 200 && p.x < 236;
    const double fromMidline = isCavum ? std::abs(across - 5) : (isThird ? std::abs(across - 1.6) : across);
    if (isCavum) fill(v, 12, 4 - across, 2);
    blend(v, 205, smoothStep(2.0, 0.7, fromMidline) * coverage(depth - 6, 4));

    const double wall = smoothStep(-1, 1, depth) * smoothStep(6.5, 4, depth);
    blend(v, 95 + 160 * smoothStep(0.45, 0.95, facing(skull, p)), wall);
  }

  void paintBelly(double& v, Point p, Point bent) const {
    womb(v, bent, {{204, 166}, 180, 106, 0.04});
    const Ellipse skin{{200, 162}, 70, 66, 0};
    const double depth = depthIn(skin, p);
    fill(v, 82 + 16 * shape_.rough(bent * 0.06, 3), depth);
    line(v, 60, depth - 6, 2.5);
    line(v, 120 + 120 * facing(skin, p), depth - 1.6, 2.2);

    fill(v, 6, depthIn(Ellipse{{205, 126}, 19, 11, 0.35}, bent), 3);  // stomach
    const double vein = std::max(depthIn(Rod{{250, 164}, {226, 166}, 4.2, 4.6}, bent),
                                 depthIn(Rod{{226, 166}, {212, 180}, 4.6, 3.6}, bent));
    line(v, 150, vein + 1.4, 1.6);
    fill(v, 8, vein, 2);
    fill(v, 8, depthIn(Ellipse{{172, 156}, 4.6, 4.4, 0}, p), 2);  // aorta
    fill(v, 8, depthIn(Ellipse{{184, 172}, 4.2, 3.4, 0}, p), 2);  // caval vein
    for (int side = -1; side <= 1; side += 2) {                   // ribs, cut along
      const double arc = depthIn(Ellipse{{200, 162}, 62, 58, 0}, p);
      const double at = std::max(std::abs(p.x - 172) - 17, side * (162 - p.y) + 30);
      blend(v, 205, smoothStep(2.6, 1, std::abs(arc)) * smoothStep(2, -2, at));
    }
    const Point bones[] = {{152, 162}, {141, 152}, {141, 172}};
    const Beam beam = beamAt(p);
    for (const Point& bone : bones) {
      const Beam there = beamAt(bone);
      const double behind = smoothStep(there.range + 2, there.range + 8, beam.range);
      blend(v, v * 0.45, behind * smoothStep(0.03, 0.015, std::abs(beam.angle - there.angle)));
    }
    fill(v, 235, depthIn(Ellipse{bones[0], 5.5, 5, 0}, p), 3);
    fill(v, 225, depthIn(Ellipse{bones[1], 6, 2.6, 0.6}, p), 2.5);
    fill(v, 225, depthIn(Ellipse{bones[2], 6, 2.6, -0.6}, p), 2.5);
  }

  void paintThigh(double& v, Point p, Point bent) const {
    womb(v, bent, {{206, 168}, 182, 102, -0.05});
    const double limb = std::max(depthIn(Rod{{96, 170}, {268, 150}, 52, 29}, bent),
                                 depthIn(Rod{{280, 152}, {318, 236}, 25, 18}, bent));
    fill(v, 74 + 15 * shape_.rough(Point{bent.x * 0.04, bent.y * 0.13}, 3), limb);
    line(v, 150, limb - 1.5, 2.2);

    // The shaft is bone, its ends still cartilage; nothing gets through bone.
    const Point a{153, 163};
    const Point middle{200, 155};
    const Point b{247, 159};
    const Beam beam = beamAt(p);
    const Beam left = beamAt(a);
    const Beam right = beamAt(b);
    const double between = smoothStep(left.angle - 0.01, left.angle + 0.02, beam.angle) *
                           smoothStep(right.angle + 0.01, right.angle - 0.02, beam.angle);
    const double top =
        left.range + (right.range - left.range) * (beam.angle - left.angle) / (right.angle - left.angle);
    blend(v, 10, 0.86 * between * smoothStep(top + 2, top + 10, beam.range));
    fill(v, 34, depthIn(Ellipse{{142, 165}, 12, 10, -0.2}, p), 4);
    fill(v, 34, depthIn(Ellipse{{259, 160}, 12, 11, 0.1}, p), 4);
    fill(v, 250, std::max(depthIn(Rod{a, middle, 4.0, 3.1}, p), depthIn(Rod{middle, b, 3.1, 4.2}, p)), 2.5);
    fill(v, 215, depthIn(Rod{{288, 172}, {309, 222}, 2.6, 2.4}, p), 3);
  }

  void paintSac(double& v, Point p, Point bent) const {
    const double bladder = depthIn(Ellipse{{186, 58}, 118, 21, 0.05}, bent);
    line(v, 165, bladder, 3);
    fill(v, 5, bladder - 1, 4);
    const double uterus = depthIn(Ellipse{{204, 172}, 150, 86, 0.06}, bent);
    fill(v, 84 + 18 * shape_.rough(bent * 0.05, 3), uterus, 5);
    line(v, 150, uterus, 2.5);

    const double sac = depthIn(Ellipse{{204, 170}, 58, 44, 0}, p);
    fill(v, 158 + 26 * shape_.rough(bent * 0.09, 2), sac + 13, 7);
    line(v, 205, sac + 2, 3);
    fill(v, 5, sac, 2.5);
    line(v, 62, depthIn(Ellipse{{196, 182}, 45, 25, -0.05}, p), 1.3);  // amnion
    line(v, 175, depthIn(Ellipse{{238, 149}, 7, 7, 0}, p), 2.2);       // yolk sac

    const double body =
        std::max({depthIn(Ellipse{{179, 184}, 16, 13, 0.2}, p), depthIn(Ellipse{{208, 188}, 21, 11, -0.1}, p),
                  depthIn(Rod{{186, 188}, {204, 188}, 9, 9}, p)});
    const double limbs = std::max(depthIn(Rod{{196, 178}, {192, 171}, 3.4, 2.8}, p),
                                  depthIn(Rod{{220, 180}, {223, 173}, 3.4, 2.8}, p));
    fill(v, 150 + 30 * shape_.rough(p * 0.14, 2), std::max(body, limbs), 3);
    fill(v, 45, depthIn(Ellipse{{174, 182}, 5, 3.6, 0.3}, p), 3);  // the hind brain
  }

  Landscape grain_{2001};
  Landscape shape_{44};
};

/// The lines between the quarters, a grey scale in each and a tick for each centimetre of depth.
void drawFrame(Canvas& canvas) {
  canvas.paintAll([](Point p, double& value) {
    const bool isSplit =
        std::abs(p.x - (kQuarterWidth - 0.5)) < 1 || std::abs(p.y - (kQuarterHeight - 0.5)) < 1;
    if (isSplit) value = 62;
    const Point q{p.x - (p.x >= kQuarterWidth ? kQuarterWidth : 0),
                  p.y - (p.y >= kQuarterHeight ? kQuarterHeight : 0)};
    if (q.x >= 10 && q.x < 18 && q.y >= 20 && q.y < 120) value = 255 * (119 - q.y) / 99;
    for (int i = 0; i <= 9; ++i) {
      const double y = std::floor(14 + i * kPixelsPerCentimetre + 0.5);
      if (q.y == y && q.x >= (i % 5 == 0 ? 378 : 382) && q.x < 388) value = 190;
    }
  });
}

}  // namespace

SamplePicture makeFetus() {
  const Scans scans;
  Canvas canvas(kWidth, kHeight);
  canvas.paintAll([&scans](Point p, double& value) {
    const bool isRight = p.x >= kQuarterWidth;
    const bool isLower = p.y >= kQuarterHeight;
    const Point corner{isRight ? kQuarterWidth : 0.0, isLower ? kQuarterHeight : 0.0};
    value = scans.at((isLower ? 2 : 0) + (isRight ? 1 : 0), p - corner);
  });
  drawFrame(canvas);

  SamplePicture picture{"fetus", kWidth, kHeight, 1, 8, {}, {0, 1, 256, 128, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(255));
  return picture;
}

}  // namespace ei4::samples
