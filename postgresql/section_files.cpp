#include "section_files.h"

#include <algorithm>
#include <set>

#include "platform/ascii.h"

namespace latigo::postgresql {

namespace {

constexpr long long NanosecondsPerSecond = 1000000000;

long long Nanoseconds(const timespec& time) {
  return time.tv_sec * NanosecondsPerSecond + time.tv_nsec;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(Blanks);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

std::string Small(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(), AsciiLower);
  return small;
}

}  // namespace

FileStamp::FileStamp(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0) {
    device_ = status.st_dev;
    inode_ = status.st_ino;
    size_ = status.st_size;
    modified_ = Nanoseconds(status.st_mtim);
    changed_ = Nanoseconds(status.st_ctim);
  }
}

SectionFiles::SectionFiles(std::string_view paths) {
  while (!Trimmed(paths).empty()) {
    const std::size_t comma = std::min(paths.find(','), paths.size());
    const std::string_view path = Trimmed(paths.substr(0, comma));
    if (!path.starts_with('/')) {
      throw cli::UsageError('"' + std::string(path) + "\" is not an absolute path");
    }
    files_.emplace_back().path = path;
    paths.remove_prefix(std::min(comma + 1, paths.size()));
  }
}

void SectionFiles::Refresh() {
  for (File& file : files_) {
    const FileStamp stamp(file.path);
    if (file.config && file.stamp == stamp) {
      continue;
    }
    file.config.reset();
    file.stamp = stamp;  // from before reading, so that a change while reading is noticed
    try {
      file.config = std::make_unique<cli::ConfigFile>(file.path);
    } catch (const cli::UsageError& failure) {
      file.fault = failure.what();
    }
  }
}

const cli::ConfigFile& SectionFiles::ConfigOf(const File& file) {
  if (!file.config) {
    throw cli::UsageError(file.fault);
  }
  return *file.config;
}

const SectionFiles::File& SectionFiles::FileWith(const std::string& section) const {
  if (files_.empty()) {
    throw NoSection("latigo.config_files is empty, so there is no section \"" + section + "\"");
  }
  const auto found =
      std::find_if(files_.begin(), files_.end(), [&](const File& file) { return ConfigOf(file).Has(section); });
  if (found == files_.end()) {
    throw NoSection("no section \"" + section + "\" in the files of latigo.config_files");
  }
  return *found;
}

const std::string& SectionFiles::FileOf(const std::string& section) const {
  return FileWith(section).path;
}

std::vector<SectionFiles::Listed> SectionFiles::List() const {
  std::vector<Listed> listed;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    for (std::string& name : ConfigOf(files_[i]).Sections()) {
      if (seen.insert(Small(name)).second) {
        listed.push_back({std::move(name), i});
      }
    }
  }
  return listed;
}

std::string SectionFiles::Warnings(const std::string& section, bool shift) const {
  std::string text;
  for (const std::string& warning : ConfigOf(FileWith(section)).Warnings(section, shift)) {
    text += (text.empty() ? "" : "\n") + warning;
  }
  return text;
}

}  // namespace latigo::postgresql
