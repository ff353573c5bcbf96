#include "data/SourceState.h"

#include "support/ScratchFolder.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

namespace fs = std::filesystem;

const std::string content = "DATAH\tSECONDS\tA\nDATA\t1000\t1\n";

class SourceStateTest : public testing::Test {
protected:
    // The file's time is set back, so that a change made in the same instant has another one.
    std::string writeOld(const std::string &name) const {
        std::string path = folder_.write(name, content);
        setBack(path);
        return path;
    }
    static void setBack(const std::string &path) {
        fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(1));
    }

    ScratchFolder folder_;
};

} // namespace

TEST_F(SourceStateTest, AFileThatIsAsItWasHasNotChanged) {
    const std::string path = writeOld("a.data");
    for (const bool isArchive : {false, true}) {
        const SourceState state(path, isArchive);
        EXPECT_EQ(state.change(), "");
        EXPECT_EQ(state.change(), "");
    }
}

TEST_F(SourceStateTest, OnlyTheVerySameFileThatNothingWasWrittenToIsAsItWas) {
    const auto isAsItWasAfter = [this](const std::function<void(const std::string &)> &change) {
        const std::string path = writeOld("a.data");
        const SourceState state(path, false);
        EXPECT_TRUE(state.isAsItWas());
        change(path);
        return state.isAsItWas();
    };
    EXPECT_TRUE(isAsItWasAfter([](const std::string &) {}));
    EXPECT_FALSE(isAsItWasAfter([](const std::string &path) { fs::remove(path); }));
    EXPECT_FALSE(isAsItWasAfter([](const std::string &path) { fs::resize_file(path, content.size() + 1); }));
    EXPECT_FALSE(isAsItWasAfter([](const std::string &path) { setBack(path); }));
    EXPECT_FALSE(isAsItWasAfter([this](const std::string &path) {
        const std::string other = writeOld("b.data");
        fs::last_write_time(other, fs::last_write_time(path));
        fs::rename(other, path);
    }));
    EXPECT_FALSE(SourceState(folder_.pathOf("none"), false).isAsItWas());
}

TEST_F(SourceStateTest, WhatMakesAnotherFileOfItIsAChangeThatNamesBothSizes) {
    struct Row {
        const char *what;
        std::function<void(const std::string &)> change;
        std::size_t size;
    };
    const std::array<Row, 5> rows{{
        {"cut short", [](const std::string &path) { fs::resize_file(path, 20); }, 20},
        {"emptied", [](const std::string &path) { fs::resize_file(path, 0); }, 0},
        {"other bytes in its place",
         [this](const std::string &) { folder_.write("a.data", std::string(content.size(), 'x')); },
         content.size()},
        {"another file under its name",
         [this](const std::string &path) { fs::rename(folder_.write("b", content + "and more\n"), path); },
         content.size() + 9},
        {"an older file under its name",
         [this](const std::string &path) {
             fs::rename(folder_.write("b", content), path);
             setBack(path);
             setBack(path);
         },
         content.size()},
    }};
    for (const auto &[what, change, size] : rows) {
        const std::string path = writeOld("a.data");
        const SourceState state(path, false);
        change(path);
        EXPECT_EQ(state.change().toStdString(),
                  "The file has changed since it was loaded, from " + std::to_string(content.size()) +
                      " to " + std::to_string(size) +
                      " bytes: records that are read again may be wrong or missing")
            << what;
    }
}

// An instrument writes on at the end while the file is looked at.
TEST_F(SourceStateTest, APlainFileThatHasOnlyGrownHasNotChanged) {
    const std::string path = writeOld("a.data");
    const SourceState state(path, false);
    folder_.write("a.data", content + "DATA\t1001\t2\n");
    EXPECT_EQ(state.change(), "");
}

// Its directory lies at its end.
TEST_F(SourceStateTest, AnArchiveThatHasGrownHasChanged) {
    const std::string path = writeOld("a.ghg");
    const SourceState state(path, true);
    folder_.write("a.ghg", content + "more");
    EXPECT_NE(state.change(), "");
}

TEST_F(SourceStateTest, AFileThatIsGoneIsLeftToWhoeverOpensIt) {
    const std::string path = writeOld("a.data");
    const SourceState state(path, false);
    fs::remove(path);
    EXPECT_EQ(state.change(), "");
    fs::create_directory(path);
    EXPECT_EQ(state.change(), "");
}

TEST_F(SourceStateTest, AFileThatCameLaterHasNothingToDifferFrom) {
    const SourceState state(folder_.pathOf("a.data"), false);
    writeOld("a.data");
    EXPECT_EQ(state.change(), "");
}

TEST_F(SourceStateTest, ProblemsOfTheLoadingAreKnown) {
    SourceState state(writeOld("a.data"), false);
    state.addProblem("The archive member \"a\" is damaged");
    EXPECT_TRUE(state.isKnown("The archive member \"a\" is damaged"));
    EXPECT_FALSE(state.isKnown("The archive member \"b\" is damaged"));
}
