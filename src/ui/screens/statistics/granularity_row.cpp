#include "ui/screens/statistics/granularity_row.h"

#include <algorithm>
#include <array>

namespace brevlin {

namespace {

constexpr std::array rows{
    GranularityRow{.granularity = StatisticsGranularity::day,
                   .form = ActivityForm::hourChart,
                   .title = {"天", "Day"},
                   .shortTitle = {"日", "D"},
                   .detail = {"按完成时刻查看 24 小时分布", "24-hour distribution by completion time"},
                   .metricTitle = {"当日专注", "Daily focus"},
                   .activityTitle = {"24 小时专注分布", "24-hour focus distribution"},
                   .chartName = {"24 小时专注分布", "24-hour focus distribution"},
                   .period = "yMMMdEEEE"},
    GranularityRow{.granularity = StatisticsGranularity::week,
                   .form = ActivityForm::weekChart,
                   .title = {"周", "Week"},
                   .shortTitle = {"周", "W"},
                   .detail = {"按天查看本周节奏", "Daily rhythm for the week"},
                   .metricTitle = {"本周专注", "Weekly focus"},
                   .activityTitle = {"一周专注趋势", "Weekly focus trend"},
                   .chartName = {"一周专注趋势", "Weekly focus trend"},
                   .period = "MMMd",
                   .isPeriodOfTwoDates = true,
                   .bucketTip = "MMMdEEEE",
                   .bucketName = "MMMdEEEE",
                   .bestBucket = "EEEE"},
    GranularityRow{.granularity = StatisticsGranularity::month,
                   .form = ActivityForm::monthHeatmap,
                   .title = {"月", "Month"},
                   .shortTitle = {"月", "M"},
                   .detail = {"按日期查看专注热力", "Daily focus heatmap for the month"},
                   .metricTitle = {"本月专注", "Monthly focus"},
                   .activityTitle = {"月度专注热力", "Monthly focus heatmap"},
                   .chartName = {"月度专注热力图", "Monthly focus heatmap"},
                   .period = "yMMMM",
                   .bucketTip = "yMMMdEEEE",
                   .bucketName = "MMMd",
                   .bestBucket = "MMMd"},
    GranularityRow{.granularity = StatisticsGranularity::year,
                   .form = ActivityForm::yearHeatmap,
                   .title = {"年", "Year"},
                   .shortTitle = {"年", "Y"},
                   .detail = {"按天查看全年专注热力", "Daily focus heatmap for the year"},
                   .metricTitle = {"本年专注", "Yearly focus"},
                   .activityTitle = {"年度专注热力", "Yearly focus heatmap"},
                   .chartName = {"年度专注热力图", "Yearly focus heatmap"},
                   .period = "y",
                   .bucketTip = "yMMMdEEEE",
                   .bucketName = "MMMd",
                   .bestBucket = "MMMd"},
};

} // namespace

const GranularityRow& granularityRow(StatisticsGranularity granularity)
{
    return *std::find_if(rows.begin(), rows.end(),
                         [granularity](const auto& each) { return each.granularity == granularity; });
}

} // namespace brevlin
