// The texts of --help.
#pragma once

#include <string>
#include <string_view>

namespace latigo::cli {

// Of a command by its name; any other name stands for the program.
std::string HelpOf(std::string_view command);

}  // namespace latigo::cli
