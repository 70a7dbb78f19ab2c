// A coordinate system opened from a section of a configuration file, through the library's public interface.
#pragma once

#include <latigo/latigo.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "config_check.h"
#include "error_text.h"

namespace latigo::cli {

struct Opened {
  api::Geodesy object;      // without a handle if the section does not open
  std::int32_t code = 0;    // 9 comes with an object
  std::string explanation;  // for a code other than 0: its meaning and the place of the fault
};

// Sets the section if none is given: Geodesy, or the only one of the file. Throws UsageError, with the option that
// chooses one, if there are several.
void ChooseSection(Options& options, const char* option = "--section");

// Throws UsageError, with the names of the sections, if the file has no such section.
void RequireSection(const ConfigFile& config, const Options& options);

// Prints the warnings of a section, of which positions on WGS-84 are asked with `shift`. Throws UsageError if the file
// cannot be read or has no such section, or if there is a warning and the options are strict.
void CheckSection(const Options& options, bool shift = false);

Opened OpenSection(const std::string& file, const std::string& section);

// A folder for files of this process, removed at the end.
class TemporaryFolder {
 public:
  // Throws UsageError if it cannot be made.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Opens a section from a text, which is written to a file. Throws UsageError if that fails.
  Opened Open(std::string_view text, const std::string& section) const;

 private:
  std::filesystem::path path_;
};

// Opens many sections of one file. The library reads the whole file for each object, so each section of a large file is
// copied to a small one.
class SectionOpener {
 public:
  SectionOpener(const ConfigFile& config, std::string file);
  Opened Open(const std::string& section) const;

 private:
  const ConfigFile& config_;
  std::string file_;
  std::unique_ptr<TemporaryFolder> folder_;  // of the copies; null for a small file
};

}  // namespace latigo::cli
