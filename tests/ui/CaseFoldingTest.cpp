#include "ui/CaseFolding.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

bool areEqual(const QString &a, const QString &b) {
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

QString textOf(uint codePoint) {
    return codePoint < 0x10000 ? QString(QChar(codePoint)) : QString::fromUcs4(&codePoint, 1);
}

// Sorted by the comparison, equal texts stand together, so neighbours tell about all pairs.
void expectNeighboursToAgree(std::vector<QString> texts) {
    std::sort(texts.begin(), texts.end(), [](const QString &a, const QString &b) {
        return QString::compare(a, b, Qt::CaseInsensitive) < 0;
    });
    int equalPairs = 0;
    for (std::size_t i = 1; i < texts.size(); ++i) {
        const bool equal = areEqual(texts[i - 1], texts[i]);
        equalPairs += equal ? 1 : 0;
        ASSERT_EQ(caseFolded(texts[i - 1]) == caseFolded(texts[i]), equal)
            << texts[i - 1].toUtf8().toHex().constData() << " and " << texts[i].toUtf8().toHex().constData();
    }
    EXPECT_GT(equalPairs, 0);
}

TEST(CaseFolding, AgreesWithTheComparisonForAllCodePointsOfTheBasicPlane) {
    std::vector<QString> texts;
    for (uint codePoint = 0; codePoint < 0x10000; ++codePoint) {
        texts.push_back(textOf(codePoint));
    }
    expectNeighboursToAgree(std::move(texts));
}

TEST(CaseFolding, AgreesWithTheComparisonForAllCodePointsOfTheSupplementaryPlane) {
    std::vector<QString> texts;
    for (uint codePoint = 0x10000; codePoint < 0x20000; ++codePoint) {
        texts.push_back(textOf(codePoint));
    }
    expectNeighboursToAgree(std::move(texts));
}

TEST(CaseFolding, AgreesWithTheComparisonForTextsOfThreeUnits) {
    // Cases, full foldings that are not to count, title case, surrogates alone and in pairs (Deseret
    // letters).
    const ushort units[] = {'a',   'A',    's',    0xDF,  0x1E9E, 0x130,  0x131,  0x1C5,  0x3C3,
                            0x3C2, 0xFB01, 0x2126, 0x3C9, 0xD801, 0xD800, 0xDC00, 0xDC28, 0x300};
    std::vector<QString> texts;
    for (const ushort a : units) {
        for (const ushort b : units) {
            for (const ushort c : units) {
                texts.push_back(QString(QChar(a)) + QChar(b) + QChar(c));
            }
        }
    }
    expectNeighboursToAgree(std::move(texts));
}

TEST(CaseFolding, OfPaths) {
    EXPECT_EQ(caseFolded("C:/d/X.data"), caseFolded("c:/D/x.DATA"));
    EXPECT_NE(caseFolded("C:/d/x.data"), caseFolded("C:\\d\\x.data"));
    EXPECT_NE(caseFolded("x"), caseFolded("xx"));
    EXPECT_EQ(caseFolded(""), U"");
    EXPECT_NE(caseFolded(QStringLiteral("stra\u00dfe")), caseFolded("strasse"));
}

} // namespace
