#include "coordinate_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <numeric>

#include "frame/config_keys.h"
#include "frame/errcode.h"
#include "frame/install_dir.h"
#include "frame/profile.h"
#include "platform/ascii.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr std::int32_t ListSize = 1 << 20;

std::vector<std::string> Names(const std::vector<char>& list) {
  std::vector<std::string> names;
  for (const char* name = list.data(); *name != '\0'; name += names.back().size() + 1) {
    names.emplace_back(name);
  }
  return names;
}

// The path of a configuration file as the library needs it: Windows looks for a bare name in its own directory.
std::string ProfilePath(const std::string& file) {
#if defined(_WIN32)
  char path[_MAX_PATH];
  return _fullpath(path, file.c_str(), sizeof path) != nullptr ? path : file;
#else
  return file;
#endif
}

std::string ValueOf(const Profile& profile, const std::string& section, const char* key) {
  char value[256];
  profile.GetString(value, sizeof value, key, section.c_str(), "");
  return value;
}

// Where a grid file of the section was looked for.
std::string PathTried(const Profile& profile, const std::string& section, const char* key) {
  char path[256];
  const std::string value = ValueOf(profile, section, key);
  if (!GridFilePath(value.c_str(), path)) {
    return std::string(key) + "=" + value + " makes a path beyond 255 characters";
  }
  return std::string(key) + "=" + value + " was looked for as " + path;
}

std::string Explain(std::int32_t code, const Profile& profile, const std::string& section) {
  const bool hasFlattening = profile.GetDouble("Flattening", section.c_str(), 0) != 0;
  if (code <= 3 && hasFlattening && profile.HasKey("DynDatum", section.c_str())) {
    return ErrorText(code, "SetEllModel") + " (" + PathTried(profile, section, "DynDatum") + ")";
  }
  std::string text = ErrorText(code, "CreateGeodesy");
  switch (code) {
    case NoFlattening:
      return text + " (key Flattening)";
    case UnknownKind:
      return text + " (Projection=" + ValueOf(profile, section, "Projection") + ")";
    case GeoidNotLoaded:
      return text + " (" + PathTried(profile, section, "Geoid") + ")";
    default:
      return text;
  }
}

// How many letters must be put in, taken out or changed to make one name of the other, whatever their capitals.
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

}  // namespace

std::vector<std::string> SectionsOf(const std::string& file) {
  std::vector<char> list(ListSize);
  Profile(ProfilePath(file).c_str()).ListSections(list.data(), ListSize);
  return Names(list);
}

std::vector<std::string> KeysOf(const std::string& file, const std::string& section) {
  std::vector<char> list(ListSize);
  Profile(ProfilePath(file).c_str()).ListKeys(list.data(), ListSize, section.c_str());
  return Names(list);
}

void RequireSection(const std::string& file, const std::string& section) {
  if (std::FILE* readable = std::fopen(file.c_str(), "rb"); readable != nullptr) {
    std::fclose(readable);
  } else {
    throw UsageError(file + ": " + std::strerror(errno));
  }
  const std::vector<std::string> sections = SectionsOf(file);
  const auto same = [&](const std::string& name) { return EqualIgnoringCase(name, section); };
  if (std::none_of(sections.begin(), sections.end(), same)) {
    std::string known;
    for (const std::string& name : sections) {
      known += (known.empty() ? "" : ", ") + name;
    }
    throw UsageError(file + ": no section " + section + (known.empty() ? "; it has none" : "; it has " + known));
  }
}

Opened OpenSection(const std::string& file, const std::string& section) {
  Opened opened;
  const std::string path = ProfilePath(file);
  opened.object.reset(CreateFileGeodesy(path.c_str(), section.c_str()));
  opened.code = GetGeodesyError();
  if (opened.code != 0) {
    opened.explanation = Explain(opened.code, Profile(path.c_str()), section);
  }
  return opened;
}

void WarnOfUnknownKeys(const std::string& file, const std::string& section) {
  for (const std::string& key : KeysOf(file, section)) {
    const auto keys = ConfigKeys();
    const auto& nearest = *std::min_element(keys.begin(), keys.end(), [&](const ConfigKey& l, const ConfigKey& r) {
      return Distance(key, l.name) < Distance(key, r.name);
    });
    if (!EqualIgnoringCase(key, nearest.name)) {
      Message(file + " [" + section + "]: warning: nobody reads the key " + key + "; the nearest known key is " +
              nearest.name);
    }
  }
}

}  // namespace latigo::cli
