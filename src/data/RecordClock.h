#pragma once

#include "data/Record.h"
#include "time/Timezone.h"

// Gives the records of one block, in order, their time: UTC seconds from the local clock where the file names
// no zone or no seconds, local date and time from the UTC seconds otherwise.
class RecordClock {
public:
    explicit RecordClock(const Timezone &zone) : zone_(zone.fresh()) {}

    // Completes the stamp of a record whose fields have been read.
    void complete(RecordStamp &stamp);

private:
    void secondsFromLocalTime(RecordStamp &stamp);
    void localTimeFromSeconds(RecordStamp &stamp);

    Timezone zone_;
    // The last conversion, which the other records of the same second share.
    bool hasLocal_ = false;
    std::uint32_t localOf_ = 0;
    RecordStamp local_;
    bool hasUtc_ = false;
    RecordStamp utc_;
};
