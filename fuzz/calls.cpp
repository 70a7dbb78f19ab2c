// A sequence of calls of all exports with two objects; and round trips.
#include <latigo/latigo.h>

#include <vector>

#include "fuzz_input.h"
#include "projection/kinds.h"

namespace {

using namespace fuzz;
using latigo::Kinds;
using H = GeodesyHandle;

constexpr std::int32_t TextSize = 130;

// The known state of an object.
struct Object {
  H handle = nullptr;
  GeodesyParams params{};
  Adjustment adjustment = {0, 0, 0, 0, 1, 0, 0};
  EllDiff diff = {0, 0, 0, 1, 0, 0, 0};
  bool active = false, grid = false, geoid = false;  // a shift is active, by a grid; there is a geoid grid
  double constant = 0;
};

// The arguments and all possible outputs of a call.
struct Store {
  std::int32_t result, code, size;
  std::uint32_t choice;
  double n[4], d[3], value;
  EllDiff diff;
  Adjustment adjustment;
  GeodesyParams params;
  char text[TextSize], letters[4];
  auto Or(auto* pointer) const { return (choice & 1) != 0 ? pointer : nullptr; }
};

// The doubles of a record, from a byte on.
template <typename T>
void Fill(Input& in, T& record, std::size_t from, std::size_t to = sizeof(T)) {
  for (std::size_t at = from; at < to; at += sizeof(double)) {
    const double number = in.Number();
    std::memcpy(reinterpret_cast<char*>(&record) + at, &number, sizeof number);
  }
}

// A grid of each kind, a bad one, a missing one, and none.
const char* Grid(std::size_t choice) {
  static const std::string paths[] = {WriteFile("datum/d", SmallGrid(2)), WriteFile("datum/t", SmallGrid(3)),
                                      WriteFile("datum/g", SmallGrid(1)), WriteFile("datum/s", "short"), "missing"};
  return choice % 6 < std::size(paths) ? paths[choice % 6].c_str() : nullptr;
}
constexpr const char* Languages[] = {"", "fra", "ESP", "jpn"};

// The possible codes of a call, one bit each.
constexpr std::uint32_t Codes(auto... codes) { return (1U | ... | (1U << codes)); }

// In the order above: codes, count of double arguments, of doubles read and written, the call. A result of -1 means a
// function that returns a double.
// clang-format off
enum Call { XY, Geo, Factor, Params, SetDiff, GetDiff, SetModel, GetModel, FromEll, ToEll, From84, To84, Ecef, FromEcef,
            Circle, Rhumb, SetHeights, GetHeights, Heights, Horizontal, Vertical, SetAdjust, GetAdjust, Name };
#define CALL [](H h, [[maybe_unused]] Store& s) -> std::int32_t
constexpr struct {
  std::uint32_t codes;
  std::size_t numbers, inOut;
  std::int32_t (*call)(H, Store&);
} Exports[] = {
    {Codes(6), 2, 0, CALL { return GeoXY(h, &s.d[0], &s.d[1], s.n[0], s.n[1]); }},
    {Codes(10, 11), 2, 0, CALL { return XYGeo(h, s.n[0], s.n[1], &s.d[0], &s.d[1]); }},
    {Codes(10, 11), 2, 0, CALL { return s.value = Scale(h, s.n[0], s.n[1]), -1; }},
    {Codes(), 0, 0, CALL { return GetGeodesyParams(h, &s.params, s.Or(s.text), s.Or(s.letters)); }},
    {Codes(), 0, 0, CALL { return SetEllDiff(h, &s.diff); }},
    {Codes(), 0, 0, CALL { return GetEllDiff(h, &s.diff); }},
    {Codes(1, 2, 3), 0, 0, CALL { return SetEllModel(h, Grid(s.choice)); }},
    {Codes(), 0, 0, CALL { return GetEllModel(h, s.text, s.size); }},
    {Codes(), 2, 3, CALL { return EllConv(h, &s.d[0], &s.d[1], s.Or(&s.d[2]), s.n[0], s.n[1]); }},
    {Codes(), 2, 3, CALL { return InvEllConv(h, &s.d[0], &s.d[1], s.Or(&s.d[2]), s.n[0], s.n[1]); }},
    {Codes(), 0, 3, CALL { return WGS84Conv(h, &s.d[0], &s.d[1], s.Or(&s.d[2])); }},
    {Codes(), 0, 3, CALL { return InvWGS84Conv(h, &s.d[0], &s.d[1], s.Or(&s.d[2])); }},
    {Codes(), 3, 0, CALL { return GeoECEF(h, &s.d[0], &s.d[1], &s.d[2], s.n[0], s.n[1], s.n[2]); }},
    {Codes(), 3, 0, CALL { return ECEFGeo(h, s.n[0], s.n[1], s.n[2], &s.d[0], &s.d[1], &s.d[2]); }},
    {Codes(), 4, 0, CALL { return s.value = GCircLL(h, s.n[0], s.n[1], s.n[2], s.n[3], s.Or(&s.d[0])), -1; }},
    {Codes(), 4, 0, CALL { return s.value = RLineLL(h, s.n[0], s.n[1], s.n[2], s.n[3], s.Or(&s.d[0])), -1; }},
    {Codes(9), 1, 0, CALL { return SetGeoid(h, Grid(s.choice), s.n[0]); }},
    {Codes(), 0, 0, CALL { return GetGeoid(h, s.text, s.size, s.Or(&s.d[0])); }},
    {Codes(8), 2, 0, CALL { return Undulation(h, s.n[0], s.n[1], &s.d[0]); }},
    {Codes(), 0, 1, CALL { return HConvert(h, &s.d[0], s.choice & 2); }},
    {Codes(), 0, 1, CALL { return VConvert(h, &s.d[0], s.choice & 2); }},
    {Codes(7), 0, 0, CALL { return SetAdjustment(h, &s.adjustment); }},
    {Codes(), 0, 0, CALL { return GetAdjustment(h, &s.adjustment); }},
    {Codes(12), 0, 0, CALL { return GetLocalName(h, static_cast<std::int32_t>(s.choice % 12), Languages[s.choice / 64], s.text, s.size); }},
};

// By kind: the codes of GeoXY, XYGeo and Scale.
constexpr std::uint32_t CodesOfKind[][3] = {
    {}, {Codes(6), Codes(11), 1}, {Codes(6), 1, 1}, {Codes(6), Codes(10), Codes(10)}, {1, 1, 1}, {1, 1, 1},
    {1, Codes(11), Codes(11)}, {1, Codes(11), Codes(11)}, {1, 1, 1}, {1, 1, 1}, {1, Codes(10, 11), Codes(10)}, {1, 1, 1}, {1, 1, 1}};
// clang-format on

// A failed XYGeo writes exactly what its projection specifies: both values, one of them, or none.
bool WritesAsPromised(std::int32_t kind, const Store& s, const Store& before) {
  const bool latitude = !Same(s.d[0], before.d[0]), longitude = !Same(s.d[1], before.d[1]);
  return kind == LATIGO_KIND_LAMBERT               ? latitude && longitude
         : kind == LATIGO_KIND_TRANSVERSE_MERCATOR ? (latitude ? longitude || std::fabs(s.d[0]) > Pi / 2 : !longitude)
         : kind == LATIGO_KIND_ALBERS              ? longitude && latitude == (s.code == 11)
                                                   : !latitude && !longitude;
}

bool Equal(double left, double right) { return left == right || (std::isnan(left) && std::isnan(right)); }

// Checks the outputs of a call and the object's state after it.
void Check(Object& o, std::size_t call, const Store& s, const Store& before, bool untouched) {
  const bool ok = s.result == 1, has = Grid(s.choice) != nullptr;
  REQUIRE(call > Factor || (CodesOfKind[o.params.Kind][call] >> s.code & 1) != 0);
  REQUIRE(ok || untouched || call == Geo || call == Heights || (call == Name && s.size == 1));
  const std::int32_t limit = call == GetModel ? s.size - 1 : call == GetHeights || call == Name ? s.size : TextSize;
  for (std::int32_t i = std::max(limit, 1); i < TextSize; ++i) { REQUIRE(s.text[i] == before.text[i]); }
  if (call == Geo) { REQUIRE(ok || WritesAsPromised(o.params.Kind, s, before)); }
  if (call == Params) {
    GeodesyParams wanted = o.params;
    wanted.ScaleFactor = wanted.Kind == 12 ? s.params.ScaleFactor : wanted.ScaleFactor == 0 ? 1 : wanted.ScaleFactor;
    const double size = std::fabs(wanted.InvFlattening), ratio = s.params.InvFlattening / wanted.InvFlattening;
    REQUIRE(std::fabs(ratio - 1) < 5e-16 || !(size > 1e-300 && size < 1e300));
    wanted.InvFlattening = s.params.InvFlattening;
    REQUIRE(Same(s.params, wanted) && (s.Or(&s) == nullptr || std::memchr(s.text, 0, 24) != nullptr));
  }
  if (call == SetDiff) {
    const EllDiff& d = o.diff = s.diff;
    o.grid = false;
    o.active = d.DeltaX != 0 || d.DeltaY != 0 || d.DeltaZ != 0 || d.DeltaRX != 0 || d.DeltaRY != 0 || d.DeltaRZ != 0;
  }
  if (call == SetModel) { o.diff = Object().diff, o.grid = ok && has, o.active = ok ? has : o.active; }
  if (call == SetHeights) { o.constant = s.n[0], o.geoid = ok && has; }
  if (call == SetAdjust && ok) { o.adjustment = s.adjustment; }
  if (call == SetAdjust) { REQUIRE(ok == (s.adjustment.AdjustScale != 0)); }
  if (call == GetDiff) { REQUIRE(Same(s.diff, o.grid ? EllDiff{0, 0, 0, -1, 0, 0, 0} : o.diff)); }
  if (call == GetAdjust) { REQUIRE(Same(s.adjustment, o.adjustment)); }
  if (call == GetModel) { REQUIRE(o.grid || s.text[0] == '\0'); }
  if (call == GetHeights) {
    REQUIRE((o.geoid || s.text[0] == '\0') && (s.Or(&s) == nullptr || Same(s.d[0], o.constant)));
  }
  if (call == FromEll || call == ToEll) { REQUIRE(untouched || (o.active && !o.grid)); }
  if (call == From84 || call == To84) { REQUIRE(untouched || o.active); }
  if (call == Heights) { REQUIRE((ok || o.geoid) && ((ok && o.geoid) || Equal(s.d[0], o.constant))); }
  const double unit = o.params.Unit, given = before.d[0];
  if (call == Horizontal || call == Vertical) {
    REQUIRE(Equal(s.d[0], (s.choice & 2) != 0 ? given * unit : given / unit));
  }
  if (call == Name && ok) { REQUIRE(std::memchr(s.text, 0, static_cast<std::size_t>(s.size)) != nullptr); }
}

// A call with arbitrary numbers and records, also on a null handle.
void DoCall(Input& in, Object& object, bool skip, std::vector<Store>& trace) {
  const std::size_t call = in.Below(std::size(Exports));
  const auto& [codes, numbers, inOut, function] = Exports[call];
  Store s;
  std::memset(&s, 0xA5, sizeof s);
  s.size = in.Take<std::int8_t>(), s.choice = in.Take<std::uint8_t>();
  Fill(in, s.n, 0, 8 * numbers), Fill(in, s.d, 0, 8 * inOut);
  if (call == SetDiff) { Fill(in, s.diff, 0); }
  if (call == SetAdjust) {
    s.adjustment.AdjustType = in.Take<std::uint32_t>() & 0x8003001F;
    Fill(in, s.adjustment, 4);
  }
  s.value = call == Factor ? 1 : 0;
  const Store before = s;
  const H handle = skip ? nullptr : object.handle;
  const std::int32_t result = function(handle, s);
  const bool untouched = Same(s, before);
  s.code = GetGeodesyError(), s.result = s.code == 0;
  REQUIRE(result == s.result || result == -1);
  if (handle == nullptr) { return REQUIRE(s.code == 2 && untouched); }
  REQUIRE(s.code >= 0 && s.code < 14 && (codes >> s.code & 1) != 0);
  Check(object, call, s, before, untouched);
  trace.push_back(s);
}

// An object from a good record with some numbers changed, or from a file.
void Make(Input& in, Object& object, bool skip) {
  static const std::string text = "[Geodesy]\nProjection=SMERC\nFlattening=298\nDynDatum=t\nGeoid=g\n";
  static const std::string file = WriteFile("calls.ini", text);
  Grid(0);
  const std::size_t choice = in.Below(16);
  GeodesyParams p = {
      6378137, 298, static_cast<std::int32_t>(in.Below(std::size(Kinds) + 2)), 1, 0.9996, 0.1, 0.7, 0.6, 0.8, 0.5,
      5e5,     -1e5};
  for (std::size_t changes = in.Below(5); changes > 0; --changes) {
    const std::size_t at = in.Below(11), byte = 8 * at + (at < 2 ? 0 : 4);
    Fill(in, p, byte, byte + 8);
  }
  if (skip) { return; }
  REQUIRE(object.handle == nullptr || (DestroyGeodesy(object.handle) == 1 && GetGeodesyError() == 0));
  object = {.handle = choice < 2 ? CreateFileGeodesy(file.c_str(), choice == 0 ? nullptr : "none") : CreateGeodesy(&p),
            .params = p};
  const std::int32_t code = GetGeodesyError();
  // clang-format off
  const std::int32_t refusal = choice < 2 ? static_cast<std::int32_t>(5 * choice) : p.InvFlattening == 0 ? 3 : p.Unit == 0 ? 4
                               : p.Kind < 1 || p.Kind > std::ssize(Kinds) ? 5 : 7;
  // clang-format on
  REQUIRE(code == refusal || (code == 0 && refusal == 7));
  REQUIRE((object.handle != nullptr) == (code == 0) &&
          (code != 7 || p.Kind <= LATIGO_KIND_TRANSVERSE_MERCATOR || p.Kind == LATIGO_KIND_ALBERS));
  if (choice == 0) {
    GetGeodesyParams(object.handle, &object.params, nullptr, nullptr);
    object.active = object.grid = object.geoid = true;
  }
}

// Two objects, called in turn. With `alone` there is only the first one, whose calls must have the same results.
std::vector<Store> Sequence(Input in, bool alone) {
  Object objects[2];
  std::vector<Store> traces[2];
  Make(in, objects[0], false), Make(in, objects[1], alone);
  for (int calls = 0; calls < 40 && in.size > 0; ++calls) {
    const std::size_t choice = in.Below(64), which = choice & 1;
    if (choice < 4) { Make(in, objects[which], alone && which != 0); }
    DoCall(in, objects[which], alone && which != 0, traces[which]);
  }
  for (const Object& object : objects) { REQUIRE(DestroyGeodesy(object.handle) == (object.handle != nullptr)); }
  REQUIRE(GetGeodesyVersion() == 1302);
  return traces[0];
}

// Domains with their largest round-trip error in metres (docs/projections.md); degrees. Points are about the latitude
// `about`, or about RefLatitude if it is 0; RefLatitude and the parallels are on one side of the equator.
struct Domain {
  std::int32_t kind;
  double closure, lowest, highest, about, dPhi, dLambda;
};
// clang-format off
constexpr Domain Domains[] = {
    {1, 1e-5, 10, 80, 1e-9, 89, 85}, {2, 1e-5, 0, 80, 1e-9, 89, 170}, {3, 5e-5, 0, 84, 42, 42, 2}, {3, 8e-4, 0, 84, 42, 42, 3},
    {3, 6e-3, 0, 84, 42, 42, 4}, {3, 4, 0, 84, 42, 42, 10}, {4, 1e-4, 0, 65, 0, 20, 40}, {5, 5e-3, 0, 65, 0, 20, 40},
    {6, 1e-3, 0, 40, 0, 12, 12}, {7, 1e-3, 0, 40, 0, 12, 12}, {8, 3e-6, 0, 80, 0, 0.7, 0.7}, {8, 6e-3, 0, 80, 0, 3.5, 3.5},
    {8, 2, 0, 75, 0, 10.5, 10.5}, {9, 1e-5, 0, 80, 1e-9, 89, 180}, {10, 1e-5, 10, 80, 40, 40, 60}, {11, 9e-4, 0, 60, 30, 30, 1},
    {11, 2e-2, 0, 60, 30, 30, 3}, {11, 0.9, 0, 60, 30, 30, 7}, {12, 1e-5, 50, 90, 70, 20, 180}};
// clang-format on

double Metres(double dPhi, double dLambda, double phi) {
  return 6378137 * std::hypot(dPhi, std::remainder(dLambda, 2 * Pi) * std::cos(phi));
}

void Closure(Input& in) {
  const auto& [kind, closure, lowest, highest, about, dPhi, dLambda] = Domains[in.Below(std::size(Domains))];
  const double side = in.Below(2) != 0 ? -1 : 1;
  const auto any = [&in](double limit) { return in.Between(-limit, limit); };
  const auto parallel = [&, low = lowest, high = highest] { return side * in.Between(low, high) * Degree; };
  constexpr double Units[] = {1, 0.3048, 20.1167651216, 0.201166195};
  // clang-format off
  GeodesyParams p = {in.Between(6.37e6, 6.38e6), in.Between(290, 305), kind, Units[in.Below(4)], in.Between(0.5, 2), any(Pi),
                     parallel(), parallel(), parallel(), any(Pi / 3), any(1e6), any(1e6)};
  // Parallels that differ by rounding only would define a cone by rounding only.
  if (in.Below(4) == 0 || std::fabs(p.NorthParallel - p.SouthParallel) < 1e-6) { p.SouthParallel = p.NorthParallel; }
  const Adjustment adjustment = {static_cast<std::uint32_t>(in.Below(2) | in.Below(4) << 16), any(1e6), any(1e6), any(7),
                                 in.Between(0.5, 2), any(1e6), any(1e6)};
  // clang-format on
  const EllDiff d = {any(1e3), any(1e3), any(1e3), 1 + any(1e-4), any(1e-4), any(1e-4), any(1e-4)};
  const double turn = std::hypot(d.DeltaRX, d.DeltaRY, d.DeltaRZ), scale = std::fabs(d.DeltaScale - 1);
  const double residue = std::hypot(d.DeltaX, d.DeltaY, d.DeltaZ) * (turn + scale) + turn * turn * 6.5e6;
  const H h = CreateGeodesy(&p);
  REQUIRE(h != nullptr && SetAdjustment(h, &adjustment) == 1 && SetEllDiff(h, &d) == 1);
  for (int i = 0; i < 8; ++i) {
    const double phi = (about == 0 ? p.RefLatitude : side * about * Degree) + any(dPhi) * Degree;
    const double lambda = p.CentralMeridian + any(dLambda) * Degree;
    double x, y, toPhi, toLambda;
    REQUIRE(GeoXY(h, &x, &y, phi, lambda) == 1 && XYGeo(h, x, y, &toPhi, &toLambda) == 1);
    REQUIRE(Metres(toPhi - phi, toLambda - lambda, phi) <= closure);
    // The inverse datum shift is not exact, but close.
    const double start = any(80) * Degree, height = in.Between(-1e4, 1e5);
    double latitude = start, longitude = lambda, h84 = height;
    REQUIRE(WGS84Conv(h, &latitude, &longitude, &h84) == 1 && InvWGS84Conv(h, &latitude, &longitude, &h84) == 1);
    const double miss = std::hypot(Metres(latitude - start, longitude - lambda, start), h84 - height);
    REQUIRE(miss <= 1.02 * residue + 1e-3);
  }
  DestroyGeodesy(h);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  Scratch();
  if (in.Below(2) != 0) {
    Closure(in);
    return 0;
  }
  const std::vector<Store> both = Sequence(in, false), alone = Sequence(in, true);
  REQUIRE(both.size() == alone.size());
  REQUIRE(both.empty() || std::memcmp(both.data(), alone.data(), both.size() * sizeof(Store)) == 0);
  return 0;
}
