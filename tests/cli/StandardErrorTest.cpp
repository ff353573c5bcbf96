#include "cli/StandardError.h"

#include "cli/ProgressBar.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <thread>
#include <unistd.h>

namespace {

// A file in the place of the process's standard error.
class Capture {
public:
    int descriptor() const { return ::fileno(file_.get()); }

    std::string text() const {
        std::array<char, 4096> block{};
        std::string all;
        ::lseek(descriptor(), 0, SEEK_SET);
        for (ssize_t count = 0; (count = ::read(descriptor(), block.data(), block.size())) > 0;) {
            all.append(block.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> file_{std::tmpfile()};
};

TEST(StandardError, EachLineStandsBehindTheProgramsName) {
    const Capture capture;
    {
        const StandardError standardError(capture.descriptor());
        std::cerr << "one " << 1 << "\ntwo\n\n" << std::flush;
    }
    EXPECT_EQ(capture.text(), "fvqa300-cli: one 1\nfvqa300-cli: two\nfvqa300-cli: \n");
}

TEST(StandardError, AnyLineThroughTheStreamIsAFailure) {
    const Capture capture;
    const StandardError standardError(capture.descriptor());
    EXPECT_FALSE(standardError.hasFailures());
    std::cerr << "gone\n";
    EXPECT_TRUE(standardError.hasFailures());
}

TEST(StandardError, ARemarkIsNoFailure) {
    const Capture capture;
    StandardError standardError(capture.descriptor());
    standardError.remark("by the way");
    EXPECT_FALSE(standardError.hasFailures());
    EXPECT_EQ(capture.text(), "fvqa300-cli: by the way\n");
}

TEST(StandardError, ALineWithoutItsEndIsNotLost) {
    const Capture capture;
    {
        const StandardError standardError(capture.descriptor());
        std::cerr << "cut";
        EXPECT_EQ(capture.text(), "");
    }
    EXPECT_EQ(capture.text(), "fvqa300-cli: cut\n");
}

TEST(StandardError, LinesOfSeveralThreadsDoNotMix) {
    const Capture capture;
    {
        const StandardError standardError(capture.descriptor());
        std::cerr << "begun, ";
        std::thread([] { std::cerr << "whole\n"; }).join();
        std::cerr << "ended\n";
    }
    EXPECT_EQ(capture.text(), "fvqa300-cli: whole\nfvqa300-cli: begun, ended\n");
}

TEST(StandardError, LinesStandAboveTheStatus) {
    const Capture capture;
    {
        StandardError standardError(capture.descriptor());
        standardError.allowStatus(true);
        standardError.showStatus("50 %");
        std::cerr << "gone\n";
    }
    EXPECT_EQ(capture.text(), "\r\033[K50 %\r\033[Kfvqa300-cli: gone\n50 %\r\033[K");
}

TEST(StandardError, NoStatusIsShownUntilItIsAllowed) {
    const Capture capture;
    StandardError standardError(capture.descriptor());
    standardError.showStatus("50 %");
    standardError.eraseStatus();
    EXPECT_EQ(capture.text(), "");
}

TEST(ProgressBar, ItIsDrawnWhenThePercentGrowsAndErasedAtTheEnd) {
    const Capture capture;
    StandardError standardError(capture.descriptor());
    standardError.allowStatus(true);
    {
        ProgressBar bar(standardError, "Loading", 1000);
        bar.advance(4);
        bar.advance(496);
        bar.advance(9);
        bar.advance(500);
    }
    const std::string half(20, '#');
    const std::string rest(20, '-');
    EXPECT_EQ(capture.text(), "\r\033[KLoading [" + rest + rest + "]   0 %" +     //
                                  "\r\033[KLoading [" + half + rest + "]  50 %" + //
                                  "\r\033[KLoading [" + half + half + "] 100 %\r\033[K");
}

TEST(ProgressBar, NothingToDoShowsNothing) {
    const Capture capture;
    StandardError standardError(capture.descriptor());
    standardError.allowStatus(true);
    { const ProgressBar bar(standardError, "Loading", 0); }
    EXPECT_EQ(capture.text(), "");
}

} // namespace
