// The fixed local grids, tested by their functions.
#include "adjust/poly_grids.h"

#include "tables.h"

namespace latigo {
namespace {

constexpr double Chain = 20.1167651216;

// Forward and inverse within a distance of the origin: chains, for types 2 and 3 plain units.
void ExpectRoundTrips(std::uint32_t type, const support::Row& row) {
  const auto number = [&](std::size_t i) { return support::ToNumber(row.arguments.at(i)); };
  double largest = 0;
  for (int i = 0; i < 4000; ++i) {
    const double distance = number(3) * (i % 4 + 1) / 4;
    const double toX = number(1) + distance * std::cos(i), toY = number(2) + distance * std::sin(i);
    double x = toX, y = toY;
    type <= 3 ? PolyGridForward(type, x, y) : ChainGridForward(type, Chain, x, y);
    type <= 3 ? PolyGridInverse(type, x, y) : ChainGridInverse(type, Chain, x, y);
    largest = std::max(largest, std::hypot(x - toX, y - toY));
  }
  const double limit = support::ToNumber(row.expected.at(0).text);
  EXPECT_LE(largest, limit);
  EXPECT_GT(largest, limit / 4) << "the claim is far too weak";
}

TEST(PolyGridsTest, EveryCoefficientIsUsed) {
  for (const support::Row& row : support::ReadTable("poly_grids")) {
    SCOPED_TRACE(row.place);
    const auto type = static_cast<std::uint32_t>(std::stoi(row.arguments.at(0)));
    const bool forward = row.word == "forward";
    if (row.word == "closes") {
      ExpectRoundTrips(type, row);
      continue;
    }
    // A grid in chains has the same results in metres with any unit.
    for (const double scale : {1.0, type <= 3 ? 1.0 : Chain}) {
      double x = support::ToNumber(row.arguments.at(1)) * scale;
      double y = support::ToNumber(row.arguments.at(2)) * scale;
      if (type <= 3) {
        (forward ? PolyGridForward : PolyGridInverse)(type, x, y);
      } else {
        (forward ? ChainGridForward : ChainGridInverse)(type, Chain / scale, x, y);
      }
      const double tolerance = scale == 1 ? 5e-16 : 1e-14;  // relative
      const double toX = support::ToNumber(row.expected.at(0).text) * scale;
      const double toY = support::ToNumber(row.expected.at(1).text) * scale;
      EXPECT_NEAR(x, toX, tolerance * std::fabs(toX));
      EXPECT_NEAR(y, toY, tolerance * std::fabs(toY));
    }
  }
}

}  // namespace
}  // namespace latigo
