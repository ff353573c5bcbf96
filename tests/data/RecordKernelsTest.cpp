#include "data/RecordKernels.h"

#include "EveryLevel.h"
#include "RandomFields.h"
#include "data/Accumulator.h"
#include "support/HeapText.h"
#include "support/RandomNumbers.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

namespace {

double randomValue(RandomNumbers &random) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    static constexpr std::array specials{
        0.0,          -0.0,         infinity,           -infinity, std::numeric_limits<double>::quiet_NaN(),
        emptyMinimum, emptyMaximum, 9007199254740993.0, 1e-300};
    return random.oneIn(30) ? random.pick(specials)
                            : static_cast<float>(random.between(-1000000, 1000000)) * 1e-3F;
}

// All that is kept about some columns.
class Columns {
public:
    explicit Columns(std::size_t count)
        : count_(count), sums_(count), compensations_(count), minima_(count), maxima_(count) {
        std::fill_n(minima_.data(), count, emptyMinimum);
        std::fill_n(maxima_.data(), count, emptyMaximum);
    }

    ColumnSums view() { return {sums_.data(), compensations_.data(), minima_.data(), maxima_.data()}; }

    testing::AssertionResult isSameAs(const Columns &other) const {
        for (const auto part :
             {&Columns::sums_, &Columns::compensations_, &Columns::minima_, &Columns::maxima_}) {
            const double *const values = (this->*part).data();
            if (!std::equal(values, values + count_, (other.*part).data(), isSameNumber)) {
                return testing::AssertionFailure();
            }
        }
        return testing::AssertionSuccess();
    }

private:
    std::size_t count_;
    AlignedDoubles sums_;
    AlignedDoubles compensations_;
    AlignedDoubles minima_;
    AlignedDoubles maxima_;
};

} // namespace

TEST(RecordKernels, SumAndWidenEveryColumnAsThePlainOnesDo) {
    const EveryLevel levels;
    RandomNumbers random(21);
    for (std::size_t round = scaledDown(3000); round > 0; --round) {
        const std::size_t count = random.below(50);
        std::vector<std::vector<double>> records(1 + random.below(40), std::vector<double>(count));
        for (auto &record : records) {
            std::generate(record.begin(), record.end(), [&] { return randomValue(random); });
        }
        Columns expected(count);
        for (const auto &record : records) {
            plainKernels()->addColumns(count, record.data(), expected.view());
        }
        for (const VectorLevel level : EveryLevel::available()) {
            useVectorLevel(level);
            Columns added(count);
            for (const auto &record : records) {
                recordKernels().addColumns(count, record.data(), added.view());
            }
            ASSERT_TRUE(added.isSameAs(expected)) << count << " columns, level " << static_cast<int>(level);
        }
    }
}

TEST(RecordKernels, FindTheFieldsThatThePlainOnesFind) {
    const EveryLevel levels;
    RandomFields lines(22);
    RandomNumbers random(23);
    for (std::size_t round = scaledDown(200'000); round > 0; --round) {
        const std::string line =
            random.oneIn(10) ? std::string(random.below(200), '\t') : lines.line(random.below(90));
        const HeapText text(line);
        const char *const from = text.begin() + random.below(line.size() + 1);
        const auto wanted = static_cast<std::uint32_t>(1 + random.below(FieldEnds::most));
        FieldEnds expected;
        const std::uint32_t count =
            plainKernels()->findFields(text.begin(), from, text.end(), wanted, expected);
        for (const VectorLevel level : EveryLevel::available()) {
            useVectorLevel(level);
            FieldEnds fields;
            std::fill(std::begin(fields.ends), std::end(fields.ends), -7); // nothing that is left from before
            ASSERT_EQ(recordKernels().findFields(text.begin(), from, text.end(), wanted, fields), count);
            ASSERT_TRUE(std::equal(fields.ends, fields.ends + count + 1, expected.ends))
                << testing::PrintToString(line) << ' ' << static_cast<int>(level);
        }
    }
}

TEST(RecordKernels, SumTheBytesThatThePlainOnesSum) {
    const EveryLevel levels;
    RandomNumbers random(24);
    for (std::size_t round = scaledDown(100'000); round > 0; --round) {
        std::string bytes(random.below(400), '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random.bits()); });
        const HeapText text(bytes);
        const std::uint8_t expected = plainKernels()->sumBytes(text.begin(), text.end());
        for (const VectorLevel level : EveryLevel::available()) {
            useVectorLevel(level);
            ASSERT_EQ(recordKernels().sumBytes(text.begin(), text.end()), expected)
                << bytes.size() << " bytes, level " << static_cast<int>(level);
        }
    }
}
