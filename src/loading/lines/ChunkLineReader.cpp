#include "loading/lines/ChunkLineReader.h"

#include <QFile>
#include <QFileInfo>
#include <quazip.h>
#include <quazipfile.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr qint64 carryRoom = ChunkLineReader::maximumLineLength;
constexpr qint64 blockSize = carryRoom + ChunkLineReader::readSize;
// A longest line may be cut between its "\r" and its "\n": that byte is carried over too.
constexpr qint64 spareByte = 1;

struct ReadResult {
    qint64 count = 0;
    bool failed = false;
};

// Reads until `wanted` bytes are there or the source ends or fails, so that lines and offsets do not depend
// on how much a device gives at a time.
ReadResult readFully(QIODevice &device, char *to, qint64 wanted) {
    ReadResult result;
    while (result.count < wanted) {
        const qint64 got = device.read(to + result.count, wanted - result.count);
        if (got <= 0) {
            result.failed = got < 0;
            break;
        }
        result.count += got;
    }
    return result;
}

QString cannotBeOpened(const QString &member) {
    return QStringLiteral("The archive member \"%1\" cannot be opened").arg(member);
}

} // namespace

ChunkLineReader::ChunkLineReader() = default;

ChunkLineReader::~ChunkLineReader() {
    close();
}

bool ChunkLineReader::open(const QString &path, const QString &member, qint64 startOffset) {
    finish();
    problem_.clear();
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile()) {
        problem_ = QStringLiteral("The file is gone or no regular file");
        return false;
    }
    if (!member.isEmpty()) {
        return openInArchive(path, member, startOffset);
    }
    auto file = std::make_unique<QFile>(path);
    // Read in large pieces straight into the block.
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        problem_ = QStringLiteral("The file cannot be opened: ") + file->errorString();
        return false;
    }
    return openDevice(std::move(file), startOffset);
}

// Through an archive of its own, as a file that is made from path and name takes a slash off the name.
bool ChunkLineReader::openInArchive(const QString &path, const QString &member, qint64 startOffset) {
    archive_ = std::make_unique<QuaZip>(path);
    if (!archive_->open(QuaZip::mdUnzip)) {
        problem_ = cannotBeOpened(member);
        return false;
    }
    return openListed(*archive_, member, startOffset);
}

bool ChunkLineReader::openMember(QuaZip &archive, const QString &member, qint64 startOffset) {
    finish();
    return openListed(archive, member, startOffset);
}

bool ChunkLineReader::openListed(QuaZip &archive, const QString &member, qint64 startOffset) {
    // Opening no file at all would be answered with a line on standard error.
    if (!archive.setCurrentFile(member)) {
        problem_ = cannotBeOpened(member);
        return false;
    }
    return openZipped(std::make_unique<QuaZipFile>(&archive), member, startOffset);
}

bool ChunkLineReader::openZipped(std::unique_ptr<QuaZipFile> file, const QString &member,
                                 qint64 startOffset) {
    if (!file->open(QIODevice::ReadOnly)) {
        problem_ = cannotBeOpened(member);
        return false;
    }
    start(std::move(file), member, startOffset);
    // Its entry in the archive's directory is damaged, or can be read no longer.
    if (size_ < 0) {
        problem_ = cannotBeOpened(member);
    }
    return size_ >= 0;
}

bool ChunkLineReader::openDevice(std::unique_ptr<QIODevice> device, qint64 startOffset) {
    finish();
    start(std::move(device), {}, startOffset);
    return true;
}

void ChunkLineReader::start(std::unique_ptr<QIODevice> device, const QString &member, qint64 startOffset) {
    member_ = member;
    problem_.clear();
    ended_ = false;
    shortfall_ = 0;
    if (!memory_) {
        memory_ = newBlock();
    }
    buffer_ = memory_.get() + spareByte;
    device_ = std::move(device);
    size_ = device_->size();
    if (skipTo(startOffset, 0)) {
        fill(startOffset);
    }
}

ChunkLineReader::Block ChunkLineReader::newBlock() {
    Block block(static_cast<char *>(std::malloc(static_cast<std::size_t>(spareByte + blockSize))));
    if (!block) {
        throw std::bad_alloc();
    }
    return block;
}

void ChunkLineReader::addBlock() {
    if (!otherMemory_) {
        otherMemory_ = newBlock();
    }
}

// `position` is where a device that cannot move stands.
bool ChunkLineReader::skipTo(qint64 offset, qint64 position) {
    if (!device_->isSequential()) {
        const bool good = offset == 0 || device_->seek(offset);
        if (!good) {
            noteShortRead(true, 0);
        }
        return good;
    }
    for (qint64 left = offset - position; left > 0;) {
        const qint64 wanted = std::min(left, blockSize);
        const ReadResult read = readFully(*device_, buffer_, wanted);
        left -= read.count;
        if (read.count < wanted) {
            noteShortRead(read.failed, offset - left);
            return false;
        }
    }
    return true;
}

// The device gave less than it was asked for and stands at `position`: an end that is due is no problem.
void ChunkLineReader::noteShortRead(bool failed, qint64 position) {
    if (!problem_.isEmpty()) {
        return;
    }
    const QString where = QStringLiteral("after byte %1 of %2").arg(position).arg(size_);
    if (!member_.isEmpty() && (failed || position < size_)) {
        // A piece that cannot be inflated is lost whole, so more may be missing than the numbers tell.
        problem_ = QStringLiteral("The archive member \"%1\" is damaged: records are missing").arg(member_);
    } else if (failed) {
        problem_ = QStringLiteral("Reading failed %1: %2").arg(where, device_->errorString());
    } else if (position < size_) {
        problem_ = QStringLiteral("The file ends early, %1").arg(where);
    }
}

bool ChunkLineReader::nextLineOfBlock() {
    return dataEnd_ != nullptr && !ended_ && findLine() && !endIfTooLong();
}

bool ChunkLineReader::refill() {
    if (dataEnd_ == nullptr || ended_) {
        return false;
    }
    const qint64 lineOffset = lineBegin_ - buffer_ + base_;
    if (!fill(lineOffset) || !findLine()) {
        ended_ = true;
        if (isTooLong(lineBegin_)) {
            noteLongLine();
        }
        return false;
    }
    return !endIfTooLong();
}

bool ChunkLineReader::endIfTooLong() {
    if (lineEnd_ - lineBegin_ > maximumLineLength) {
        ended_ = true;
        noteLongLine();
    }
    return ended_;
}

std::string_view ChunkLineReader::line() const {
    return {lineBegin_, static_cast<std::size_t>(lineEnd_ - lineBegin_)};
}

std::uint64_t ChunkLineReader::lineOffset() const {
    return static_cast<std::uint64_t>(lineBegin_ - buffer_ + base_);
}

bool ChunkLineReader::findLine() {
    lineBegin_ = next_;
    if (next_ == dataEnd_) {
        return false;
    }
    const auto *const feed =
        static_cast<const char *>(std::memchr(next_, '\n', static_cast<std::size_t>(dataEnd_ - next_)));
    if (feed == nullptr) {
        next_ = dataEnd_;
        return false;
    }
    lineEnd_ = feed != lineBegin_ && feed[-1] == '\r' ? feed - 1 : feed;
    next_ = feed + 1;
    return true;
}

bool ChunkLineReader::fill(qint64 fileOffset) {
    qint64 carry = 0;
    if (dataEnd_ != nullptr) {
        carry = dataEnd_ - buffer_ + base_ - fileOffset;
        if (isTooLong(dataEnd_ - carry)) {
            return false;
        }
    }
    if (fileOffset >= size_) {
        return false;
    }
    if (dataEnd_ != nullptr) {
        carryOver(carry);
    }
    char *const mark = buffer_ + carryRoom;
    const ReadResult read = readFully(*device_, mark, readSize);
    if (read.count < readSize) {
        noteShortRead(read.failed, fileOffset + static_cast<qint64>(shortfall_) + carry + read.count);
    }
    if (read.count == 0) {
        return false;
    }
    base_ = fileOffset - carryRoom;
    shortfall_ += static_cast<std::uint64_t>(carry);
    dataEnd_ = mark + std::min(read.count, size_ - fileOffset);
    next_ = mark - carry;
    return true;
}

// Moves the last `carry` bytes to where the next ones are read behind them.
void ChunkLineReader::carryOver(qint64 carry) {
    char *const to = otherMemory_ ? otherMemory_.get() + spareByte : buffer_;
    char *const mark = to + carryRoom;
    std::memmove(mark - carry, dataEnd_ - carry, static_cast<std::size_t>(carry));
    // Should nothing more come, the carried bytes are still where they were in the file.
    base_ += (dataEnd_ - buffer_) - carryRoom;
    dataEnd_ = mark;
    lineBegin_ = lineEnd_ = next_ = mark - carry;
    buffer_ = to;
    if (otherMemory_) {
        std::swap(memory_, otherMemory_);
    }
}

// A cut "\r" may belong to the line end and not to the line.
bool ChunkLineReader::isTooLong(const char *unfinishedLine) const {
    const qint64 length = dataEnd_ - unfinishedLine;
    return length > maximumLineLength && (length > maximumLineLength + spareByte || dataEnd_[-1] != '\r');
}

void ChunkLineReader::noteLongLine() {
    if (!problem_.isEmpty()) {
        return;
    }
    problem_ = QStringLiteral("A line of more than %1 bytes ends the reading at byte %2")
                   .arg(maximumLineLength)
                   .arg(lineOffset() + shortfall_);
}

void ChunkLineReader::jumpTo(std::uint64_t offset) {
    if (dataEnd_ == nullptr || device_->isSequential()) {
        return;
    }
    // One byte earlier, so that what is left of a line does not seem to begin there.
    const qint64 target = static_cast<qint64>(offset) - 1;
    if (target >= heldEnd()) {
        refillFrom(target);
    }
}

bool ChunkLineReader::goTo(std::uint64_t offset) {
    // A read that failed may have left anything in the block.
    if (dataEnd_ == nullptr || (ended_ && !problem_.isEmpty())) {
        return false;
    }
    const auto target = static_cast<qint64>(std::max<std::uint64_t>(offset, 1)) - 1;
    if (target < heldBegin() || (ended_ && target >= heldEnd())) {
        return false;
    }
    if (target < heldEnd()) {
        next_ = buffer_ + carryRoom + (target - heldBegin());
        ended_ = false;
    } else {
        refillFrom(target);
    }
    return true;
}

void ChunkLineReader::refillFrom(qint64 offset) {
    const qint64 position = heldEnd();
    dataEnd_ = lineBegin_ = lineEnd_ = next_ = nullptr;
    shortfall_ = 0;
    if (skipTo(offset, position)) {
        fill(offset);
    }
}

// True offsets of the bytes of the last read.
qint64 ChunkLineReader::heldBegin() const {
    return base_ + carryRoom + static_cast<qint64>(shortfall_);
}

qint64 ChunkLineReader::heldEnd() const {
    return dataEnd_ - buffer_ + base_ + static_cast<qint64>(shortfall_);
}

bool ChunkLineReader::skip(qint64 count) {
    if (dataEnd_ == nullptr) {
        return false;
    }
    if (dataEnd_ - next_ < count && (!fill(next_ - buffer_ + base_) || dataEnd_ - next_ < count)) {
        return false;
    }
    next_ += count;
    return true;
}

void ChunkLineReader::close() {
    finish();
    memory_.reset();
    otherMemory_.reset();
    buffer_ = nullptr;
}

void ChunkLineReader::finish() {
    if (device_) {
        device_->close();
        // A wrong check sum of a member shows only here, after all its bytes have come.
        const auto *const zipped = qobject_cast<const QuaZipFile *>(device_.get());
        if (zipped != nullptr && zipped->getZipError() != UNZ_OK && problem_.isEmpty()) {
            problem_ = QStringLiteral("The archive member \"%1\" is damaged").arg(member_);
        }
        device_.reset();
        member_.clear();
    }
    archive_.reset();
    dataEnd_ = lineBegin_ = lineEnd_ = next_ = nullptr;
}
