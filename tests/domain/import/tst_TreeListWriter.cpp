#include "support/TestMain.h"
#include "domain/import/TreeListReader.h"
#include "domain/import/TreeListWriter.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QMap>
#include <QTest>

using namespace sendrel;

namespace {

struct Lists {
    QByteArray standing;
    QByteArray harvested;
    SampleListCounts counts;
};

Lists write(const SampleStandOptions &options)
{
    Lists l;
    QBuffer s(&l.standing);
    QBuffer h(&l.harvested);
    s.open(QIODevice::WriteOnly);
    h.open(QIODevice::WriteOnly);
    l.counts = WriteSampleTreeLists(options, s, h);
    return l;
}

}  // namespace

class tst_TreeListWriter : public QObject {
    Q_OBJECT

private slots:
    void sameSeedSameBytes()
    {
        SampleStandOptions o;
        const Lists a = write(o);
        const Lists b = write(o);
        QCOMPARE(a.standing, b.standing);
        QCOMPARE(a.harvested, b.harvested);
        o.seed = 2;
        QVERIFY(write(o).standing != a.standing);
    }

    void theListsReadBackAsTheyWereMeant()
    {
        SampleStandOptions o;
        o.cycles = 6;
        o.recordsPerCycle = 200;
        o.thinningCycle = 3;
        const Lists l = write(o);
        QCOMPARE(l.counts.cycles, 6);
        QCOMPARE(l.counts.standingRecords, 6 * 200);
        QVERIFY(l.counts.harvestedRecords > 20);

        for (const QByteArray *text : {&l.standing, &l.harvested}) {
            QVERIFY(text->endsWith("\r\n"));
            QList<QByteArray> lines = text->split('\n');
            lines.removeLast();   // behind the closing line end
            int headers = 0;
            qint16 cycle = 0;
            double previousDbh = 0;
            for (QByteArray line : lines) {
                QVERIFY(line.endsWith('\r'));
                line.chop(1);
                if (ClassifyLine(line) == LineKind::Header) {
                    const CycleHeader h = ParseCycleHeader(line);
                    ++headers;
                    QCOMPARE(h.cycle, qint16(headers));
                    QCOMPARE(h.year, qint16(o.firstYear + (headers - 1) * o.yearsPerCycle));
                    QCOMPARE(h.runName, o.runName);
                    QCOMPARE(ParseHeaderStamp(line).dateText(), QStringLiteral("2023-11-14"));
                    cycle = h.cycle;
                    continue;
                }
                QCOMPARE(line.size(), 127);
                const TreeRecord r = ParseTreeRecord(line, cycle);
                QVERIFY(IsValidSpeciesNumber(r.speciesNumber()));
                QVERIFY(r.values[5] > 0);                       // trees per hectare
                QVERIFY(r.values[6] >= 4 && r.values[6] <= 160);  // diameter
                QVERIFY(r.values[14] >= r.values[15]);          // total volume holds the merchantable
                QVERIFY(r.merchVolLessDWB() <= r.values[15]);
                QVERIFY(r.merchVolLessDWB() > 0 || r.values[15] == 0);   // every code is in the table
                if (text == &l.harvested)
                    QCOMPARE(cycle, qint16(o.thinningCycle));
                if (r.treeIdText() == QLatin1String("1")) {
                    QVERIFY(r.values[6] > previousDbh);   // the first tree grows
                    previousDbh = r.values[6];
                }
            }
            QCOMPARE(headers, o.cycles);
        }
    }

    void theSampleGrowsAsAStandDoes()
    {
        // Per cycle: stems and gross total volume per hectare of each list.
        const SampleStandOptions o;
        const Lists l = write(o);
        auto sums = [](const QByteArray &text) {
            QMap<qint16, std::pair<double, double>> byCycle;
            qint16 cycle = 0;
            for (QByteArray line : text.split('\n')) {
                line.chop(1);
                if (line.isEmpty())
                    continue;
                if (ClassifyLine(line) == LineKind::Header) {
                    cycle = ParseCycleHeader(line).cycle;
                    continue;
                }
                const TreeRecord r = ParseTreeRecord(line, cycle);
                byCycle[cycle].first += r.values[5];
                byCycle[cycle].second += r.values[5] * r.values[14];
            }
            return byCycle;
        };
        const auto standing = sums(l.standing);
        const auto harvested = sums(l.harvested);
        QCOMPARE(standing.size(), o.cycles);
        QVERIFY(harvested.value(qint16(o.thinningCycle)).first > 0);
        QList<double> increments;
        for (qint16 c = 2; c <= o.cycles; ++c) {
            const auto before = standing.value(c);
            const auto previousAfter = std::pair{standing.value(c - 1).first - harvested.value(c - 1).first,
                                                 standing.value(c - 1).second - harvested.value(c - 1).second};
            // The generator adds no ingrowth: a stand never has more stems than it kept.
            QVERIFY2(before.first <= previousAfter.first + 1e-6, qPrintable(QStringLiteral("cycle %1").arg(c)));
            increments.append((before.second - previousAfter.second) / o.yearsPerCycle);
        }
        // The thinning shows in the stems, not in the growth: every decade grows by about as much.
        const auto [low, high] = std::minmax_element(increments.begin(), increments.end());
        QVERIFY(*low > 0);
        QVERIFY2(*high < 2 * *low, qPrintable(QStringLiteral("increments %1 to %2").arg(*low).arg(*high)));
    }

    void knownBytes()
    {
        // The sample of an installation must not drift unseen: its digest is fixed.
        const Lists l = write(SampleStandOptions());
        QCOMPARE(QCryptographicHash::hash(l.standing, QCryptographicHash::Sha1).toHex().left(12), QByteArray("fb2a5513dc7c"));
    }
};

SENDREL_TEST_MAIN(tst_TreeListWriter)
#include "tst_TreeListWriter.moc"
