#pragma once

#include "data/SourceComplaints.h"
#include "data/SourceFile.h"
#include "data/SourceState.h"
#include "loading/lines/ChunkLineReader.h"

#include <cstdint>
#include <optional>
#include <string>

struct SourceHeader;

// Gives the lines of sources for blocks that are read one after the other, and says when a source is not what
// it was when it was loaded.
//
// What is open stays open: the next block mostly lies in the same member, near the last one. It is used only
// while the file is still the one that was opened, so that what comes is what opening it anew would give.
// Belongs to one thread; the headers must outlive it.
class SourceReader {
public:
    // `complaints` are those of the whole pass, and outlive it.
    explicit SourceReader(SourceComplaints &complaints) : complaints_(complaints) {}

    bool hasOpen(const SourceHeader &source) const;
    // Makes the lines come from lines() that begin at the true offset `offset` of the member or behind it;
    // `member` is empty for a plain file. False when it cannot be opened or ends before.
    bool goTo(const SourceHeader &source, const std::string &member, std::uint64_t offset);
    ChunkLineReader &lines() { return lines_; }

    // Call when the lines of a block have come: says what went wrong with them.
    void pause();
    // The same, and closes all.
    void close();

private:
    bool isReading(const std::string &member) const { return isMemberOpen_ && member_ == member; }
    bool open(const std::string &member, std::uint64_t offset);
    bool openBefore(const std::string &member, std::uint64_t offset);
    void closeMember();

    SourceComplaints &complaints_;
    const SourceHeader *source_ = nullptr; // null when nothing is open
    std::optional<SourceFile> file_;
    std::optional<SourceState> asOpened_;
    ChunkLineReader lines_;
    std::string member_;
    bool isMemberOpen_ = false;
};
