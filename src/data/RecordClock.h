#pragma once

#include "data/Record.h"
#include "time/Timezone.h"

#include <cstdint>
#include <ctime>

// Gives the records of one block, in order, their time: UTC seconds from the local clock where the file names
// no zone or no seconds, local date and time from the UTC seconds otherwise.
//
// Records of one second share one conversion. That changes no result: a conversion that met its time exactly
// gives the same again at once.
class RecordClock {
public:
    explicit RecordClock(const Timezone &zone) : zone_(zone.fresh()) {}

    // Completes the stamp of a record whose fields have been read.
    void complete(RecordStamp &stamp);

    // True once a local time has been turned into UTC in a named zone. In a repeated hour the result depends
    // on the records before, so only reading from the block's first record gives the same times again.
    bool hasSearchedZone() const { return hasSearchedZone_; }

private:
    void secondsFromLocalTime(RecordStamp &stamp);
    void localTimeFromSeconds(RecordStamp &stamp);

    Timezone zone_;
    RecordStamp last_; // of the last conversion, its UTC seconds and its local time
    bool sharesLocalTime_ = false;
    bool sharesSeconds_ = false;
    bool hasSearchedZone_ = false;
};
