// The input as a configuration file: an object from every section; sections and keys listed; values read, written and
// copied.
#include <latigo/latigo.h>

#include <strings.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "frame/profile.h"
#include "fuzz_input.h"
#include "platform/c_numbers.h"

namespace {

using namespace fuzz;
using latigo::Profile;
using Names = std::vector<std::string>;

constexpr char Guard = '\x5A', Missing[] = "none\n", Blanks[] = " \t\r\v\f\x1A";
constexpr std::int32_t BufferSize = 4096;

// The names of a list written by a call: well formed within its size, nothing written after it. The last may be cut.
Names Listed(std::int32_t size, bool characters, auto call) {
  std::string buffer(BufferSize, Guard);
  const auto result = static_cast<std::size_t>(call(buffer.data())), room = static_cast<std::size_t>(size);
  REQUIRE(buffer.find_first_not_of(Guard, room) == buffer.npos && (buffer[0] != '\0' || buffer[1] == '\0'));
  Names names;
  std::size_t place = 0;
  for (; buffer[place] != '\0'; place += names.back().size() + 1) { names.emplace_back(buffer.c_str() + place); }
  REQUIRE(place < room);
  REQUIRE(characters ? result == place || (result == room - 2 && place >= room - 2) : result == names.size());
  return names;
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  return first == text.npos ? "" : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

// The value read after a value was written.
std::string Kept(const std::string& text) {
  const std::string value = Trimmed(text);
  const bool quoted = value.size() > 1 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0];
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string Value(const Profile& profile, const std::string& key, const std::string& section) {
  std::string buffer(BufferSize, Guard);
  const auto length = profile.GetString(buffer.data(), BufferSize, key.c_str(), section.c_str(), Missing);
  REQUIRE(std::strlen(buffer.c_str()) == static_cast<std::size_t>(length));
  return buffer.c_str();
}

// A line without surrounding blanks and without the UTF-8 mark, after which a line can be inserted.
std::string Plain(std::string line) {
  for (line = Trimmed(line); line.starts_with("\xEF\xBB\xBF"); line = Trimmed(line.substr(3))) {}
  return line;
}

// The lines of the file that are not empty, and how many of them at one place are missing in another file. A CR alone
// ends a line too; if the line between it and an LF is removed, both become one line end.
struct Lines : Names {
  explicit Lines(const std::string& path) {
    std::string line;
    for (const char c : ReadFile(path) + "\n") {
      if (c != '\n' && c != '\r') {
        line += c;
        continue;
      }
      if (!Plain(line).empty()) { push_back(Plain(line)); }
      line.clear();
    }
  }
  std::ptrdiff_t Without(const Lines& other) const {
    const auto front = std::mismatch(begin(), end(), other.begin(), other.end());
    const auto rest = std::make_reverse_iterator(front.first);
    return rest - std::mismatch(rbegin(), rest, other.rbegin(), std::make_reverse_iterator(front.second)).first;
  }
};

// Numbers are those of the C library in the C locale.
void CheckNumbers(const std::string& text) {
  const double number = latigo::CDouble(text.c_str()), wanted = std::strtod(text.c_str(), nullptr);
  REQUIRE(Same(number, wanted) || (std::isnan(number) && std::isnan(wanted)));
  const long whole = std::strtol(text.c_str(), nullptr, 10);
  REQUIRE(latigo::CInt(text.c_str()) == std::clamp<long>(whole, INT_MIN, INT_MAX));
}

// A written value is read again, and other lines are unchanged. A value that could not be read is refused.
void CheckWriting(Profile& profile, const std::string& key, const std::string& value, const std::string& section) {
  const bool broken = (key + section + value).find_first_of("\r\n") != key.npos;
  const Lines before(profile.FileName);
  const bool written = profile.WriteString(key.c_str(), value.c_str(), section.c_str());
  const Lines after(profile.FileName);
  REQUIRE(before.Without(after) <= 1 && after.Without(before) <= (written ? 2 : 0));
  const bool odd = key.find('=') != key.npos || Trimmed(key).empty() ||
                   Trimmed(key).find_first_of(";[\xEF") == 0;  // the last begins the mark of a UTF-8 file
  REQUIRE(written ? !broken && Value(profile, key, section) == Kept(value) : broken || odd);
  profile.WriteString(key.c_str(), nullptr, section.c_str());
  REQUIRE(Lines(profile.FileName).Without(after) == 0 && after.Without(Lines(profile.FileName)) <= 1);
}

// Two objects of one section are equal; with code 9 there is an object, without a geoid grid.
void CheckObject(const std::string& path, const char* section) {
  constexpr std::uint32_t Codes = 0b1010101111;
  double seen[2][4] = {};
  for (auto& [code, x, y, constant] : seen) {
    GeodesyHandle object = CreateFileGeodesy(path.c_str(), section);
    const std::int32_t left = GetGeodesyError();
    REQUIRE(left >= 0 && left < 10 && (Codes >> left & 1) != 0 && (object != nullptr) == (left == 0 || left == 9));
    char geoid[8] = "";
    REQUIRE((GetGeoid(object, geoid, sizeof geoid, &constant) == 1) == (object != nullptr));
    REQUIRE(left != 9 || (constant == 0 && geoid[0] == '\0'));
    GeoXY(object, &x, &y, 0.5, 0.1);
    code = left;
    DestroyGeodesy(object);
  }
  REQUIRE(std::memcmp(seen[0], seen[1], sizeof seen[0]) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string grids[] = {WriteFile("datum/d", SmallGrid(2)), WriteFile("datum/g", SmallGrid(1))};
  Input in{data, size};
  const std::int32_t room = in.Take<std::uint16_t>() % 300 + 2;
  const std::string key = in.Text(in.Below(24)).c_str(), value = in.Text(in.Below(80)).c_str();
  std::string section = in.Text(in.Below(24)).c_str();
  const std::string path = WriteFile("file.ini", in.Text(in.size));
  Profile profile(path.c_str()), copy((Scratch() + "/copy.ini").c_str());
  const Lines lines(path);
  CheckNumbers(value);
  CheckObject(path, nullptr);
  Names sections = Listed(room, true, [&](char* buffer) { return profile.ListSections(buffer, room); });
  sections.resize(std::min<std::size_t>(sections.size(), 8));
  for (const std::string& name : sections) {
    CheckObject(path, name.c_str());
    Names keys = Listed(room, false, [&](char* buffer) { return profile.ListKeys(buffer, room, name.c_str()); });
    const auto list = [&](char* buffer) { return profile.GetString(buffer, room, nullptr, name.c_str(), ""); };
    REQUIRE(Listed(room, true, list) == keys);
    if (!keys.empty()) { keys.pop_back(); }
    copy.CopySection(profile, name.c_str(), "copy");
    for (const std::string& listed : keys) {
      std::string read = Value(profile, listed, name);
      const std::string copied = Value(copy, listed, "copy");
      if (read == Missing) {  // a line with the key's name only precedes the one that is listed
        REQUIRE(std::ranges::any_of(lines, [&](auto& line) { return strcasecmp(line.c_str(), listed.c_str()) == 0; }));
        read.clear();
      }
      CheckNumbers(read.substr(0, 79));
      REQUIRE(profile.HasKey(listed.c_str(), name.c_str()) == !read.empty());
      REQUIRE(copied == Kept(read) || read.size() > 255 || (listed + read).find('\r') != read.npos);
    }
  }
  if (!sections.empty() && section.empty()) { section = sections[0]; }
  CheckWriting(profile, key, value, section);
  return 0;
}
