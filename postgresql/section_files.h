// The configuration files that the administrator named.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config_check.h"
#include "error_text.h"

namespace latigo::postgresql {

// No file has the section.
class NoSection : public cli::UsageError {
  using UsageError::UsageError;
};

// What changes if a file is replaced or written: device, inode, size, and times in nanoseconds. Zeros for no file.
class FileStamp {
 public:
  FileStamp() = default;
  explicit FileStamp(const std::string& path);
  bool operator==(const FileStamp& other) const = default;

 private:
  unsigned long long device_ = 0, inode_ = 0;
  long long size_ = -1, modified_ = 0, changed_ = 0;
};

class SectionFiles {
 public:
  // Absolute paths, separated by commas. Throws UsageError for another path.
  explicit SectionFiles(std::string_view paths);

  // Reads the files again that have changed.
  void Refresh();

  // The first file with the section. Throws NoSection; UsageError if a file before it cannot be read.
  const std::string& FileOf(const std::string& section) const;

  struct Listed {
    std::string name;
    std::size_t file;
  };
  // The sections of all files, each name once. Throws UsageError if a file cannot be read.
  std::vector<Listed> List() const;
  const std::string& Path(std::size_t file) const { return files_[file].path; }
  // Warnings of a section, each a line: what is probably not read as intended. Throws as FileOf does.
  std::string Warnings(const std::string& section, bool shift = false) const;

 private:
  struct File {
    std::string path;
    FileStamp stamp;
    std::unique_ptr<cli::ConfigFile> config;  // null if the file cannot be read
    std::string fault;
  };
  static const cli::ConfigFile& ConfigOf(const File& file);
  const File& FileWith(const std::string& section) const;

  std::vector<File> files_;
};

}  // namespace latigo::postgresql
