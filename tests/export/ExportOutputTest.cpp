#include "export/ExportOutput.h"

#include "export/MemorySink.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

TEST(ExportOutput, WhatIsTakenLeavesInOrder) {
    MemoryOutput output;
    output->append("first ");
    char *const room = output->room(3);
    room[0] = 'x';
    output->take(room + 1);
    output->append(" last");
    EXPECT_EQ(output.bytes(), "first x last");
}

TEST(ExportOutput, RecordsAreHeldUntilABlockIsFull) {
    MemoryOutput output;
    const std::string record(1000, 'r');
    std::size_t records = 0;
    while (output.log().blocks.empty()) {
        output->append(record);
        output->endRecord();
        ++records;
    }
    EXPECT_EQ(records, ExportOutput::blockSize / record.size() + 1);
    EXPECT_EQ(output.log().blocks.front(), records * record.size());
}

TEST(ExportOutput, ARecordLargerThanABlockFits) {
    MemoryOutput output;
    const std::string record(3 * ExportOutput::blockSize, 'r');
    output->append("before");
    output->append(record);
    output->endRecord();
    EXPECT_EQ(output.log().blocks, std::vector<std::size_t>{record.size() + 6});
}

TEST(ExportOutput, ClosingWritesTheRestAndClosesTheSinkOnce) {
    MemoryOutput output;
    output->append("rest");
    output->close();
    output->close();
    EXPECT_EQ(output.log().bytes, "rest");
    EXPECT_TRUE(output.log().isClosed);
    EXPECT_EQ(output.log().calls, 2U);
}

TEST(ExportOutput, NothingIsWrittenOfNothing) {
    MemoryOutput output;
    output->flush();
    output->close();
    EXPECT_TRUE(output.log().blocks.empty());
    EXPECT_TRUE(output.log().isClosed);
}

TEST(ExportOutput, TheFirstErrorIsReportedOnceAndTheRestDropped) {
    for (std::size_t failing = 0; failing < 4; ++failing) {
        MemoryOutput output(failing);
        for (const char *const text : {"one,", "two,", "three"}) {
            output->append(text);
            output->flush();
        }
        const std::string whole = "one,two,three";
        const std::string bytes = output.bytes();
        EXPECT_TRUE(whole.starts_with(bytes)) << bytes;
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), ','),
                  std::min<std::ptrdiff_t>(2, static_cast<std::ptrdiff_t>(failing)));
        EXPECT_EQ(output.errors(),
                  std::vector<std::error_code>{std::make_error_code(std::errc::no_space_on_device)});
        EXPECT_EQ(output.log().calls, failing + 1);
    }
}

TEST(ExportOutput, WithoutASinkEverythingIsDropped) {
    ExportOutput output(nullptr, [](const std::error_code &) { ADD_FAILURE(); });
    output.append("text");
    output.flush();
    output.append("more");
    output.close();
}

} // namespace
