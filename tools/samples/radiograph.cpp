// A hand seen from the back of it, with a shutter around the exposed field and a side marker. Everything
// absorbs along the ray: soft tissue as round as its width, bones as hollow rods with marrow. Lengths are
// pixels.
#include <cmath>
#include <vector>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kWidth = 2048;
constexpr int kHeight = 2500;

// What one pixel length of each adds to the picture's value.
constexpr double kSoftTissue = 2.7;
constexpr double kDenseBone = 10.5;
constexpr double kMarrow = 3.6;
constexpr double kOpenField = 190;
constexpr double kShutter = 24;

constexpr double kJoint =
    0.45;  // of an end's radius: so far its round end is drawn in, which leaves the joint's gap

/// A long bone from its base to its head, thinner in the middle.
struct Bone {
  Point base;
  Point head;
  double baseRadius;
  double waist;
  double headRadius;
};

const std::vector<std::vector<Bone>> kFingers = {
    {{{1212, 1905}, {1462, 1625}, 62, 38, 58},
     {{1508, 1572}, {1648, 1378}, 56, 32, 42},
     {{1674, 1340}, {1742, 1212}, 44, 24, 30}},
    {{{1142, 1822}, {1246, 1352}, 64, 36, 60},
     {{1258, 1290}, {1332, 990}, 58, 32, 44},
     {{1343, 942}, {1388, 762}, 46, 25, 34},
     {{1397, 726}, {1424, 612}, 36, 18, 25}},
    {{{1044, 1806}, {1074, 1292}, 62, 37, 62},
     {{1078, 1228}, {1098, 886}, 60, 33, 46},
     {{1101, 834}, {1112, 612}, 48, 26, 36},
     {{1114, 574}, {1118, 446}, 38, 19, 27}},
    {{{952, 1820}, {910, 1374}, 54, 32, 56},
     {{902, 1312}, {850, 996}, 55, 30, 42},
     {{843, 948}, {808, 738}, 44, 24, 34},
     {{802, 702}, {780, 582}, 36, 18, 25}},
    {{{872, 1850}, {768, 1480}, 52, 30, 52},
     {{752, 1424}, {664, 1198}, 48, 26, 36},
     {{648, 1156}, {596, 1020}, 38, 21, 29},
     {{586, 990}, {545, 884}, 31, 16, 22}},
};

const std::vector<Bone> kForearm = {{{1128, 2620}, {1098, 2130}, 92, 84, 128},
                                    {{868, 2620}, {888, 2150}, 62, 56, 74}};

const std::vector<Ellipse> kWristBones = {{{1186, 1982}, 74, 46, 2.45}, {{1082, 2034}, 60, 50, 0.2},
                                          {{964, 2026}, 52, 46, 0.5},   {{928, 2000}, 29, 33, 0.0},
                                          {{1214, 1908}, 42, 34, 0.4},  {{1140, 1884}, 34, 38, 0.2},
                                          {{1056, 1906}, 44, 70, 0.1},  {{958, 1916}, 46, 54, 2.3}};

double chord(double radius, double fromAxis) {
  return fromAxis >= radius ? 0 : 2 * std::sqrt(radius * radius - fromAxis * fromAxis);
}

class Hand {
 public:
  Hand() : soft_(kWidth, kHeight), bone_(kWidth, kHeight) {
    for (const std::vector<Bone>& finger : kFingers) layFinger(finger);
    for (const Bone& bone : kForearm) {
      layBone(bone);
      laySoft({bone.base, bone.head, 235, 205});
    }
    laySoft({{1000, 2350}, {1010, 1990}, 255, 250});
    for (const Ellipse& bone : kWristBones) layWristBone(bone);
    layRound({{1392, 1688}, 24, 17, 0.8});  // sesamoid bones of the thumb
    layRound({{1440, 1722}, 20, 15, 0.6});
  }

  [[nodiscard]] double at(int x, int y) const {
    return kSoftTissue * 2 * std::sqrt(std::sqrt(soft_.at(x, y))) + bone_.at(x, y);
  }

 private:
  void layFinger(const std::vector<Bone>& finger) {
    laySoft({finger[0].base, finger[0].head, 150, 118});
    for (std::size_t i = 1; i < finger.size(); ++i) {
      const double thick = finger[i].baseRadius + 28;
      laySoft({finger[i - 1].head, finger[i].head, i == 1 ? 112.0 : thick + 6, finger[i].headRadius + 34});
    }
    for (const Bone& bone : finger) layBone(bone);
  }

  /// Fourth powers add up to a smooth larger-of-the-two.
  void laySoft(const Rod& rod) {
    soft_.paintAround(rod.a, rod.b, std::max(rod.ra, rod.rb), [&](Point p, double& sum) {
      const Point q = p + wobble(p) * 2.5;
      const RodPlace place = placeIn(rod, q);
      if (place.depth <= 0) return;
      const double square = place.depth * (2 * place.radius - place.depth);  // r^2 - d^2
      sum += square * square;
    });
  }

  void layBone(const Bone& bone) {
    const double widest = std::max(bone.baseRadius, bone.headRadius);
    const Point along = (bone.head - bone.base) * (1 / length(bone.head - bone.base));
    const Rod axis{bone.base + along * (kJoint * bone.baseRadius),
                   bone.head - along * (kJoint * bone.headRadius), 0, 0};
    bone_.paintAround(bone.base, bone.head, widest + 4, [&](Point p, double& value) {
      const Point q = p + wobble(p);
      const RodPlace place = placeIn(axis, q);
      const double fromMiddle = 2 * place.along - 1;
      const double end = fromMiddle < 0 ? bone.baseRadius : bone.headRadius;
      const double flare = fromMiddle * fromMiddle * fromMiddle * fromMiddle;
      const double radius = bone.waist + (end - bone.waist) * flare;
      const double shell = std::min(bone.waist * 0.42, 19.0) * (1 - flare) + 3.2;
      value += absorbed(radius, shell, -place.depth, p, 1 - 0.35 * flare);
    });
  }

  void layWristBone(const Ellipse& bone) {
    bone_.paintAround(bone.centre, bone.centre, std::max(bone.rx, bone.ry) + 4, [&](Point p, double& value) {
      const double radius = std::min(bone.rx, bone.ry);
      const double depth = depthIn(bone, p + wobble(p) * 2);
      if (depth > 0) value += absorbed(radius, 4.5, std::max(0.0, radius - depth), p, 0.72);
    });
  }

  void layRound(const Ellipse& bone) { layWristBone(bone); }

  /// A shell with marrow inside, met at a distance from its axis; `density` thins both.
  [[nodiscard]] double absorbed(double radius, double shell, double fromAxis, Point p, double density) const {
    const double outer = chord(radius, fromAxis);
    if (outer == 0) return 0;
    const double inner = chord(radius - shell, fromAxis);
    const double threads = 1 + 0.16 * texture_.rough(Point{p.x * 0.11, p.y * 0.06}, 3);
    return density * (kDenseBone * (outer - inner) + kMarrow * threads * inner);
  }

  [[nodiscard]] Point wobble(Point p) const {
    return Point{texture_.at(p * 0.012), texture_.at(p * 0.012 + Point{70, 0})} * 5;
  }

  Landscape texture_{41};
  Canvas soft_;
  Canvas bone_;
};

/// Depth inside the exposed field, a rectangle that stands a little askew.
double depthInField(Point p) {
  const Point axis = direction(-0.012);
  const Point d = p - Point{1085, 1285};
  const double u = dot(d, axis);
  const double v = d.y * axis.x - d.x * axis.y;
  return std::min(805 - std::abs(u), 1125 - std::abs(v));
}

/// A lead letter "R" beside the hand.
double depthInMarker(Point p) {
  const Point at{400, 2080};
  double depth = -1000;
  const auto stroke = [&](Point a, Point b) {
    depth = std::max(depth, depthIn(Rod{at + a, at + b, 9, 9}, p));
  };
  stroke({0, 0}, {0, 140});
  stroke({0, 0}, {48, 0});
  stroke({48, 0}, {72, 18});
  stroke({72, 18}, {72, 48});
  stroke({72, 48}, {48, 68});
  stroke({48, 68}, {0, 68});
  stroke({38, 68}, {76, 140});
  return depth;
}

}  // namespace

SamplePicture makeRadiograph() {
  Canvas canvas(kWidth, kHeight);
  {
    const Hand hand;
    const Landscape haze(5);
    canvas.paintAll([&](Point p, double& value) {
      const double field = kOpenField + 40 * haze.rough(p * 0.0012, 2) + 0.02 * (p.x - kWidth / 2.0);
      const double absorbed = hand.at(static_cast<int>(p.x), static_cast<int>(p.y));
      value =
          field + 1.6 * absorbed / (1 + absorbed / 3200);  // brings up the soft tissue, as processing does
    });
  }
  canvas.blur(1, 2);  // the focal spot and the detector

  Random random(1895);
  const Canvas noise = softNoise(kWidth, kHeight, random);
  canvas.paintAll([&noise](Point p, double& value) {
    if (std::abs(p.x - 440) < 120 && std::abs(p.y - 2150) < 150) {
      value += (3300 - value) * coverage(depthInMarker(p), 3);
    }
    const double grain = 1.6 + value * 0.0022;  // fewer quanta behind more tissue
    value += grain * noise.at(static_cast<int>(p.x), static_cast<int>(p.y));
    value = kShutter + (value - kShutter) * coverage(depthInField(p), 9);
  });

  SamplePicture picture{
      "radiograph", kWidth, kHeight, 2, 12, {}, {0, 1, 2200, 1200, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(4095));
  return picture;
}

}  // namespace ei4::samples
