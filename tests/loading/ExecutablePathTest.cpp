#include "loading/ExecutablePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(ZoneDirectory, IsCutAfterTheLastBackslashEvenWhenASlashFollows) {
    EXPECT_EQ(zoneDirectoryFor("C:\\tools\\viewer/bin/fvqa300"), "C:\\tools\\zoneinfo");
}

TEST(ZoneDirectory, IsCutAfterTheLastSlashWhenThereIsNoBackslash) {
    EXPECT_EQ(zoneDirectoryFor("/opt/viewer/fvqa300"), "/opt/viewer/zoneinfo");
}

TEST(ZoneDirectory, OfOtherPaths) {
    const std::pair<const char *, const char *> rows[] = {
        {"./fvqa300", "./zoneinfo"}, {"/fvqa300", "/zoneinfo"}, {"C:\\fvqa300.exe", "C:\\zoneinfo"},
        {"bin/", "bin/zoneinfo"},    {"", "zoneinfo"},
    };
    for (const auto &[executable, directory] : rows) {
        EXPECT_EQ(zoneDirectoryFor(executable), directory) << executable;
    }
}

TEST(ZoneDirectory, GluesTheNameToABareProgramName) {
    EXPECT_EQ(zoneDirectoryFor("fvqa300"), "fvqa300zoneinfo");
}

TEST(ExecutablePath, IsArgumentZeroWhenThatHoldsASeparator) {
    for (const char *argument0 : {"/nowhere/fvqa300", "./fvqa300", "bin/fvqa300", "C:\\bin\\fvqa300"}) {
        EXPECT_EQ(executablePath(argument0), argument0);
    }
}

class StartedThroughPath : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        ASSERT_TRUE(QDir(dir_.path()).mkpath("installed"));
        ASSERT_TRUE(QDir(dir_.path()).mkpath("bin"));
        QFile program(dir_.filePath("installed/viewer"));
        ASSERT_TRUE(program.open(QIODevice::WriteOnly));
        ASSERT_TRUE(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        ASSERT_TRUE(QFile::link(program.fileName(), dir_.filePath("bin/viewer")));
        installed_ = QFileInfo(program).canonicalFilePath().toStdString();
        path_ = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(dir_.filePath("bin")));
    }

    void TearDown() override { qputenv("PATH", path_); }

    QTemporaryDir dir_;
    std::string installed_;
    QByteArray path_;
};

TEST_F(StartedThroughPath, TheProgramIsFoundThereWithLinksResolved) {
    EXPECT_EQ(executablePath("viewer"), installed_);
}

TEST_F(StartedThroughPath, ANameThatIsNotThereStaysAsItIs) {
    EXPECT_EQ(executablePath("viewer-of-nobody"), "viewer-of-nobody");
    EXPECT_EQ(executablePath(""), "");
}

} // namespace
