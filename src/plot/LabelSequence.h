#pragma once

#include <cstdint>
#include <optional>

// Decides for a label which earlier one it may rely on, so that a date is not repeated on every label.
//
// Qwt asks for the labels of an axis in the order first, last, second ... last but one; what is first on the
// axis is known by its coming out of that order. Where times keep growing from one axis to the next, as after
// a zoom to the right, the new first label is not recognised and leaves its date out. Kept with all its
// states: the order is Qwt's affair and differs between its versions.
class LabelSequence {
public:
    // The time whose date is known to who reads the label of `time`; none when its date is to be written out.
    std::optional<std::int64_t> referenceFor(std::int64_t time);

    // 0 before the first label, else how the last one was taken: 1 the first of an axis, 2 its last, 3 its
    // second, 4 one of those between.
    int state() const { return labelState_; }

private:
    int nextState(std::int64_t time);
    int restart(std::int64_t time);

    int labelState_ = 0;
    std::int64_t lastLabelTime_ = 0;
    std::int64_t firstLabelTime_ = 0;
};
