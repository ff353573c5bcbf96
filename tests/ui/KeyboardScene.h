#pragma once

#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/FileItemModel.h"
#include "ui/FileWidget.h"
#include "ui/ModalDialogs.h"
#include "ui/MyMainWindow.h"
#include "ui/SummaryTableWidget.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

// A key goes to the widget that has the focus, as on a real keyboard.
inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget *focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : QApplication::activeWindow(), key, modifiers);
}

inline void typeText(const QString &text) {
    QTest::keyClicks(QApplication::focusWidget(), text);
}

// Presses Tab until `widget` has the focus; false when it is never reached.
inline bool tabTo(const QWidget *widget) {
    constexpr int manyWidgets = 60;
    for (int i = 0; i < manyWidgets && QApplication::focusWidget() != widget; ++i) {
        press(Qt::Key_Tab);
    }
    return QApplication::focusWidget() == widget;
}

inline bool isActive(QWidget *window) {
    window->activateWindow();
    // Not qWaitForWindowActive, for which a window is active when that below it is.
    return QTest::qWaitFor([window] { return QApplication::activeWindow() == window; });
}

inline QString nameOf(QWidget *widget) {
    const QString own = widget->accessibleName(); // a box to choose from speaks of its choice, too
    return own.isEmpty() ? QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name) : own;
}

// A dialog that could not be worked would wait for ever.
inline void leave(QDialog *dialog) {
    if (dialog->isVisible()) {
        dialog->reject();
    }
}

// The names of what Tab reaches, from `first` until it comes round.
inline QStringList tabOrder(QWidget *first) {
    QStringList names;
    first->setFocus();
    do {
        names += nameOf(QApplication::focusWidget());
        press(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 60);
    return names;
}

// By keys, in a plot that has the focus.
inline void chooseTheFirstTenthOfTheTime() {
    press(Qt::Key_Home);
    press(Qt::Key_Return);
    press(Qt::Key_Right, Qt::ControlModifier);
    press(Qt::Key_Return);
}

// By keys, from a main window that is active: what the dialog proposes, into another file.
inline void exportTo(const QString &path) {
    QObject context;
    onNextDialog(&context, [path](QDialog *dialog) {
        const auto guard = qScopeGuard([dialog] { leave(dialog); });
        QVERIFY(isActive(dialog));
        QVERIFY(tabTo(dialog->findChild<QLineEdit *>()));
        press(Qt::Key_A, Qt::ControlModifier);
        typeText(path);
        press(Qt::Key_Return);
    });
    press(Qt::Key_E, Qt::ControlModifier);
}

// The files of a test program: one to load, and settings that are not the user's.
class SceneFiles : public DataFiles {
public:
    // To be called before the first scene; false when there is no place for the settings.
    bool setUp() {
        if (!settings_.isValid()) {
            return false;
        }
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_.path());
        file_ = QFile::encodeName(writeData("1.data", "QA330", "CH4\tTEMP", 5));
        return true;
    }
    // As the command line names it: five records of two variables.
    const QByteArray &file() const { return file_; }

private:
    const QTemporaryDir settings_;
    QByteArray file_;
};

// The whole program, its main window shown.
struct Scene {
    explicit Scene(const QByteArrayList &files = {}, const QByteArray &program = "/nowhere/viewer") {
        QVector<const char *> arguments{program.constData()};
        for (const QByteArray &file : files) {
            arguments += file.constData();
        }
        window = std::make_unique<MyMainWindow>("Viewer", program, arguments.size(), arguments.constData());
        window->show();
    }

    template <typename Widget>
    Widget *the() const {
        return window->findChild<Widget *>();
    }
    QPushButton *button(const QString &text) const {
        for (auto *button : window->findChildren<QPushButton *>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }
    int rows() const { return the<FileItemModel>()->rowCount(); }
    bool isLoaded() const {
        return QTest::qWaitFor([this] { return button("Export...")->isEnabled(); });
    }
    bool showVariables() const {
        the<FileWidget>()->setCurrentIndex(1);
        const bool isThere = isActive(window.get()) &&
                             QTest::qWaitFor([this] { return the<SummaryTableWidget>()->rowCount() > 0; });
        the<SummaryTableWidget>()->setFocus();
        return isThere;
    }
    QPointer<PlotDialog> openPlot() const {
        showVariables();
        press(Qt::Key_Return);
        const QPointer<PlotDialog> plot = the<PlotDialog>();
        return plot && isActive(plot) ? plot : nullptr;
    }

    std::unique_ptr<MyMainWindow> window;
};
