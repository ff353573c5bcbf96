#include "loading/ExecutablePath.h"
#include "time/Timezone.h"
#include "ui/MyMainWindow.h"
#include "ui/icons/ApplicationIcon.h"

#include <QApplication>
#include <QFile>
#include <QTextCodec>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace {

constexpr std::string_view helpText =
    R"(Usage: fvqa300 [FILE...]
       fvqa300 --help | --version

Opens data files of gas analysers (.data, .ghg, .zip) in a window. The options of every Qt
program are understood, such as -style NAME and -platform NAME. Without a window: fvqa300-cli.
)";

// Answers what needs no window; false when that is not asked for.
bool answer(int argumentCount, const char *const *arguments) {
    const std::string_view wish = argumentCount == 2 ? arguments[1] : "";
    if (wish == "--help" || wish == "-h") {
        std::cout << helpText;
        return true;
    }
    if (wish == "--version") {
        std::cout << "fvqa300 " FVQA_VERSION "\n";
        return true;
    }
    return false;
}

// Without a desktop Qt can only give up: with its reason and a status, not with a dump of its memory.
void endWhereThereIsNoDesktop(QtMsgType type, const QMessageLogContext &, const QString &message) {
    std::cerr << message.toStdString() << '\n';
    if (type == QtFatalMsg) {
        std::cerr.flush();
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argc, char **argv) {
    if (answer(argc, argv)) {
        return EXIT_SUCCESS;
    }
#ifdef SIGXFSZ
    // A file that may not grow any more shows as a write error of the export.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // File names are UTF-8, also where the locale says otherwise.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    std::string program;
    if (argc > 0) {
        program = executablePath(argv[0]);
        zoneDirectory = zoneDirectoryFor(program);
    }

    const QtMessageHandler usual = qInstallMessageHandler(endWhereThereIsNoDesktop);
    // Takes its own options out of the arguments.
    const QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setWindowIcon(applicationIcon());
    // By this name desktops that know no window classes find the program's entry, and with it the icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("fvqa300"));
    MyMainWindow window(QStringLiteral("QA-310/320A/330/34xx File Viewer"),
                        QFile::decodeName(program.c_str()), argc, argv);
    window.show();
    return QApplication::exec();
}
