#pragma once

#include <fstream>
#include <string>

namespace corvandi {

/// How busy the machine is, as the kernel says it: the line of /proc/loadavg. What is measured depends on it.
inline std::string loadAverage()
{
    std::ifstream file("/proc/loadavg");
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace corvandi
