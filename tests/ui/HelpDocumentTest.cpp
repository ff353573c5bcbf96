#include "ui/HelpDocument.h"

#include <gtest/gtest.h>

namespace {

QString pdfOf(const char *applicationPath) {
    return helpDocumentPath(QString::fromUtf8(applicationPath));
}

TEST(HelpDocument, ADotInAFolderIsNoExtension) {
    EXPECT_EQ(pdfOf("C:\\dir.x2\\prog"), "C:\\dir.x2\\prog.pdf");
    EXPECT_EQ(pdfOf("/opt/dir.x2/prog"), "/opt/dir.x2/prog.pdf");
}

TEST(HelpDocument, ReplacesTheExtension) {
    EXPECT_EQ(pdfOf("C:\\dir\\prog.exe"), "C:\\dir\\prog.pdf");
    EXPECT_EQ(pdfOf("prog.exe"), "prog.pdf");
    EXPECT_EQ(pdfOf("/opt/prog.1.0"), "/opt/prog.1.pdf");
}

TEST(HelpDocument, OfPathsWithoutAName) {
    EXPECT_EQ(pdfOf(""), ".pdf");
    EXPECT_EQ(pdfOf("/opt.x/"), "/opt.x/.pdf");
    EXPECT_EQ(pdfOf("/opt/.prog"), "/opt/.pdf");
}

} // namespace
