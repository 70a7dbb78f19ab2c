// Runs the claims of claims/*.txt through the exports.
#include <array>
#include <map>
#include <variant>

#include "tables.h"

namespace {

using namespace support;
using Handle = GeodesyHandle;

// clang-format off
#define FIELD(name) {#name, offsetof(GeodesyParams, name)}
const std::map<std::string, std::size_t> Fields = {
    FIELD(SemiMajorAxis), FIELD(InvFlattening), FIELD(Unit), FIELD(ScaleFactor), FIELD(CentralMeridian), FIELD(RefLatitude),
    FIELD(NorthParallel), FIELD(SouthParallel), FIELD(SkewAzimuth), FIELD(FalseEasting), FIELD(FalseNorthing)};

std::int32_t Succeeded(double) { return GetGeodesyError() == 0 ? 1 : 0; }

// A height of nan means a null pointer.
double* OrNull(double* height) { return std::isnan(*height) ? nullptr : height; }

// The grid coordinates of a position.
std::array<double, 2> Grid2(Handle h, double latitude, double longitude) {
  std::array<double, 2> xy = {NaN, NaN};
  GeoXY(h, &xy[0], &xy[1], latitude, longitude);
  return xy;
}

// Calls: number of arguments, whether a failure is logged, and the call.
struct Function {
  std::size_t in;
  bool logged;
  std::int32_t (*call)(Handle h, const double* i, double* o);
};
#define CALL [](Handle h, [[maybe_unused]] const double* i, [[maybe_unused]] double* o) -> std::int32_t
const std::map<std::string, Function> Functions = {
    {"forward",        {2, true,  CALL { return GeoXY(h, &o[0], &o[1], i[0], i[1]); }}},
    {"inverse",        {2, true,  CALL { return XYGeo(h, i[0], i[1], &o[0], &o[1]); }}},
    {"scale",          {2, false, CALL { return Succeeded(o[0] = Scale(h, i[0], i[1])); }}},
    {"return",         {2, true,  CALL { const auto [x, y] = Grid2(h, i[0], i[1]); return XYGeo(h, x, y, &o[0], &o[1]); }}},
    {"scale-at",       {2, false, CALL { const auto [x, y] = Grid2(h, i[0], i[1]); return Succeeded(o[0] = Scale(h, x, y)); }}},
    {"great-circle",   {4, false, CALL { return Succeeded(o[0] = GCircLL(h, i[0], i[1], i[2], i[3], &o[1])); }}},
    {"rhumb-line",     {4, false, CALL { return Succeeded(o[0] = RLineLL(h, i[0], i[1], i[2], i[3], &o[1])); }}},
    {"cartesian",      {3, false, CALL { return GeoECEF(h, &o[0], &o[1], &o[2], i[0], i[1], i[2]); }}},
    {"geographic",     {3, false, CALL { return ECEFGeo(h, i[0], i[1], i[2], &o[0], &o[1], &o[2]); }}},
    {"from-wgs84",     {3, true,  CALL { std::copy_n(i, 3, o); return WGS84Conv(h, &o[0], &o[1], OrNull(&o[2])); }}},
    {"to-wgs84",       {3, true,  CALL { std::copy_n(i, 3, o); return InvWGS84Conv(h, &o[0], &o[1], OrNull(&o[2])); }}},
    {"from-ellipsoid", {5, false, CALL { std::copy_n(i, 3, o); return EllConv(h, &o[0], &o[1], &o[2], i[3], 1 / i[4]); }}},
    {"to-ellipsoid",   {5, false, CALL { std::copy_n(i, 3, o); return InvEllConv(h, &o[0], &o[1], &o[2], i[3], 1 / i[4]); }}},
    {"undulation",     {2, false, CALL { return Undulation(h, i[0], i[1], &o[0]); }}},
    {"from-vertical",  {1, false, CALL { o[0] = i[0]; return VConvert(h, o, 1); }}},
    {"to-vertical",    {1, false, CALL { o[0] = i[0]; return VConvert(h, o, 0); }}},
    {"to-metres",      {1, false, CALL { o[0] = i[0]; return HConvert(h, o, 2); }}},
    {"from-metres",    {1, false, CALL { o[0] = i[0]; return HConvert(h, o, 0); }}},
    {"shift",          {7, false, CALL { const EllDiff d = {i[0], i[1], i[2], i[3], i[4], i[5], i[6]}; return SetEllDiff(h, &d); }}},
    {"adjust",         {7, false, CALL { const Adjustment a = {std::uint32_t(i[0]), i[1], i[2], i[3], i[4], i[5], i[6]};
                                         return SetAdjustment(h, &a); }}},
    {"shift?",         {0, false, CALL { EllDiff d{}; const std::int32_t success = GetEllDiff(h, &d);
                                         std::memcpy(o, &d, sizeof d); return success; }}},
    {"adjust?",        {0, false, CALL { Adjustment a{}; const std::int32_t success = GetAdjustment(h, &a); o[0] = a.AdjustType;
                                         std::memcpy(&o[1], reinterpret_cast<char*>(&a) + 4, sizeof a - 4); return success; }}},
};
// clang-format on

// The lines of failures.
Lines LinesOf(const std::vector<std::int32_t>& codes) {
  Lines lines;
  for (const std::int32_t code : codes) { lines.push_back("Log --- Error " + std::to_string(code)); }
  return lines;
}

// NAME=VALUE
std::pair<std::string, std::string> Assignment(const std::string& text) {
  const std::size_t equals = text.find('=');
  return {text.substr(0, equals), text.substr(equals + 1)};
}

class ClaimsTest : public Scratch, public testing::WithParamInterface<std::string> {
 protected:
  // Lines that are not calls of Functions. Every line with a call checks the code and the log.
  void Run(const Row& row) {
    static const std::map<std::string, void (ClaimsTest::*)(const Row&)> Steps = {
        {"system", &ClaimsTest::OpenSystem},      {"record", &ClaimsTest::MakeObject},
        {"with", &ClaimsTest::MakeObject},        {"config", &ClaimsTest::Configure},
        {"datum", &ClaimsTest::SetGrid},          {"geoid", &ClaimsTest::SetGrid},
        {"datum?", &ClaimsTest::ExpectGrid},      {"geoid?", &ClaimsTest::ExpectGrid},
        {"grid", &ClaimsTest::WriteGrid},         {"kind", &ClaimsTest::ExpectParams},
        {"ellipsoid", &ClaimsTest::ExpectParams}, {"field", &ClaimsTest::ExpectParams},
        {"name", &ClaimsTest::ExpectName},        {"closes", &ClaimsTest::ExpectClosure}};
    const auto step = Steps.find(row.word);
    (this->*(step == Steps.end() ? &ClaimsTest::Call : step->second))(row);
    const auto call = Functions.find(row.word);
    const bool logged = row.code != 0 && call != Functions.end() && call->second.logged;
    EXPECT_EQ(GetGeodesyError(), row.word == "grid" ? GetGeodesyError() : row.code);
    EXPECT_EQ(Log(), LinesOf(logged ? std::vector{row.code} : row.logs));
  }

 private:
  void OpenSystem(const Row& row) {
    object_ = Open(row.arguments.at(0));
    GetGeodesyParams(object_.get(), &params_, nullptr, nullptr);
  }

  void ExpectParams(const Row& row) {
    GeodesyParams found{};
    char name[LATIGO_ELLIPSOID_NAME_SIZE] = "", code[LATIGO_PROJECTION_CODE_SIZE] = "";
    const bool kind = row.word == "kind";
    GetGeodesyParams(object_.get(), &found, row.word == "ellipsoid" ? name : nullptr, kind ? code : nullptr);
    if (row.word == "field") {
      double value = 0;
      std::memcpy(&value, reinterpret_cast<char*>(&found) + Fields.at(row.arguments.at(0)), sizeof value);
      row.expected.at(0).Test(value);
    } else {
      EXPECT_EQ(kind ? std::to_string(found.Kind) + " " + code : name, row.expectedText);
    }
  }

  void ExpectName(const Row& row) {
    char text[40] = "untouched";
    const std::int32_t size = row.arguments.size() > 2 ? std::stoi(row.arguments[2]) : 40;
    GetLocalName(object_.get(), std::stoi(row.arguments.at(0)), row.arguments.at(1).c_str(), text, size);
    std::string name;  // from Windows-1252 to UTF-8
    for (const char c : std::string(text)) {
      name += c < 0 ? std::string{'\xC3', static_cast<char>(c - 0x40)} : std::string(1, c);
    }
    EXPECT_EQ(name, row.code == 0 ? row.expectedText : "untouched");
  }

  void SetGrid(const Row& row) {
    const std::string path = InstallDirectory() + "/datum/" + row.arguments.at(0);
    const char* const file = row.arguments.at(0) == "none" ? nullptr : path.c_str();
    EXPECT_EQ(row.word == "datum" ? SetEllModel(object_.get(), file)
                                  : SetGeoid(object_.get(), file, ToNumber(row.arguments.at(1))),
              row.code == 0 ? 1 : 0);
  }

  void ExpectGrid(const Row& row) {
    char text[300];
    std::fill(std::begin(text), std::end(text), 'x');
    text[299] = '\0';
    double constant = 0;
    EXPECT_EQ(row.word == "datum?" ? GetEllModel(object_.get(), text, sizeof text)
                                   : GetGeoid(object_.get(), text, sizeof text, &constant),
              1);
    EXPECT_EQ(text, row.expectedText.empty() ? "" : InstallDirectory() + row.expectedText);
  }

  // A grid file in the datum folder, with these numbers in its header; with "nodes", all nodes have the same values,
  // and with "bytes" the file has that length.
  void WriteGrid(const Row& row) {
    Grid grid;
    std::int32_t bytes = -1;
    const std::map<std::string, std::variant<std::int32_t*, float*>> fields = {
        {"nc", &grid.nc},           {"nr", &grid.nr},       {"nz", &grid.nz},           {"west", &grid.west},
        {"lonstep", &grid.lonstep}, {"south", &grid.south}, {"latstep", &grid.latstep}, {"bytes", &bytes}};
    for (std::size_t i = 1; i < row.arguments.size(); ++i) {
      const auto [name, text] = Assignment(row.arguments[i]);
      if (name == "nodes") {
        std::istringstream numbers(text);
        std::vector<float> nodes;
        for (float node = 0; numbers >> node; numbers.ignore()) { nodes.push_back(node); }
        grid.nz = static_cast<std::int32_t>(nodes.size());
        grid.value = [nodes](int, int, int node) { return nodes[static_cast<std::size_t>(node)]; };
      } else {
        std::visit(
            [number = ToNumber(text)](auto* field) { *field = static_cast<std::decay_t<decltype(*field)>>(number); },
            fields.at(name));
      }
    }
    const std::string whole = bytes < 0 || bytes > 96 ? grid.Bytes() : grid.Header();
    std::ofstream(InstallDirectory() + "/datum/" + row.arguments.at(0), std::ios::binary)
        << whole.substr(0, static_cast<std::size_t>(bytes));
  }

  // "record" starts from WGS-84 and a unit of 1, "with" from the previous record; both set fields and create an object.
  void MakeObject(const Row& row) {
    if (row.word == "record") { params_ = WGS84(0); }
    for (const std::string& argument : row.arguments) {
      const auto [name, text] = Assignment(argument);
      const double value = ToNumber(text);
      if (name == "Kind") {
        params_.Kind = static_cast<std::int32_t>(value);
      } else {
        std::memcpy(reinterpret_cast<char*>(&params_) + Fields.at(name), &value, sizeof value);
      }
    }
    object_.reset();
    object_.reset(CreateGeodesy(&params_));
    EXPECT_EQ(object_ == nullptr, row.code != 0);
  }

  // An object from a file with these keys; "@NAME" is the section.
  void Configure(const Row& row) {
    std::string text = "[Geodesy]\n";
    std::string section;
    for (const std::string& argument : row.arguments) {
      if (argument[0] == '@') {
        section = argument.substr(1);
      } else {
        text += argument + "\n";
      }
    }
    object_.reset();
    object_.reset(CreateFileGeodesy(Write("file.ini", text).c_str(), section.empty() ? nullptr : section.c_str()));
    EXPECT_EQ(object_ != nullptr, row.code == 0 || row.code == 9);
  }

  void Call(const Row& row) {
    const Function& function = Functions.at(row.word);
    double in[7] = {};
    double out[7];
    ASSERT_EQ(row.arguments.size(), function.in);
    std::transform(row.arguments.begin(), row.arguments.end(), in, ToNumber);
    std::fill(std::begin(out), std::end(out), Untouched);
    EXPECT_EQ(function.call(object_.get(), in, out), row.code == 0 ? 1 : 0);
    for (std::size_t i = 0; i < row.expected.size(); ++i) { row.expected[i].Test(out[i]); }
  }

  // The round-trip error at 441 points of an area; and the scale factor compared with the ratio of grid length and
  // ellipsoidal length of a short line to the north.
  void ExpectClosure(const Row& row) {
    std::array<double, 4> area;
    ASSERT_EQ(row.arguments.size(), area.size());
    std::transform(row.arguments.begin(), row.arguments.end(), area.begin(), ToNumber);
    const auto [south, north, west, east] = area;
    const double e2 = (2 - 1 / params_.InvFlattening) / params_.InvFlattening;
    const double unit = params_.Kind == 4 || params_.Kind == 12 ? 1 : params_.Unit;
    for (int i = 0; i < 441; ++i) {
      const double phi = south + (north - south) * (i / 21) / 20;
      const double lambda = west + (east - west) * (i % 21) / 20;
      const auto [x, y] = Grid2(object_.get(), phi, lambda);
      double toPhi = NaN, toLambda = NaN;
      ASSERT_EQ(XYGeo(object_.get(), x, y, &toPhi, &toLambda), 1);
      row.expected.at(0).Test(std::hypot(toPhi - phi, std::remainder(toLambda - lambda, 2 * Pi) * std::cos(phi)));
      if (row.expected.size() > 1) {
        const auto [x2, y2] = Grid2(object_.get(), phi + 1e-5, lambda);
        const auto [x1, y1] = Grid2(object_.get(), phi - 1e-5, lambda);
        const double w = std::sqrt(1 - e2 * std::sin(phi) * std::sin(phi));
        const double M = params_.SemiMajorAxis * (1 - e2) / (w * w * w);
        const double k = std::hypot(x2 - x1, y2 - y1) * unit / (M * 2e-5);
        row.expected[1].Test(Scale(object_.get(), x, y) / k);
      }
    }
  }

  Object other_ = Make(Utm31());  // so that destroying the last object is not logged
  GeodesyParams params_{};
  Object object_;
};

TEST_P(ClaimsTest, Hold) {
  const std::vector<Row> rows = ReadTable(GetParam());
  ASSERT_FALSE(rows.empty());
  for (const Row& row : rows) {
    SCOPED_TRACE(row.place);
    Run(row);
  }
}

constexpr double Tiny = std::numeric_limits<double>::denorm_min();
constexpr double Huge = std::numeric_limits<double>::max();
constexpr double Odd[] = {0.0, -0.0, Tiny, -1.0, HalfPi, -Pi, 1e7, -1e300, Huge, Infinity, -Infinity, NaN};

// Every call with an unusual number in each argument in turn returns, with one of its codes.
void ExpectEnds(const Object& object, const std::string& what) {
  const std::map<std::string, std::vector<std::int32_t>> codes = {
      {"forward", {6}},       {"inverse", {10, 11}}, {"scale", {10, 11}}, {"return", {10, 11}},
      {"scale-at", {10, 11}}, {"undulation", {8}},   {"adjust", {7}}};
  for (const auto& [name, function] : Functions) {
    const auto allowed = codes.find(name);
    for (std::size_t place = 0; place < 2 * function.in; ++place) {
      for (const double odd : Odd) {
        double in[] = {0.9, 0.2, 0.9, 1.1, 300, 2, 1};
        double out[7];
        in[place % function.in] = odd;
        if (place >= function.in) { in[(place + 1) % function.in] = -odd; }
        function.call(object.get(), in, out);
        const std::int32_t code = GetGeodesyError();
        EXPECT_TRUE(code == 0 || (allowed != codes.end() && std::ranges::count(allowed->second, code) > 0))
            << what << " " << name << " " << in[0] << " " << in[1] << " gave code " << code;
      }
    }
  }
}

class ExportsTest : public Scratch {};

TEST_F(ExportsTest, EveryCallEndsOnWhateverNumbersCome) {
  const std::string datum = Write("datum", Grid{.nz = 2}.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  for (const std::string& system : Systems()) {
    Object object = Open(system);
    ExpectEnds(object, system);
    ASSERT_EQ(SetEllModel(object.get(), datum.c_str()) + SetGeoid(object.get(), geoid.c_str(), 1), 2);
    ExpectEnds(object, system);
    for (const auto& [field, offset] : Fields) {
      for (const double odd : {0.0, 1.0, -3.0, HalfPi, 1e300, Tiny, Infinity, NaN}) {
        GeodesyParams params{};
        GetGeodesyParams(object.get(), &params, nullptr, nullptr);
        std::memcpy(reinterpret_cast<char*>(&params) + offset, &odd, sizeof odd);
        if (const Object spoilt(CreateGeodesy(&params)); spoilt) { ExpectEnds(spoilt, system + " " + field); }
      }
    }
  }
}

TEST_F(ExportsTest, EveryExportRefusesANullHandle) {
  const Object object = Make(Utm31());
  double metres = 1;
  const auto refused = [&](std::int32_t result) {
    const bool code =
        GetGeodesyVersion() == 100 * LATIGO_VERSION_MAJOR + LATIGO_VERSION_MINOR && GetGeodesyError() == 2;
    return result == 0 && code && HConvert(object.get(), &metres, 0) == 1;
  };
  for (const auto& [name, function] : Functions) {
    double in[7] = {1, Untouched, 3, 4, 5, 6, 7}, out[7];
    std::fill(std::begin(out), std::end(out), Untouched);
    EXPECT_TRUE(refused(function.call(nullptr, in, out))) << name;
    EXPECT_TRUE(out[1] == Untouched || name.ends_with('?'))
        << name;  // those return a record, which the call here unpacks
  }
  char text[40] = "untouched";
  GeodesyParams params = {};
  EXPECT_TRUE(refused(DestroyGeodesy(nullptr)) && refused(GetGeodesyParams(nullptr, &params, text, text)));
  EXPECT_TRUE(refused(GetEllModel(nullptr, text, 40)) && refused(SetEllModel(nullptr, text)));
  EXPECT_TRUE(refused(GetGeoid(nullptr, text, 40, nullptr)) && refused(SetGeoid(nullptr, text, 1)));
  EXPECT_TRUE(refused(GetLocalName(nullptr, 1, "", text, 40)) && std::string(text) == "untouched");
  EXPECT_EQ(Scale(nullptr, 1, 2), 1.0);
}

// Every table except that of the fixed local grids, which has its own test.
Lines Tables() {
  Lines names;
  for (const auto& entry : std::filesystem::directory_iterator(LATIGO_CLAIMS)) {
    const std::string name = entry.path().stem().string();
    if (entry.path().extension() == ".txt" && name != "poly_grids") { names.push_back(name); }
  }
  return names;
}
INSTANTIATE_TEST_SUITE_P(Of, ClaimsTest, testing::ValuesIn(Tables()), [](const auto& claims) { return claims.param; });

}  // namespace
