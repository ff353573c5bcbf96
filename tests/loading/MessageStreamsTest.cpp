#include "loading/debugbuf.h"
#include "loading/messagebuf.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <ostream>
#include <thread>
#include <utility>

namespace {

class Lines : public debugbuf {
public:
    QByteArrayList lines;

protected:
    void output(const char *line) override { lines += line; }
};

struct DebugLog {
    QtMsgType type;
    QByteArray category;
    QString text;
};
QVector<DebugLog> debugLog;

void keep(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    debugLog.push_back({type, context.category, text});
}

} // namespace

class MessageStreamsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textWithoutALineFeedIsNeverPassedOn() {
        QByteArrayList passedOn;
        {
            Lines buffer;
            std::ostream stream(&buffer);
            stream << "first\nrest" << std::flush;
            passedOn = buffer.lines;
        }
        QCOMPARE(passedOn, QByteArrayList{"first"});
    }

    void anEmptyLineIsPassedOnAsAnEmptyText() {
        Lines buffer;
        std::ostream stream(&buffer);
        stream << "a\n\nb\n";
        QCOMPARE(buffer.lines, (QByteArrayList{"a", "", "b"}));
    }

    void aLineMayComeInPieces() {
        Lines buffer;
        std::ostream stream(&buffer);
        stream << "Unable to open file: " << 42;
        stream.put(' ').write("xy", 2) << std::endl;
        QCOMPARE(buffer.lines, QByteArrayList{"Unable to open file: 42 xy"});
    }

    void everyByteButTheLineFeedIsKept() {
        Lines buffer;
        QByteArray bytes;
        for (int byte = 1; byte < 256; ++byte) {
            if (byte != '\n') {
                bytes += static_cast<char>(byte);
            }
        }
        std::ostream(&buffer) << bytes.constData() << '\n';
        QCOMPARE(buffer.lines, QByteArrayList{bytes});
    }

    void endOfFileIsReturnedAndIgnored() {
        class Opened : public Lines {
        public:
            using Lines::overflow;
        } buffer;
        QCOMPARE(buffer.overflow('a'), int('a'));
        QCOMPARE(buffer.overflow(Opened::traits_type::eof()), Opened::traits_type::eof());
        QCOMPARE(buffer.overflow('\n'), int('\n'));
        QCOMPARE(buffer.lines, QByteArrayList{"a"});
    }

    void whoeverTakesALineMayWriteToTheStreamAgain() {
        class Echo : public debugbuf {
        public:
            QByteArrayList lines;
            bool echoes = true;

        protected:
            void output(const char *line) override {
                if (std::exchange(echoes, false)) {
                    std::ostream(this) << "echo\n";
                }
                lines += line;
            }
        } buffer;
        std::ostream(&buffer) << "x\n";
        QCOMPARE(buffer.lines, (QByteArrayList{"echo", "x"}));
    }

    void debugLinesReachTheLogAsFormatsOfTheDefaultCategory() {
        debugbuf buffer;
        debugLog.clear();
        const QtMessageHandler before = qInstallMessageHandler(keep);
        std::ostream(&buffer) << "plain\n\n50%% done\n";
        qInstallMessageHandler(before);

        const QStringList expected{"plain", "", "50% done"};
        QCOMPARE(debugLog.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(debugLog[i].type, QtDebugMsg);
            QCOMPARE(debugLog[i].category, QByteArray("default"));
            QCOMPARE(debugLog[i].text, expected[i]);
        }
    }

    void messagebufHasTheOneSignalMessage() {
        const QMetaObject &meta = messagebuf::staticMetaObject;
        QCOMPARE(meta.className(), "messagebuf");
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod method = meta.method(meta.methodOffset());
        QCOMPARE(method.methodSignature(), QByteArray("Message(const char*)"));
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
    }

    void messagebufEmitsEveryLineAsItStandsWhileItIsWritten() {
        messagebuf buffer;
        QByteArrayList lines;
        connect(&buffer, &messagebuf::Message, this, [&lines](const char *line) { lines += line; });
        std::ostream(&buffer) << "100 %s of <b>it</b>\n\nrest";
        QCOMPARE(lines, (QByteArrayList{"100 %s of <b>it</b>", ""}));
    }

    void aLineWrittenOnAnotherThreadArrivesWholeOnTheReceiversThread() {
        messagebuf buffer;
        QByteArrayList lines;
        QThread *receivedOn = nullptr;
        connect(&buffer, &messagebuf::Message, this, [&](const char *line) {
            lines += line;
            receivedOn = QThread::currentThread();
        });
        std::thread([&buffer] { std::ostream(&buffer) << std::string(1000, 'x') << '\n'; }).join();
        QVERIFY(lines.isEmpty());
        QTRY_COMPARE(lines, QByteArrayList{QByteArray(1000, 'x')});
        QCOMPARE(receivedOn, QThread::currentThread());
    }

    void aLineOfAnotherThreadThatOutlivesTheBufferIsDropped() {
        auto buffer = std::make_unique<messagebuf>();
        int lines = 0;
        connect(buffer.get(), &messagebuf::Message, this, [&lines](const char *) { ++lines; });
        std::thread([&buffer] { std::ostream(buffer.get()) << "late\n"; }).join();
        buffer.reset();
        QCoreApplication::processEvents();
        QCOMPARE(lines, 0);
    }
};

QTEST_GUILESS_MAIN(MessageStreamsTest)
#include "MessageStreamsTest.moc"
