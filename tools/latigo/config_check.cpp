#include "config_check.h"

#include <latigo/latigo.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <numeric>
#include <set>
#include <utility>

#include "error_text.h"
#include "frame/config_keys.h"
#include "frame/install_dir.h"
#include "names.h"
#include "platform/ascii.h"
#include "platform/c_numbers.h"
#include "platform/posix/profile_file.h"
#include "section_keys.h"
#include "semi_axes.h"
#include "streams.h"

namespace latigo::cli {

namespace {

constexpr std::uintmax_t SizeLimit = 16U << 20U;  // bytes; the library reads no larger file
constexpr std::size_t ValueLimit = 79;            // characters of a value that count

// From here on polar stereographic has a latitude of true scale, degrees from the pole: 1e-5 radians.
constexpr double NearPole = 1e-5 * 57.29577951308232;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

std::string ReadFile(const std::string& path) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(NativePath(path), ignored);
  if (std::filesystem::is_directory(status)) {
    throw UsageError(path + ": is a directory");
  }
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw UsageError(path + ": is not a regular file");
  }
  const File file(OpenForReading(path), std::fclose);
  if (!file) {
    ThrowSystemError(path);
  }
  std::string bytes;
  char piece[1 << 16];
  for (std::size_t length = 1; length > 0 && bytes.size() <= SizeLimit;) {
    length = std::fread(piece, 1, sizeof piece, file.get());
    bytes.append(piece, length);
  }
  if (std::ferror(file.get()) != 0) {
    ThrowSystemError(path);
  }
  if (bytes.size() > SizeLimit) {
    throw UsageError(path + ": is larger than 16 MB");
  }
  return bytes;
}

template <typename Number>
bool IsWhole(std::string_view text) {
  text.remove_prefix(text.starts_with('+') && !text.starts_with("+-") ? 1 : 0);
  Number number{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return EqualIgnoringCase(text, word); });
}

// The number of letters to insert, remove or change between two names, ignoring case.
std::size_t Distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (const char letter : from) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < to.size(); ++i) {
      const std::size_t change = diagonal + (AsciiLower(letter) == AsciiLower(to[i]) ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({change, row[i] + 1, row[i + 1] + 1});
    }
  }
  return row.back();
}

auto FindKey(std::string_view name) {
  const auto keys = ConfigKeys();
  return std::find_if(keys.begin(), keys.end(),
                      [&](const ConfigKey& one) { return EqualIgnoringCase(one.name, name); });
}

// Factors of real projections are near 1; a local grid may have another unit, such as feet.
struct Range {
  double least, largest;
  bool Has(double factor) const { return least <= factor && factor <= largest; }
};
constexpr Range ProjectionFactors = {0.5, 2};
constexpr Range LocalFactors = {0.1, 10};

// Whether a value of AdjustType is the number of a local grid, or of none.
bool IsLocalGrid(std::int32_t value) {
  const std::uint32_t type = static_cast<std::uint32_t>(value) & LATIGO_ADJUST_TYPE;
  return value == 0 || (type >= LATIGO_ADJUST_SIMILARITY && type <= LATIGO_ADJUST_CHAINS_16);
}

// The path of a grid file, as the library opens it; empty if it opens none of this name.
std::string PathOfGrid(std::string_view name) {
  char path[256];
  if (!GridFilePath(std::string(name).c_str(), path)) {
    return {};
  }
#if !defined(_WIN32)
  std::replace(path, path + std::strlen(path), '\\', '/');
#endif
  return path;
}

// Compares the size of a grid file with the lattice of its header; empty if they fit or the file has no header.
std::string CheckGridFile(std::string_view name) {
  const std::string path = PathOfGrid(name);
  std::error_code failure;
  if (!std::filesystem::is_regular_file(path, failure)) {
    return {};
  }
  const std::uintmax_t size = std::filesystem::file_size(path, failure);
  const File file(std::fopen(path.c_str(), "rb"), std::fclose);
  unsigned char header[96];
  if (failure || !file || std::fread(header, 1, sizeof header, file.get()) != sizeof header) {
    return {};
  }
  const auto count = [&](std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
      value = value << 8U | header[offset + i];
    }
    return static_cast<double>(static_cast<std::int32_t>(value));
  };
  const double record = count(64) * count(72) * 4 + 4;
  const double needed = record * (count(68) + 1);
  if (static_cast<double>(size) < needed) {
    return path + " has " + std::to_string(size) + " bytes, but its header describes " + ShortNumber(needed);
  }
  if (record > 4 && record < sizeof header) {  // with nodes
    return path + " has records of " + ShortNumber(record) +
           " bytes, fewer than its header's 96: the first rows are read from the header";
  }
  return {};
}

}  // namespace

ConfigFile::ConfigFile(const std::string& path) : ConfigFile(path, ReadFile(path)) {}

ConfigFile::ConfigFile(std::string path, std::string bytes) : path_(std::move(path)), bytes_(std::move(bytes)) {
  RefuseUtf16(path_, bytes_);
  ProfileLines lines(bytes_);
  ProfileLine line;
  std::size_t number = 0;
  std::size_t current = SIZE_MAX;  // for no section, or one that is not read
  while (lines.Next(line)) {
    ++number;
    if (line.is == ProfileLine::Is::Section && !line.name.empty()) {
      if (current != SIZE_MAX) {
        sections_[current].end = line.begin;
      }
      const auto [place, isNew] = index_.emplace(Folded(line.name), sections_.size());
      current = isNew ? sections_.size() : SIZE_MAX;
      if (isNew) {
        sections_.push_back({line.name, number, line.begin, bytes_.size(), {}, {}});
      } else {
        sections_[place->second].again.push_back(number);
      }
    } else if (line.is == ProfileLine::Is::Key && sections_.empty()) {
      before_.push_back({line.name, line.value, number});
    } else if (line.is == ProfileLine::Is::Key && current != SIZE_MAX) {
      sections_[current].keys.push_back({line.name, line.value, number});
    } else if (const std::string_view text = Bytes().substr(line.begin, line.end - line.begin);
               text.find('\0') != std::string_view::npos && current != SIZE_MAX) {
      sections_[current].keys.push_back({text.substr(0, text.find_first_of("\r\n")), std::nullopt, number});
    }
  }
}

std::string ConfigFile::Folded(std::string_view name) {
  std::string folded(Trimmed(name));
  std::transform(folded.begin(), folded.end(), folded.begin(), [](char c) { return AsciiLower(c); });
  return folded;
}

std::vector<std::string> ConfigFile::Sections() const {
  std::vector<std::string> names;
  for (const Section& section : sections_) {
    names.emplace_back(section.name);
  }
  return names;
}

std::string_view ConfigFile::TextOf(std::string_view section) const {
  const Section& found = sections_[index_.at(Folded(section))];
  return std::string_view(bytes_).substr(found.begin, found.end - found.begin);
}

std::string_view ConfigFile::Value(std::string_view section, std::string_view key) const {
  const auto found = index_.find(Folded(section));
  return found != index_.end() ? ValueOf(sections_[found->second], key) : std::string_view();
}

std::string_view ConfigFile::ValueOf(const Section& section, std::string_view key) const {
  const auto found = std::find_if(section.keys.begin(), section.keys.end(),
                                  [&](const Key& one) { return EqualIgnoringCase(one.name, key); });
  return found != section.keys.end() ? found->value.value_or("").substr(0, ValueLimit) : std::string_view();
}

bool ConfigFile::HasShift(std::string_view section) const {
  constexpr const char* Keys[] = {"DynDatum",   "DeltaX",  "DeltaY",  "DeltaZ",
                                  "DeltaScale", "DeltaRX", "DeltaRY", "DeltaRZ"};
  return std::any_of(std::begin(Keys), std::end(Keys), [&](const char* key) { return HasValue(section, key); });
}

std::vector<std::string> ConfigFile::GridFiles() const {
  std::set<std::string> paths;
  for (const Section& section : sections_) {
    for (const char* key : {"Geoid", "DynDatum"}) {
      if (std::string path = PathOfGrid(ValueOf(section, key)); !path.empty()) {
        paths.insert(std::move(path));
      }
    }
  }
  return {paths.begin(), paths.end()};
}

double ConfigFile::NumberOf(const Section& section, std::string_view key) const {
  return CDouble(std::string(ValueOf(section, key)).c_str());
}

std::string ConfigFile::CheckValue(const Key& key) const {
  const auto keys = ConfigKeys();
  const auto known = FindKey(key.name);
  if (known == keys.end()) {
    const auto nearest = std::min_element(keys.begin(), keys.end(), [&](const ConfigKey& l, const ConfigKey& r) {
      return Distance(key.name, l.name) < Distance(key.name, r.name);
    });
    return "the key " + std::string(key.name) + " is unknown; the nearest known key is " + nearest->name;
  }
  const std::string value(*key.value);
  if (value.empty()) {
    return {};
  }
  const std::string cut = value.substr(0, ValueLimit);
  const std::string entry = std::string(key.name) + "=" + value;
  const double number = CDouble(cut.c_str());
  const bool angle =
      known->kind == ValueKind::Latitude || known->kind == ValueKind::Longitude || known->kind == ValueKind::Azimuth;
  switch (known->kind) {
    case ValueKind::File:
      return CheckGridFile(value);
    case ValueKind::Keyword:
      return {};
    case ValueKind::Boolean:
      return IsOneOf(cut, {"on", "yes", "true", "1", "off", "no", "false", "0"})
                 ? ""
                 : entry + " is read as " + (CInt(cut.c_str()) == 1 ? "yes" : "no");
    case ValueKind::LocalGrid:
      if (!IsWhole<std::int32_t>(value)) {
        return entry + " is read as " + std::to_string(CInt(cut.c_str()));
      }
      return IsLocalGrid(CInt(cut.c_str())) ? "" : entry + " is no local grid, and none is applied";
    default:
      break;
  }
  if (!IsWhole<double>(value) || !std::isfinite(number)) {
    return entry + " is read as " + ShortNumber(number) + (angle ? " (angles are decimal degrees)" : "");
  }
  const double limit = known->kind == ValueKind::Latitude ? 90 : known->kind == ValueKind::Longitude ? 180 : 360;
  if (angle && !(std::fabs(number) <= limit)) {
    return entry + " is not between -" + ShortNumber(limit) + " and " + ShortNumber(limit) + " degrees";
  }
  if (known->kind == ValueKind::Reciprocal && number != 0 && !(number >= 1)) {
    return entry + " is below 1, but the key is the reciprocal flattening 1/f";
  }
  if (known->kind == ValueKind::Unit && number < 0) {
    return entry + " is negative, but a unit is a length in metres";
  }
  return {};
}

// Checks a value that is not that of an absent key beside the other keys: its effect, and the size of a factor.
std::string ConfigFile::CheckUse(const Section& section, const Key& key) const {
  const auto known = FindKey(key.name);
  if (known == ConfigKeys().end() || known->kind == ValueKind::Keyword || known->kind == ValueKind::File) {
    return {};
  }
  const std::string value(*key.value);
  const double number = known->kind == ValueKind::Boolean ? (IsOneOf(value, {"on", "yes", "true", "1"}) ? 1 : 0)
                                                          : NumberOf(section, key.name);
  if (number == 0 || (known->conversion == Conversion::OneIfZero && number == 1)) {
    return {};
  }
  const std::string entry = std::string(key.name) + "=" + value;
  const std::int32_t kind = KindOfKeyword(std::string(ValueOf(section, "Projection")).c_str());
  const auto type = static_cast<std::uint32_t>(CInt(std::string(ValueOf(section, "AdjustType")).c_str()));
  const bool similarity = (type & LATIGO_ADJUST_TYPE) == LATIGO_ADJUST_SIMILARITY;
  if ((known->record == Record::Adjust || known->kind == ValueKind::Boolean) && !similarity) {
    return entry + " is read with AdjustType=1 only";
  }
  // A similarity transformation can change the unit of coordinates that the projection has in metres.
  const bool changesUnit = similarity && !ReadsKey(kind, "Unit");
  if (!ReadsKey(kind, key.name) && !(known->kind == ValueKind::Unit && changesUnit)) {
    return entry + " is not read by the projection " + ProjectionName(kind);
  }
  const double factor = changesUnit && known->record == Record::Adjust ? number * NumberOf(section, "Unit") : number;
  const Range range = known->record == Record::Adjust ? LocalFactors : ProjectionFactors;
  if (known->kind == ValueKind::Factor && !(range.Has(number) || range.Has(factor))) {
    return entry + " is not between " + (known->record == Record::Adjust ? "0.1 and 10" : "0.5 and 2");
  }
  if (kind == LATIGO_KIND_POLAR_STEREOGRAPHIC && EqualIgnoringCase(key.name, "ScaleFactor") &&
      std::fabs(std::fabs(NumberOf(section, "RefLatitude")) - 90) > NearPole) {
    return entry + " is not read: RefLatitude is no pole, but the latitude of true scale";
  }
  return {};
}

// Checks of several keys together.
std::vector<std::string> ConfigFile::CheckSystem(const Section& section) const {
  std::vector<std::string> found;
  const std::string keyword(ValueOf(section, "Projection"));
  const std::int32_t kind = KindOfKeyword(keyword.c_str());
  const double a = NumberOf(section, "SemiMajorAxis");
  if (kind != 0 && kind != LATIGO_KIND_MERCATOR_ON_SPHERE && !(a > 6.3e6 && a < 6.4e6)) {
    found.push_back("SemiMajorAxis is read as " + ShortNumber(a) +
                    ", which is not a semi-major axis of the earth in metres");
  }
  const double unit = NumberOf(section, "Unit");
  const double easting = NumberOf(section, "FalseEasting");
  const double k0 = NumberOf(section, "ScaleFactor");
  if (EqualIgnoringCase(keyword, "UTM") &&
      !(k0 == 0.9996 && std::fabs(easting * (unit == 0 ? 1 : unit) - 500000) < 1)) {
    found.push_back("Projection=UTM sets no parameter: ScaleFactor is read as " + ShortNumber(k0 == 0 ? 1 : k0) +
                    " and FalseEasting as " + ShortNumber(easting) + ", where UTM has 0.9996 and 500000 metres");
  }
  return found;
}

std::vector<std::string> ConfigFile::Warnings(std::string_view name, bool shift) const {
  std::vector<std::string> warnings;
  const auto found = index_.find(Folded(name));
  if (found == index_.end()) {
    return warnings;
  }
  const Section& section = sections_[found->second];
  const auto warn = [&](std::size_t line, const std::string& text) {
    warnings.push_back(path_ + ":" + std::to_string(line) + " [" + std::string(section.name) + "]: warning: " + text);
  };
  for (const Key& key : before_) {
    if (found->second == 0 && FindKey(key.name) != ConfigKeys().end()) {
      warn(key.line, "the key " + std::string(key.name) + " is not read: it is above the first section");
    }
  }
  std::unordered_map<std::string, std::size_t> seen;
  for (const Key& key : section.keys) {
    const auto [first, isNew] = seen.emplace(Folded(key.name), key.line);
    if (!isNew) {
      warn(key.line, "the key " + std::string(key.name) + " is not read: line " + std::to_string(first->second) +
                         " has it already");
    } else if (!key.value) {
      const bool zero = key.name.find('\0') != std::string_view::npos;
      warn(key.line,
           (zero ? "a line with a zero byte is not read: " : "a line without = is not read: ") + std::string(key.name));
    } else if (const std::string text = CheckValue(key); !text.empty()) {
      warn(key.line, text);
    } else if (const std::string unused = CheckUse(section, key); !unused.empty()) {
      warn(key.line, unused);
    }
  }
  for (const std::string& text : CheckSystem(section)) {
    warn(section.line, text);
  }
  const SemiAxes ellipsoid = SemiAxesOf(NumberOf(section, "SemiMajorAxis"), NumberOf(section, "Flattening"));
  if (shift && !HasShift(name) && !Agree(ellipsoid, SemiAxesOf(Wgs84Axis, Wgs84Flattening))) {
    warn(section.line, "the section has no datum shift to WGS-84, and another ellipsoid: positions stay as they are");
  }
  for (const std::size_t line : section.again) {
    warn(line, "this section is not read: line " + std::to_string(section.line) + " has one of its name already");
  }
  return warnings;
}

}  // namespace latigo::cli
