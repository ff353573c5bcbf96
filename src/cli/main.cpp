#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/HelpTexts.h"
#include "cli/Interrupts.h"
#include "cli/Output.h"
#include "cli/StandardError.h"
#include "loading/ExecutablePath.h"
#include "time/Timezone.h"

#include <QTextCodec>

#include <csignal>
#include <filesystem>
#include <iostream>
#include <unistd.h>

namespace {

constexpr int done = 0;
constexpr int somethingFailed = 1;
constexpr int wrongUsage = 2;

StandardError *standardErrorOfQt = nullptr;

// Warnings of the libraries are shown, but say nothing about what was asked for. Where a desktop would keep
// its sockets is of no interest where there is none.
void showQtMessage(QtMsgType, const QMessageLogContext &, const QString &message) {
    if (message.startsWith(QLatin1String("QStandardPaths: "))) {
        return;
    }
    standardErrorOfQt->remark(message.toStdString());
}

void setZoneDirectory(const Arguments &arguments, const std::string &program) {
    zoneDirectory = arguments.zoneDirectory.value_or(zoneDirectoryFor(executablePath(program)));
    std::error_code error;
    if (!std::filesystem::is_directory(zoneDirectory, error)) {
        std::cerr << zoneDirectory << ": There is no such folder of time zones\n";
    }
}

void run(const Arguments &arguments, const std::string &program, StandardError &standardError) {
    Output output(STDOUT_FILENO, standardError);
    switch (arguments.action) {
    case Arguments::Action::showHelp:
        output.write(helpText(arguments.command));
        break;
    case Arguments::Action::showVersion:
        output.write("fvqa300-cli " FVQA_VERSION "\n");
        break;
    case Arguments::Action::run:
        setZoneDirectory(arguments, program);
        runCommand(arguments, output, standardError);
        break;
    }
    output.finish();
}

int statusOf(const std::string &program, const std::vector<std::string> &arguments,
             StandardError &standardError) {
    try {
        const Arguments parsed = parseArguments(arguments);
        standardError.allowStatus(!parsed.quiet && ::isatty(STDERR_FILENO) != 0);
        run(parsed, program, standardError);
    } catch (const UsageError &error) {
        std::cerr << error.what() << "; see fvqa300-cli --help\n";
        return wrongUsage;
    } catch (const OutputError &error) {
        if (!error.isClosedPipe()) {
            std::cerr << "standard output: " << error.code().message() << '\n';
        }
        return somethingFailed;
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
    }
    return standardError.hasFailures() ? somethingFailed : done;
}

} // namespace

int main(int argc, char **argv) {
    // A pipe that nobody reads, and a file that may not grow any more, show as write errors.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    installInterruptHandling();
    // Names of files are UTF-8, also where the locale says otherwise.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    StandardError standardError(STDERR_FILENO);
    standardErrorOfQt = &standardError;
    qInstallMessageHandler(showQtMessage);

    const std::vector<std::string> words(argv, argv + argc);
    const std::string program = words.empty() ? "fvqa300-cli" : words.front();
    const int status =
        statusOf(program, {words.begin() + (words.empty() ? 0 : 1), words.end()}, standardError);
    qInstallMessageHandler(nullptr);
    return status;
}
