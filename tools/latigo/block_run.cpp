#include "block_run.h"

#include <algorithm>
#include <cmath>

#include "error_text.h"
#include "field_text.h"
#include "operations.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr int LengthPrecision = 4;   // 0.1 mm
constexpr int DegreePrecision = 10;  // 0.01 mm on the earth
constexpr int SecondPrecision = 6;   // 0.03 mm
constexpr int ScalePrecision = 10;
constexpr int AnglePrecision = 8;      // of convergence and distortion, degrees
constexpr int ArcSecondPrecision = 4;  // a centimetre at 200 km

// Of heights that are not doubtful, in metres or feet: less than the northings of most grids.
constexpr double LargestHeight = 1e5;

}  // namespace

void BlockRun::Run(const Block& block) {
  line_ = block.firstLine;
  end_ = block.afterCrlf ? "\r\n" : "\n";
  if (block.cut) {
    row_ = {};
    row_.whole = false;
    Fail({}, {}, {"the line is too long", 0, {}});
    output_.rows = 1;
    return;
  }
  returnInside_ = HasReturnInside(block.bytes);
  BlockLines lines(block);
  for (std::string_view line, end; lines.Next(line, end);) {
    end_ = end.empty() ? end_ : end;
    line_ = lines.Number();
    RunLine(line);
  }
  output_.rows = lines.Following() - block.firstLine;
}

void BlockRun::RunLine(std::string_view line) {
  const bool header = form_ != nullptr && line_ == form_->layout.headerLine;
  const bool separator = form_ != nullptr && line_ == form_->layout.separatorLine;
  if (header || separator || IsComment(line, form_ != nullptr ? form_->layout.Separator() : ' ')) {
    const bool hidesLines = returnInside_ && HasReturnInside(line);
    if (hidesLines) {
      AddMessage({ReturnInside, 0, line});
    }
    if (header && !hidesLines) {
      WriteHeader(line);
    } else {
      output_.text.Text(line);
      WriteEnd();
    }
    return;
  }
  const PointLine point = ReadLine(line);
  if (point.fault != nullptr) {
    if (form_ != nullptr && IsEmptyRow(line, form_->layout.Separator())) {
      output_.text.Text(line);
      WriteEnd();
    } else {
      Fail(line, point, {point.fault, point.faultColumn, point.faultText});
    }
    return;
  }
  Result result;
  if (ConvertPoint(line, point, result)) {
    WriteLine(line, point, {&result, static_cast<std::size_t>(result.count) + (command_.unit.empty() ? 0 : 1)});
  }
}

PointLine BlockRun::ReadLine(std::string_view line) {
  PointLine point = form_ != nullptr ? ReadRow(line) : ReadPlain(line);
  if (returnInside_ && (HasReturnInside(line) || line.ends_with('\r'))) {
    point.fault = ReturnInside;
    point.faultColumn = 0;
    point.faultText = line;
  }
  return point;
}

PointLine BlockRun::ReadPlain(std::string_view line) const {
  PointLine point = command_.parse(line, command_.order, options_.table.separation);
  if (command_.third == Third::Ignored || command_.third == Third::Carried) {
    point.third.reset();
    point.rest = point.restWithThird;
    point.fault = point.badThird ? nullptr : point.fault;
  }
  if (point.fault == nullptr && command_.third == Third::Needed && !point.third) {
    point.fault = "a field is missing";
    point.faultColumn = 3;
  }
  return point;
}

// The part of the row from the first of the chosen fields to the last, for messages.
std::string_view BlockRun::ChosenPart() const {
  const char* begin = nullptr;
  const char* end = nullptr;
  for (const std::size_t place : form_->order) {
    const std::string_view bytes = row_.fields[place].bytes;
    begin = begin == nullptr ? bytes.data() : begin;
    end = bytes.data() == nullptr ? end : bytes.data() + bytes.size();
  }
  return {begin, static_cast<std::size_t>(end - begin)};
}

PointLine BlockRun::ReadRow(std::string_view line) {
  PointLine point;
  const bool reads = form_->layout.Read(line, row_);
  const std::array<double, MostWanted>& values = row_.values;
  const bool swapped = command_.order == Order::LongitudeLatitude;
  point.first = values[swapped ? 1 : 0];
  point.second = values[swapped ? 0 : 1];
  if (command_.parse == ParseTwoPoints) {
    point.toFirst = values[swapped ? 3 : 2];
    point.toSecond = values[swapped ? 2 : 3];
  } else if (row_.Has(2)) {
    point.third = values[2];
    // A chosen column is no point name.
    point.wholeThird =
        options_.table.columns.empty() && row_.texts[2].find_first_not_of("0123456789") == std::string_view::npos;
  }
  point.coordinates = ChosenPart();
  const Positions positions = command_.parse == ParseTwoPoints ? Positions::Two : Positions::One;
  const bool angles = command_.order != Order::Grid && options_.table.columns.empty() && !options_.table.dmsColumns;
  if (reads && angles && CouldHaveParts(line, static_cast<Separation>(form_->layout.Separator()), positions)) {
    point.fault = PartsInFields;
    point.faultColumn = 1;
    point.faultText = point.coordinates;
  } else if (!reads) {
    point.fault = row_.fault.reason;
    point.faultColumn = row_.fault.column;
    point.faultText = row_.fault.text;
  } else if (form_->inPlace && command_.third != Third::Height &&
             row_.fields[form_->names.size() - 1].bytes.data() == nullptr) {
    point.fault = "a field is missing";
    point.faultColumn = form_->layout.Columns().back() + 1;
  } else if (!form_->inPlace && row_.columns > form_->layout.headerColumns && form_->layout.headerColumns != 0) {
    point.fault = "the line has more fields than the header";
    point.faultColumn = row_.columns;
    point.faultText = line;
  }
  return point;
}

// Returns false for a point that failed, after writing its line.
bool BlockRun::ConvertPoint(std::string_view line, const PointLine& point, Result& result) {
  const auto fail = [&](const char* reason) {
    Fail(line, point, {reason, 0, point.coordinates});
    return false;
  };
  if (command_.third == Third::Undecided && point.third) {
    const std::size_t column = form_ == nullptr ? 3 : form_->layout.ColumnOf(2);
    throw UsageError(file_ + ":" + std::to_string(line_) + ": column " + std::to_string(column) + " of \"" +
                     Visible(line.substr(0, 200)) + "\" may be a height; choose --heights geoid or ellipsoidal, or " +
                     (options_.table.columns.empty() ? "--no-height, which copies it" : "leave it out of --columns"));
  }
  command_.convert(converter_, point, result);
  if (result.function != nullptr || result.fault != nullptr) {
    const std::string place = result.place.empty() ? "" : Visible(result.place) + ": ";
    return fail(
        (place + (result.function != nullptr ? ErrorText(result.code, result.function) : result.fault)).c_str());
  }
  const bool usesHeight = command_.third == Third::Used && command_.parse == ParsePointLine;
  if (point.third && (command_.third == Third::Height || usesHeight)) {
    if (point.wholeThird && *point.third != 0 && !command_.heightsAreStated) {
      result.Add(Doubt::WholeHeight);
    } else {
      output_.otherHeights = true;
    }
    if (std::fabs(*point.third) > LargestHeight && command_.third == Third::Height) {
      result.Add(Doubt::GreatHeight);
    }
  }
  if (const char* fault = FaultOf(result); fault != nullptr) {
    return fail(fault);
  }
  return result.doubts == 0 || Accept(line, point, result.doubts);
}

// Records the doubts of a point; returns false if it fails because of them.
bool BlockRun::Accept(std::string_view line, const PointLine& point, unsigned doubts) {
  for (std::size_t i = 0; i < AllDoubts; ++i) {
    if ((doubts >> i & 1U) == 0) {
      continue;
    }
    if (options_.strict) {
      Fail(line, point, {converter_.TextOf(i).c_str(), 0, point.coordinates});
      return false;
    }
    Doubtful& doubtful = output_.doubtful[i];
    doubtful.firstLine = doubtful.count++ == 0 ? line_ : doubtful.firstLine;
  }
  return true;
}

void BlockRun::AddMessage(const Fault& fault) {
  output_.messages += "latigo: " + Visible(file_) + ":" + std::to_string(line_) + ": " + FaultText(fault) + "\n";
}

void BlockRun::Fail(std::string_view line, const PointLine& point, const Fault& fault) {
  AddMessage(fault);
  const int values = command_.values + (command_.third == Third::Height && point.third ? command_.heightValues : 0);
  const std::size_t items = static_cast<std::size_t>(values) + (command_.unit.empty() ? 0 : 1);
  WriteLine(line, point, {nullptr, form_ != nullptr ? form_->names.size() : items});
}

void BlockRun::WriteLine(std::string_view line, const PointLine& point, const Items& items) {
  if (form_ != nullptr) {
    form_->inPlace ? WriteInPlace(line, items) : WriteAppended(line, items);
  } else {
    const char* const begin = point.coordinates.data();
    output_.text.Text(begin == nullptr ? ""
                                       : std::string_view(line.data(), static_cast<std::size_t>(begin - line.data())));
    for (std::size_t i = 0; i < items.count; ++i) {
      if (i > 0) {
        output_.text.Char(point.separator);
      }
      WriteItem(items, i);
    }
    output_.text.Text(point.rest);
  }
  WriteEnd();
}

// The line with the items in place of the chosen fields, inside their quotes. Coordinates that a failed point lacks are
// added; if the fields of the line are not known, * precedes it.
void BlockRun::WriteInPlace(std::string_view line, const Items& items) {
  const auto isMissing = [this](std::size_t place) { return row_.fields[place].bytes.data() == nullptr; };
  if (items.result == nullptr && !row_.whole && std::all_of(form_->order.begin(), form_->order.end(), isMissing)) {
    output_.text.Char('*');
    output_.text.Char(form_->layout.Separator());
  }
  // Where commas separate the fields, a number with a decimal comma needs quotes.
  const bool commas = items.result != nullptr && form_->layout.Separator() == ',' && form_->layout.DecimalComma();
  const char* done = line.data();
  for (const std::size_t place : form_->order) {
    const Field& field = row_.fields[place];
    if (place >= items.count || field.bytes.data() == nullptr ||
        (items.result == nullptr && field.bytes.empty() && form_->layout.IsOptional(place))) {
      continue;
    }
    const std::string_view quote = field.quoted || commas ? "\"" : "";
    output_.text.Text({done, field.bytes.data()});
    output_.text.Text(quote);
    WriteItem(items, place);
    output_.text.Text(quote);
    done = field.bytes.data() + field.bytes.size();
  }
  output_.text.Text({done, line.data() + line.size()});
  if (items.result == nullptr && row_.whole) {
    std::size_t columns = row_.columns;
    for (const std::size_t place : form_->order) {
      const std::size_t column = form_->layout.Columns()[place];
      if (isMissing(place) && !form_->layout.IsOptional(place)) {
        for (; columns <= column; ++columns) {
          output_.text.Char(form_->layout.Separator());
        }
        output_.text.Char('*');
      }
    }
  }
}

// The line with the items in new columns. If the line has fewer columns than the header, empty ones precede them.
void BlockRun::WriteAppended(std::string_view line, const Items& items) {
  const Layout& layout = form_->layout;
  const char separator = layout.Separator();
  output_.text.Text(line);
  for (std::size_t column = row_.columns; column < layout.headerColumns && separator != ' '; ++column) {
    output_.text.Char(separator);
  }
  const std::string_view quote = separator == ',' && layout.DecimalComma() ? "\"" : "";
  for (std::size_t i = 0; i < form_->names.size(); ++i) {
    output_.text.Char(separator);
    if (i < items.count) {
      output_.text.Text(quote);
      WriteItem(items, i);
      output_.text.Text(quote);
    }
  }
}

void BlockRun::WriteHeader(std::string_view line) {
  form_->layout.ReadFields(line, row_);
  const auto write = [this](std::string_view text) { output_.text.Text(text); };
  const char* done = line.data();
  for (const std::size_t place : form_->order) {
    const Field& field = row_.fields[place];
    if (form_->inPlace && field.bytes.data() != nullptr) {
      write({done, field.bytes.data()});
      write(field.quoted ? "\"" : "");
      write(form_->names[place]);
      write(field.quoted ? "\"" : "");
      done = field.bytes.data() + field.bytes.size();
    }
  }
  write({done, line.data() + line.size()});
  for (const std::string_view name : form_->names) {
    if (!form_->inPlace) {
      output_.text.Char(form_->layout.Separator());
      write(name);
    }
  }
  WriteEnd();
}

// The first value, the unit if the command has one, and the other values.
void BlockRun::WriteItem(const Items& items, std::size_t index) {
  const bool unit = !command_.unit.empty();
  if (items.result == nullptr) {
    output_.text.Char('*');
  } else if (unit && index == 1) {
    output_.text.Text(command_.unit);
  } else {
    const std::size_t begin = output_.text.Written().size();
    WriteValue(items.result->values[index - (unit && index > 1 ? 1 : 0)]);
    if (form_ != nullptr && form_->layout.DecimalComma()) {
      output_.text.UseComma(begin);
    }
  }
}

void BlockRun::WriteValue(const Value& value) {
  const auto precision = [this](int own) { return options_.precision >= 0 ? options_.precision : own; };
  const auto angle = [&](Axis axis, int decimals = DegreePrecision) {
    if (options_.dms) {
      output_.text.Dms(value.value, axis, precision(SecondPrecision));
    } else {
      output_.text.Number(value.value, precision(decimals));
    }
  };
  switch (value.quantity) {
    case Quantity::Length:
      return output_.text.Number(value.value, precision(LengthPrecision));
    case Quantity::Factor:
      return output_.text.Number(value.value, precision(ScalePrecision));
    case Quantity::Latitude:
      return angle(Axis::Latitude);
    case Quantity::Longitude:
      return angle(Axis::Longitude);
    case Quantity::Azimuth:
      return angle(Axis::Azimuth);
    case Quantity::Angle:
      return angle(Axis::Azimuth, AnglePrecision);
    case Quantity::ArcSeconds:
      return output_.text.Number(value.value, precision(ArcSecondPrecision));
  }
}

}  // namespace latigo::cli
