#include "support/GoldenFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

namespace sendrel::test {

namespace {

QString visible(const QByteArray &line)
{
    QString text = QString::fromUtf8(line);
    text.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    return QLatin1Char('[') + text + QLatin1Char(']');
}

}  // namespace

bool MatchesGolden(const QByteArray &actual, const QString &dataFolder, const QString &relativePath, QString &message)
{
    const QString path = QDir(dataFolder).filePath(relativePath);
    if (qEnvironmentVariableIntValue("SENDREL_REGENERATE") == 1) {
        QDir().mkpath(QFileInfo(path).path());
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || out.write(actual) != actual.size()) {
            message = QStringLiteral("cannot rewrite ") + path;
            return false;
        }
        qWarning("rewrote %s", qPrintable(path));
        return true;
    }

    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        message = QStringLiteral("expected file missing: ") + path;
        return false;
    }
    const QByteArray expected = in.readAll();
    if (expected == actual)
        return true;

    const QList<QByteArray> a = actual.split('\n');
    const QList<QByteArray> e = expected.split('\n');
    for (qsizetype i = 0; i < qMax(a.size(), e.size()); ++i) {
        const QByteArray al = i < a.size() ? a.at(i) : QByteArray("<none>");
        const QByteArray el = i < e.size() ? e.at(i) : QByteArray("<none>");
        if (al != el) {
            message = QStringLiteral("%1 differs at line %2\n   actual: %3\n expected: %4")
                          .arg(relativePath).arg(i + 1).arg(visible(al), visible(el));
            return false;
        }
    }
    message = relativePath + QStringLiteral(" differs");
    return false;
}

}  // namespace sendrel::test
