#include "viewkit/grid/contrast.h"

#include <algorithm>
#include <cmath>

namespace tavrix::viewkit {
namespace {

double Linear(Color channel) {
  const double value = (channel & 0xFF) / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(Color color) {
  return 0.2126 * Linear(color) + 0.7152 * Linear(color >> 8) + 0.0722 * Linear(color >> 16);
}

}  // namespace

double Contrast(Color one, Color other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

Color LegibleOn(Color ground, Color wanted, std::span<const Color> others) {
  Color best = wanted;
  double reached = Contrast(ground, wanted);
  for (const Color other : others) {
    if (reached >= kLegible) break;
    const double contrast = Contrast(ground, other);
    if (contrast <= reached) continue;
    best = other;
    reached = contrast;
  }
  return best;
}

}  // namespace tavrix::viewkit
