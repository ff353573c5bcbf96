#pragma once

#include <cstddef>
#include <memory>
#include <new>

// Doubles on whole cache lines, so that no vector of them lies across two, nor reaches beyond their memory.
class AlignedDoubles {
public:
    static constexpr std::size_t perLine = 8;

    AlignedDoubles() = default;
    explicit AlignedDoubles(std::size_t count)
        : values_(static_cast<double *>(::operator new(roundedUp(count) * sizeof(double), alignment))) {
        std::uninitialized_fill_n(values_.get(), roundedUp(count), 0.0);
    }

    static constexpr std::size_t roundedUp(std::size_t count) {
        return (count + perLine - 1) / perLine * perLine;
    }

    double *data() { return values_.get(); }
    const double *data() const { return values_.get(); }

private:
    static constexpr std::align_val_t alignment{perLine * sizeof(double)};

    struct Free {
        void operator()(double *values) const { ::operator delete(values, alignment); }
    };

    std::unique_ptr<double, Free> values_;
};
