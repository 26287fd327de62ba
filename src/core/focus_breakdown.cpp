#include "core/focus_breakdown.h"

#include "core/intention.h"
#include "core/statistics_calculator.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brevlin {

namespace {

struct Total
{
    std::string_view name;
    Seconds duration{0.0};
    std::int64_t phases = 0;
};

// Beyond it a number of seconds is no sum of anything real, and minutes cannot be told apart.
constexpr double mostMinutes = 9.0e15;

double minutesOf(Seconds duration)
{
    return std::min(duration.count() / 60.0, mostMinutes);
}

std::vector<Total> byIntention(std::span<const SessionRecord> records)
{
    std::vector<Total> totals;
    std::unordered_map<std::string_view, std::size_t> places;
    // Most records share their text with others, and are told by its place without being read.
    std::unordered_map<const char*, std::size_t> known;
    for (const SessionRecord& record : records) {
        if (!StatisticsCalculator::isCompletedFocus(record)) {
            continue;
        }
        const std::string_view text = record.intention.view();
        const auto [shared, isNew] = known.try_emplace(text.empty() ? nullptr : text.data(), totals.size());
        if (isNew) {
            const auto [place, isFirst] = places.try_emplace(text, totals.size());
            shared->second = place->second;
            if (isFirst) {
                totals.push_back({text});
            }
        }
        Total& total = totals[shared->second];
        total.duration += std::max(record.effectiveDuration, Seconds::zero());
        ++total.phases;
    }
    return totals;
}

struct LabelTotals
{
    std::vector<FocusGroup> groups;
    bool overlaps = false;
};

LabelTotals byLabel(const std::vector<Total>& intentions)
{
    LabelTotals result;
    std::unordered_map<std::string, std::size_t> places; // by the folded label, empty for none
    const auto add = [&](const std::string& folded, std::string name, const Total& total) {
        const auto [place, isNew] = places.try_emplace(folded, result.groups.size());
        if (isNew) {
            result.groups.push_back({std::move(name)});
        }
        FocusGroup& group = result.groups[place->second];
        group.duration += total.duration;
        group.phases += total.phases;
    };
    for (const Total& total : intentions) {
        std::unordered_set<std::string> own;
        for (std::string& label : labels(total.name)) {
            std::string folded = foldedCase(label);
            if (own.insert(folded).second) {
                add(folded, std::move(label), total);
            }
        }
        if (own.empty()) {
            add({}, {}, total);
        }
        result.overlaps = result.overlaps || own.size() > 1;
    }
    return result;
}

// The whole minutes that rounding down has lost go to those that lack least to one more.
void makeMinutesAddUp(std::vector<FocusGroup>& groups, Seconds whole)
{
    const double minutes = minutesOf(whole);
    if (minutes >= mostMinutes) {
        return;
    }
    const auto known =
        std::accumulate(groups.begin(), groups.end(), std::int64_t{0},
                        [](std::int64_t sum, const FocusGroup& group) { return sum + group.minutes; });
    const std::int64_t lost = static_cast<std::int64_t>(minutes) - known;
    std::vector<FocusGroup*> order;
    order.reserve(groups.size());
    for (FocusGroup& group : groups) {
        order.push_back(&group);
    }
    std::stable_sort(order.begin(), order.end(), [](const FocusGroup* one, const FocusGroup* other) {
        const auto rest = [](const FocusGroup* group) {
            return minutesOf(group->duration) - std::floor(minutesOf(group->duration));
        };
        return rest(one) > rest(other);
    });
    for (std::size_t index = 0; index < order.size() && static_cast<std::int64_t>(index) < lost; ++index) {
        ++order[index]->minutes;
    }
}

} // namespace

FocusBreakdown focusBreakdown(std::span<const SessionRecord> sessions, const DateInterval& interval,
                              FocusGrouping grouping)
{
    const std::vector<Total> intentions = byIntention(StatisticsCalculator::endedWithin(sessions, interval));
    FocusBreakdown result;
    Seconds whole{0.0};
    for (const Total& total : intentions) {
        whole += total.duration;
        result.isNamed = result.isNamed || !total.name.empty();
    }
    if (grouping == FocusGrouping::label) {
        LabelTotals byLabels = byLabel(intentions);
        result.groups = std::move(byLabels.groups);
        result.overlaps = byLabels.overlaps;
    } else {
        for (const Total& total : intentions) {
            result.groups.push_back({std::string(total.name), total.duration, 0, 0.0, total.phases});
        }
    }
    for (FocusGroup& group : result.groups) {
        group.minutes = static_cast<std::int64_t>(minutesOf(group.duration));
        group.share = whole > Seconds::zero() ? std::min(group.duration / whole, 1.0) : 0.0;
    }
    if (grouping == FocusGrouping::intention) {
        makeMinutesAddUp(result.groups, whole);
    }
    std::stable_sort(result.groups.begin(), result.groups.end(),
                     [](const FocusGroup& one, const FocusGroup& other) {
                         return one.name.empty() != other.name.empty() ? other.name.empty()
                                                                       : one.duration > other.duration;
                     });
    return result;
}

} // namespace brevlin
