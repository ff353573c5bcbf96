#include "data/UnitTable.h"

#include "data/ColumnLayout.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

TEST(UnitTable, KnowsTheUnitsOfTheAnalysersOwnVariables) {
    ensureSeeded();
    struct Row {
        const char *name;
        const char *unit;
    };
    constexpr std::array rows{
        Row{"MSEC", "msec"},           Row{"CH4D", "mmol/m^3"},
        Row{"CH4", "umol/mol"},        Row{"TEMP", "C"},
        Row{"PRESSURE", "kPa"},        Row{"RSSI", "%"},
        Row{"DROPRATE", "%"},          Row{"DIAG", "DIAG"},
        Row{"REFRSSI", "%"},           Row{"LCTSETPT", "C"},
        Row{"LCTACTUAL", "C"},         Row{"BCTSETPT", "C"},
        Row{"BCTACTUAL", "C"},         Row{"CHASSISTEMP", "C"},
        Row{"CHASSISTCCOLDTEMP", "C"}, Row{"OPTICSTEMP", "C"},
        Row{"OPTICSRH", "RH"},         Row{"SUPPLYVOLTAGE", "V"},
        Row{"CALIBRATING", "BOOL"},    Row{"BOX", "BOOL"},
        Row{"SAMPLESIG", "%"},         Row{"HEATER", "BOOL"},
        Row{"MOTORRPM", "rpm"},        Row{"MOTORDESIRED", "count"},
        Row{"MOTORACTUAL", "count"},
    };
    static_assert(rows.size() == 25);
    for (const Row &row : rows) {
        EXPECT_EQ(unitOf(row.name), row.unit) << row.name;
    }
}

TEST(UnitTable, ANameWithoutAnEntryHasTheEmptyUnitAndMayGetOneLater) {
    EXPECT_EQ(unitOf("UnitTable later"), "");
    setUnit("UnitTable later", "m");
    EXPECT_EQ(unitOf("UnitTable later"), "m");
}

TEST(UnitTable, TheUnitSetLaterWins) {
    setUnit("UnitTable twice", "m");
    setUnit("UnitTable twice", "km");
    EXPECT_EQ(unitOf("UnitTable twice"), "km");
}

TEST(UnitTable, NamesAreComparedBytewise) {
    EXPECT_EQ(unitOf("ch4"), "");
    EXPECT_EQ(unitOf("CH4 "), "");
    const std::string withNul("UnitTable\0a", 11);
    setUnit(withNul, "n");
    EXPECT_EQ(unitOf(withNul), "n");
    EXPECT_EQ(unitOf("UnitTable"), "");
}

TEST(UnitTable, AFilledTableIsNotSeededAgain) {
    ensureSeeded();
    setUnit("MSEC", "changed");
    ensureSeeded();
    EXPECT_EQ(unitOf("MSEC"), "changed");
    setUnit("MSEC", "msec");
}

TEST(UnitTable, LookingUpUnknownNamesAtTheSameTimeIsSafe) {
    // A look-up may add an entry; nothing else here takes the lock and would order the threads.
    ensureSeeded();
    std::array<std::thread, 4> threads;
    std::atomic<int> wrong = 0;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i] = std::thread([i, &wrong] {
            for (int round = 0; round < 200; ++round) {
                const std::string name = "UnitTable unknown " + std::to_string(round);
                wrong += unitOf(name).empty() && unitOf(name + std::to_string(i)).empty() ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(UnitTable, LoadersMayUseTheTableAtTheSameTime) {
    constexpr std::size_t loaders = 4;
    constexpr std::size_t rounds = scaledDown(2000);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(loaders);
    for (std::size_t loader = 0; loader < loaders; ++loader) {
        threads.emplace_back([loader, &wrong] {
            for (std::size_t round = 0; round < rounds; ++round) {
                ensureSeeded();
                // A name of this loader's own, one that all look up, and one that all set to the same unit.
                const std::string own = "T" + std::to_string(loader) + "." + std::to_string(round);
                const std::string shared = "T" + std::to_string(round);
                const ColumnLayout layout =
                    layOutColumns("DATA", {own + " (own)", shared, "CH4", shared + " (s)"}, {});
                wrong += layout.valueUnits == std::vector<std::string>{"own", "", "umol/mol", "s"} ? 0 : 1;
                setUnit(own, own);
                wrong += unitOf(own) == own && unitOf(shared).empty() ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}
