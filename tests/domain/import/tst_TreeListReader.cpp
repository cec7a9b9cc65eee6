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
        QCOMPARE(r.treeIdText() + r.speciesLetters(), QStringLiteral("TREE0042FD"));
        const double mvol = 1.04 - (1.04 * 3.65) / 100.0;   // FD, class 50
        // By Model_Entries position; the texts (0, 1, 21, 23) are checked above.
        const double expected[EntryPos::Count] = {0, 0, 1234, 3, 280, 3200.125, 50.5, 56.6, 62.6, 68.7,
                                                  1, 73, 84.125, 22, 0.97, 1.04, 111.117, 125, 7, 1,
                                                  81, 0, 41.41414, 0, 76.9, 91095, 19, 23, 25, mvol};
        for (int i = 0; i < EntryPos::Count; ++i) {
            if (r.values[i] != expected[i])
                QFAIL(qPrintable(QStringLiteral("position %1: %2, expected %3").arg(i).arg(r.values[i]).arg(expected[i])));
        }
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

    // Every field the reading had to cut or could not read is told once, at the column where the
    // trouble begins; the value stays as the rule reads it.
    void warningsNameTheColumn_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("told");
        const QByteArray full = fullLine();
        const auto with = [&](int column, const QByteArray &text) { return ColumnLine().at(1, full).at(column, text).bytes(); };
        QTest::newRow("decimal comma") << with(50, " 25,4") << 53 << "the diameter (columns 50-54): \"25,4\" is read as 25; the reading stops at \",4\"";
        QTest::newRow("digits then letters") << with(11, "12ab") << 13 << "columns 11-14: \"12ab\" is read as 12";
        QTest::newRow("no number") << with(56, "  abc") << 58 << "columns 56-60: \"abc\" holds no number";
        QTest::newRow("NaN in a carried field") << with(62, "  NaN") << 64 << "columns 62-66: \"NaN\" is no finite number";
        QTest::newRow("1e400 in a carried field") << with(111, "  1e400") << 113 << "columns 111-117: \"1e400\" is no finite number";
        QTest::newRow("UTF-8 letters") << with(16, "\xC3\x89") << 16 << "species letter code (columns 16-17): bytes C3 89 are no plain";
        QTest::newRow("half a UTF-8 letter") << with(16, "F\xC3") << 17 << "bytes C3 are";
        QTest::newRow("control character in the tree id") << with(2, "TR\x01" "E0042") << 4 << "tree id (columns 2-9): bytes 01 45";
        QTest::newRow("line cut inside a field") << full.left(100) << 101
                                                 << "the line ends at column 100: the total volume (columns 97-102) is cut short, and the 5 fields";
        QTest::newRow("line cut in a gap") << full.left(60) << 61 << "the line ends at column 60: the 13 fields from column 62 on are missing";
        QTest::newRow("last field cut") << full.left(126) << 127 << "the line ends at column 126: the field of columns 125-127 is cut short";
    }

    void warningsNameTheColumn()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, column);
        QFETCH(QString, told);
        FieldWarnings warnings;
        ParseTreeRecord(line, 1, &warnings);
        QCOMPARE(warnings.size(), std::size_t(1));
        QCOMPARE(warnings[0].column, column);
        QVERIFY2(warnings[0].text.contains(told), qPrintable(warnings[0].text));
    }

    void plainFieldsAreNotTold()
    {
        // What the rule reads whole: blanks between digits, exponents, a closing point, nothing at all.
        FieldWarnings warnings;
        ParseTreeRecord(fullLine(), 1, &warnings);
        for (const QByteArray &field : {QByteArray("1 2 "), QByteArray("1D3 "), QByteArray("  5."), QByteArray("    "), QByteArray("1e-9")})
            ParseTreeRecord(ColumnLine().at(1, fullLine()).at(11, field), 1, &warnings);
        ParseCycleHeader(HeaderLine(1, 2, 2000, "RUN", "01/02/2023 04:05:06"), &warnings);
        for (const FieldWarning &w : warnings)
            QFAIL(qPrintable(QStringLiteral("column %1: %2").arg(w.column).arg(w.text)));
    }

    // Values no tree can have refuse the import, naming the column; the bounds themselves pass.
    void impossibleValuesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("stems");
        QTest::addColumn<QByteArray>("diameter");
        QTest::addColumn<QByteArray>("volume");
        QTest::addColumn<QByteArray>("merchantable");
        QTest::addColumn<int>("column");   // 0: accepted
        QTest::newRow("all zero") << QByteArray("0") << QByteArray("0") << QByteArray("0") << QByteArray("0") << 0;
        QTest::newRow("diameter at its bound") << QByteArray("1") << QByteArray("2000") << QByteArray("1") << QByteArray("1") << 0;
        QTest::newRow("diameter above") << QByteArray("1") << QByteArray("2001") << QByteArray("1") << QByteArray("1") << 50;
        QTest::newRow("negative diameter") << QByteArray("1") << QByteArray("-25") << QByteArray("1") << QByteArray("1") << 50;
        QTest::newRow("diameter 1e400") << QByteArray("1") << QByteArray("1e400") << QByteArray("1") << QByteArray("1") << 50;
        QTest::newRow("stems at their bound") << QByteArray("1000000") << QByteArray("0") << QByteArray("1") << QByteArray("1") << 0;
        QTest::newRow("stems above") << QByteArray("1000001") << QByteArray("0") << QByteArray("0") << QByteArray("0") << 32;
        QTest::newRow("99,999,999 stems") << QByteArray("99999999") << QByteArray("0") << QByteArray("0") << QByteArray("0") << 32;
        QTest::newRow("negative stems") << QByteArray("-12.5") << QByteArray("10") << QByteArray("0") << QByteArray("0") << 32;
        QTest::newRow("inf stems") << QByteArray("inf") << QByteArray("10") << QByteArray("0") << QByteArray("0") << 37;
        QTest::newRow("volume at its bound") << QByteArray("1") << QByteArray("10") << QByteArray("10000") << QByteArray("10000") << 0;
        QTest::newRow("volume above") << QByteArray("1") << QByteArray("10") << QByteArray("10001") << QByteArray("0") << 97;
        QTest::newRow("volume 1e308") << QByteArray("1") << QByteArray("10") << QByteArray("1e308") << QByteArray("0") << 97;
        QTest::newRow("negative merchantable") << QByteArray("1") << QByteArray("10") << QByteArray("1") << QByteArray("-0.5") << 104;
        QTest::newRow("NaN merchantable") << QByteArray("1") << QByteArray("10") << QByteArray("1") << QByteArray("NaN") << 107;
        QTest::newRow("merchantable above") << QByteArray("1") << QByteArray("10") << QByteArray("1") << QByteArray("10001") << 104;
        QTest::newRow("basal area within the hectare") << QByteArray("1000") << QByteArray("356") << QByteArray("0") << QByteArray("0") << 0;
        QTest::newRow("basal area beyond it") << QByteArray("1000") << QByteArray("357") << QByteArray("0") << QByteArray("0") << 32;
        QTest::newRow("volume per ha at its bound") << QByteArray("1000") << QByteArray("0") << QByteArray("1000") << QByteArray("1000") << 0;
        QTest::newRow("volume per ha above") << QByteArray("1001") << QByteArray("0") << QByteArray("1000") << QByteArray("0") << 32;
        QTest::newRow("merchantable per ha above") << QByteArray("1001") << QByteArray("0") << QByteArray("0") << QByteArray("1000") << 32;
    }

    void impossibleValuesAreRefused()
    {
        QFETCH(QByteArray, stems);
        QFETCH(QByteArray, diameter);
        QFETCH(QByteArray, volume);
        QFETCH(QByteArray, merchantable);
        QFETCH(int, column);
        const QByteArray line = ColumnLine().at(1, fullLine()).right(32, 8, stems).right(50, 5, diameter).right(97, 6, volume).right(104, 6, merchantable);
        try {
            ParseTreeRecord(line, 1);
            QVERIFY2(column == 0, "accepted");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().startsWith(QStringLiteral("column %1, ").arg(column)), qPrintable(e.description()));
            QCOMPARE(e.number(), ErrNo::InvalidCall);
        }
    }

    void cycleYearIsACalendarYear()
    {
        for (int year : {1, 9999})
            QCOMPARE(ParseCycleHeader(HeaderLine(1, 1, year)).year, qint16(year));
        for (const QByteArray &year : {QByteArray("0"), QByteArray("10000"), QByteArray("-1")}) {
            try {
                ParseCycleHeader(ColumnLine().at(1, HeaderLine(1, 1, 2000)).right(16, 5, year));
                QFAIL(qPrintable("year " + year + " was accepted"));
            } catch (const SendrelError &e) {
                QVERIFY2(e.description().startsWith(QLatin1String("column 16, the cycle year")), qPrintable(e.description()));
            }
        }
        // Beyond any number: out of the field's range, named by its column like any overflow.
        try {
            ParseCycleHeader(ColumnLine().at(1, HeaderLine(1, 1, 2000)).at(16, "1e400"));
            QFAIL("year 1e400 was accepted");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::Overflow);
            QVERIFY2(e.description().startsWith(QLatin1String("column 16, ")), qPrintable(e.description()));
        }
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
