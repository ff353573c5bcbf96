#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The bits of the QA-330's diagnostic word, lowest first.
inline constexpr std::array<std::string_view, 12> qa330DiagnosticNames{
    "SETTLING", "NOSIGNAL",    "REFUNLOCKED",    "LASERDRIFT",  "BLOCKDRIFT", "MOTORSPINNING",
    "PUMPON",   "TOPHEATERON", "BOTTOMHEATERON", "CALIBRATING", "LOWSUPPLY",  "BOXCONNECTED",
};

enum Qa330Bit : std::uint32_t {
    SettlingBit = 1U << 0U,
    NoSignalBit = 1U << 1U,
    RefUnlockedBit = 1U << 2U,
    LaserDriftBit = 1U << 3U,
    BlockDriftBit = 1U << 4U,
    MotorSpinningBit = 1U << 5U,
    PumpOnBit = 1U << 6U,
    TopHeaterOnBit = 1U << 7U,
    BottomHeaterOnBit = 1U << 8U,
    CalibratingBit = 1U << 9U,
    LowSupplyBit = 1U << 10U,
    BoxConnectedBit = 1U << 11U,
};
