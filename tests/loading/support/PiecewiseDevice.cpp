#include "loading/support/PiecewiseDevice.h"

#include <algorithm>
#include <cstring>

PiecewiseDevice::PiecewiseDevice(std::string_view bytes, Behaviour behaviour)
    : bytes_(bytes), behaviour_(behaviour), state_(behaviour.seed) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool PiecewiseDevice::seek(qint64 position) {
    if (behaviour_.refusesToSeek) {
        setErrorString(QStringLiteral("the tape is stuck"));
        return false;
    }
    at_ = position;
    return QIODevice::seek(position);
}

qint64 PiecewiseDevice::readData(char *to, qint64 wanted) {
    qint64 end = size();
    if (behaviour_.endsAt >= 0) {
        end = std::min(end, behaviour_.endsAt);
    }
    if (behaviour_.failsAt >= 0) {
        if (at_ >= behaviour_.failsAt) {
            setErrorString(QStringLiteral("the cable was pulled"));
            return -1;
        }
        end = std::min(end, behaviour_.failsAt);
    }
    qint64 count = std::clamp<qint64>(end - at_, 0, wanted);
    if (behaviour_.largestPiece > 0 && count > 0) {
        state_ = state_ * 1664525U + 1013904223U;
        count = std::min(count, 1 + static_cast<qint64>(state_ >> 8) % behaviour_.largestPiece);
    }
    std::memcpy(to, bytes_.data() + at_, static_cast<std::size_t>(count));
    at_ += count;
    return count;
}
