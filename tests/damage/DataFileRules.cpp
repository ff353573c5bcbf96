#include "damage/DataFileRules.h"

#include "damage/HeapUse.h"
#include "data/FragmentSummary.h"
#include "data/PlainSeries.h"
#include "export/ExportJob.h"
#include "export/ExportProgress.h"
#include "export/MemorySink.h"
#include "loading/FileLoading.h"
#include "support/CapturedStandardError.h"
#include "support/LoadedSource.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <sstream>
#include <vector>

namespace {

constexpr std::size_t longestMessageText = 9999; // beyond which nothing is added to it
constexpr std::size_t longestProblem = 1000;

std::size_t countOf(std::string_view text, char byte) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), byte));
}

// `low` <= `high` where both are numbers, but for what rounding an average may do.
bool isOrdered(double low, double high) {
    if (!std::isfinite(low) || !std::isfinite(high)) {
        return true;
    }
    return low <= high + 1e-9 * std::max(std::abs(low), std::abs(high));
}

void checkLoading(const std::string &path, std::size_t length, DataSet &source) {
    std::vector<int> percents;
    const LoadReport report = loadFile(QString::fromStdString(path), source, std::atomic<bool>(false),
                                       [&percents](int percent, qint64) { percents.push_back(percent); });
    ASSERT_GE(percents.size(), 2U);
    EXPECT_EQ(percents.front(), 0);
    EXPECT_EQ(percents.back(), 100);
    EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
    // The last that is added may be as long as a line.
    EXPECT_LE(source.messageText().size(), longestMessageText + length + 100);
    EXPECT_LE(static_cast<std::size_t>(report.problem.size()), longestProblem + length + 200);
    const auto &fragments = source.fragments();
    const bool hasRecords = std::any_of(fragments.begin(), fragments.end(),
                                        [](const auto &fragment) { return fragment->recordCount() > 0; });
    EXPECT_TRUE(hasRecords || !report.problem.isEmpty() || !report.remark.isEmpty())
        << "a file without records that nothing is said of";
    EXPECT_EQ(messagesOf(source, report).empty(), report.problem.isEmpty() && report.remark.isEmpty() &&
                                                      source.messageText().empty() &&
                                                      source.checksumFailures() == 0);
}

void checkSeries(const DataFragment &fragment, const AveragedSeries &series) {
    const auto stamps = series.stamps();
    ASSERT_EQ(stamps.size(), series.size());
    EXPECT_TRUE(std::is_sorted(stamps.begin(), stamps.end(),
                               [](const auto &a, const auto &b) { return a.seconds < b.seconds; }));
    for (std::size_t period = 0; period < series.size(); ++period) {
        for (std::size_t column = 0; column < fragment.valueCount(); ++column) {
            const double low = series.value(Statistic::minimum, period, column);
            const double average = series.value(Statistic::average, period, column);
            const double high = series.value(Statistic::maximum, period, column);
            ASSERT_TRUE(isOrdered(low, average) && isOrdered(average, high) && isOrdered(low, high))
                << "period " << period << " column " << column << ": " << low << ' ' << average << ' '
                << high;
            ASSERT_TRUE(isOrdered(fragment.minimumRecord().values[column], low) &&
                        isOrdered(high, fragment.maximumRecord().values[column]))
                << "period " << period << " column " << column << " leaves the block's extremes";
        }
    }
}

// The block's counts, times and extremes against its records.
void checkRecords(const DataFragment &fragment, const std::vector<Record> &records) {
    ASSERT_EQ(records.size(), fragment.valueCount() == 0 ? 0 : fragment.recordCount());
    if (records.empty()) {
        return;
    }
    // A clock that stands at zero has not been set yet.
    const auto first = std::find_if(records.begin(), records.end(),
                                    [](const Record &record) { return timeOf(record) != 0; });
    EXPECT_EQ(first == records.end() ? 0 : timeOf(*first), fragment.firstTime());
    EXPECT_EQ(timeOf(records.back()), fragment.lastTime());
    const Record &low = fragment.minimumRecord();
    const Record &high = fragment.maximumRecord();
    ASSERT_EQ(low.values.size(), fragment.valueCount());
    ASSERT_EQ(high.values.size(), fragment.valueCount());
    for (const Record &record : records) {
        ASSERT_LE(timeOf(record), fragment.latestTime());
        for (std::size_t column = 0; column < fragment.valueCount(); ++column) {
            const double value = record.values[column];
            ASSERT_TRUE(std::isnan(value) || (low.values[column] <= value && value <= high.values[column]))
                << value << " in column " << column << " lies outside " << low.values[column] << " to "
                << high.values[column];
        }
    }
}

void checkFragment(const DataFragment &fragment) {
    EXPECT_EQ(fragment.valueUnits().size(), fragment.valueCount());
    EXPECT_LE(fragment.firstOffset(), fragment.endOffset());
    EXPECT_LE(fragment.firstTime(), fragment.latestTime());
    EXPECT_LE(fragment.lastTime(), fragment.latestTime());
    checkRecords(fragment, readAgain(fragment));
    for (std::size_t level = 0; level < DataFragment::periods.size(); ++level) {
        checkSeries(fragment, fragment.series(level));
    }
}

void checkSummary(const DataSet &data) {
    std::ostringstream summary;
    writeSummary(data, summary);
    EXPECT_EQ(summary.str().empty(), data.fragments().empty());
}

// A few variables, over spans of every kind.
void checkPlots(const DataSet &data, RandomNumbers &random) {
    const auto keys = data.variableKeys();
    std::vector<SeriesRequest> requests;
    for (int i = 0; i < 4 && !keys.empty(); ++i) {
        requests.push_back({random.pick(keys), random.pick(std::vector<std::string>{"", "max", "min"})});
    }
    EXPECT_TRUE(sameAsPlain(data, requests, wholeRangeStart, wholeRangeEnd));
    if (data.fragments().empty()) {
        return;
    }
    const double begin = random.pick(std::vector<double>{data.fragments().front().firstTime(),
                                                         data.fragments().back().firstTime(), 1559415600});
    for (const double span : {0.0, 30.0, 5000.0, 400'000.0}) {
        const double from = begin + static_cast<double>(random.between(-100, 100));
        EXPECT_TRUE(sameAsPlain(data, requests, from, from + span));
    }
}

class SilentProgress : public ExportProgress {
public:
    void showFile(const std::string &) override { ++files; }
    void showTime(double) override {}
    bool isCancelled() override { return false; }
    void showEnd() override { hasEnded = true; }
    // Columns may well have changed in the course of the data.
    void reportFailure(const std::string &line) override { failures += line + '\n'; }
    void remark(const std::string &) override {}

    std::size_t files = 0;
    std::string failures;
    bool hasEnded = false;
};

// The files that an export wrote, by their names.
std::map<std::string, SinkLog> exported(const ExportSource &source, ExportFormat format,
                                        std::int32_t splitPeriod = 0) {
    ExportRequest request;
    request.format = format;
    request.targetName = "/no such folder/out.txt";
    request.splitPeriod = splitPeriod;
    std::map<std::string, SinkLog> logs;
    SilentProgress progress;
    ExportJob(source, request, progress, [&logs](const std::string &name, std::error_code &) {
        EXPECT_FALSE(logs.contains(name)) << "a piece replaces another one";
        return std::make_unique<MemorySink>(logs[name]);
    }).run();
    EXPECT_TRUE(progress.hasEnded);
    EXPECT_EQ(progress.files, logs.size());
    for (const auto &[name, log] : logs) {
        EXPECT_TRUE(log.isClosed) << name;
    }
    const bool mayFail = format == ExportFormat::tob1; // when records change their length
    EXPECT_TRUE(mayFail || progress.failures.empty()) << progress.failures;
    return logs;
}

// Lines below the header of each file.
std::size_t rowsIn(const std::map<std::string, SinkLog> &logs) {
    return std::accumulate(logs.begin(), logs.end(), std::size_t{0}, [](std::size_t sum, const auto &file) {
        const std::size_t lines = countOf(file.second.bytes, '\n');
        return sum + std::max<std::size_t>(lines, 1) - 1;
    });
}

void checkTob1(std::string_view bytes, const std::vector<Record> &records) {
    if (records.empty()) {
        EXPECT_TRUE(bytes.empty());
        return;
    }
    for (int line = 0; line < 5; ++line) {
        const auto end = bytes.find("\r\n");
        ASSERT_NE(end, std::string_view::npos) << "of the header's lines only " << line;
        bytes.remove_prefix(end + 2);
    }
    std::size_t expected = 0;
    for (const Record &record : records) {
        expected += 4 * (3 + record.values.size());
    }
    EXPECT_EQ(bytes.size(), expected);
}

void checkExports(const DataSet &data, const std::string &instrument, const std::string &tag) {
    const ExportSource source = exportSourceOf(data, instrument, tag);
    const std::vector<Record> records = readAgain(data, instrument, tag);
    EXPECT_EQ(rowsIn(exported(source, ExportFormat::text)), records.size());
    EXPECT_EQ(rowsIn(exported(source, ExportFormat::text, 60)), records.size());
    EXPECT_LE(rowsIn(exported(source, ExportFormat::diagnostics)), records.size());
    checkTob1(exported(source, ExportFormat::tob1).begin()->second.bytes, records);
}

} // namespace

std::size_t DataFileRules::check(const std::string &path, std::size_t length, RandomNumbers &random) {
    // Whatever is wrong with the file is in its report: nothing new comes out when it is read again.
    const CapturedStandardError errors;
    const std::size_t heapBefore = heapUse();
    DataSet source(path);
    checkLoading(path, length, source);
    EXPECT_LE(heapUse(), heapBefore + largestHeapUse(length)) << "for " << length << " bytes";
    std::size_t records = 0;
    for (const auto &fragment : source.fragments()) {
        checkFragment(*fragment);
        records += fragment->recordCount();
    }
    DataSet merged;
    merged.merge(source);
    checkSummary(merged);
    checkPlots(merged, random);
    for (const std::string &instrument : merged.instruments()) {
        for (const std::string &tag : merged.tagsOfInstrument(instrument)) {
            checkExports(merged, instrument, tag);
        }
    }
    EXPECT_EQ(errors.text(), "");
    return records;
}
