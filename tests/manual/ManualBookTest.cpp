#include "ManualBook.h"

#include "ManualSource.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <stdexcept>

namespace {

// The output of one of the programs that look into PDF files.
QString outputOf(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        throw std::runtime_error(program.toStdString() +
                                 " failed: " + process.readAllStandardError().toStdString());
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

// A folder with chapters of its own.
class Chapters {
public:
    Chapters() {
        QImage picture(30, 20, QImage::Format_RGB32);
        picture.fill(Qt::red);
        picture.save(dir_.filePath("there.png"));
    }

    QByteArray pdfOf(const QByteArray &text) {
        QFile file(dir_.filePath(QStringLiteral("01-one.md")));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
            throw std::runtime_error("cannot write");
        }
        file.close();
        return makePdf({"title", "subtitle", "1", {}, {file.fileName()}});
    }

    // What is wrong with a manual of this text; empty when nothing is.
    QString problemOf(const QByteArray &text) {
        try {
            pdfOf(text);
        } catch (const std::runtime_error &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    QString save(const QByteArray &pdf) {
        QFile file(dir_.filePath("made.pdf"));
        file.open(QIODevice::WriteOnly);
        file.write(pdf);
        return file.fileName();
    }

private:
    QTemporaryDir dir_;
};

} // namespace

class ManualBookTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theManualHasTenToTwentyPages() {
        const auto pages = QRegularExpression("Pages: +(\\d+)").match(info());
        QVERIFY2(pages.captured(1).toInt() >= 10 && pages.captured(1).toInt() <= 20, qPrintable(info()));
    }

    void theManualIsTitledAndOnA4() {
        QVERIFY2(info().contains("fvqa300 " FVQA_VERSION ": File Viewer for QA-310"), qPrintable(info()));
        QVERIFY2(info().contains("(A4)"), qPrintable(info()));
    }

    void theManualHoldsEveryChapterAndSection() {
        const QString text = words(outputOf("pdftotext", {"-layout", FVQA_MANUAL_PDF, "-"}));
        const auto headings = ManualSource(chapters()).headings();
        QVERIFY(headings.size() > 40);
        for (const auto &heading : headings) {
            // In the contents and above the section itself.
            QVERIFY2(text.count(words(heading.text)) >= 2, qPrintable(heading.text));
        }
    }

    void theManualsPagesOfHeadingsAreThoseOfTheContents() {
        const QString contents =
            words(outputOf("pdftotext", {"-layout", "-f", "2", "-l", "2", FVQA_MANUAL_PDF, "-"}));
        const auto entry = QRegularExpression("From the companion [. ]*(\\d+)").match(contents);
        QVERIFY2(entry.hasMatch(), qPrintable(contents));
        const QString page = entry.captured(1);
        QVERIFY(words(outputOf("pdftotext", {"-f", page, "-l", page, FVQA_MANUAL_PDF, "-"}))
                    .contains("From the companion"));
    }

    void everyFontIsEmbedded() {
        const QStringList lines = outputOf("pdffonts", {FVQA_MANUAL_PDF}).split('\n', Qt::SkipEmptyParts);
        QVERIFY(lines.size() > 3);
        for (const QString &line : lines.mid(2)) {
            QVERIFY2(QRegularExpression("yes +(yes|no) +yes").match(line).hasMatch(), qPrintable(line));
        }
    }

    void theSameSourcesGiveTheSameBytes() {
        const QTemporaryDir dir;
        QList<QByteArray> pdfs;
        for (const char *name : {"a.pdf", "b.pdf"}) {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("SOURCE_DATE_EPOCH", "1559415600");
            environment.insert("ASAN_OPTIONS", "detect_leaks=0");
            QProcess process;
            process.setProcessEnvironment(environment);
            process.start(FVQA_MANUAL_TOOL, QStringList{"1", "", dir.filePath(name)} + chapters());
            QVERIFY(process.waitForFinished(120000) && process.exitCode() == 0);
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            pdfs += file.readAll();
        }
        QVERIFY(pdfs[0].contains("(D:20190601190000Z)"));
        QVERIFY(pdfs[0] == pdfs[1]);
    }

    void aMissingPictureIsNamed() {
        Chapters chapters;
        QVERIFY(chapters.problemOf("# One\n\n![x](gone.png)\n").contains("gone.png"));
        QCOMPARE(chapters.problemOf("# One\n\n![x](there.png)\n"), QString());
    }

    void aLinkThatLeadsNowhereIsNamed() {
        Chapters chapters;
        QVERIFY(chapters.problemOf("# One\n\nSee [two](02-two.md#three).\n").contains("02-two.md#three"));
        QCOMPARE(chapters.problemOf("# One\n\nSee [two](01-one.md#two).\n\n## Two\n\nText.\n"), QString());
    }

    void aLineOfCodeThatWouldBeCutIsNamed() {
        Chapters chapters;
        QVERIFY(chapters.problemOf("# One\n\n```\n" + QByteArray(120, 'x') + "\n```\n").contains("xxx"));
        QCOMPARE(chapters.problemOf("# One\n\n```\n" + QByteArray(90, 'x') + "\n```\n"), QString());
    }

    void linksTellThePage() {
        Chapters chapters;
        const QString path = chapters.save(
            chapters.pdfOf("# One\n\nSee [the other](01-one.md#two) now.\n\n## Two\n\nText.\n"));
        QVERIFY(words(outputOf("pdftotext", {path, "-"})).contains("See the other (page 3) now."));
    }

    void longTablesGoOnWithTheirHeader() {
        QByteArray table = "# One\n\n| alpha | beta |\n|---|---|\n";
        for (int row = 0; row < 100; ++row) {
            table += "| row" + QByteArray::number(row) + "x | value |\n";
        }
        Chapters chapters;
        const QString text = outputOf("pdftotext", {chapters.save(chapters.pdfOf(table)), "-"});
        QVERIFY(text.count("alpha") >= 3);
        for (int row = 0; row < 100; ++row) {
            QCOMPARE(text.count(QStringLiteral("row%1x").arg(row)), 1);
        }
    }

private:
    static QStringList chapters() {
        const QDir folder(FVQA_MANUAL_SOURCE_DIR);
        QStringList paths;
        for (const QString &name : folder.entryList({"*.md"}, QDir::Files, QDir::Name)) {
            paths += folder.filePath(name);
        }
        return paths;
    }
    static QString info() { return outputOf("pdfinfo", {FVQA_MANUAL_PDF}); }
    // Letters that are drawn as one are two again.
    static QString words(const QString &text) {
        return QString(text).remove('`').normalized(QString::NormalizationForm_KC).simplified();
    }
};

QTEST_MAIN(ManualBookTest)
#include "ManualBookTest.moc"
