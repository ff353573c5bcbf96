#include "export/ExportSource.h"

#include "export/ExportTest.h"
#include "loading/QDataSet.h"

using ExportSources = ExportTest;

TEST_F(ExportSources, HoldWhatTheFirstFragmentOfTheDataSays) {
    loadText("Software Version:\t8.3\nDATADIAGH\tNOSIGNAL\nDATAH\tSECONDS\tTEMP\tDIAG\nDATA\t1000\t1\t0\n");
    loadText("DATAH\tSECONDS\tB\nDATA\t2000\t1\n", "b.data");
    const ExportSource all = source();
    EXPECT_EQ(all.tag, "DATA");
    EXPECT_EQ(all.fragments.size(), 2U);
    EXPECT_EQ(all.valueNames, (std::vector<std::string>{"TEMP", "DIAG", "DIAG:NOSIGNAL"}));
    EXPECT_EQ(all.units, (std::vector<std::string>{"C", "DIAG", "BOOL"}));
    EXPECT_EQ(all.diagnosticNames, std::vector<std::string>{"NOSIGNAL"});
    EXPECT_EQ(all.softwareVersion, "8.3");
    EXPECT_EQ(*all.loadedFiles(),
              (std::set<std::string>{folder_.pathOf("a.data"), folder_.pathOf("b.data")}));
}

TEST_F(ExportSources, AreEmptyForDataThatIsNotLoaded) {
    const ExportSource none = source("DATABIO");
    EXPECT_TRUE(none.fragments.empty());
    EXPECT_TRUE(none.valueNames.empty());
    EXPECT_EQ(none.softwareVersion, "Unknown");
}

TEST_F(ExportSources, MayBeTheViewersDataSet) {
    const QDataSet owner;
    const ExportSource none = exportSourceOf(owner, "Q", "DATA");
    EXPECT_TRUE(none.fragments.empty());
    EXPECT_TRUE(none.loadedFiles()->empty());
    runExport(none, requestFor("out.txt"), progress_);
    EXPECT_EQ(read("out.txt"), "");
}
