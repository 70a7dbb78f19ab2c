#include "coordinate_system.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <system_error>
#include <utility>

#include "errors/errcode.h"
#include "frame/config_keys.h"
#include "frame/install_dir.h"
#include "frame/profile.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr const char* DefaultSection = "Geodesy";

// The first names of sections, for a message.
std::string SomeOf(const std::vector<std::string>& sections) {
  constexpr std::size_t Shown = 20;
  std::string names;
  for (std::size_t i = 0; i < std::min(sections.size(), Shown); ++i) {
    names += (names.empty() ? "" : ", ") + sections[i];
  }
  return names + (sections.size() > Shown ? " and " + std::to_string(sections.size() - Shown) + " others" : "");
}

// The path of a configuration file for the library: Windows searches a bare name in the Windows directory.
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

// The path tried for a grid file of the section.
std::string PathTried(const Profile& profile, const std::string& section, const char* key) {
  char path[256];
  const std::string value = ValueOf(profile, section, key);
  if (!GridFilePath(value.c_str(), path)) {
    return std::string(key) + "=" + value +
           " has a slash in the name of the file, or makes a path of more than 255 characters";
  }
  return std::string(key) + "=" + value + " was tried as " + path;
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

std::filesystem::path UnusedPath() {
  std::random_device random;
  return std::filesystem::temp_directory_path() / ("latigo-" + std::to_string(random()) + std::to_string(random()));
}

}  // namespace

void ChooseSection(Options& options, const char* option) {
  if (!options.section.empty()) {
    return;
  }
  const ConfigFile config(options.file);
  const std::vector<std::string> sections = config.Sections();
  if (config.Has(DefaultSection)) {
    options.section = DefaultSection;
  } else if (sections.size() == 1) {
    options.section = sections.front();
  } else if (sections.empty()) {
    throw UsageError(options.file + ": no section");
  } else {
    throw UsageError(options.file + ": choose a section with " + option + " NAME: " + SomeOf(sections));
  }
}

void RequireSection(const ConfigFile& config, const Options& options) {
  if (!config.Has(options.section)) {
    const std::vector<std::string> sections = config.Sections();
    throw UsageError(options.file + (sections.empty()
                                         ? ": no section"
                                         : ": no section " + options.section + "; it has " + SomeOf(sections)));
  }
}

void CheckSection(const Options& options, bool shift) {
  const ConfigFile config(options.file);
  RequireSection(config, options);
  const std::vector<std::string> warnings = config.Warnings(options.section, shift);
  for (const std::string& warning : warnings) {
    Message(warning);
  }
  if (options.strict && !warnings.empty()) {
    throw UsageError(options.file + " [" + options.section + "]: refused because of its warnings");
  }
}

Opened OpenSection(const std::string& file, const std::string& section) {
  Opened opened;
  const std::string path = ProfilePath(file);
  api::Result<api::Geodesy> made = api::Geodesy::CreateFileGeodesy(path.c_str(), section.c_str());
  opened.object = std::move(made.value);
  opened.code = made.code;
  if (opened.code != 0) {
    opened.explanation = Explain(opened.code, Profile(path.c_str()), section);
  }
  return opened;
}

TemporaryFolder::TemporaryFolder() : path_(UnusedPath()) {
  if (!std::filesystem::create_directory(path_)) {
    throw UsageError(path_.string() + ": exists already");
  }
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

Opened TemporaryFolder::Open(std::string_view text, const std::string& section) const {
  const std::filesystem::path file = path_ / "section.ini";
  std::filesystem::remove(file);  // some file systems flush a file at once if it is truncated and rewritten
  if (!(std::ofstream(file, std::ios::binary) << text).flush()) {
    throw UsageError(file.string() + ": cannot be written");
  }
  return OpenSection(file.string(), section);
}

SectionOpener::SectionOpener(const ConfigFile& config, std::string file) : config_(config), file_(std::move(file)) {
  constexpr std::size_t Small = 1U << 16U;  // bytes
  if (config.Size() > Small) {
    folder_ = std::make_unique<TemporaryFolder>();
  }
}

Opened SectionOpener::Open(const std::string& section) const {
  return folder_ ? folder_->Open(config_.TextOf(section), section) : OpenSection(file_, section);
}

}  // namespace latigo::cli
