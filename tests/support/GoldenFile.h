#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QTimeZone>

namespace sendrel::test {

inline const QString kCrLf = QStringLiteral("\r\n");

// The clock of the expected reports: the SOURCE_DATE_EPOCH of the tests, 14 Nov 2023 22:13:20.
inline QDateTime FixedClock()
{
    return QDateTime::fromSecsSinceEpoch(1700000000, QTimeZone::utc());
}

// Compares bytes with the expected file <dataFolder>/<relativePath> (tests/data), byte for byte. On a
// difference the message names the first line that differs, with both versions.
// With SENDREL_REGENERATE=1 in the environment the expected file is rewritten instead:
// for use after a reviewed change of the layout, followed by a look at the diff.
bool MatchesGolden(const QByteArray &actual, const QString &dataFolder, const QString &relativePath, QString &message);

}  // namespace sendrel::test

// Fails the test unless the bytes match the expected file.
#define SENDREL_COMPARE_GOLDEN(actual, relativePath)                                   \
    do {                                                                               \
        QString goldenMessage_;                                                        \
        if (!sendrel::test::MatchesGolden((actual), QStringLiteral(SENDREL_TEST_DATA), (relativePath), goldenMessage_))   \
            QFAIL(qPrintable(goldenMessage_));                                         \
    } while (false)
