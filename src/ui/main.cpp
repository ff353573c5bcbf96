#include "loading/ExecutablePath.h"
#include "time/Timezone.h"
#include "ui/MyMainWindow.h"
#include "ui/icons/ApplicationIcon.h"

#include <QApplication>
#include <QFile>
#include <QTextCodec>

#include <csignal>

int main(int argc, char **argv) {
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

    // Takes its own options out of the arguments.
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(applicationIcon());
    // By this name desktops that know no window classes find the program's entry, and with it the icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("fvqa300"));
    MyMainWindow window(QStringLiteral("QA-310/320A/330/34xx File Viewer"),
                        QFile::decodeName(program.c_str()), argc, argv);
    window.show();
    return QApplication::exec();
}
