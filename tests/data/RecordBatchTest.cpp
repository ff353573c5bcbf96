// Record lines whose fields are read together, away from their block.

#include "data/RecordBatch.h"

#include "FragmentBlock.h"
#include "support/RecordComparison.h"

#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct ReadyBlock : FragmentBlock {
    explicit ReadyBlock(std::vector<std::string> columns, const std::string &tag = "DATA")
        : FragmentBlock(std::move(columns), {}, tag) {
        (**this).setUpColumns();
    }
};

} // namespace

TEST(RecordBatch, ReadsLinesOfSeveralBlocksAsTheBlocksDo) {
    ReadyBlock data({"SECONDS", "A", "CHK"});
    ReadyBlock status({"SECONDS", "A", "B", "C"}, "DATASTAT");
    const std::vector<std::string> good{"DATASTAT\t7\t1\t2.5\t-3", "DATASTAT\t8\t4\t5\t6"};
    const std::vector<std::string> lines{good[0], "DATA\t9\t1\t0", "DATASTAT\t7\t1", good[1], "DATA\t9\tx"};
    RecordBatch batch;
    EXPECT_TRUE(batch.isEmpty());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        DataFragment &block = lines[i].starts_with("DATASTAT\t") ? *status : *data;
        ASSERT_TRUE(batch.hasRoomFor(block));
        batch.add(block, lines[i], 100 + i);
    }
    batch.read();
    ASSERT_EQ(batch.lines().size(), lines.size());
    const std::vector<FieldResult> results{FieldResult::good, FieldResult::checksumFailure, FieldResult::bad,
                                           FieldResult::good, FieldResult::bad};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const ReadLine &line = batch.lines()[i];
        EXPECT_EQ(line.result, results[i]) << i;
        EXPECT_EQ(line.offset, 100 + i);
        EXPECT_EQ(line.text, lines[i]);
        EXPECT_EQ(line.block, lines[i].starts_with("DATASTAT\t") ? &*status : &*data);
    }
    EXPECT_EQ(batch.lines()[0].stamp.seconds, 7U);
    EXPECT_TRUE(sameNumbers(std::span(batch.lines()[0].values, 3), std::vector<double>{1, 2.5, -3}));
    EXPECT_TRUE(sameNumbers(std::span(batch.lines()[3].values, 3), std::vector<double>{4, 5, 6}));
    EXPECT_EQ(data->checksumFailures(), 0U); // counted when they are accepted
    batch.clear();
    EXPECT_TRUE(batch.isEmpty());
}

TEST(RecordBatch, HasRoomForOneLineOfAnyKindAndForSoManyLinesValuesAndBytes) {
    ReadyBlock narrow({"A"});
    ReadyBlock wide(std::vector<std::string>(maximumValueColumns, "A"));
    const auto fits = [](DataFragment &block, std::string_view line) {
        RecordBatch batch;
        std::size_t count = 0;
        for (; batch.hasRoomFor(block); ++count) {
            batch.add(block, line, 0);
        }
        return count;
    };
    EXPECT_EQ(fits(*narrow, "DATA\t1"), RecordBatch::mostLines);
    EXPECT_EQ(fits(*wide, "DATA\t1"), RecordBatch::mostValues / maximumValueColumns);
    EXPECT_EQ(fits(*narrow, std::string(RecordBatch::mostBytes, '1')), 1U);
    EXPECT_EQ(fits(*narrow, std::string(RecordBatch::mostBytes / 10, '1')), 11U);
}
