#include "table_reader.h"

#include <algorithm>
#include <charconv>

#include "error_text.h"
#include "field_text.h"
#include "platform/ascii.h"
#include "point_line.h"
#include "progress.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr std::size_t MostHeld = 1 << 14;       // bytes of lines that are held back until the layout is found
constexpr std::size_t LongestRecord = 1 << 16;  // bytes of a line with line breaks inside quoted fields
constexpr char Separators[] = {'\t', ';', ',', ' '};

constexpr const char* WordOf(char separator) {
  return separator == '\t' ? "tab" : separator == ';' ? "semicolon" : separator == ',' ? "comma" : "blank";
}

// The texts of all fields of a line.
std::vector<std::string_view> TextsOf(std::string_view line, char separator) {
  std::vector<std::string_view> texts;
  FieldScanner scanner(line, separator);
  for (Field field; scanner.Next(field);) {
    texts.push_back(field.text);
  }
  return texts;
}

// The number of a column from 0, if the text is a number from 1.
std::optional<std::size_t> ColumnNumber(std::string_view text) {
  std::size_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    return std::nullopt;
  }
  if (number < 1 || number > LargestColumn) {
    throw UsageError("--columns: " + std::string(text) + " is not between 1 and " + std::to_string(LargestColumn));
  }
  return number - 1;
}

void RequireDistinct(std::vector<std::size_t> columns) {
  std::sort(columns.begin(), columns.end());
  const auto twice = std::adjacent_find(columns.begin(), columns.end());
  if (twice != columns.end()) {
    throw UsageError("--columns: column " + std::to_string(*twice + 1) + " is chosen twice");
  }
}

// Columns for each angle, from the number of chosen columns. Throws UsageError if the list and the number do not fit.
std::size_t ColumnsPerAngle(std::span<const Wanted> wanted, std::size_t chosen, bool dmsColumns) {
  const auto angles = static_cast<std::size_t>(
      std::count_if(wanted.begin(), wanted.end(), [](const Wanted& w) { return w.IsAngle(); }));
  const auto required = static_cast<std::size_t>(
      std::count_if(wanted.begin(), wanted.end(), [](const Wanted& w) { return !w.optional; }));
  std::string meanings;
  for (const Wanted& value : wanted) {
    meanings += std::string(meanings.empty() ? "" : ", ") + value.name + (value.optional ? " (optional)" : "");
  }
  if (dmsColumns && angles == 0) {
    throw UsageError("--dms-columns: the columns are no angles, but " + meanings);
  }
  for (const std::size_t parts : {2U, 3U, 4U}) {
    const std::size_t more = dmsColumns ? angles * (parts - 1) : 0;
    if (chosen >= required + more && chosen <= wanted.size() + more) {
      return dmsColumns ? parts : 1;
    }
  }
  throw UsageError("--columns: " + std::to_string(chosen) + " columns, but wanted are " + meanings +
                   (dmsColumns ? ", and of each angle 2 to 4 columns" : ""));
}

// Words of a column's name which show that it is not the wanted value.
struct Misplaced {
  std::string_view wanted;
  std::string_view words;  // in lower case, with blanks around each
};
constexpr std::string_view LatitudeWords = " lat latitude latitud latd breite breitengrad ";
constexpr std::string_view LongitudeWords = " lon long lng longitude longitud lond l\u00E4nge laenge l\u00E4ngengrad ";
constexpr Misplaced MisplacedColumns[] = {
    {"latitude", LongitudeWords},
    {"longitude", LatitudeWords},
    {"x", LatitudeWords},
    {"x", LongitudeWords},
    {"x", " north northing nord norden norte hoch hochwert "},
    {"y", LatitudeWords},
    {"y", LongitudeWords},
    {"y", " east easting ost este rechts rechtswert "},
};

bool IsMisplaced(const Wanted& value, std::string_view name) {
  std::string word = " ";
  for (const char c : std::string(name) + ' ') {
    if (!IsLetter(c)) {
      word += ' ';
      const auto has = [&](const Misplaced& one) {
        return one.wanted == value.name && word.size() > 2 && one.words.find(word) != std::string_view::npos;
      };
      if (std::any_of(std::begin(MisplacedColumns), std::end(MisplacedColumns), has)) {
        return true;
      }
      word = " ";
    } else {
      word += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
  }
  return false;
}

// As RecordEnd, for a text whose first line feed is known, and whose last line ends there or with the file. Comments
// have no quoted fields.
std::size_t RecordEndOf(std::string_view text, std::size_t feed, char separator) {
  const std::string_view line = text.substr(0, feed);
  const bool quotes = line.find('"') != std::string_view::npos && !IsComment(line, separator);
  return quotes ? RecordEnd(text.substr(0, LongestRecord), separator, text.size() <= LongestRecord) : feed;
}

// Whether the fields of the columns are those of a point, of which at least one is missing.
bool IsIncomplete(const std::vector<std::string_view>& texts, const std::vector<std::size_t>& columns) {
  const auto isMissing = [&texts](std::size_t column) { return IsMissing(texts[column]); };
  const auto isNone = [&texts](std::size_t column) {
    return !IsMissing(texts[column]) &&
           (IsWord(texts[column], true) || texts[column].find(' ') != std::string_view::npos);
  };
  return std::any_of(columns.begin(), columns.end(), isMissing) && std::none_of(columns.begin(), columns.end(), isNone);
}

// The separator that a first line of a spreadsheet states, as sep=; does; 0 without one.
char StatedSeparator(std::string_view line) {
  return line.size() == 5 && line.starts_with("sep=") ? line.back() : '\0';
}

bool SameFields(const Row& one, const Row& two, std::size_t count) {
  return std::equal(one.fields.begin(), one.fields.begin() + static_cast<std::ptrdiff_t>(count), two.fields.begin(),
                    [](const Field& a, const Field& b) { return a.bytes == b.bytes; });
}

}  // namespace

TableReader::TableReader(const std::string& path, const TableOptions& options, std::span<const Wanted> wanted)
    : options_(options), wanted_(wanted), reader_(path) {
  std::vector<std::size_t> columns;
  if (!options.columns.empty()) {
    for (const std::string_view text : TextsOf(options.columns, ',')) {
      if (text.empty()) {
        throw UsageError("--columns: a name is empty: " + options.columns);
      }
      names_.emplace_back(text);
      columns.push_back(ColumnNumber(text).value_or(0));
    }
  }
  const auto isNumber = [](const std::string& name) { return ColumnNumber(name).has_value(); };
  if (names_.empty()) {  // the required ones; further ones are found with the first point
    perAngle_ = options.dmsColumns ? 3 : 1;
    for (const Wanted& value : wanted) {
      for (std::size_t part = 0; part < (value.optional ? 0 : value.IsAngle() ? perAngle_ : 1); ++part) {
        columns.push_back(columns.size());
      }
    }
  }
  perAngle_ = ColumnsPerAngle(wanted, columns.size(), options.dmsColumns);
  if (std::all_of(names_.begin(), names_.end(), isNumber)) {
    names_.clear();
    RequireDistinct(columns);
  } else if (options.header == HeaderLine::No) {
    throw UsageError("--columns: a name needs a header line");
  }
  for (const char separator : Separators) {
    if (options.separation == Separation::Auto || static_cast<char>(options.separation) == separator) {
      candidates_.push_back({separator, columns});
    }
  }
}

void TableReader::Refuse(std::size_t line, const std::string& reason) const {
  throw UsageError(reader_.Name() + ":" + std::to_string(line) + ": " + reason);
}

bool TableReader::Next(Block& block) {
  if (pending_) {
    block = std::move(*pending_);
    pending_.reset();
    return true;
  }
  const bool more = reader_.Next(block);
  bool atEnd = !more;
  const bool isFirst = !layout_;
  while (!layout_ && !Find(block.bytes, block.firstLine, atEnd || block.bytes.size() > MostHeld)) {
    atEnd = !Append(block);
  }
  if (isFirst) {
    RequireOrder();
  }
  if (!block.cut) {
    CompleteRecords(block);
  }
  return more;
}

// Appends the following block; false at the end of the file, and before an overlong line.
bool TableReader::Append(Block& block) {
  Block following;
  if (pending_ || !reader_.Next(following)) {
    return false;
  }
  if (following.cut) {
    pending_ = std::move(following);
    return false;
  }
  block.bytes += following.bytes;
  return true;
}

// Finds the line feeds inside quoted fields; while the last field is open, the following block is appended.
void TableReader::CompleteRecords(Block& block) {
  if (block.bytes.find('"') == std::string::npos) {
    return;
  }
  for (std::size_t begin = 0; begin < block.bytes.size();) {
    const std::string_view text = std::string_view(block.bytes).substr(begin);
    const std::size_t feed = std::min(text.find('\n'), text.size());
    std::size_t end = RecordEndOf(text, feed, layout_->Separator());
    if (end == std::string_view::npos) {
      if (text.size() < LongestRecord && Append(block)) {
        continue;
      }
      end = feed;
    }
    for (std::size_t inside = feed; inside < end; inside = text.find('\n', inside + 1)) {
      block.inside.push_back(begin + inside);
    }
    begin += end + 1;
  }
}

// Removes the next line from the front of the text; false if the text has none, or could end inside one.
bool TableReader::TakeRecord(std::string_view& text, std::string_view& line, bool atEnd) const {
  const std::string_view all = text;
  if (!NextLine(text, line)) {
    return false;
  }
  const std::size_t feed = std::min(all.find('\n'), all.size());
  for (const Candidate& candidate : candidates_) {
    const std::size_t end = RecordEndOf(all, feed, candidate.separator);
    if (end == std::string_view::npos && !atEnd) {
      return false;
    }
    if (end != std::string_view::npos && end > feed) {
      line = all.substr(0, all[end - 1] == '\r' ? end - 1 : end);
      text = all.substr(std::min(end + 1, all.size()));
      break;
    }
  }
  return true;
}

// Finds the layout from the lines; false if they are too few.
bool TableReader::Find(std::string_view text, std::size_t firstLine, bool atEnd) {
  headerDecided_ = options_.header == HeaderLine::No;
  std::string_view first;  // the first line after the header
  std::size_t following = firstLine;
  for (std::string_view line; TakeRecord(text, line, atEnd);) {
    const std::size_t number = following;
    following += 1 + static_cast<std::size_t>(std::count(line.begin(), line.end(), '\n'));
    if (number == 1 && StatedSeparator(line) != '\0') {
      separatorLine_ = number;
      const auto isOther = [line](const Candidate& candidate) { return candidate.separator != StatedSeparator(line); };
      candidates_.erase(std::remove_if(candidates_.begin(), candidates_.end(), isOther), candidates_.end());
      if (candidates_.empty()) {
        Refuse(number,
               '"' + Visible(line) + "\": a separator is a comma, semicolon, tab or blank, and that of --separator");
      }
      continue;
    }
    const auto isEmpty = [line](const Candidate& candidate) { return IsEmptyRow(line, candidate.separator); };
    if ((IsComment(line) && (!Named() || headerDecided_)) ||
        std::any_of(candidates_.begin(), candidates_.end(), isEmpty)) {
      continue;
    }
    if (!headerDecided_ && TakeHeader(line, number)) {
      continue;
    }
    if (Decide(line, number)) {
      return true;
    }
    first = first.empty() ? line : first;
  }
  if (!atEnd) {
    return false;
  }
  // No line is a point with any separator: each is reported as read with that which finds most of the chosen fields.
  Row row;
  std::ptrdiff_t most = -1;
  for (const Candidate& candidate : candidates_) {
    const bool needsQuotes = candidate.separator == ',' && options_.decimalComma && candidates_.size() > 1;
    if (IsExcluded(candidate, first) || (needsQuotes && first.find('"') == std::string_view::npos)) {
      continue;
    }
    Layout layout = LayoutOf(candidate, options_.decimalComma, first);
    layout.ReadFields(first, row);
    const auto filled =
        std::count_if(row.fields.begin(), row.fields.begin() + static_cast<std::ptrdiff_t>(layout.Columns().size()),
                      [](const Field& field) { return !field.bytes.empty(); });
    const auto count = first.empty() ? static_cast<std::ptrdiff_t>(candidate.headerColumns) : filled;
    if (count > most) {
      most = count;
      layout_ = std::move(layout);
    }
  }
  if (!layout_) {
    layout_ = LayoutOf(candidates_.front(), options_.decimalComma, first);
  }
  return true;
}

// Whether the line is the header, or a comment before it. Candidates whose columns it does not have are dropped.
bool TableReader::TakeHeader(std::string_view line, std::size_t number) {
  headerDecided_ = !Named() || FindNames(line, number);
  if (!headerDecided_) {
    return true;
  }
  std::vector<Candidate> kept;
  const bool stated = options_.header == HeaderLine::Yes || Named();
  Row row;
  const auto isPoint = [&](const Candidate& candidate) {
    return LayoutOf(candidate, options_.decimalComma, line).Read(line, row) || row.besideValues;
  };
  if (!stated && std::any_of(candidates_.begin(), candidates_.end(), isPoint)) {
    return false;  // whatever words its remarks make with another separator
  }
  bool hasNumber = false;
  std::vector<bool> angles;  // of the chosen columns those that begin an angle
  for (const Wanted& value : wanted_) {
    angles.push_back(value.IsAngle());
    angles.insert(angles.end(), value.IsAngle() ? perAngle_ - 1 : 0, false);
  }
  for (Candidate candidate : candidates_) {
    const std::vector<std::string_view> texts = TextsOf(line, candidate.separator);
    std::size_t words = 0;
    std::size_t empty = 0;
    for (std::size_t place = 0; place < candidate.columns.size(); ++place) {
      const std::size_t column = candidate.columns[place];
      words += column < texts.size() && IsWord(texts[column], angles[place]) ? 1 : 0;
      empty += column < texts.size() && texts[column].empty() ? 1 : 0;
    }
    if (stated || (words > 0 && words + empty == candidate.columns.size())) {
      hasNumber = hasNumber || (!HasReturnInside(line) && std::any_of(texts.begin(), texts.end(), LooksLikeNumber));
      candidate.headerColumns = texts.size();
      kept.push_back(std::move(candidate));
    }
  }
  if (kept.empty()) {
    return false;
  }
  if (hasNumber && !stated) {
    Refuse(number, "the header, or a point without coordinates; --header yes or no decides: \"" +
                       Visible(line.substr(0, 200)) + '"');
  }
  candidates_ = std::move(kept);
  headerLine_ = number;
  header_ = line;
  return true;
}

// Refuses columns in an order that contradicts the header, as Lon, Lat without --lonlat.
void TableReader::RequireOrder() const {
  const std::vector<std::string_view> texts = TextsOf(header_, layout_->Separator());
  const auto isNamed = [&](std::size_t place, std::string_view name) {
    const std::size_t column = layout_->Columns()[place];
    return column < texts.size() && EqualIgnoringCase(texts[column], name);
  };
  const bool northFirst = wanted_[0].name == std::string_view("x") && isNamed(0, "N") && isNamed(1, "E");
  std::size_t place = 0;
  for (const Wanted& value : wanted_) {
    const std::size_t column = place < layout_->Columns().size() ? layout_->Columns()[place] : texts.size();
    if (column < texts.size() && (northFirst || IsMisplaced(value, texts[column]))) {
      Refuse(headerLine_, "column " + std::to_string(column + 1) + ": \"" + Visible(texts[column]) + "\" as the " +
                              value.name + ": --columns chooses columns in their order" +
                              (value.IsAngle() ? ", and with --lonlat the longitude is first" : ""));
    }
    place += value.IsAngle() ? perAngle_ : 1;
  }
}

// Replaces the names by the columns of the header; candidates without them are dropped. False for a comment.
bool TableReader::FindNames(std::string_view line, std::size_t number) {
  std::size_t missing = 0;  // of the names, with the separator that finds most of them
  std::vector<Candidate> found;
  for (Candidate candidate : candidates_) {
    const std::vector<std::string_view> texts = TextsOf(line, candidate.separator);
    bool complete = true;
    for (std::size_t i = 0; i < names_.size() && complete; ++i) {
      const auto column = ColumnNumber(names_[i]);
      const auto is = [&](std::string_view text) { return EqualIgnoringCase(text, names_[i]); };
      const auto place = std::find_if(texts.begin(), texts.end(), is);
      complete = column.has_value() || place != texts.end();
      if (!complete) {
        missing = std::max(missing, i);
      } else if (!column && std::find_if(place + 1, texts.end(), is) != texts.end()) {
        Refuse(number, "the header has the name " + Visible(names_[i]) + " twice");
      } else {
        candidate.columns[i] = column ? *column : static_cast<std::size_t>(place - texts.begin());
      }
    }
    if (complete) {
      RequireDistinct(candidate.columns);
      found.push_back(std::move(candidate));
    }
  }
  if (found.empty()) {
    if (IsComment(line)) {
      return false;
    }
    Refuse(number,
           "the header has no column " + Visible(names_[missing]) + ": \"" + Visible(line.substr(0, 200)) + '"');
  }
  candidates_ = std::move(found);
  return true;
}

// The layout of a candidate; without --columns the optional values follow that the line has.
Layout TableReader::LayoutOf(const Candidate& candidate, bool decimalComma, std::string_view line) const {
  std::vector<std::size_t> columns = candidate.columns;
  const std::vector<std::string_view> texts = TextsOf(line, candidate.separator);
  if (options_.columns.empty()) {
    for (const Wanted& value : wanted_) {
      if (!value.optional) {
        continue;
      }
      if (columns.size() >= texts.size()) {
        break;
      }
      // An empty field could have a number in other lines.
      const std::string_view text = texts[columns.size()];
      if (value.role != Role::Text && !text.empty() && !LooksLikeNumber(text) && !HasUnit(text) &&
          ParseNumber(text).fault != nullptr) {
        break;
      }
      columns.push_back(columns.size());
    }
  }
  Layout layout(candidate.separator, decimalComma, wanted_, std::move(columns), perAngle_);
  layout.separatorLine = separatorLine_;
  layout.headerLine = headerLine_;
  layout.headerColumns = candidate.headerColumns;
  layout.wantsAll = Named() && candidate.separator == ' ';
  return layout;
}

// Whether blanks cannot be the separator, because tabs make fields of all columns, or another separator those of an
// incomplete point.
bool TableReader::IsExcluded(const Candidate& candidate, std::string_view line) const {
  const auto separates = [line](const Candidate& other) {
    const std::vector<std::string_view> texts = TextsOf(line, other.separator);
    return other.separator != ' ' && *std::max_element(other.columns.begin(), other.columns.end()) < texts.size() &&
           (other.separator == '\t' || IsIncomplete(texts, other.columns));
  };
  return candidate.separator == ' ' && std::any_of(candidates_.begin(), candidates_.end(), separates);
}

// Finds the layout with which the line is a point; false if there is none, UsageError if there are several.
bool TableReader::Decide(std::string_view line, std::size_t number) {
  Row found;
  Row other;
  if (candidates_.size() == 1) {
    Layout layout = LayoutOf(candidates_[0], options_.decimalComma, line);
    if (layout.Read(line, found) || (found.besideValues && !options_.columns.empty())) {
      layout_ = std::move(layout);
      layout_->LearnHemispheres(line);
    }
    return layout_.has_value();
  }
  const bool hasTab = line.find('\t') != std::string_view::npos;
  for (const Candidate& candidate : candidates_) {
    if ((candidate.separator == ' ' && hasTab && layout_) || IsExcluded(candidate, line)) {
      continue;
    }
    Layout layout = LayoutOf(candidate, options_.decimalComma, line);
    const std::size_t count = layout.Columns().size();
    Row& row = layout_ ? other : found;
    // Blanks inside angles can make a point of a line that is refused with its own separator for a hemisphere letter.
    if (!layout.Read(line, row) && !row.besideValues) {
      continue;
    }
    if (!layout_) {
      layout_ = std::move(layout);
    } else if (!SameFields(found, other, count)) {
      Refuse(number, std::string("the separator could be a ") + WordOf(layout_->Separator()) + " or a " +
                         WordOf(candidate.separator) + "; --separator decides: \"" + Visible(line.substr(0, 200)) +
                         '"');
    }
  }
  if (!layout_) {
    return false;
  }
  layout_->LearnHemispheres(line);
  if (layout_->Separator() != ',' || options_.decimalComma) {
    return true;
  }
  bool decimalComma = layout_->headerColumns == 0 && CouldBeDecimalComma(line, found, layout_->Columns().size());
  for (const Candidate& candidate : candidates_) {
    decimalComma = decimalComma || (candidate.separator != ',' && LayoutOf(candidate, true, line).Read(line, other));
  }
  layout_->pointColumns = layout_->headerColumns == 0 ? found.columns : 0;
  if (decimalComma) {
    Refuse(number,
           "the comma could be a separator or a decimal comma; --separator comma or --decimal-comma decides: \"" +
               Visible(line.substr(0, 200)) + '"');
  }
  return true;
}

Table ReadTable(const std::string& path, const TableOptions& options, std::span<const Wanted> wanted) {
  TableReader reader(path, options, wanted);
  const auto angles = std::count_if(wanted.begin(), wanted.end(), [](const Wanted& w) { return w.IsAngle(); });
  const bool inFields = angles > 0 && options.columns.empty() && !options.dmsColumns;
  const Positions positions = angles > 2 ? Positions::Two : Positions::One;
  Table table;
  Row row;
  Progress progress({path});
  for (Block block; reader.Next(block);) {
    const Layout& layout = reader.Found();
    for (std::size_t i = table.columns.size(); i < layout.Values(); ++i) {
      table.columns.push_back(layout.ColumnOf(i));
    }
    BlockLines lines(block);
    const auto fail = [&](const std::string& reason) {
      table.faults.push_back({lines.Number(), reader.Name() + ":" + std::to_string(lines.Number()) + ": " + reason});
    };
    if (block.cut) {
      fail("the line is too long");
      continue;
    }
    for (std::string_view line, end; lines.Next(line, end);) {
      if (HasReturnInside(line)) {  // also of a comment, which would hide lines
        fail(FaultText({ReturnInside, 0, line}));
        continue;
      }
      if (lines.Number() == layout.headerLine || lines.Number() == layout.separatorLine ||
          IsComment(line, layout.Separator())) {
        continue;
      }
      if (!layout.Read(line, row)) {
        if (!IsEmptyRow(line, layout.Separator())) {
          fail(FaultText(row.fault));
        }
        continue;
      }
      if (inFields && CouldHaveParts(line, static_cast<Separation>(layout.Separator()), positions)) {
        fail(PartsInFields);
        continue;
      }
      Record& record = table.records.emplace_back();
      record.line = lines.Number();
      record.values.assign(row.values.begin(), row.values.begin() + static_cast<std::ptrdiff_t>(wanted.size()));
      for (std::size_t i = 0; i < wanted.size(); ++i) {
        record.texts.push_back(wanted[i].role == Role::Text ? layout.TextOf(row, i) : std::string(row.texts[i]));
      }
    }
    progress.Add(block.bytes.size(), lines.Following() - block.firstLine);
  }
  return table;
}

}  // namespace latigo::cli
