#include "loading/FileLoading.h"

#include <algorithm>
#include <gtest/gtest.h>

// The generator writes the format by its own knowledge of it; the engine reads it by another.

namespace {

class EngineReadsExamples : public testing::Test {
protected:
    static void SetUpTestSuite() { zoneDirectory = FVQA_ZONEINFO_DIR; }

    // The fragments with records, as the viewer holds them.
    static DataSet load(const QString &name) {
        const QString path = QString(FVQA_EXAMPLES_DIR) + "/" + name;
        const std::atomic<bool> cancelled = false;
        DataSet source(path.toStdString());
        const LoadReport report = loadFile(path, source, cancelled, [](int, qint64) {});
        EXPECT_EQ(report.problem, QString());
        EXPECT_EQ(source.messageText(), "");
        return source;
    }

    static const DataFragment &only(const DataSet &data, const char *instrument, const char *tag) {
        const auto fragments = data.fragmentsOf(instrument, tag);
        EXPECT_EQ(fragments.size(), 1U);
        return *fragments.at(0);
    }
};

} // namespace

TEST_F(EngineReadsExamples, Qa330HasTwoTagsAndOneBadChecksum) {
    const DataSet data = load("QA330-2019-06-01T130000.data");
    const DataFragment &records = only(data, "QA330", "DATA");
    EXPECT_EQ(records.recordCount(), 8599U);
    EXPECT_EQ(records.checksumFailures(), 1U);
    EXPECT_EQ(records.valueCount(), 6U + 1U + 12U); // values, DIAG and its bits
    EXPECT_EQ(records.timezone().name(), "America/Denver");
    EXPECT_EQ(records.firstTime(), 1559415600);
    EXPECT_EQ(only(data, "QA330", "DATASTAT").recordCount(), 180U);
    EXPECT_EQ(data.checksumFailures(), 1U);
}

TEST_F(EngineReadsExamples, EveryQa330ColumnHasAUnit) {
    const DataSet data = load("QA330-2019-06-01T130000.data");
    for (const auto &[key, unit] : data.variableUnits()) {
        EXPECT_FALSE(unit.empty()) << key;
    }
}

TEST_F(EngineReadsExamples, ArchiveHoldsItsHalfHour) {
    const DataSet data = load("2019-06-01T123000_AIU-0412.ghg");
    const DataFragment &records = only(data, "AIU-0412", "DATA");
    EXPECT_EQ(records.recordCount(), 1800U);
    EXPECT_EQ(records.checksumFailures(), 0U);
    EXPECT_EQ(records.valueCount(), 45U);
    EXPECT_EQ(records.firstTime(), 1559413800);
    EXPECT_EQ(records.lastTime(), 1559415599);
}

TEST_F(EngineReadsExamples, NamelessFileIsNamedAfterItsFileName) {
    const DataSet data = load("AIU-0412-2019-06-01T133000.data");
    const DataFragment &records = only(data, "AIU-0412", "DATA");
    EXPECT_EQ(records.recordCount(), 3600U);
    EXPECT_EQ(records.checksumFailures(), 0U);
    const auto unit = data.variableUnits().at("AIU-0412:DATA:CO2 dry (umol/mol)");
    EXPECT_EQ(unit, "umol/mol");
}
