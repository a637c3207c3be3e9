#pragma once

#include <cstddef>
#include <vector>

#include "samples/canvas.h"
#include "samples/outline.h"

namespace ei4::samples {

struct Vertebra {
  Point centre;
  Point across;  ///< unit length, to the right
  Point down;    ///< unit length
  double width;
  double height;
  double turned;  ///< how far its arch is moved to the right, as a vertebra in a bend turns
};

struct Rib {
  double reach;  ///< sideways from the middle of the chest
  double drop;   ///< from the spine to the side of the chest
  double end;    ///< radians around the chest, 0 at the spine
};

/// The bones of a trunk seen from the front, as what they absorb; the spine is bent into an S: chest curve to
/// the patient's right, loin curve to the left. Lengths are pixels of 0.4 mm.
class Skeleton {
 public:
  static constexpr int kWidth = 1024;
  static constexpr int kHeight = 2048;

  Skeleton();

  [[nodiscard]] double at(Point p) const { return bone_.at(static_cast<int>(p.x), static_cast<int>(p.y)); }

  /// The spine's x at this height.
  [[nodiscard]] double spineAt(double y) const;

 private:
  void layVertebra(const Vertebra& vertebra, std::size_t level);
  void layRib(const Rib& rib, const Vertebra& vertebra, int side);
  void layShoulder(int side);
  void layHip(int side);
  void laySacrum();
  void layJaw();

  /// Both take the thickest of what is laid until `settle`, so that the pieces of one bone overlap without
  /// adding up. shareOf(i) thins piece i.
  template <typename Share>
  void layBent(const std::vector<Rod>& pieces, double dense, double shell, Share shareOf);
  void layBent(const std::vector<Rod>& pieces, double dense, double shell);
  void layPlate(const Outline& outline, double thickness, double rim);
  void settle();

  std::vector<Vertebra> spine_;
  Landscape texture_{1895};
  Canvas bone_;
  Canvas onePiece_;
};

}  // namespace ei4::samples
