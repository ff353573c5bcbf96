#include "data/SeriesLists.h"

#include <algorithm>

namespace {

std::vector<double> joined(const std::vector<const std::vector<double> *> &lists) {
    std::size_t size = 0;
    for (const auto *const list : lists) {
        size += list->size();
    }
    std::vector<double> all;
    all.reserve(size);
    for (const auto *const list : lists) {
        all.insert(all.end(), list->begin(), list->end());
    }
    return all;
}

// The wanted level, or the longest shorter one of which the fragment spans enough periods.
std::size_t levelFor(const DataFragment &fragment, std::size_t wanted) {
    constexpr double enough = 3;
    const double span = fragment.latestTime() - fragment.firstTime();
    std::size_t level = wanted;
    while (level > 0 && enough * DataFragment::periods.at(level) > span) {
        --level;
    }
    return level;
}

} // namespace

SeriesLists::SeriesLists(const SeriesQuery &query, ShortBlocks shortBlocks) : query_(query) {
    const auto level = query.level();
    if (level) {
        periods_.reserve(query.size());
    } else {
        blocks_.reserve(query.size());
    }
    for (std::size_t part = 0; part < query.size(); ++part) {
        const DataFragment &fragment = query.fragment(part);
        if (level) {
            const AveragedSeries &series =
                fragment.series(shortBlocks == ShortBlocks::atTheLevel ? *level : levelFor(fragment, *level));
            periods_.push_back({&series, series.firstFrom(query.start()), series.firstBehind(query.end())});
        } else {
            blocks_.emplace_back(fragment, query.valueColumns(part), query.start(), query.end());
        }
    }
}

SeriesPoints SeriesLists::pointsOf(std::size_t column, std::optional<Statistic> statistic) {
    if (query_.level() && !statistic) {
        return {};
    }
    return {timesOf(partsWith(column)), valuesOf(column, statistic.value_or(Statistic::average))};
}

std::vector<bool> SeriesLists::partsWith(std::size_t column) const {
    std::vector<bool> parts(query_.size());
    for (std::size_t part = 0; part < parts.size(); ++part) {
        parts[part] = query_.valueColumn(part, column).has_value();
    }
    return parts;
}

SeriesLists::List SeriesLists::timesOf(const std::vector<bool> &parts) {
    List &list = times_[parts];
    if (!list) {
        list = std::make_shared<const std::vector<double>>(query_.level() ? periodTimes(parts)
                                                                          : recordTimes(parts));
    }
    return list;
}

SeriesLists::List SeriesLists::valuesOf(std::size_t column, Statistic statistic) {
    // The records have no statistics.
    List &list = values_[{column, query_.level() ? statistic : Statistic::average}];
    if (!list) {
        list = std::make_shared<const std::vector<double>>(query_.level() ? periodValues(column, statistic)
                                                                          : recordValues(column));
    }
    return list;
}

std::vector<double> SeriesLists::recordTimes(const std::vector<bool> &parts) {
    if (blocks_.size() == 1 && parts.front()) {
        return std::move(blocks_.front().times());
    }
    std::vector<const std::vector<double> *> lists;
    for (std::size_t part = 0; part < parts.size(); ++part) {
        if (parts[part]) {
            lists.push_back(&blocks_[part].times());
        }
    }
    return joined(lists);
}

std::vector<double> SeriesLists::recordValues(std::size_t column) {
    std::vector<const std::vector<double> *> lists;
    for (std::size_t part = 0; part < blocks_.size(); ++part) {
        if (query_.valueColumn(part, column)) {
            std::vector<double> &values = blocks_[part].values()[query_.placeOf(part, column)];
            if (blocks_.size() == 1) {
                return std::move(values);
            }
            lists.push_back(&values);
        }
    }
    return joined(lists);
}

std::vector<double> SeriesLists::periodTimes(const std::vector<bool> &parts) const {
    std::vector<double> times;
    times.reserve(periodCount(parts));
    for (std::size_t part = 0; part < parts.size(); ++part) {
        if (parts[part]) {
            const AveragedSeries &series = *periods_[part].series;
            for (std::size_t i = periods_[part].first; i < periods_[part].last; ++i) {
                times.push_back(timeOf(series.stamps()[i]));
            }
        }
    }
    return times;
}

std::vector<double> SeriesLists::periodValues(std::size_t column, Statistic statistic) const {
    std::vector<double> values;
    values.reserve(periodCount(partsWith(column)));
    for (std::size_t part = 0; part < periods_.size(); ++part) {
        if (const auto valueColumn = query_.valueColumn(part, column)) {
            const AveragedSeries &series = *periods_[part].series;
            for (std::size_t i = periods_[part].first; i < periods_[part].last; ++i) {
                values.push_back(series.value(statistic, i, *valueColumn));
            }
        }
    }
    return values;
}

std::size_t SeriesLists::periodCount(const std::vector<bool> &parts) const {
    std::size_t count = 0;
    for (std::size_t part = 0; part < parts.size(); ++part) {
        count += parts[part] ? periods_[part].last - periods_[part].first : 0;
    }
    return count;
}
