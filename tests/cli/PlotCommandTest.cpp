// Pictures from the command line: the real program, without a display.

#include "cli/CliProcess.h"
#include "cli/TemporaryFolder.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <filesystem>
#include <gtest/gtest.h>
#include <utility>

namespace {

const std::string examples = FVQA_EXAMPLES_DIR;
const std::string gas = "AIU-0412:DATA:CO2 (mg/m^3)";
const std::string pressure = "AIU-0412:DATA:Air Pressure (kPa)";

// A display that is not there: nothing may try to reach it.
CliProcess::Setup withoutDisplay() {
    CliProcess::Setup setup;
    setup.environment = {"DISPLAY=:9999", "QT_QPA_PLATFORM=xcb"};
    return setup;
}

CliResult plot(const std::vector<std::string> &arguments) {
    std::vector<std::string> all{"plot"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runCli(all, withoutDisplay());
}

QByteArray contentOf(const std::string &path) {
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int pixelsOf(const QImage &image, Qt::GlobalColor colour) {
    const QColor wanted(colour);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == wanted ? 1 : 0;
        }
    }
    return count;
}

// Columns of the picture's middle, from its left end on, in which the colour lies below the legend.
int columnsWith(const QImage &image, Qt::GlobalColor colour) {
    const QColor wanted(colour);
    int columns = 0;
    for (int x = 0; x < image.width(); ++x) {
        bool found = false;
        for (int y = 40; y < image.height() && !found; ++y) {
            found = image.pixelColor(x, y) == wanted;
        }
        columns += found ? 1 : 0;
    }
    return columns;
}

} // namespace

TEST(PlotCommand, APictureOfTheExamplesShowsTheCurveInItsColour) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    const CliResult result = plot({"--variable", gas, "--output", path, examples});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    const QImage image(QString::fromStdString(path), "PNG");
    EXPECT_EQ(image.size(), QSize(1200, 600));
    // From one end of the canvas to the other.
    EXPECT_GT(columnsWith(image, Qt::red), 1000);
    EXPECT_EQ(pixelsOf(image, Qt::blue), 0);
}

TEST(PlotCommand, VariablesTakeTheirColoursInTheOrderGivenTheRightAxisLast) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    const CliResult result =
        plot({"--right", pressure, "--variable", gas, "--size", "800x400", "--output", path, examples});
    EXPECT_EQ(result.status, 0) << result.err;
    const QImage image(QString::fromStdString(path), "PNG");
    EXPECT_EQ(image.size(), QSize(800, 400));
    EXPECT_GT(columnsWith(image, Qt::red), 500);
    EXPECT_GT(columnsWith(image, Qt::blue), 500);
}

TEST(PlotCommand, TheSamePictureComesTwice) {
    const TemporaryFolder folder;
    for (const char *name : {"/1.png", "/2.png"}) {
        EXPECT_EQ(plot({"--variable", gas, "--output", folder.path() + name, examples}).status, 0);
    }
    EXPECT_EQ(contentOf(folder.path() + "/1.png"), contentOf(folder.path() + "/2.png"));
}

TEST(PlotCommand, AWindowOfTimeShowsItsRecords) {
    const TemporaryFolder folder;
    const std::string whole = folder.path() + "/whole.png";
    const std::string minute = folder.path() + "/minute.png";
    EXPECT_EQ(plot({"--variable", gas, "--output", whole, examples}).status, 0);
    const CliResult result = plot(
        {"--variable", gas, "--from", "1559413000", "--to", "1559413060.5", "--output", minute, examples});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_GT(columnsWith(QImage(QString::fromStdString(minute)), Qt::red), 1000);
    EXPECT_NE(contentOf(whole), contentOf(minute));
}

TEST(PlotCommand, AWindowBesideTheDataIsAnEmptyPlot) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    const CliResult result =
        plot({"--variable", gas, "--from", "1000", "--to", "2000", "--output", path, examples});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "fvqa300-cli: " + path + ": The picture is empty: no point lies in this range of time\n");
    const QImage image(QString::fromStdString(path), "PNG");
    EXPECT_EQ(image.size(), QSize(1200, 600));
    EXPECT_EQ(columnsWith(image, Qt::red), 0);
}

TEST(PlotCommand, TheEndingChoosesTheFormat) {
    const TemporaryFolder folder;
    for (const char *ending : {"svg", "pdf"}) {
        const std::string path = folder.path() + "/plot." + ending;
        EXPECT_EQ(plot({"--variable", gas, "--output", path, examples}).status, 0);
    }
    const QByteArray svg = contentOf(folder.path() + "/plot.svg");
    EXPECT_TRUE(svg.startsWith("<?xml"));
    EXPECT_TRUE(svg.contains("#ff0000"));
    EXPECT_TRUE(svg.contains(">" + QByteArray::fromStdString(gas) + "</text>"));
    EXPECT_TRUE(contentOf(folder.path() + "/plot.pdf").startsWith("%PDF-"));
}

TEST(PlotCommand, AnUnknownVariableIsNamedAndTheOthersAreDrawn) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    const CliResult result = plot({"--variable", "a:b:c", "--variable", gas, "--output", path, examples});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "fvqa300-cli: a:b:c: No file holds this variable\n");
    EXPECT_GT(columnsWith(QImage(QString::fromStdString(path)), Qt::red), 1000);
}

TEST(PlotCommand, AVariableOnTheRightAxisIsDrawnWithoutOneOnTheLeft) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    const CliResult result = plot({"--variable", "a:b:c", "--right", pressure, "--output", path, examples});
    EXPECT_EQ(result.status, 1);
    EXPECT_GT(columnsWith(QImage(QString::fromStdString(path)), Qt::red), 1000);
}

TEST(PlotCommand, OneEndOfTheWindowIsEnough) {
    const TemporaryFolder folder;
    for (const char *option : {"--from", "--to"}) {
        const std::string path = folder.path() + "/plot.png";
        EXPECT_EQ(plot({"--variable", gas, option, "1559414000", "--output", path, examples}).status, 0);
        EXPECT_GT(columnsWith(QImage(QString::fromStdString(path)), Qt::red), 1000) << option;
    }
}

TEST(PlotCommand, WithoutAnyKnownVariableNothingIsWritten) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/plot.png";
    EXPECT_EQ(plot({"--variable", "a:b:c", "--output", path, examples}).status, 1);
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(path)));
}

TEST(PlotCommand, AnOutputThatCannotBeWrittenIsNamed) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/missing/plot.png";
    const CliResult result = plot({"--variable", gas, "--output", path, examples});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + path + ": ")) << result.err;
}

TEST(PlotCommand, AReadOnlyFolderAndAFullDiskAreNamed) {
    const TemporaryFolder folder;
    const std::string locked = folder.makeFolder("locked");
    std::filesystem::permissions(locked,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    CliProcess::Setup readOnly = withoutDisplay();
    readOnly.obeysFileModes = true;
    CliProcess::Setup full = withoutDisplay();
    full.largestFile = 1000;
    for (const std::string ending : {".png", ".svg", ".pdf"}) {
        for (const auto &[path, setup] : {std::pair(locked + "/plot" + ending, readOnly),
                                          std::pair(folder.path("plot" + ending), full)}) {
            const CliResult result = runCli({"plot", "--variable", gas, "--output", path, examples}, setup);
            EXPECT_EQ(result.status, 1) << path;
            EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + path + ": ")) << path << result.err;
            EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
        }
    }
}

TEST(PlotCommand, AnInputIsNeverReplaced) {
    const TemporaryFolder folder;
    const QString input = QString::fromStdString(folder.path() + "/data.png");
    ASSERT_TRUE(QFile::copy(QString::fromStdString(examples + "/QA330-2019-06-01T130000.data"), input));
    const QByteArray before = contentOf(input.toStdString());
    for (const std::string &output : {folder.path() + "/data.png", folder.path() + "/./data.png"}) {
        const CliResult result =
            plot({"--variable", "QA330:DATA:CH4", "--output", output, input.toStdString()});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(result.err.starts_with("fvqa300-cli: " + output + ": ")) << result.err;
    }
    EXPECT_EQ(contentOf(input.toStdString()), before);
}

TEST(PlotCommand, WrongUsageNamesTheOption) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
        {{"--output", "p.png", "a"}, "--variable"},
        {{"--variable", "k", "a"}, "--output"},
        {{"--variable", "k", "--output", "p.gif", "a"}, "--output"},
        {{"--variable", "", "--output", "p.png", "a"}, "--variable"},
        {{"--right", "", "--variable", "k", "--output", "p.png", "a"}, "--right"},
        {{"--variable", "k", "--output", "p.png", "--size", "800", "a"}, "--size"},
        {{"--variable", "k", "--output", "p.png", "--size", "800x", "a"}, "--size"},
        {{"--variable", "k", "--output", "p.png", "--size", "800x49", "a"}, "--size"},
        {{"--variable", "k", "--output", "p.png", "--size", "20001x800", "a"}, "--size"},
        {{"--variable", "k", "--output", "p.png", "--size", "-5x800", "a"}, "--size"},
        {{"--variable", "k", "--output", "p.png", "--from", "nan", "a"}, "--from"},
        {{"--variable", "k", "--output", "p.png", "--from", "20", "--to", "20", "a"}, "--from"},
        {{"--variable", "k", "--output", "\xff.png", "a"}, "--output"},
        {{"--variable", "k", "--output", "p.png"}, "FILE"},
    };
    for (const auto &[arguments, named] : rows) {
        const CliResult result = plot(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err.find(named), std::string::npos) << result.err;
    }
}
