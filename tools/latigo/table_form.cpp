#include "table_form.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "error_text.h"

namespace latigo::cli {

std::vector<Wanted> WantedOf(const PointCommand& command) {
  std::vector<Wanted> wanted;
  const int positions = command.parse == ParseTwoPoints ? 2 : 1;
  for (int i = 0; i < positions; ++i) {
    switch (command.order) {
      case Order::LatitudeLongitude:
        wanted.insert(wanted.end(), {{Role::Latitude, "latitude"}, {Role::Longitude, "longitude"}});
        break;
      case Order::LongitudeLatitude:
        wanted.insert(wanted.end(), {{Role::Longitude, "longitude"}, {Role::Latitude, "latitude"}});
        break;
      case Order::Grid:
        wanted.insert(wanted.end(), {{Role::Number, "x"}, {Role::Number, "y"}});
    }
  }
  if (command.third == Third::Needed) {
    wanted.push_back({Role::Number, "z"});
  } else if (positions == 1 && command.third != Third::Ignored && command.third != Third::Carried) {
    wanted.push_back({Role::Number, "height", true});
  }
  return wanted;
}

TableForm::TableForm(const PointCommand& command, Layout found, bool append)
    : layout(std::move(found)), names(command.names), order(layout.Columns().size()) {
  if (names.empty()) {
    throw UsageError("this command reads no columns");
  }
  const bool height = layout.Values() > 2 && command.third == Third::Height;
  const bool noResult = command.third == Third::Ignored || command.third == Third::Undecided;
  if (noResult || (command.third == Third::Height && !height)) {
    names.resize(static_cast<std::size_t>(command.values));
  }
  // Results do not take the place of the parts of an angle, of which a row without a height would keep some.
  inPlace = !append && names.size() == layout.Columns().size() && layout.Columns().size() == layout.Values();
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(),
            [this](std::size_t one, std::size_t two) { return layout.Columns()[one] < layout.Columns()[two]; });
}

}  // namespace latigo::cli
