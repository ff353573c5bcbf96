#include "loading/lines/ChunkLineReader.h"

#include <QFile>
#include <QFileInfo>
#include <quazipfile.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr qint64 carryRoom = ChunkLineReader::maximumLineLength;
constexpr qint64 blockSize = carryRoom + ChunkLineReader::readSize;
// A longest line may be cut between its "\r" and its "\n": that byte is carried over too.
constexpr qint64 spareByte = 1;

// Reads until `wanted` bytes are there or the source ends, so that lines and offsets do not depend on how
// much a device gives at a time. Less than `wanted`, or -1 when nothing came, at the end or after an error.
qint64 readFully(QIODevice &device, char *to, qint64 wanted) {
    qint64 done = 0;
    while (done < wanted) {
        const qint64 got = device.read(to + done, wanted - done);
        if (got < 0 && done == 0) {
            return -1;
        }
        if (got <= 0) {
            break;
        }
        done += got;
    }
    return done;
}

std::unique_ptr<QIODevice> deviceFor(const QString &path, const QString &member) {
    if (member.isEmpty()) {
        return std::make_unique<QFile>(path);
    }
    return std::make_unique<QuaZipFile>(path, member);
}

} // namespace

ChunkLineReader::ChunkLineReader() = default;

ChunkLineReader::~ChunkLineReader() {
    close();
}

bool ChunkLineReader::open(const QString &path, const QString &member, qint64 startOffset) {
    close();
    problem_.clear();
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile()) {
        problem_ = QStringLiteral("The file cannot be found");
        return false;
    }
    auto device = deviceFor(path, member);
    // Plain files are read in large pieces straight into the block; the zip device does not work unbuffered.
    const auto mode = member.isEmpty() ? QIODevice::ReadOnly | QIODevice::Unbuffered : QIODevice::ReadOnly;
    if (!device->open(mode)) {
        problem_ = member.isEmpty()
                       ? QStringLiteral("The file cannot be opened: ") + device->errorString()
                       : QStringLiteral("The archive member \"%1\" cannot be opened").arg(member);
        return false;
    }
    return openDevice(std::move(device), startOffset);
}

bool ChunkLineReader::openDevice(std::unique_ptr<QIODevice> device, qint64 startOffset) {
    close();
    problem_.clear();
    ended_ = false;
    shortfall_ = 0;
    memory_.reset(static_cast<char *>(std::calloc(static_cast<std::size_t>(spareByte + blockSize), 1)));
    if (!memory_) {
        throw std::bad_alloc();
    }
    buffer_ = memory_.get() + spareByte;
    device_ = std::move(device);
    size_ = device_->size();
    if (skipToStart(startOffset)) {
        fill(startOffset);
    }
    return true;
}

bool ChunkLineReader::skipToStart(qint64 startOffset) {
    if (!device_->isSequential()) {
        return startOffset == 0 || device_->seek(startOffset);
    }
    for (qint64 left = startOffset; left > 0;) {
        const qint64 got = device_->read(buffer_, std::min(left, blockSize));
        if (got <= 0) {
            noteReadError(got);
            return false;
        }
        left -= got;
    }
    return true;
}

void ChunkLineReader::noteReadError(qint64 got) {
    if (got < 0) {
        problem_ = QStringLiteral("Reading failed: ") + device_->errorString();
    }
}

bool ChunkLineReader::nextLine() {
    if (dataEnd_ == nullptr || ended_) {
        return false;
    }
    if (!findLine()) {
        const qint64 lineOffset = lineBegin_ - buffer_ + base_;
        if (!fill(lineOffset) || !findLine()) {
            ended_ = true;
            return false;
        }
    }
    if (lineEnd_ - lineBegin_ > maximumLineLength) {
        endAtLongLine();
        return false;
    }
    return true;
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
        if (carry > carryRoom + (dataEnd_[-1] == '\r' ? spareByte : 0)) {
            endAtLongLine();
            return false;
        }
    }
    if (fileOffset >= size_) {
        return false;
    }
    char *const mark = buffer_ + carryRoom;
    if (carry > 0) {
        std::memmove(mark - carry, dataEnd_ - carry, static_cast<std::size_t>(carry));
    }
    const qint64 got = readFully(*device_, mark, readSize);
    if (got <= 0) {
        noteReadError(got);
        return false;
    }
    base_ = fileOffset - carryRoom;
    shortfall_ += static_cast<std::uint64_t>(carry);
    dataEnd_ = mark + std::min(got, size_ - fileOffset);
    next_ = mark - carry;
    return true;
}

void ChunkLineReader::endAtLongLine() {
    ended_ = true;
    problem_ = QStringLiteral("A line of more than %1 bytes ends the reading at byte %2")
                   .arg(maximumLineLength)
                   .arg(lineOffset() + shortfall_);
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
    if (device_) {
        device_->close();
        // A wrong check sum of a member shows only here, after all its bytes have come.
        const auto *const member = qobject_cast<const QuaZipFile *>(device_.get());
        if (member != nullptr && member->getZipError() != UNZ_OK && problem_.isEmpty()) {
            problem_ = QStringLiteral("The archive member \"%1\" is damaged").arg(member->getFileName());
        }
        device_.reset();
    }
    memory_.reset();
    buffer_ = nullptr;
    dataEnd_ = lineBegin_ = lineEnd_ = next_ = nullptr;
}
