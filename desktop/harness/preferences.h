#pragma once

#include <string>
#include <vector>

namespace corvandi::harness {

/// Writes the program's preferences into the home of the desktop, before the program starts: those of a
/// user who has completed the welcome, and further lines such as "insertion=paste".
void writePreferences(const std::vector<std::string>& lines = {});

} // namespace corvandi::harness
