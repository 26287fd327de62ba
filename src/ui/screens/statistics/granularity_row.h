#pragma once

#include "core/language.h"
#include "core/statistics_calculator.h"

#include <string_view>

namespace brevlin {

enum class ActivityForm { hourChart, weekChart, monthHeatmap, yearHeatmap };

/// All that the screen shows otherwise for one granularity than for another. Dates are skeletons, as
/// Calendar::text takes them; empty where a bucket is an hour.
struct GranularityRow
{
    StatisticsGranularity granularity = StatisticsGranularity::week;
    ActivityForm form = ActivityForm::weekChart;
    BilingualText title;
    BilingualText shortTitle;
    BilingualText detail;
    BilingualText metricTitle;
    BilingualText activityTitle;
    BilingualText chartName; ///< for assistive technology
    std::string_view period;
    bool isPeriodOfTwoDates = false; ///< its first and its last day
    std::string_view bucketTip{};
    std::string_view bucketName{}; ///< for assistive technology
    std::string_view bestBucket{};
};
const GranularityRow& granularityRow(StatisticsGranularity granularity);

} // namespace brevlin
