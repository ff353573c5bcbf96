#pragma once

#include <QIODevice>

#include <cstdint>
#include <string_view>

// A device over bytes in memory that behaves as badly as a device may: it gives less than was asked for,
// does not seek, fails or ends before its size.
class PiecewiseDevice : public QIODevice {
public:
    struct Behaviour {
        bool isSequential = false;
        bool refusesToSeek = false;
        qint64 largestPiece = 0; // bytes given at a time; 0 for all that is asked for
        qint64 failsAt = -1;     // reading from this offset on fails; -1 for never
        qint64 endsAt = -1;      // nothing more comes from this offset on; -1 for the size
        std::uint32_t seed = 1;  // decides the pieces' lengths
    };

    PiecewiseDevice(std::string_view bytes, Behaviour behaviour);

    bool isSequential() const override { return behaviour_.isSequential; }
    qint64 size() const override { return static_cast<qint64>(bytes_.size()); }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *to, qint64 wanted) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    std::string_view bytes_;
    Behaviour behaviour_;
    qint64 at_ = 0;
    std::uint32_t state_;
};
