#include "time/Timezone.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>
#include <exception>
#include <iostream>

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // knows the program's folder
    zoneDirectory = QCoreApplication::applicationDirPath().toStdString() + "/zoneinfo";
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception &error) {
        std::cerr << "fvqa300-benchmarks: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
