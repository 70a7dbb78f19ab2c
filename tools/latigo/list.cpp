// Lists sections with their descriptions.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "commands.h"
#include "config_check.h"
#include "error_text.h"
#include "platform/ascii.h"
#include "section_list.h"
#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr std::size_t WidestName = 32;  // longer names move their own description only

// Whether a text contains a word, ignoring the case of A to Z.
bool Contains(std::string_view text, std::string_view word) {
  return std::search(text.begin(), text.end(), word.begin(), word.end(),
                     [](char l, char r) { return AsciiLower(l) == AsciiLower(r); }) != text.end();
}

struct Row {
  std::string name;
  std::string description;
};

// The section, if its name, its description and its comments contain all words. A comment that contains a word is shown
// after the description if nothing before it does.
bool Matches(const ListedSection& section, const std::vector<std::string>& words, Row& row) {
  for (const std::string& word : words) {
    if (Contains(section.name, word) || Contains(row.description, word)) {
      continue;
    }
    const auto comment = std::find_if(section.comments.begin(), section.comments.end(),
                                      [&](std::string_view text) { return Contains(text, word); });
    if (comment == section.comments.end()) {
      return false;
    }
    row.description.append(" | ").append(*comment);
  }
  return true;
}

// The file, or null after a message that says why it cannot be read.
std::unique_ptr<const ConfigFile> Opened(const std::string& path) {
  try {
    return std::make_unique<const ConfigFile>(path);
  } catch (const UsageError& failure) {
    Message(failure.what());
    return nullptr;
  }
}

std::size_t ListSectionsOf(const ConfigFile& config, const std::string& path, const std::vector<std::string>& words,
                           bool withPath) {
  std::vector<Row> rows;
  std::size_t width = 0;
  for (const ListedSection& section : ListSections(config)) {
    Row row{std::string(section.name),
            section.description.empty() ? DescriptionByKeys(config, section.name) : std::string(section.description)};
    if (Matches(section, words, row)) {
      row = {Visible(row.name), Visible(row.description)};
      width = std::max(width, std::min(row.name.size(), WidestName));
      rows.push_back(std::move(row));
    }
  }
  std::string text = withPath && !rows.empty() ? Visible(path) + "\n" : "";
  for (const Row& row : rows) {
    text.append(withPath ? "  " : "").append(row.name);
    text.append(width - std::min(row.name.size(), width) + 2, ' ').append(row.description).append("\n");
  }
  Print(text);
  return rows.size();
}

// The configuration files of a folder, by name.
std::vector<std::string> FilesOf(const std::filesystem::path& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".ini") {
      files.push_back(Utf8(entry.path()));
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Whether an argument looks like a text to search, not like a path.
bool IsWord(const std::string& argument) {
  return argument.find_first_of("./\\") == std::string::npos;
}

std::filesystem::path PlaceOf(const ListOptions& options) {
  return options.file.empty() ? ExamplesFolder() : NativePath(options.file);
}

}  // namespace

std::vector<std::string> ListedFiles(const ListOptions& options) {
  std::error_code failure;
  return std::filesystem::is_directory(PlaceOf(options), failure) ? FilesOf(PlaceOf(options))
                                                                  : std::vector<std::string>{options.file};
}

int RunList(const ListOptions& options) {
  const std::filesystem::path place = PlaceOf(options);
  std::error_code failure;
  const bool folder = std::filesystem::is_directory(place, failure);
  if (options.file.empty() && !folder) {
    throw UsageError("no examples are installed in " + Utf8(place) + "; latigo list FILE lists the sections of a file");
  }
  if (!std::filesystem::exists(place, failure) && !failure && IsWord(options.file)) {
    const bool installed = std::filesystem::is_directory(ExamplesFolder(), failure);
    throw UsageError(options.file + ": no such file; the text to search follows a file or folder: latigo list " +
                     (installed ? '"' + Utf8(ExamplesFolder()) + '"' : "FILE") + " " + options.file);
  }
  std::size_t found = 0;
  bool unreadable = false;
  for (const std::string& file : ListedFiles(options)) {
    const std::unique_ptr<const ConfigFile> config = Opened(file);
    unreadable = unreadable || !config;
    found += config ? ListSectionsOf(*config, file, options.words, folder) : 0;
  }
  if (unreadable) {
    return 2;
  }
  if (found == 0) {
    Message(Utf8(place) + (options.words.empty() ? ": no section" : ": no section has this text"));
  }
  return found > 0 ? 0 : 1;
}

}  // namespace latigo::cli
