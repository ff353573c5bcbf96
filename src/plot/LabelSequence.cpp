#include "plot/LabelSequence.h"

std::optional<std::int64_t> LabelSequence::referenceFor(std::int64_t time) {
    labelState_ = nextState(time);
    const std::int64_t previous = lastLabelTime_;
    lastLabelTime_ = time;
    switch (labelState_) {
    case 1:
        return std::nullopt;
    case 4:
        return previous;
    default:
        return firstLabelTime_;
    }
}

int LabelSequence::nextState(std::int64_t time) {
    const bool isLater = lastLabelTime_ < time;
    const bool isNoEarlier = lastLabelTime_ <= time;
    switch (labelState_) {
    case 1:
        return isLater ? 2 : 1;
    case 2:
        if (isNoEarlier) {
            return 2;
        }
        return firstLabelTime_ < time ? 3 : restart(time);
    case 3:
    case 4:
        return isNoEarlier ? 4 : restart(time);
    default:
        return restart(time);
    }
}

int LabelSequence::restart(std::int64_t time) {
    firstLabelTime_ = time;
    return 1;
}
