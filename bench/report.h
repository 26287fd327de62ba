#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace brevlin::bench {

// What every benchmark prints: one row of the table that bench/run puts a head on. Ratios come from turns
// that alternate in one run, so that a change of the machine's load hits both sides.

inline double seconds(const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

inline void printRow(const char* what, const std::string& measured, const std::string& goal, bool isReached,
                     const std::string& from)
{
    std::printf("| %-46s | %10s | %10s | %-6s | %s\n", what, measured.c_str(), goal.c_str(),
                isReached ? "yes" : "MISSED", from.c_str());
    std::fflush(stdout);
}

inline std::string number(const char* format, double value)
{
    std::string text(64, '\0');
    text.resize(static_cast<std::size_t>(std::snprintf(text.data(), text.size(), format, value)));
    return text;
}

/// The median of the ratios of the turns.
inline void printRatio(const char* what, const std::vector<double>& ours, const std::vector<double>& theirs,
                       double goal)
{
    std::vector<double> ratios;
    for (std::size_t index = 0; index < ours.size(); ++index) {
        ratios.push_back(ours[index] / theirs[index]);
    }
    const double ratio = median(ratios);
    printRow(what, number("%.2f x", ratio), number("%.2f x", goal), ratio <= goal,
             number("%.2f ms", median(ours) * 1e3) + " / " + number("%.2f ms", median(theirs) * 1e3));
}

inline void printTime(const char* what, const std::vector<double>& ours, double goal)
{
    const double time = median(ours);
    printRow(what, number("%.3f ms", time * 1e3), number("%.2f ms", goal * 1e3), time <= goal, "");
}

} // namespace brevlin::bench
