#include "tools/FileSink.h"

#include <filesystem>
#include <gtest/gtest.h>

TEST(FileSink, AFileThatCannotBeOpenedIsAnErrorThatNamesIt) {
    try {
        FileSink sink("/no/such/folder/x.data");
        FAIL();
    } catch (const WriteError &error) {
        EXPECT_NE(std::string(error.what()).find("/no/such/folder/x.data"), std::string::npos);
    }
}

TEST(FileSink, AFullDeviceIsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    FileSink sink("/dev/full");
    EXPECT_THROW(
        {
            sink.write(std::string(1000000, 'x'));
            sink.close();
        },
        WriteError);
}
