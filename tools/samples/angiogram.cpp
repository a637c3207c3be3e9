// Arteries filled with contrast, dark on the soft shadows of ribs and diaphragm: an 8-bit grey picture.
#include <cmath>
#include <iterator>
#include <vector>

#include "samples/canvas.h"
#include "samples/sample_pictures.h"

namespace ei4::samples {

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;

/// A vessel tree, rod by rod, each as dark as the contrast on the way through it is thick.
class VesselTree {
 public:
  VesselTree() : thickness_(kWidth, kHeight) {
    grow({430, 150}, 2.2, 11.5, 72, -0.016);  // down the left side of the heart
    grow({430, 150}, 0.35, 12.5, 70, 0.02);   // and around its right one
    lay({{380, 102}, {430, 150}, 13, 12.5}, 1);
  }

  [[nodiscard]] double at(int x, int y) const { return thickness_.at(x, y); }
  void soften() { thickness_.blur(1, 2); }

  void lay(const Rod& rod, double density) {
    thickness_.paintAround(rod.a, rod.b, std::max(rod.ra, rod.rb) + 1, [&](Point p, double& value) {
      const RodPlace place = placeIn(rod, p);
      if (place.depth > 0) {
        value = std::max(value, density * 2 * std::sqrt(place.depth * (2 * place.radius - place.depth)));
      }
    });
  }

 private:
  void grow(Point from, double angle, double radius, int steps, double curl) {
    double wander = 0;
    for (int i = 0; i < steps && radius > 0.9; ++i) {
      wander = 0.8 * wander + random_.between(-0.05, 0.05);
      angle += curl * (0.6 + 0.4 * random_.unit()) + wander;
      const Point to = from + direction(angle) * (5 + radius * 0.5);
      const double next = radius * 0.982;
      lay({from, to, radius, next}, 1);
      from = to;
      radius = next;
      if (i > 3 && random_.unit() < 0.13) {
        const double side = random_.unit() < 0.5 ? -1 : 1;
        const double bend = -side * random_.between(0.005, 0.03);  // named: arguments have no order
        const double thinner = radius * random_.between(0.42, 0.68);
        grow(from, angle + side * random_.between(0.45, 0.95), thinner, steps - i, bend);
        radius *= 0.94;
      }
    }
  }

  Random random_{123};
  Canvas thickness_;
};

double backgroundAt(Point p, const Landscape& shape) {
  double v = 168 + 14 * shape.rough(p * 0.004, 3);
  for (int rib = 0; rib < 5; ++rib) {  // faint ribs, from the spine down to the left
    const double middle = 40 + rib * 185.0 + 0.00042 * (p.x - 900) * (p.x - 900) - 0.12 * (p.x - 500);
    const double d = std::abs(p.y - middle);
    v -= 9 * smoothStep(40, 30, d) + 7 * smoothStep(7, 0, std::abs(d - 34));
  }
  const double spine = p.x - 905 - 10 * shape.at({p.y * 0.006, 4});
  v -= 34 * smoothStep(95, 70, std::abs(spine));
  v += 9 * smoothStep(0.35, 0.8, shape.at({3, p.y * 0.0135})) * smoothStep(90, 60, std::abs(spine));
  const double heart = depthIn(Ellipse{{520, 420}, 360, 300, 0.5}, p);
  v -= 32 * smoothStep(-20, 120, heart);
  const double diaphragm = p.y - 640 - 0.0006 * (p.x - 350) * (p.x - 350);
  v -= 40 * smoothStep(-6, 26, diaphragm);
  return v;
}

}  // namespace

SamplePicture makeAngiogram() {
  VesselTree tree;
  const Point bends[] = {{905, -10}, {840, 20}, {760, 18}, {640, 14},
                         {520, 34},  {430, 60}, {388, 88}, {380, 102}};
  for (std::size_t i = 1; i < std::size(bends); ++i)
    tree.lay({bends[i - 1], bends[i], 6.5, 6.5}, 0.75);  // catheter
  tree.soften();

  const Landscape shape(3);
  Random random(8);
  const Canvas noise = softNoise(kWidth, kHeight, random);
  Canvas canvas(kWidth, kHeight);
  canvas.paintAll([&](Point p, double& value) {
    const int x = static_cast<int>(p.x);
    const int y = static_cast<int>(p.y);
    const double open = backgroundAt(p, shape);
    const double filled = open / (1 + tree.at(x, y) * 0.052);
    value = filled + 2.4 * noise.at(x, y);
    const double iris =
        520 - length(p - Point{kWidth / 2.0, kHeight / 2.0});  // the round field cuts the corners
    value = 6 + (value - 6) * coverage(iris, 7);
  });

  SamplePicture picture{"grey8", kWidth, kHeight, 1, 8, {}, {0, 1, 220, 110, tools::kShortestPreamble}};
  setGreyPixels(picture, canvas.rounded(255));
  return picture;
}

}  // namespace ei4::samples
