// The texts of --help.
#pragma once

#include <string>
#include <string_view>

namespace latigo::cli {

// The text of a command; for any other name that of the program.
std::string HelpOf(std::string_view command);

}  // namespace latigo::cli
