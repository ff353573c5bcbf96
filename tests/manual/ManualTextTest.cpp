#include "ManualSource.h"
#include "manual/Labels.h"
#include "manual/SourceTexts.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <gtest/gtest.h>

namespace {

const QDir manual(QStringLiteral(FVQA_MANUAL_SOURCE_DIR));
const QDir sources(QStringLiteral(FVQA_SOURCE_DIR));

QString contentOf(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList chapters() {
    QStringList paths;
    for (const QString &name : manual.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name)) {
        paths += manual.filePath(name);
    }
    return paths;
}

QStringList allOf(const QString &pattern, const QString &text) {
    QStringList found;
    for (auto at = QRegularExpression(pattern).globalMatch(text); at.hasNext();) {
        found += at.next().captured(1);
    }
    return found;
}

// What stands in the first column of the tables of messages.
QStringList listedMessages() {
    QStringList messages;
    for (const QString &row : allOf(QStringLiteral("(?m)^\\| (`[^|]*) \\|"),
                                    contentOf(manual.filePath(QStringLiteral("09-messages.md"))))) {
        messages += allOf(QStringLiteral("`([^`]+)`"), row);
    }
    return messages;
}

// Of the programs' texts, what stands between their variable parts.
QStringList fragmentsOf(const QString &path) {
    QStringList fragments;
    for (const QString &text : textsOf(contentOf(path))) {
        for (const QString &fragment : text.split(QRegularExpression(QStringLiteral("%\\d|\\n")))) {
            if (fragment.startsWith(QLatin1String(": ")) && fragment.size() > 3) {
                fragments += fragment.mid(2); // a file's name stands in front
            }
            fragments += fragment;
        }
    }
    fragments.removeAll(QString());
    return fragments;
}

QStringList sourceFiles(const QStringList &folders) {
    QStringList paths;
    for (const QString &folder : folders) {
        QDirIterator at(sources.filePath(folder), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (at.hasNext()) {
            paths += at.next();
        }
    }
    return paths;
}

// Whether `text` is made of `fragments`, one behind the other. Words are not made of their letters.
bool isMadeOf(const QString &text, const QSet<QString> &fragments) {
    std::vector<bool> reached(static_cast<std::size_t>(text.size()) + 1, false);
    reached[0] = true;
    for (int end = 1; end <= text.size(); ++end) {
        for (int begin = 0; begin < end && !reached[static_cast<std::size_t>(end)]; ++begin) {
            reached[static_cast<std::size_t>(end)] =
                reached[static_cast<std::size_t>(begin)] && fragments.contains(text.mid(begin, end - begin));
        }
    }
    return reached.back();
}

TEST(ManualText, EveryPictureThatIsNamedIsThere) {
    QStringList named;
    for (const QString &chapter : chapters()) {
        named += allOf(QStringLiteral("!\\[[^\\]]*\\]\\(([^)]*)\\)"), contentOf(chapter));
    }
    EXPECT_GE(named.size(), 10);
    for (const QString &picture : named) {
        EXPECT_TRUE(QFile::exists(manual.filePath(picture))) << picture.toStdString();
    }
}

TEST(ManualText, EveryLinkLeadsToAChapterOrSection) {
    QSet<QString> addresses;
    const ManualSource source(chapters());
    for (const auto &heading : source.headings()) {
        EXPECT_FALSE(addresses.contains(heading.address)) << heading.address.toStdString() << " stands twice";
        addresses.insert(heading.address);
    }
    int links = 0;
    for (const QString &chapter : chapters()) {
        for (const QString &address :
             allOf(QStringLiteral("(?<!!)\\[[^\\]]*\\]\\(([^)]*)\\)"), contentOf(chapter))) {
            ++links;
            EXPECT_TRUE(addresses.contains(address) || address.startsWith(QLatin1String("https://")))
                << chapter.toStdString() << ": " << address.toStdString();
        }
    }
    EXPECT_GE(links, 5);
}

TEST(ManualText, EveryListedMessageStandsInTheSources) {
    QSet<QString> fragments;
    for (const QString &path : sourceFiles({QStringLiteral(".")})) {
        for (const QString &fragment : fragmentsOf(path)) {
            const bool hasLetters = fragment.contains(QRegularExpression(QStringLiteral("[A-Za-z]")));
            if (!hasLetters || fragment.size() >= 4) {
                fragments.insert(fragment);
            }
        }
    }
    const QStringList messages = listedMessages();
    EXPECT_GE(messages.size(), 70);
    for (const QString &message : messages) {
        for (const QString &part : message.split(QChar(0x2026))) { // the mark of what is variable
            EXPECT_TRUE(isMadeOf(part, fragments))
                << message.toStdString() << ": no source says \"" << part.toStdString() << '"';
        }
    }
}

// Of three words and more: what else there is are names and parts of other texts.
QSet<QString> messagesOf(const QString &path) {
    static const QRegularExpression words(
        QStringLiteral("[A-Za-z]{2,}[^A-Za-z]+[a-z]{2,}[^A-Za-z]+[A-Za-z]{2,}"));
    // A path, the language of a page, a file dialog or a drag, or what stands behind every message of its
    // kind.
    static const QRegularExpression other(QStringLiteral("^(: |/|<|; see|PNG \\(|text/)"));
    QSet<QString> messages;
    for (const QString &fragment : fragmentsOf(path)) {
        if (!fragment.contains(other) && fragment.contains(words)) {
            messages.insert(fragment.trimmed());
        }
    }
    return messages;
}

TEST(ManualText, EveryMessageOfTheSourcesIsListed) {
    const QString listed = listedMessages().join(QLatin1Char('\n'));
    // What the companion can do, what an export may be, and the style of the first page.
    const QStringList others{QStringLiteral("HelpTexts.cpp"), QStringLiteral("ExportChoices.h"),
                             QStringLiteral("AboutWidget.cpp")};
    int found = 0;
    QSet<QString> unusedLabels(labels.begin(), labels.end());
    for (const QString &path : sourceFiles({QStringLiteral(".")})) {
        for (const QString &message : messagesOf(path)) {
            const bool isLabel = labels.contains(message);
            unusedLabels.remove(message);
            if (isLabel || others.contains(QFileInfo(path).fileName())) {
                continue;
            }
            ++found;
            EXPECT_TRUE(listed.contains(message))
                << path.toStdString() << ": the manual's chapter of messages does not list \""
                << message.toStdString() << '"';
        }
    }
    EXPECT_GE(found, 60);
    EXPECT_TRUE(unusedLabels.isEmpty())
        << "no source says \"" << unusedLabels.values().join(QLatin1Char('\n')).toStdString() << '"';
}

TEST(SourceTexts, AreJoinedUnescapedAndWithoutComments) {
    EXPECT_EQ(textsOf(QStringLiteral(
                  "#include \"x.h\"\n// \"no\"\nf(\"a \\\"b\\\"\" // \"no\"\n \" c\", '\"', \"d\");")),
              (QStringList{QStringLiteral("a \"b\" c"), QStringLiteral("d")}));
}

} // namespace
