#include "support/TestMain.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

// The layers of the sources, lowest first: a folder may include its own headers and those of
// folders of lower layers, never higher ones, and no folder includes another in a circle.
// (The build refuses an upward include anyway; this says which include and why.)
class tst_layering : public QObject {
    Q_OBJECT

    struct Include {
        QString from;   // file, relative to src/
        QString header;
        QString written;   // "layer/x.h", or <layer/x.h> as a system header would be
        int line;
    };

    static int rankOf(const QString &layer)
    {
        static const QHash<QString, int> ranks = {{QStringLiteral("base"), 0},   {QStringLiteral("store"), 1},
                                                  {QStringLiteral("domain"), 2}, {QStringLiteral("app"), 3},
                                                  {QStringLiteral("graph"), 3},  {QStringLiteral("windows"), 4},
                                                  {QStringLiteral("cli"), 4},    {QStringLiteral("shell"), 5}};
        return ranks.value(layer, -1);
    }

    // "domain/import" for files of a subsystem folder, else the layer itself.
    static QString unitOf(const QString &path)
    {
        const QStringList parts = path.split(QLatin1Char('/'));
        if ((parts.first() == QLatin1String("domain") || parts.first() == QLatin1String("windows")) && parts.size() > 2)
            return parts.at(0) + QLatin1Char('/') + parts.at(1);
        return parts.first();
    }

    QList<Include> includes()
    {
        const QString src = QStringLiteral(SENDREL_SOURCE_DIR "/src/");
        static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s+(\"([^\"]+)\"|<([^>]+)>)"));
        QList<Include> found;
        QDirIterator it(src, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            QFile f(file);
            if (!f.open(QIODevice::ReadOnly))
                continue;
            int line = 0;
            while (!f.atEnd()) {
                ++line;
                const QRegularExpressionMatch m = include.match(QString::fromUtf8(f.readLine()));
                if (!m.hasMatch())
                    continue;
                // A header in angle brackets is the project's own when it is named from one of its layers.
                const bool angled = m.capturedLength(2) == 0;
                const QString header = angled ? m.captured(3) : m.captured(2);
                if (!angled || rankOf(header.section(QLatin1Char('/'), 0, 0)) >= 0)
                    found.append({file.mid(src.size()), header, m.captured(1), line});
            }
        }
        return found;
    }

private slots:
    void noIncludeGoesUpOrAround()
    {
        const QList<Include> all = includes();
        QVERIFY(all.size() > 100);
        QStringList faults;
        for (const Include &i : all) {
            const QString where = QStringLiteral("%1:%2 includes %3").arg(i.from).arg(i.line).arg(i.written);
            if (i.header.contains(QLatin1String("..")) || !i.header.contains(QLatin1Char('/'))) {
                faults.append(where + QStringLiteral(": headers are named from the source root"));
                continue;
            }
            const QString fromLayer = i.from.section(QLatin1Char('/'), 0, 0);
            const QString toLayer = i.header.section(QLatin1Char('/'), 0, 0);
            if (rankOf(toLayer) < 0)
                faults.append(where + QStringLiteral(": no such layer"));
            else if (fromLayer != toLayer && rankOf(toLayer) >= rankOf(fromLayer))
                faults.append(where + QStringLiteral(": %1 lies below %2").arg(fromLayer, toLayer));
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
    }

    void noFolderIncludesAnotherInACircle()
    {
        QHash<QString, QSet<QString>> edges;
        for (const Include &i : includes()) {
            const QString from = unitOf(i.from);
            const QString to = unitOf(i.header);
            if (from != to)
                edges[from].insert(to);
        }
        // Depth first, with the path kept, so that a circle is named as it runs.
        QHash<QString, int> state;   // 1 on the path, 2 done
        QStringList path;
        QStringList circles;
        std::function<void(const QString &)> visit = [&](const QString &unit) {
            state[unit] = 1;
            path.append(unit);
            for (const QString &next : edges.value(unit)) {
                if (state.value(next) == 1)
                    circles.append((path.mid(path.indexOf(next)) << next).join(QStringLiteral(" -> ")));
                else if (state.value(next) == 0)
                    visit(next);
            }
            path.removeLast();
            state[unit] = 2;
        };
        for (const QString &unit : edges.keys()) {
            if (state.value(unit) == 0)
                visit(unit);
        }
        QVERIFY2(circles.isEmpty(), qPrintable(circles.join(QLatin1Char('\n'))));
    }
};

SENDREL_TEST_MAIN(tst_layering)
#include "tst_layering.moc"
