// How the lines of a file are split into columns, and the values of those that a command reads.
//
//   static constexpr Wanted Pairs[] = {{Role::Number, "x"}, {Role::Number, "y"}, {Role::Text, "name", true}};
//   const Table table = ReadTable(path, options, Pairs);              // table_reader.h: all rows of a small file
//   TableReader reader(path, options, Pairs);                          // the same, block by block
//   reader.Found().Read(line, row);                                    // nothing is allocated per line
//
// Columns and lines are counted from 1 in messages and from 0 in code.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "angle.h"
#include "fields.h"

namespace latigo::cli {

enum class Role : char { Latitude, Longitude, Number, Text };

// A value that a command reads from each line. A list of them is in the order of --columns.
struct Wanted {
  Role role;
  const char* name;       // in messages
  bool optional = false;  // need not be among --columns, and its field may be empty; only after the required ones

  bool IsAngle() const { return role == Role::Latitude || role == Role::Longitude; }
};

inline constexpr std::size_t MostWanted = 8;
inline constexpr std::size_t MostColumns = 24;       // four angles in at most four columns each, and further values
inline constexpr std::size_t LargestColumn = 10000;  // the number of a column

// Why a line is no point.
struct Fault {
  const char* reason = nullptr;
  std::size_t column = 0;  // from 1; 0 if it is not in one column
  std::string_view text;   // the field, as in the line
};

// `column 2: "52,5": the reason`, safe for a terminal.
std::string FaultText(const Fault& fault);

// What a line has in the chosen columns.
struct Row {
  std::array<Field, MostColumns> fields;  // by place in --columns; parts of the line
  std::array<double, MostWanted> values;  // by place in the list of wanted values; degrees; NaN for none and for texts
  std::array<std::string_view, MostWanted> texts;  // without quotes and blanks; of angles in several columns the first
  std::size_t columns = 0;                         // in the whole line
  bool whole = true;                               // the line is split into all its columns
  Fault fault;
  bool besideValues = false;  // the fault is a hemisphere letter beside values that can be read

  bool Has(std::size_t wanted) const { return !texts[wanted].empty(); }
};

// The columns of a file. A constant object, which any number of threads may use.
class Layout {
 public:
  // `columns` from 0, in the order of --columns: one for each wanted value, or for each angle `perAngle` of them.
  // At least one; optional values at the end of the list may have none.
  Layout(char separator, bool decimalComma, std::span<const Wanted> wanted, std::vector<std::size_t> columns,
         std::size_t perAngle);

  // Reads a line without its line end. Returns false for a line that is no point, with the fault.
  bool Read(std::string_view line, Row& row) const;

  // Finds the chosen fields and counts all. Returns false for invalid quotes, and for a hemisphere letter that is not
  // chosen.
  bool ReadFields(std::string_view line, Row& row) const;

  char Separator() const { return separator_; }
  bool DecimalComma() const { return decimalComma_; }
  // Whether the wanted value may be missing.
  bool IsOptional(std::size_t wanted) const { return wanted_[wanted].optional; }
  // Number of wanted values that are read, among them texts.
  std::size_t Values() const { return values_; }
  const std::vector<std::size_t>& Columns() const { return columns_; }
  // The column of a wanted value that is read, from 1; of an angle its first one.
  std::size_t ColumnOf(std::size_t wanted) const { return columns_[PlaceOf(wanted)] + 1; }
  // The text of a wanted value with single quotes in place of doubled ones.
  std::string TextOf(const Row& row, std::size_t wanted) const;

  // Learns from the first point which columns have no hemispheres: those with another text there.
  void LearnHemispheres(std::string_view line);

  // The number of a first line such as sep=; by which spreadsheets state the separator; 0 without one.
  std::size_t separatorLine = 0;
  // The header: the number of its line, 0 without one, and of its columns. A line with more columns than it is refused.
  std::size_t headerLine = 0;
  std::size_t headerColumns = 0;
  // A line with fewer fields than the header is refused: between blanks an empty field is not seen.
  bool wantsAll = false;
  // The fields of a line in which no comma is a decimal one; 0 if that is not in question. In a line with more, a comma
  // between whole numbers could be one.
  std::size_t pointColumns = 0;

 private:
  static constexpr std::int8_t None = -1;
  // A column: its place among the chosen ones or None, the roles of the angles beside it, to which a hemisphere that is
  // not chosen could belong, and whether it can have hemispheres at all.
  struct Place {
    std::int8_t chosen = None;
    bool besideLatitude = false;
    bool besideLongitude = false;
    bool mayBeHemisphere = true;
  };
  struct Hemispheres {
    bool latitude = false, longitude = false;
  };
  std::size_t PlaceOf(std::size_t wanted) const;
  bool IsHemisphereField(std::string_view text, const Place& place, Hemispheres& seen) const;
  bool ReadValue(std::size_t wanted, std::size_t place, Row& row) const;
  Fault CountFault(std::string_view line, const Field& last, std::size_t filled, const Row& row) const;
  bool HaveOwnHemispheres(const Row& row) const;
  bool Join(const Field* fields, std::string_view& text, char* buffer) const;

  char separator_;
  bool decimalComma_;
  std::size_t perAngle_;
  std::size_t values_ = 0;
  bool angles_ = false;  // some wanted values are angles
  std::array<Wanted, MostWanted> wanted_{};
  std::vector<std::size_t> columns_;
  // For each column, at least up to the one after the last chosen.
  std::vector<Place> places_;
};

// Whether the line has four whole numbers with only commas between them from the first of the chosen fields on, which
// could be two with decimal commas.
bool CouldBeDecimalComma(std::string_view line, const Row& row, std::size_t columns);

}  // namespace latigo::cli
