#pragma once

#include "data/DataSet.h"
#include "export/ExportJob.h"
#include "export/ExportProgress.h"
#include "support/LoadedSource.h"
#include "support/ScratchFolder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

// Notes what an export tells, and cancels when it is told to.
class RecordedProgress : public ExportProgress {
public:
    void showFile(const std::string &name) override { files.push_back(name); }
    void showTime(double utcSeconds) override {
        times.push_back(utcSeconds);
        if (atTime) {
            atTime();
        }
    }
    bool isCancelled() override { return ++timesAsked > cancelledFrom; }
    void showEnd() override { hasEnded = true; }
    void reportFailure(const std::string &line) override { failures.push_back(line); }
    void remark(const std::string &line) override { remarks.push_back(line); }

    std::vector<std::string> files;
    std::vector<double> times;
    std::vector<std::string> failures;
    std::vector<std::string> remarks;
    bool hasEnded = false;
    int timesAsked = 0;
    int cancelledFrom = 1'000'000; // so often it may be asked before the user cancels
    std::function<void()> atTime;
};

// Exports of small files of the instrument Q, which lie in a folder of their own.
class ExportTest : public testing::Test {
protected:
    static constexpr std::uint32_t tenOClock = 1625047200; // 2021-06-30 10:00:00 UTC
    static constexpr std::uint32_t hour = 3600;

    // Adds a source with the columns SECONDS, NANOSECONDS and A of the tag DATA.
    void load(const std::string &records, const std::string &zone = "UTC",
              const std::string &name = "a.data") {
        loadText("Timezone:\t" + zone + "\nDATAH\tSECONDS\tNANOSECONDS\tA\n" + records, name);
    }
    void loadText(const std::string &text, const std::string &name = "a.data") {
        data_.merge(loadSource(folder_.write(name, "Instrument:\tQ\n" + text)));
    }

    static std::string record(std::uint32_t seconds, const std::string &value,
                              const std::string &nanoseconds = "0") {
        return "DATA\t" + std::to_string(seconds) + '\t' + nanoseconds + '\t' + value + '\n';
    }
    // `count` records, `step` seconds apart, of the values 0, 1, 2, ...
    static std::string records(std::uint32_t first, int count, std::uint32_t step = 1) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += record(first + static_cast<std::uint32_t>(i) * step, std::to_string(i));
        }
        return text;
    }

    ExportRequest requestFor(const std::string &name, std::int32_t splitPeriod = 0,
                             ExportFormat format = ExportFormat::text) const {
        ExportRequest request;
        request.format = format;
        request.targetName = folder_.pathOf(name);
        request.timeColumns = TimeColumns::seconds;
        request.splitPeriod = splitPeriod;
        return request;
    }

    ExportSource source(const std::string &tag = "DATA") const { return exportSourceOf(data_, "Q", tag); }
    void run(const ExportRequest &request) { runExport(source(), request, progress_); }

    bool exists(const std::string &name) const { return std::filesystem::exists(folder_.pathOf(name)); }
    std::string read(const std::string &name) const {
        std::ifstream file(folder_.pathOf(name), std::ios::binary);
        EXPECT_TRUE(file.is_open()) << name;
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // The files that were shown, without the folder.
    std::vector<std::string> shownFiles() const {
        std::vector<std::string> names;
        for (const std::string &path : progress_.files) {
            names.push_back(std::filesystem::path(path).filename().string());
        }
        return names;
    }

    ScratchFolder folder_;
    DataSet data_;
    RecordedProgress progress_;
};
