#include "export/LoadedFileGuard.h"

#include "support/ScratchFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

FileNames only(const std::string &name) {
    return std::make_shared<const std::set<std::string>>(std::set<std::string>{name});
}

class LoadedFiles : public testing::Test {
protected:
    LoadedFiles() : loaded_(folder_.write("a.data", "a")) {}

    ScratchFolder folder_;
    std::string loaded_;
    LoadedFileGuard guard_{[this] { return only(loaded_); }};
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
    LoadedFileGuard guard([this] { return only(folder_.pathOf("link")); });
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
}

TEST_F(LoadedFiles, StayGuardedWhenTheyAreLoadedNoMore) {
    EXPECT_TRUE(guard_.isLoaded(loaded_));
    const std::string before = loaded_;
    loaded_ = folder_.write("b.data", "b");
    EXPECT_TRUE(guard_.isLoaded(before));
}

TEST_F(LoadedFiles, AreNotTheOnlyOnesThatCanBeGuarded) {
    const std::string other = folder_.write("b.data", "b");
    guard_.protect(other);
    EXPECT_TRUE(guard_.isLoaded(other));
}

} // namespace
