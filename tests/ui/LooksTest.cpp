// Every window's texts, whole and legible. Run at a scale of 1 and of 2.

#include "loading/QDataSet.h"
#include "plot/PlotDialog.h"
#include "time/Timezone.h"
#include "ui/DataFiles.h"
#include "ui/ExportProgressDialog.h"
#include "ui/ExportWhatDialog.h"
#include "ui/FrameWindow.h"
#include "ui/TextLegibility.h"

#include <QLabel>
#include <QPainter>
#include <QScopeGuard>
#include <QStyleFactory>
#include <QTableWidget>
#include <QtTest>

namespace {

QPalette darkPalette() {
    QPalette dark(QColor(53, 53, 53));
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::ButtonText, Qt::white);
    return dark;
}

// What an empty view is to look like.
class Sheet : public QWidget {
public:
    Sheet(const QAbstractScrollArea &view, const QString &text) : text_(text) {
        setPalette(view.palette());
        setFont(view.font());
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
        resize(view.viewport()->size());
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, text_);
    }

private:
    const QString text_;
};

// Where a picture of each window goes, to be looked at; nowhere unless set.
void keepPicture(QWidget &window, const QString &name) {
    const QString folder = qEnvironmentVariable("FVQA_LOOKS_FOLDER");
    if (!folder.isEmpty()) {
        window.grab().save(
            QDir(folder).filePath(name + QStringLiteral("-%1.png").arg(window.devicePixelRatioF())));
    }
}

} // namespace

class LooksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        const QString factor = qEnvironmentVariable("QT_SCALE_FACTOR");
        QCOMPARE(qApp->devicePixelRatio(), factor.isEmpty() ? 1.0 : factor.toDouble());
        QSignalSpy loaded(&dataSet_, SIGNAL(FileLoaded(QString)));
        for (const char *instrument : {"QA330", "QA340"}) {
            const QString name = QString::fromLatin1(instrument) + ".data";
            dataSet_.AddFile(files_.writeData(name, instrument, "CH4\tAMBIENT TEMPERATURE", 50));
        }
        QTRY_COMPARE(loaded.size(), 2);
    }
    void cleanup() { QApplication::setPalette(QApplication::style()->standardPalette()); }

    void noTextIsCutOrFaint_data() {
        QTest::addColumn<bool>("isDark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void noTextIsCutOrFaint() {
        QFETCH(bool, isDark);
        if (isDark) {
            QApplication::setPalette(darkPalette());
        }
        const QString desktop = isDark ? "dark" : "light";
        {
            FrameWindow window;
            check(window.window, 4, "about-" + desktop);
        }
        checkTabs(desktop);
        {
            ExportWhatDialog dialog(nullptr, 12);
            dialog.fillList({"QA330:DATA", "QA340:DATASTAT"});
            check(dialog, 15, "export-" + desktop);
        }
        {
            ExportProgressDialog dialog(nullptr, dataSet_, "QA330");
            dialog.showFile(files_.path("QA330-2019-06-01T130000-data.txt").toStdString());
            check(dialog, 3, "progress-" + desktop);
        }
        QPointer<PlotDialog> plot = new PlotDialog(nullptr, &dataSet_, "QA330:DATA:CH4");
        const auto guard = qScopeGuard([&plot] { delete plot; });
        plot->addVariable("QA340:DATA:AMBIENT TEMPERATURE", TimeSeriesPlot::Side::right);
        check(*plot, 10, "plot-" + desktop);
    }

    void aTextThatIsCutIsFound() {
        QWidget window;
        auto *label = new QLabel("A long text", &window);
        label->resize(label->sizeHint());
        window.resize(400, 100);
        window.show();
        QCOMPARE(cutTexts(window), QStringList());
        label->resize(label->width() - 1, label->height());
        QCOMPARE(cutTexts(window).size(), 1);
        label->resize(label->sizeHint());
        label->move(400 - label->width() + 1, 0);
        QCOMPARE(cutTexts(window).size(), 1);
        auto *button = new QPushButton("A button", &window);
        button->resize(30, button->sizeHint().height());
        button->show();
        QCOMPARE(cutTexts(window).size(), 2);
    }

    void aTextThatIsFaintIsFound() {
        for (const QColor &colour : {QColor(Qt::black), QColor(Qt::lightGray)}) {
            QWidget window;
            const QLabel label("A long text", &window);
            QPalette palette(Qt::white);
            palette.setColor(QPalette::Window, Qt::white);
            palette.setColor(QPalette::WindowText, colour);
            window.setPalette(palette);
            window.resize(400, 100);
            window.show();
            QCOMPARE(faintTexts(window).size(), colour == QColor(Qt::black) ? 0 : 1);
        }
    }

    void anEmptyListAnEmptyTableAndEmptyMessagesSayWhatToDo() {
        const FrameWindow window;
        window.frame->AddFiles({"/nowhere/absent.data"}); // the tabs show
        QTRY_VERIFY(!window.messages().isEmpty());
        auto *messages = window.frame->findChild<QTextEdit *>();
        messages->clear();
        QCOMPARE(messages->placeholderText(), "What is wrong with a file or an export shows here");
        window.tabs()->setCurrentIndex(1);
        auto *table = window.frame->findChild<QTableWidget *>();
        QVERIFY(isWritten(*table, "The variables of the files that you add show here"));
        window.view()->selectAll();
        window.frame->OnCloseFile();
        QVERIFY(isWritten(*window.view(), "Drop files here or choose them with +"));
        window.frame->AddFiles({files_.path("QA330.data")});
        QTRY_VERIFY(table->rowCount() > 0);
        QVERIFY(!isWritten(*table, "The variables of the files that you add show here"));
        QVERIFY(!isWritten(*window.view(), "Drop files here or choose them with +"));
    }

private:
    void checkTabs(const QString &desktop) {
        FrameWindow window;
        window.frame->AddFiles({files_.path("QA330.data"), files_.path("QA340.data")});
        QTRY_VERIFY(window.pushButton("Export...")->isEnabled());
        for (int tab = 0; tab < window.tabs()->count(); ++tab) {
            window.tabs()->setCurrentIndex(tab);
            check(window.window, 6, "tab-" + QString::number(tab) + '-' + desktop);
        }
    }

    static void check(QWidget &window, int fewest, const QString &name) {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        keepPicture(window, name);
        QVERIFY2(textCount(window) >= fewest, qPrintable(name + QString::number(textCount(window))));
        const QStringList cut = cutTexts(window);
        QVERIFY2(cut.isEmpty(), qPrintable(name + ": " + cut.join("; ")));
        const QStringList faint = faintTexts(window);
        QVERIFY2(faint.isEmpty(), qPrintable(name + ": " + faint.join("; ")));
    }

    // Whether the view looks like an empty sheet with just this text in its middle.
    static bool isWritten(QAbstractScrollArea &view, const QString &text) {
        Sheet sheet(view, text);
        return view.viewport()->grab().toImage() == sheet.grab().toImage();
    }

    const DataFiles files_{};
    QDataSet dataSet_;
};

QTEST_MAIN(LooksTest)
#include "LooksTest.moc"
