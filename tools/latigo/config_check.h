// Checks a configuration file for entries that the library probably does not read as intended.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace latigo::cli {

// A configuration file in memory, read as the library reads it.
class ConfigFile {
 public:
  // Throws UsageError if the file cannot be read: it is missing, not a regular file, or too large.
  explicit ConfigFile(const std::string& path);
  // The same from bytes that are in memory already; the path is for messages.
  ConfigFile(std::string path, std::string bytes);
  ConfigFile(const ConfigFile&) = delete;
  ConfigFile& operator=(const ConfigFile&) = delete;

  // The names of the sections, each once.
  std::vector<std::string> Sections() const;
  bool Has(std::string_view section) const { return index_.contains(Folded(section)); }

  // The value of a section's key, at most 79 characters; empty without one.
  std::string_view Value(std::string_view section, std::string_view key) const;
  bool HasValue(std::string_view section, std::string_view key) const { return !Value(section, key).empty(); }

  // The text of a section, from the line of its name to the next section; and the size of the file, bytes.
  std::string_view TextOf(std::string_view section) const;
  std::size_t Size() const { return bytes_.size(); }
  std::string_view Bytes() const { return bytes_; }

  // Whether a section has a datum shift, also one of zero.
  bool HasShift(std::string_view section) const;

  // The paths of the grid files that its sections name.
  std::vector<std::string> GridFiles() const;

  // A name as it compares: without blanks around it, in small letters.
  static std::string Folded(std::string_view name);

  // The warnings of a section: one line of text each, with file, line, section, key and the value read.
  // `shift`: positions on WGS-84 are asked of it.
  std::vector<std::string> Warnings(std::string_view name, bool shift = false) const;

 private:
  struct Key {
    std::string_view name;
    std::optional<std::string_view> value;  // empty for a line without =
    std::size_t line;
  };
  struct Section {
    std::string_view name;
    std::size_t line;
    std::size_t begin, end;  // of its text
    std::vector<Key> keys;
    std::vector<std::size_t> again;  // lines of further sections with this name, which are not read
  };

  std::string_view ValueOf(const Section& section, std::string_view key) const;
  double NumberOf(const Section& section, std::string_view key) const;
  std::string CheckValue(const Key& key) const;
  std::string CheckUse(const Section& section, const Key& key) const;
  std::vector<std::string> CheckSystem(const Section& section) const;

  std::string path_;
  std::string bytes_;
  std::vector<Section> sections_;
  std::vector<Key> before_;  // keys above the first section, which belong to none
  std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace latigo::cli
