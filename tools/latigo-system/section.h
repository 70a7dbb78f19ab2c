// A section of a configuration file: comments, and keys in the order of docs/configuration.md.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace latigo::system {

// The shortest text that reads back as the same double.
std::string Digits(double value);

// The value without the rounding of a computation: 13 digits, if they are within four units in the last place of it.
double Clean(double value);

// A text on one line, without control characters.
std::string OneLine(std::string_view text);

class Section {
 public:
  // Sets a key; replaces the value that it had. A number of 0 is left out: it is every key's default.
  void Set(std::string_view key, std::string_view value);
  void Set(std::string_view key, double value);

  // A line of comment above the keys.
  void Comment(std::string_view text) { comments_.push_back(OneLine(text)); }

  // 0 for a key that is not set.
  double Number(std::string_view key) const;
  // Empty for a key that is not set.
  std::string Value(std::string_view key) const;

  // The section as it stands in a file, under a name.
  std::string Write(std::string_view name) const;

 private:
  std::vector<std::string> comments_;
  std::vector<std::pair<std::string, std::string>> keys_;
};

}  // namespace latigo::system
