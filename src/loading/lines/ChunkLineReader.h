#pragma once

#include <QIODevice>
#include <QString>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

class QuaZip;
class QuaZipFile;

// Reads the lines of a plain file or of one archive member, in pieces of 8 MiB into one block.
//
// A line is a view into the block, without its "\n" or "\r\n", and holds until the next refill. The last line
// of a source that ends without a line feed is not delivered; a line longer than 1 MiB ends the reading.
// Belongs to one thread.
class ChunkLineReader {
public:
    static constexpr qint64 maximumLineLength = qint64{1024} * 1024;
    static constexpr qint64 readSize = qint64{8} * 1024 * 1024;

    ChunkLineReader();
    ~ChunkLineReader();
    ChunkLineReader(const ChunkLineReader &) = delete;
    ChunkLineReader &operator=(const ChunkLineReader &) = delete;

    // Opens the plain file `path`, or its archive member `member` when that is not empty, at byte
    // `startOffset` of the uncompressed bytes. False when it cannot be opened: problem() then says why.
    bool open(const QString &path, const QString &member, qint64 startOffset = 0);
    // Opens a member of an archive that is open itself and outlives the reading. Members read one after the
    // other this way do not each search the archive's directory from its begin.
    bool openMember(QuaZip &archive, const QString &member, qint64 startOffset = 0);
    // The same over any device that is open for reading.
    bool openDevice(std::unique_ptr<QIODevice> device, qint64 startOffset = 0);

    // Moves to the next line; false at the end.
    bool nextLine() { return nextLineOfBlock() || refill(); }
    // The same in two steps: the next line that is whole in the present block, and when there is none, the
    // first of the next block.
    bool nextLineOfBlock();
    bool refill();
    // From now on lines hold until the refill after next: two blocks take turns.
    void addBlock();
    std::string_view line() const;

    // Offset of the line as it is reported and indexed. Every refill that carries part of a line over makes
    // the offsets after it fall short by the carried bytes; the shortfalls add up. This is kept: readers that
    // seek to such an offset start a little early and skip what is not theirs.
    std::uint64_t lineOffset() const;
    // By how much lineOffset() falls short of the line's true offset, in bytes.
    std::uint64_t shortfall() const { return shortfall_; }

    // Leaves out lines that begin before the true offset `offset`, when they have not been read yet and the
    // device can move. No line that begins there or behind is lost; lines before it may still come, and the
    // rest of one.
    void jumpTo(std::uint64_t offset);

    // Makes the lines come next that begin at the true offset `offset` or behind it, wherever the reader
    // stands; what is left of the line before them may come first. False, and nothing changes, when bytes are
    // needed that are held no longer: then the source must be opened again.
    bool goTo(std::uint64_t offset);

    // Passes over `count` bytes; false when fewer are left in the present data and one refill.
    bool skip(qint64 count);

    // Closes the source. Blocks are kept for the next one: the pages of a new one would cost more than
    // reading a small archive member.
    void finish();
    // The same, and gives the block back.
    void close();

    // Bytes of the open source, uncompressed.
    qint64 size() const { return size_; }

    // Why reading ended before the source's end, for people; empty when it did not. A damaged archive member
    // shows only when it is closed.
    const QString &problem() const { return problem_; }

private:
    struct Free {
        void operator()(char *block) const { std::free(block); }
    };

    bool openInArchive(const QString &path, const QString &member, qint64 startOffset);
    bool openListed(QuaZip &archive, const QString &member, qint64 startOffset);
    bool openZipped(std::unique_ptr<QuaZipFile> file, const QString &member, qint64 startOffset);
    void start(std::unique_ptr<QIODevice> device, const QString &member, qint64 startOffset);
    bool skipTo(qint64 offset, qint64 position);
    void refillFrom(qint64 offset);
    qint64 heldBegin() const;
    qint64 heldEnd() const;
    bool findLine();
    bool fill(qint64 fileOffset);
    bool endIfTooLong();
    bool isTooLong(const char *unfinishedLine) const;
    void noteShortRead(bool failed, qint64 position);
    void noteLongLine();

    std::unique_ptr<QuaZip> archive_; // when a member was opened by its archive's path
    std::unique_ptr<QIODevice> device_;
    QString member_; // empty for a plain file
    using Block = std::unique_ptr<char, Free>;

    static Block newBlock();
    void carryOver(qint64 carry);

    Block memory_;
    Block otherMemory_;      // the one that is filled next, when two take turns
    char *buffer_ = nullptr; // 9 MiB: 1 MiB of room for a carried-over line, then the bytes read
    qint64 size_ = 0;
    qint64 base_ = 0; // file offset that the start of the buffer stands for
    std::uint64_t shortfall_ = 0;
    bool ended_ = false;
    const char *dataEnd_ = nullptr; // null before the first fill
    const char *lineBegin_ = nullptr;
    const char *lineEnd_ = nullptr;
    const char *next_ = nullptr;
    QString problem_;
};
