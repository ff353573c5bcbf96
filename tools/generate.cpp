// fvqa300-generate: makes example and benchmark data.

#include "tools/ArchiveWriter.h"
#include "tools/FileSink.h"
#include "tools/GenerateOptions.h"
#include "tools/Qa330Writer.h"
#include "tools/Qa34xxWriter.h"

#include <QCoreApplication>
#include <QFile>

#include <iostream>
#include <memory>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

std::unique_ptr<DataFileWriter> makeRecorder(const GenerateOptions &options) {
    Timezone zone(options.zone);
    if (options.kind == OutputKind::Qa330) {
        return std::make_unique<Qa330Writer>(options.recording, std::move(zone));
    }
    return std::make_unique<Qa34xxWriter>(options.recording, std::move(zone));
}

void generate(const GenerateOptions &options) {
    const std::unique_ptr<DataFileWriter> recorder = makeRecorder(options);
    if (options.kind == OutputKind::Archives) {
        writeArchives(*recorder, options.recording, options.archives, options.output);
        return;
    }
    FileSink file(options.output);
    recorder->write(file, options.length, options.archives.namelessEvery != 1);
    file.close();
}

int complain(const std::exception &error, int status) {
    std::cerr << "fvqa300-generate: " << error.what() << '\n';
    if (status == wrongUsage) {
        std::cerr << "fvqa300-generate: see --help\n";
    }
    return status;
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // knows the program's folder
    zoneDirectory = QFile::encodeName(QCoreApplication::applicationDirPath() + "/zoneinfo").toStdString();
    try {
        const GenerateOptions options =
            parseGenerateOptions({argv + 1, static_cast<std::size_t>(argc > 0 ? argc - 1 : 0)});
        if (options.help) {
            std::cout << generateHelp();
            return 0;
        }
        generate(options);
        return 0;
    } catch (const UsageError &error) {
        return complain(error, wrongUsage);
    } catch (const Timezone::Error &error) {
        return complain(UsageError(std::string("--zone: ") + error.what()), wrongUsage);
    } catch (const std::exception &error) {
        return complain(error, failed);
    }
}
