#include "data/VariableKey.h"

#include <gtest/gtest.h>

TEST(VariableKey, IsSplitAtItsFirstTwoColonsOnly) {
    const auto key = splitVariableKey("QA330:DATA:DIAG:PUMPON");
    ASSERT_TRUE(key);
    EXPECT_EQ(key->instrument, "QA330");
    EXPECT_EQ(key->tag, "DATA");
    EXPECT_EQ(key->column, "DIAG:PUMPON");
}

TEST(VariableKey, MayHaveEmptyParts) {
    const auto key = splitVariableKey("::");
    ASSERT_TRUE(key);
    EXPECT_EQ(key->instrument, "");
    EXPECT_EQ(key->tag, "");
    EXPECT_EQ(key->column, "");
    EXPECT_EQ(splitVariableKey(":::")->column, ":");
}

TEST(VariableKey, WithFewerThanTwoColonsIsNone) {
    EXPECT_FALSE(splitVariableKey(""));
    EXPECT_FALSE(splitVariableKey("QA330"));
    EXPECT_FALSE(splitVariableKey("QA330:DATA"));
}

TEST(VariableKey, IsMadeOfItsParts) {
    EXPECT_EQ(makeVariableKey("QA330", "DATA", "DIAG:PUMPON"), "QA330:DATA:DIAG:PUMPON");
    EXPECT_EQ(makeVariableKey("", "", ""), "::");
}
