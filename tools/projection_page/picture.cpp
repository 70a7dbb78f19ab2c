#include "picture.h"

#include <algorithm>
#include <sstream>

#include "../picture/panel.h"

namespace latigo::page {

namespace {

// Pixels.
constexpr int Top = 66;
constexpr int LeftPanel = 62;
constexpr int RightPanel = 540;
constexpr int PictureWidth = 1010;

}  // namespace

std::string Picture(const System& system, const Grid& grid) {
  const picture::Frame left{LeftPanel, Top, system.area};
  const picture::Frame right{RightPanel, Top, system.area};
  const picture::Measures& measures = grid.Measured();
  const auto cells = [&](const picture::Measured& measured) {
    return MeasureCells(system.area, picture::DefaultRows, measured);
  };
  std::ostringstream svg;
  picture::Begin(svg, PictureWidth, left.Bottom() + 50,
                 "Kind " + std::to_string(system.params.Kind) + ", " + system.projection + ": " + system.name);
  const auto closure = cells([&](Position at) { return measures.Closure(at); });
  picture::Panel(svg, left, "Closure error, forward and inverse", picture::ClosureClasses(), closure);
  // By the library, unless Scale is 1 everywhere or that of one direction.
  auto scale = cells([&](Position at) { return measures.ScaleExcess(at); });
  const char* title = picture::PointScaleTitle;
  if (!measures.IsConformal() ||
      std::all_of(scale.begin(), scale.end(), [](const auto& each) { return each.code == 0 && each.value == 0; })) {
    scale = cells([&](Position at) { return measures.FactorExcess(at); });
    title = measures.FactorTitle();
  }
  picture::TakeFailures(closure, scale);
  picture::Panel(svg, right, title, picture::ScaleClasses(), scale);
  svg << "</svg>\n";
  return svg.str();
}

}  // namespace latigo::page
