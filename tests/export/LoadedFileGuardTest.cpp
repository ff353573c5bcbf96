#include "export/LoadedFileGuard.h"

#include "support/ScratchFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

class LoadedFiles : public testing::Test {
protected:
    LoadedFiles() : loaded_(folder_.write("a.data", "a")) {}

    ScratchFolder folder_;
    std::string loaded_;
    LoadedFileGuard guard_{[this] { return std::set<std::string>{loaded_}; }};
};

TEST_F(LoadedFiles, AreKnownByTheirPaths) {
    EXPECT_TRUE(guard_.isLoaded(loaded_));
    EXPECT_FALSE(guard_.isLoaded(folder_.write("b.data", "a")));
    EXPECT_FALSE(guard_.isLoaded(folder_.pathOf("new.data")));
}

TEST_F(LoadedFiles, AreKnownByOtherSpellingsOfTheirPaths) {
    fs::create_directory(folder_.pathOf("sub"));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf("sub/../a.data")));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf(".//./a.data")));
    EXPECT_TRUE(guard_.isLoaded(fs::relative(loaded_).string()));
}

TEST_F(LoadedFiles, AreKnownThroughLinks) {
    fs::create_symlink(loaded_, folder_.pathOf("link"));
    fs::create_directory_symlink(folder_.pathOf(""), folder_.pathOf("folder"));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf("link")));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf("folder/a.data")));
}

TEST_F(LoadedFiles, AreKnownThroughHardLinks) {
    fs::create_hard_link(loaded_, folder_.pathOf("hard"));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf("hard")));
}

TEST_F(LoadedFiles, ThatWereLoadedThroughALinkAreKnownToo) {
    fs::create_symlink(loaded_, folder_.pathOf("link"));
    LoadedFileGuard guard([this] { return std::set<std::string>{folder_.pathOf("link")}; });
    EXPECT_TRUE(guard.isLoaded(loaded_));
}

// What would be read for it is then what was exported.
TEST_F(LoadedFiles, ThatAreGoneKeepTheirNames) {
    fs::remove(loaded_);
    EXPECT_TRUE(guard_.isLoaded(loaded_));
    EXPECT_TRUE(guard_.isLoaded(folder_.pathOf("./a.data")));
    EXPECT_FALSE(guard_.isLoaded(folder_.pathOf("b.data")));
}

TEST_F(LoadedFiles, ThatAreLoadedLaterCountFromThenOn) {
    const std::string later = folder_.write("b.data", "b");
    EXPECT_FALSE(guard_.isLoaded(later));
    loaded_ = later;
    EXPECT_TRUE(guard_.isLoaded(later));
    EXPECT_FALSE(guard_.isLoaded(folder_.pathOf("a.data")));
}

} // namespace
