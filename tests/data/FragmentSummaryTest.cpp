#include "data/FragmentSummary.h"

#include "support/LoadedSource.h"
#include "support/RandomNumbers.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

std::string summaryOf(const DataSet &dataSet) {
    std::ostringstream stream;
    writeSummary(dataSet, stream);
    return stream.str();
}

// A stream buffer that counts flushes.
class CountingBuffer : public std::stringbuf {
public:
    int flushes() const { return flushes_; }

private:
    int sync() override {
        ++flushes_;
        return std::stringbuf::sync();
    }

    int flushes_ = 0;
};

} // namespace

TEST(FragmentSummary, WritesSourceHeaderValuesByteRangeAndTimeRange) {
    DataSet source("folder/2019-06-01.data");
    source.setSubFileName("member.data");
    parseText(source, "Instrument:\tQA330\nSN:\t77\nSoftware Version:\t1.2.3\nTimezone:\tEurope/Berlin\n"
                      "DATASTATH\tSECONDS\tA\nDATASTAT\t1559347200\t1\nDATASTAT\t1559354400\t2\n");
    EXPECT_EQ(summaryOf(source), "Filename: folder/2019-06-01.data\n"
                                 "SubFilename: member.data\n"
                                 "Tag: DATASTAT\n"
                                 "Instrument: QA330\n"
                                 "Serial Number: 77\n"
                                 "Version: 1.2.3\n"
                                 "Timezone: Europe/Berlin\n"
                                 "Begin: 93\n"
                                 "End: 136\n"
                                 "Begin Time: 1.55935e+09\n"
                                 "End Time: 1.55935e+09\n"
                                 "\n");
}

TEST(FragmentSummary, AFragmentWithoutRecordsWritesZeros) {
    DataSet source("plain.data");
    parseText(source, "DATAH\tA\n");
    EXPECT_EQ(summaryOf(source), "Filename: plain.data\n"
                                 "SubFilename: \n"
                                 "Tag: DATA\n"
                                 "Instrument: Unknown\n"
                                 "Serial Number: Unknown\n"
                                 "Version: Unknown\n"
                                 "Timezone: Unknown\n"
                                 "Begin: 0\n"
                                 "End: 0\n"
                                 "Begin Time: 0\n"
                                 "End Time: 0\n"
                                 "\n");
}

TEST(FragmentSummary, ADataSetWithoutFragmentsWritesNothing) {
    EXPECT_EQ(summaryOf(DataSet()), "");
    EXPECT_EQ(summaryOf(DataSet("plain.data")), "");
}

TEST(FragmentSummary, ADataSetsFragmentsFollowInListOrderWithNothingBetween) {
    DataSet source("plain.data");
    parseText(source, "DATAH\tA\nDATASTATH\tA\nDATASTAT\t1\n");
    std::ostringstream each;
    writeSummary(fragmentAt(source, 0), each);
    writeSummary(fragmentAt(source, 1), each);
    EXPECT_EQ(summaryOf(source), each.str());
    EXPECT_NE(each.str().find("End Time: 0\n\nFilename: plain.data\nSubFilename: \nTag: DATASTAT\n"),
              std::string::npos);
}

TEST(FragmentSummary, TimesKeepTheStreamsDefaultSixDigits) {
    struct Row {
        const char *fields;
        const char *text;
    };
    for (const Row &row : {Row{"1\t0", "1"}, Row{"100\t500000000", "100.5"}, Row{"999999\t0", "999999"},
                           Row{"1000000\t0", "1e+06"}, Row{"123456\t700000000", "123457"},
                           Row{"1559350000\t0", "1.55935e+09"}, Row{"4294967295\t0", "4.29497e+09"}}) {
        DataSet source("plain.data");
        parseText(source, std::string("DATAH\tSECONDS\tNANOSECONDS\nDATA\t") + row.fields + '\n');
        EXPECT_NE(summaryOf(source).find(std::string("\nBegin Time: ") + row.text +
                                         "\nEnd Time: " + row.text + "\n\n"),
                  std::string::npos)
            << row.fields << "\n"
            << summaryOf(source);
    }
}

TEST(FragmentSummary, EveryBlockIsFlushed) {
    DataSet source("plain.data");
    parseText(source, "DATAH\tA\nDATAH\tA\n");
    CountingBuffer buffer;
    std::ostream stream(&buffer);
    writeSummary(source, stream);
    EXPECT_EQ(buffer.flushes(), 2);
}

TEST(FragmentSummary, NamesAreWrittenByteForByte) {
    DataSet source(std::string("a\0\xff.data", 8));
    parseText(source, "Instrument:\t\xc3\xa4 \x01\nDATAH\tA\n");
    EXPECT_TRUE(summaryOf(source).starts_with(std::string("Filename: a\0\xff.data\nSubFilename: ", 32)));
    EXPECT_NE(summaryOf(source).find("\nInstrument: \xc3\xa4 \x01\nSerial Number: "), std::string::npos);
}

namespace {

std::string tabbed(std::initializer_list<std::string_view> fields) {
    std::string line;
    for (const std::string_view field : fields) {
        line.append(line.empty() ? "" : "\t").append(field);
    }
    return line;
}

// A file of two DATA blocks with a DATASTAT block between them, longer than three reads of the line reader.
class LongFile {
public:
    LongFile() {
        content_.reserve(std::size_t{28} << 20U);
        addLine("Instrument:\tQA330");
        addLine("DATAH\tSECONDS\tA\tREMARK");
        addRecords("DATA", std::size_t{9} << 20U);
        addLine("DATASTATH\tSECONDS\tREMARK\t\tA");
        addRecords("DATASTAT", std::size_t{17} << 20U);
        addLine("DATAH\tREMARK\tSECONDS\tA\tB");
        addRecords("DATA", std::size_t{27} << 20U);
    }

    const std::string &content() const { return content_; }

    struct Line {
        std::size_t begin; // true offsets
        std::size_t end;   // of the line feed
        bool isRecord;
    };
    const std::vector<Line> &lines() const { return lines_; }

private:
    void addLine(const std::string &text, bool isRecord = false) {
        lines_.push_back({content_.size(), content_.size() + text.size(), isRecord});
        content_ += text;
        content_ += '\n';
    }

    void addRecords(const std::string &tag, std::size_t until) {
        while (content_.size() < until) {
            seconds_ += random_.oneIn(3) ? 1U : 0U;
            const std::string filler(100 + random_.below(2900), 'x');
            const std::string fields = std::to_string(seconds_);
            if (tag == "DATASTAT") {
                addLine(tabbed({tag, fields, filler, "y", "2"}), true);
            } else if (until > std::size_t{20} << 20U) {
                addLine(tabbed({tag, filler, fields, "3", "4"}), true);
            } else {
                addLine(tabbed({tag, fields, "1", filler}), true);
            }
        }
    }

    RandomNumbers random_{11};
    std::uint64_t seconds_ = 1559347200;
    std::string content_;
    std::vector<Line> lines_;
};

// By how much the reported offset of the line that starts at `begin` falls short of it.
//
// The reader takes 8 MiB at a time. The line that such a piece cuts in two is carried over, and from that
// line on all offsets are smaller by the bytes that were carried: those from the cut line's begin to the end
// of the piece. Every further cut adds its own. A piece that ends just behind a line feed cuts nothing.
std::size_t shortfallAt(std::size_t begin, const LongFile &file) {
    constexpr std::size_t piece = 8 << 20U;
    std::size_t shortfall = 0;
    for (const LongFile::Line &line : file.lines()) {
        const std::size_t cut = (line.begin / piece + 1) * piece;
        const bool isCut = line.end >= cut && cut < file.content().size();
        if (isCut && line.begin <= begin) {
            shortfall += cut - line.begin;
        }
    }
    return shortfall;
}

} // namespace

TEST(FragmentSummary, ByteRangesBehindRefillsFallShortByAllCarriedBytes) {
    const LongFile file;
    const ScratchFolder folder;
    const DataSet source = loadSource(folder.write("long-file-a.data", file.content()));
    ASSERT_EQ(source.fragments().size(), 3U);

    // The records' lines of each block: they follow each other without a header line between.
    std::vector<std::pair<LongFile::Line, LongFile::Line>> blocks;
    for (std::size_t i = 0; i < file.lines().size(); ++i) {
        if (!file.lines()[i].isRecord) {
            continue;
        }
        if (!file.lines()[i - 1].isRecord) {
            blocks.emplace_back(file.lines()[i], file.lines()[i]);
        }
        blocks.back().second = file.lines()[i];
    }
    ASSERT_EQ(blocks.size(), 3U);

    std::string expected;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto &[first, last] = blocks[i];
        expected +=
            "Filename: " + folder.pathOf("long-file-a.data") +
            "\nSubFilename: \nTag: " + (i == 1 ? "DATASTAT" : "DATA") +
            "\nInstrument: QA330\nSerial Number: Unknown\nVersion: Unknown\nTimezone: Unknown\nBegin: " +
            std::to_string(first.begin - shortfallAt(first.begin, file)) +
            "\nEnd: " + std::to_string(last.end - shortfallAt(last.begin, file)) +
            "\nBegin Time: 1.55935e+09\nEnd Time: 1.55935e+09\n\n";
    }
    const std::string summary = summaryOf(source);
    EXPECT_EQ(summary, expected);
    // The offsets are short in earnest, and more so behind each refill.
    EXPECT_EQ(shortfallAt(blocks[0].first.begin, file), 0U);
    EXPECT_GT(shortfallAt(blocks[0].second.begin, file), 0U);
    EXPECT_GT(shortfallAt(blocks[1].second.begin, file), shortfallAt(blocks[0].second.begin, file));
    EXPECT_GT(shortfallAt(blocks[2].second.begin, file), shortfallAt(blocks[1].second.begin, file));
}

TEST(FragmentSummary, TheRecordsBehindShortOffsetsAreAllReadAgain) {
    const LongFile file;
    const ScratchFolder folder;
    const DataSet source = loadSource(folder.write("long-file-a.data", file.content()));
    ASSERT_EQ(source.fragments().size(), 3U);
    for (const auto &fragment : source.fragments()) {
        const std::vector<Record> whole = readAgain(*fragment);
        EXPECT_EQ(whole.size(), fragment->recordCount());
        ASSERT_FALSE(whole.empty());
        EXPECT_EQ(timeOf(whole.front()), fragment->firstTime());
        EXPECT_EQ(timeOf(whole.back()), fragment->lastTime());
        const double middle = (fragment->firstTime() + fragment->lastTime()) / 2;
        EXPECT_EQ(readAgain(*fragment, wholeRangeStart, middle).size() +
                      readAgain(*fragment, middle + 0.5, wholeRangeEnd).size(),
                  whole.size());
    }
}
