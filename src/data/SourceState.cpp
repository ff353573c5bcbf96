#include "data/SourceState.h"

#include <sys/stat.h>
#include <utility>

SourceState::SourceState(std::string path, bool isArchive)
    : path_(std::move(path)), isArchive_(isArchive), stamp_(stampNow()) {}

QString SourceState::change() const {
    const std::optional<Stamp> now = stampNow();
    // Whoever opens a file that is gone says so.
    if (!stamp_ || !now || (now->size == stamp_->size && now->time == stamp_->time)) {
        return {};
    }
    if (!isArchive_ && now->size > stamp_->size && now->node == stamp_->node) {
        return {};
    }
    return QStringLiteral("The file has changed since it was loaded, from %1 to %2 bytes: records that are "
                          "read again may be wrong or missing")
        .arg(stamp_->size)
        .arg(now->size);
}

bool SourceState::isAsItWas() const {
    return stamp_ && stampNow() == stamp_;
}

std::optional<SourceState::Stamp> SourceState::stampNow() const {
    struct stat status {};
    if (::stat(path_.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return Stamp{
        status.st_size, {status.st_mtim.tv_sec, status.st_mtim.tv_nsec}, {status.st_dev, status.st_ino}};
}
