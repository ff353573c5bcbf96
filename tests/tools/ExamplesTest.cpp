#include "tools/ArchiveText.h"
#include "tools/DataText.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

QByteArray example(const QString &name) {
    QFile file(QString(FVQA_EXAMPLES_DIR) + "/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::string_view view(const QByteArray &bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

// Times at which a bit of the QA-330 example's diagnostic word changes from 0 to 1.
std::vector<std::string_view> switchedOn(std::string_view text, std::string_view name) {
    const std::vector<std::string_view> names = splitAt(linesWith(text, "DATADIAGH\t").at(0), '\t');
    const auto bit = std::find(names.begin(), names.end(), name) - names.begin() - 1;
    const std::vector<long> words = integers(column(text, "DATA", "DIAG"));
    const std::vector<std::string_view> times = column(text, "DATA", "TIME");
    std::vector<std::string_view> result;
    for (std::size_t i = 1; i < words.size(); ++i) {
        if ((words[i - 1] >> bit & 1) == 0 && (words[i] >> bit & 1) == 1) {
            result.push_back(times[i].substr(0, 8));
        }
    }
    return result;
}

} // namespace

TEST(Examples, TogetherStayUnderThreeMegabytes) {
    qint64 total = 0;
    for (const QFileInfo &file : QDir(FVQA_EXAMPLES_DIR).entryInfoList(QDir::Files)) {
        total += file.size();
    }
    EXPECT_GT(total, 2000000);
    EXPECT_LT(total, 3000000);
}

TEST(Examples, Qa330ShowsWhatItsDescriptionPromises) {
    const QByteArray bytes = example("QA330-2019-06-01T130000.data");
    const std::string_view text = view(bytes);
    EXPECT_EQ(column(text, "DATA", "TIME").at(0), "13:00:00:000");
    EXPECT_EQ(column(text, "DATASTAT", "SECONDS").size(), 180U);
    EXPECT_EQ(switchedOn(text, "NOSIGNAL"), std::vector<std::string_view>{"13:03:32"});
    EXPECT_EQ(switchedOn(text, "PUMPON"), std::vector<std::string_view>{"13:03:53"});
    EXPECT_EQ(switchedOn(text, "MOTORSPINNING"), std::vector<std::string_view>{"13:03:53"});
    EXPECT_EQ(switchedOn(text, "CALIBRATING"), std::vector<std::string_view>{"13:04:49"});
    EXPECT_GT(switchedOn(text, "TOPHEATERON").size(), 2U);
    EXPECT_GT(switchedOn(text, "BOTTOMHEATERON").size(), 2U);
    EXPECT_EQ(column(text, "DATA", "TIME").size(), 8600U); // 900 s but for a gap of 40 s

    std::vector<std::string_view> wrong;
    for (const std::string_view line : linesWith(text, "DATA\t")) {
        if (!hasRightChecksum(line)) {
            wrong.push_back(splitAt(line, '\t').at(4));
        }
    }
    EXPECT_EQ(wrong, std::vector<std::string_view>{"13:07:30:000"});
    EXPECT_EQ(wrongChecksums(linesWith(text, "DATASTAT\t")), 0U);
}

TEST(Examples, ArchivesAreThreeConsecutiveHalfHoursOfOneInstrument) {
    long next = 1559412000;
    for (const char *time : {"120000", "123000", "130000"}) {
        const QString name = QString("2019-06-01T%1_AIU-0412").arg(time);
        const auto members = archiveMembers(QString(FVQA_EXAMPLES_DIR) + "/" + name + ".ghg");
        ASSERT_EQ(members.size(), 2U);
        EXPECT_EQ(members[0].first, name + ".data");
        EXPECT_EQ(members[1].first, name + ".metadata");
        const std::string_view text = view(members[0].second);
        EXPECT_EQ(linesWith(text, "Instrument:\tAIU-0412").size(), 1U);
        EXPECT_EQ(integers(column(text, "DATA", "SECONDS")).front(), next);
        EXPECT_EQ(wrongChecksums(linesWith(text, "DATA\t")), 0U);
        next += 1800;
    }
}

TEST(Examples, PlainQa34xxIsNamelessAtTwentyRecordsASecond) {
    const QByteArray bytes = example("AIU-0412-2019-06-01T133000.data");
    const std::string_view text = view(bytes);
    EXPECT_TRUE(linesWith(text, "Instrument:").empty());
    EXPECT_EQ(column(text, "DATA", "TIME").at(1), "13:30:00:050");
    EXPECT_EQ(linesWith(text, "DATA\t").size(), 3600U); // three minutes
    EXPECT_EQ(wrongChecksums(linesWith(text, "DATA\t")), 0U);
}
