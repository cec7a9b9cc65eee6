#include "base/SafeFileName.h"

#include <QCryptographicHash>

namespace sendrel {

namespace {

constexpr qsizetype kLongest = 150;
constexpr qsizetype kKept = 140;

bool refused(QChar c)
{
    static const QString kRefused = QStringLiteral("/\\:*?\"<>|%");
    return c.unicode() < 32 || c.unicode() == 127 || kRefused.contains(c);
}

// Only characters below 128 are ever escaped, so two hex digits hold each.
QString escaped(QChar c)
{
    return QLatin1Char('%') + QStringLiteral("%1").arg(c.unicode(), 2, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString SafeFileStem(const QString &runId)
{
    QString stem;
    stem.reserve(runId.size());
    for (qsizetype i = 0; i < runId.size(); ++i) {
        const QChar c = runId.at(i);
        const bool dotOfConcern = c == QLatin1Char('.') && (i == 0 || runId.at(i - 1) == QLatin1Char('.'));
        const bool trailingBlank = c == QLatin1Char(' ') && i == runId.size() - 1;
        stem += refused(c) || dotOfConcern || trailingBlank ? escaped(c) : QString(c);
    }
    if (stem.size() > kLongest) {
        const QByteArray hash = QCryptographicHash::hash(runId.toUtf8(), QCryptographicHash::Sha1).toHex().left(8);
        qsizetype kept = kKept;
        if (stem.at(kept - 1).isHighSurrogate())
            --kept;
        stem = stem.left(kept) + QLatin1Char('~') + QString::fromLatin1(hash);
    }
    return stem;
}

}  // namespace sendrel
