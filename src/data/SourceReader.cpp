#include "data/SourceReader.h"

#include "data/DataFragment.h"

#include <algorithm>

bool SourceReader::hasOpen(const SourceHeader &source) const {
    return source_ != nullptr && source_->fileName == source.fileName;
}

bool SourceReader::goTo(const SourceHeader &source, const std::string &member, std::uint64_t offset) {
    pause();
    if (source_ != nullptr && (!hasOpen(source) || !asOpened_->isAsItWas())) {
        close();
    }
    complaints_.checkForChange(source);
    source_ = &source;
    if (!file_) {
        asOpened_.emplace(source.fileName, !member.empty());
        file_.emplace(source.fileName);
    }
    const bool isThere = (isReading(member) && lines_.goTo(offset)) || open(member, offset);
    // An offset that falls short may lie within a line, whose rest must not pass for a whole one.
    return isThere && (offset == 0 || lines_.nextLine());
}

bool SourceReader::open(const std::string &member, std::uint64_t offset) {
    const bool goesBack = isReading(member);
    if (isMemberOpen_) {
        closeMember();
    }
    member_ = member;
    isMemberOpen_ = (goesBack && openBefore(member, offset)) || file_->open(lines_, member, offset);
    return isMemberOpen_;
}

// Blocks whose order is not that of their lines may go back step by step: the ones before are likely to be
// wanted next, and opening the source for each would take forever.
bool SourceReader::openBefore(const std::string &member, std::uint64_t offset) {
    constexpr std::uint64_t stretch = ChunkLineReader::readSize / 2;
    return file_->open(lines_, member, offset - std::min(offset, stretch)) &&
           SourceComplaints::isKnown(*source_, lines_.problem()) && lines_.goTo(offset);
}

void SourceReader::pause() {
    // Another try may give more than one that goes on behind a failure.
    if (source_ != nullptr && !SourceComplaints::isKnown(*source_, lines_.problem())) {
        close();
    }
}

void SourceReader::close() {
    if (source_ != nullptr) {
        closeMember();
    }
    lines_.close();
    file_.reset();
    asOpened_.reset();
    source_ = nullptr;
}

// A damaged archive member shows only here.
void SourceReader::closeMember() {
    lines_.finish();
    isMemberOpen_ = false;
    complaints_.tell(*source_, lines_.problem());
}
