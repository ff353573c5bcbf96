#pragma once

#include <cstddef>
#include <memory>
#include <new>

// Doubles that begin on a cache line, so that no vector of them lies across two.
class AlignedDoubles {
public:
    static constexpr std::size_t perLine = 8;

    AlignedDoubles() = default;
    explicit AlignedDoubles(std::size_t count)
        : values_(static_cast<double *>(::operator new(count * sizeof(double), alignment))) {
        std::uninitialized_fill_n(values_.get(), count, 0.0);
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
