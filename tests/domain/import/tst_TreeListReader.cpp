#include "support/TestMain.h"
#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "domain/import/TreeListFile.h"
#include "domain/import/TreeListReader.h"

#include "support/TreeListLines.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <random>

using namespace sendrel;
using namespace sendrel::test;

class tst_TreeListReader : public QObject {
    Q_OBJECT

private:
    // Every field with a value of its own, the unread columns filled with digits so that a
    // field cut one column wrong shows.
    static QByteArray fullLine()
    {
        ColumnLine line;
        line.at(1, QByteArray(140, '9'));
        line.at(1, "Z")
            .at(2, "TREE0042")
            .at(11, "1234")
            .at(16, "FD")
            .at(19, " 3")
            .at(22, "22")
            .at(25, "25")
            .at(28, "280")
            .at(32, "3200.125")
            .at(41, "41.41414")
            .at(50, " 50.5")
            .at(56, " 56.6")
            .at(62, " 62.6")
            .at(68, "68.7")
            .at(73, "73")
            .at(76, "76.9")
            .at(81, "81")
            .at(84, "84.125")
            .at(91, "91095")
            .at(97, "0.9700")
            .at(104, "1.0400")
            .at(111, "111.117")
            .at(119, "19")
            .at(122, "23")
            .at(125, "125")
            .at(128, "JUNK");
        return line;
    }

private slots:
    void everyColumnGoesToItsPosition()
    {
        const TreeRecord r = ParseTreeRecord(fullLine(), 7);
        const QVariantList row = ModelEntryValues(r, QStringLiteral("RUN"), QStringLiteral("H"));
        const double mvol = 1.04 - (1.04 * 3.65) / 100.0;   // FD, class 50
        const QVariantList expected = {
            QStringLiteral("RUN"), QStringLiteral("TREE0042"), 1234, 3, 280, 3200.125, 50.5, 56.6, 62.6, 68.7,
            1, 73, 84.125, 22, 0.97, 1.04, 111.117, 125, 7, 1,
            81, QStringLiteral("H"), 41.41414, QStringLiteral("FD"), 76.9, 91095, 19, 23, 25, mvol};
        QCOMPARE(row.size(), 30);
        for (int i = 0; i < 30; ++i) {
            if (row[i] != expected[i])
                QFAIL(qPrintable(QStringLiteral("position %1: %2, expected %3").arg(i).arg(row[i].toString(), expected[i].toString())));
        }
        // Integer positions are handed on as integers, doubles as doubles.
        QCOMPARE(row[25].typeId(), QMetaType::Int);
        QCOMPARE(row[5].typeId(), QMetaType::Double);
    }

    void numberReadingRule_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<int>("value");
        QTest::newRow("digit blank digit") << QByteArray("1 2 ") << 12;
        QTest::newRow("digits then a letter") << QByteArray("12a ") << 12;
        QTest::newRow("letter first") << QByteArray("a1  ") << 0;
        QTest::newRow("empty") << QByteArray("    ") << 0;
        QTest::newRow("sign and blank") << QByteArray("- 42") << -42;
        QTest::newRow("half to even down") << QByteArray(" 2.5") << 2;
        QTest::newRow("half to even up") << QByteArray(" 3.5") << 4;
        QTest::newRow("exponent D") << QByteArray("1D3 ") << 1000;
        QTest::newRow("tab inside") << QByteArray("1\t5 ") << 15;
    }

    void numberReadingRule()
    {
        QFETCH(QByteArray, field);
        QFETCH(int, value);
        // Columns 11-14 are a 16-bit field.
        const TreeRecord r = ParseTreeRecord(ColumnLine().at(11, field).at(19, " 3"), 1);
        QCOMPARE(static_cast<int>(r.values[2]), value);
    }

    void fastNumberPathAgreesWithTheRule()
    {
        // Any text of the characters that matter reads the same as ReadNumber reads it.
        std::mt19937 random(20231114);
        const QByteArray alphabet(" 0123456789.-+eEdDa\t");
        for (int n = 0; n < 20000; ++n) {
            QByteArray field;
            const int length = static_cast<int>(random() % 9);
            for (int i = 0; i < length; ++i)
                field.append(alphabet[static_cast<qsizetype>(random() % alphabet.size())]);
            if (n % 2 == 0)   // half of them shaped like real fields
                field = QByteArray::number(static_cast<int>(random() % 200000) - 100000) + '.'
                        + QByteArray::number(static_cast<int>(random() % 100000)).rightJustified(random() % 6 + 1, '0');
            const double fast = ReadFieldNumber(field);
            const double rule = ReadNumber(QString::fromLatin1(field));
            if (!(fast == rule && std::signbit(fast) == std::signbit(rule)))
                QFAIL(qPrintable(QStringLiteral("'%1': %2 against %3").arg(QString::fromLatin1(field)).arg(fast, 0, 'g', 17).arg(rule, 0, 'g', 17)));
        }
    }

    void lineStoppingAtColumn60()
    {
        const QByteArray line = fullLine().left(60);
        const TreeRecord r = ParseTreeRecord(line, 2);
        QCOMPARE(r.values[6], 50.5);
        QCOMPARE(r.values[7], 56.6);   // columns 56-60, the last field in the line
        for (int pos : {8, 9, 11, 12, 14, 15, 16, 17, 20, 24, 25, 26, 27})
            QCOMPARE(r.values[pos], 0.0);
        QCOMPARE(r.merchVolLessDWB(), 0.0);
        // A field cut by the line end is read as far as it goes.
        QCOMPARE(ParseTreeRecord(fullLine().left(52), 2).values[6], 50.0);
    }

    void lineOfTabsIsATreeWithSpecies0()
    {
        const QByteArray tabs(40, '\t');
        QCOMPARE(ClassifyLine(tabs), LineKind::Record);
        const TreeRecord r = ParseTreeRecord(tabs, 1);
        QCOMPARE(r.speciesNumber(), qint16(0));
        QVERIFY(!IsValidSpeciesNumber(r.speciesNumber()));
        QCOMPARE(InvalidSpeciesMessage(0), QStringLiteral("Invalid species code: 0  (Valid range is 1-11)"));
        QCOMPARE(InvalidSpeciesMessage(12), QStringLiteral("Invalid species code: 12  (Valid range is 1-11)"));
    }

    void speciesRange()
    {
        QVERIFY(!IsValidSpeciesNumber(0));
        QVERIFY(IsValidSpeciesNumber(1));
        QVERIFY(IsValidSpeciesNumber(11));
        QVERIFY(!IsValidSpeciesNumber(12));
        QVERIFY(!IsValidSpeciesNumber(-1));
    }

    void lineKinds()
    {
        QCOMPARE(ClassifyLine(""), LineKind::Blank);
        QCOMPARE(ClassifyLine("      "), LineKind::Blank);
        QCOMPARE(ClassifyLine("-999    1    1 2000"), LineKind::Header);
        QCOMPARE(ClassifyLine("   -999"), LineKind::Header);
        QCOMPARE(ClassifyLine("-99"), LineKind::Record);
        QCOMPARE(ClassifyLine("\t-999"), LineKind::Record);
        QCOMPARE(ClassifyLine(" 1 FD"), LineKind::Record);
    }

    void indentedHeaderKeepsItsColumns()
    {
        // The header is known by its trimmed text, but its fields stay in columns 6-30.
        const QByteArray line = "  -999    1    2 2000RUNNAME";
        QCOMPARE(ClassifyLine(line), LineKind::Header);
        const CycleHeader h = ParseCycleHeader(line);
        QCOMPARE(h.firstNumber, qint16(9));      // columns 6-10: "9    ", the marker's last digit
        QCOMPARE(h.cycle, qint16(1));            // columns 11-15: "1    "
        QCOMPARE(h.year, qint16(2200));          // columns 16-20: "2 200", the blank skipped
        QCOMPARE(h.runName, QStringLiteral("0RUNNAME"));
    }

    void headerFields()
    {
        const CycleHeader h = ParseCycleHeader(HeaderLine(32767, -5, 2040, "  Run A   ", "01/02/2023 04:05:06"));
        QCOMPARE(h.firstNumber, qint16(32767));
        QCOMPARE(h.cycle, qint16(-5));
        QCOMPARE(h.year, qint16(2040));
        QCOMPARE(h.runName, QStringLiteral("Run A"));
        const HeaderStamp s = ParseHeaderStamp(HeaderLine(1, 1, 2000, "", "01/02/2023 04:05:06"));
        QCOMPARE(s.dateText(), QStringLiteral("2023-01-02"));
        QCOMPARE(s.timeText(), QStringLiteral("04:05:06"));
        // Separators are not read: only the digits count.
        QCOMPARE(ParseHeaderStamp(HeaderLine(1, 1, 2000, "", "12x31y1999z23a59b58")).dateText(), QStringLiteral("1999-12-31"));
        // Parts beyond their range carry over.
        QCOMPARE(ParseHeaderStamp(HeaderLine(1, 1, 2000, "", "13/01/2023 25:00:00")).dateText(), QStringLiteral("2024-01-01"));
        QCOMPARE(ParseHeaderStamp(HeaderLine(1, 1, 2000, "", "13/01/2023 25:00:00")).timeText(), QStringLiteral("01:00:00"));
        // No stamp at all: year 0 makes no date.
        QCOMPARE(ParseHeaderStamp(HeaderLine(1, 1, 2000)).dateText(), QString());
    }

    void sixteenBitRange()
    {
        try {
            ParseCycleHeader(HeaderLine(32768, 1, 2000));
            QFAIL("a 5-digit header number above 32767 was accepted");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::Overflow);
        }
        QVERIFY_THROWS_EXCEPTION(SendrelError, ParseCycleHeader(HeaderLine(1, 99999, 2000)));
        QCOMPARE(ParseCycleHeader(HeaderLine(-9999, 1, 2000)).firstNumber, qint16(-9999));
        // Columns 91-95 are the one 32-bit field.
        const TreeRecord r = ParseTreeRecord(ColumnLine().at(19, " 1").at(91, "99999"), 1);
        QCOMPARE(r.values[25], 99999.0);
        // Any other integer field overflows beyond 32767, here columns 11-14 with an exponent.
        QVERIFY_THROWS_EXCEPTION(SendrelError, ParseTreeRecord(ColumnLine().at(11, "4E4 ").at(19, " 1"), 1));
    }

    void speciesLettersAreNotTrimmed()
    {
        const TreeRecord r = ParseTreeRecord(ColumnLine().at(16, " F").at(19, " 3").at(50, " 30.0").at(104, "1.0000"), 1);
        QCOMPARE(r.speciesLetters(), QStringLiteral(" F"));
        QCOMPARE(r.merchVolLessDWB(), 0.0);
        const TreeRecord pw = ParseTreeRecord(ColumnLine().at(16, "PW").at(19, " 1").at(50, " 30.0").at(104, "1.0000"), 1);
        QCOMPARE(pw.merchVolLessDWB(), 0.968);
        QCOMPARE(pw.values[15], 1.0);   // the gross volume is kept as read
    }

    void runIdSuggestion()
    {
        CycleHeader named;
        named.runName = QStringLiteral("Stand 12b");
        QCOMPARE(SuggestRunId(named, QStringLiteral("/data/other.lst")), QStringLiteral("Stand 12b"));
        const CycleHeader unnamed;
        QCOMPARE(SuggestRunId(unnamed, QStringLiteral("/data/lists/my.stand.lst")), QStringLiteral("MY"));
        QCOMPARE(SuggestRunId(unnamed, QStringLiteral("C:\\Work\\Plot7_thin.lst")), QStringLiteral("PLOT7_THIN"));
        QCOMPARE(SuggestRunId(unnamed, QStringLiteral("noext")), QStringLiteral("NOEXT"));
    }

    void trailingLineEndLeavesNoFurtherLine()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("t.lst"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("-999\r\n");
        f.close();
        TreeListFile file(path);
        QVERIFY(file.open());
        QVERIFY(!file.atEnd());
        QCOMPARE(file.readLine().toByteArray(), QByteArray("-999"));
        QVERIFY(file.atEnd());
    }
};

SENDREL_TEST_MAIN(tst_TreeListReader)
#include "tst_TreeListReader.moc"
