#include "ui/icons/ApplicationIcon.h"

#include <QDir>

// A library's resources are known only after this call, which must stand outside of every namespace.
static void registerPictures() {
    Q_INIT_RESOURCE(application_icon);
}

QIcon applicationIcon() {
    registerPictures();
    QIcon icon;
    const QDir pictures(QStringLiteral(":/application-icon"));
    for (const QString &name : pictures.entryList(QDir::Files)) {
        icon.addFile(pictures.filePath(name));
    }
    return icon;
}
