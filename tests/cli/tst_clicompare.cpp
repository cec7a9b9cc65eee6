#include "support/TestMain.h"

#include "domain/output/ChartData.h"
#include "support/CliRun.h"
#include "support/CompareRuns.h"
#include "support/RunDatabase.h"
#include "support/TableReadBack.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace sendrel;
using namespace sendrel::test;

// sendrel-cli compare and chart compare: what they take, refuse and write.
class tst_clicompare : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;
    QList<std::pair<QString, QList<ChartData>>> m_written;

    CliRun tool(const QStringList &args) { return RunTool(QStringList{QStringLiteral("--db"), m_db->path()} + args); }

private slots:
    void initTestCase()
    {
        m_db = std::make_unique<RunDatabase>();
        AddComparisonRuns(*m_db);
        SetChartFileWriter([this](const QList<ChartData> &pages, const QString &path) { m_written.append({path, pages}); });
    }
    void cleanupTestCase()
    {
        SetChartFileWriter({});
        m_db.reset();
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("one run") << QStringList{"compare", "GROW"} << 2 << "compare lacks an argument";
        QTest::newRow("nine runs") << QStringList{"compare", "A", "B", "C", "D", "E", "F", "G", "H", "I"} << 2 << "unexpected argument 'I'";
        QTest::newRow("year of the summary") << QStringList{"compare", "GROW", "THIN", "--year", "2010"} << 2
                                             << "--year is no option of compare --table summary";
        QTest::newRow("table without year") << QStringList{"compare", "GROW", "THIN", "--table", "stock"} << 2 << "compare --table stock needs --year";
        QTest::newRow("two years") << QStringList{"compare", "GROW", "THIN", "--table", "stand", "--year", "2000,2010"} << 2
                                   << "--year takes one calendar year, not '2000,2010'";
        QTest::newRow("bad classes") << QStringList{"compare", "GROW", "THIN", "--table", "stand", "--year", "2010", "--classes", "-5,10,4"} << 1
                                     << "Invalid.";
        QTest::newRow("no common year") << QStringList{"compare", "GROW", "LATE", "-o", "-"} << 1 << "Runs GROW and LATE have no year in common";
        QTest::newRow("year of none") << QStringList{"compare", "GROW", "THIN", "--table", "stand", "--year", "1999", "-o", "-"} << 1
                                      << "None of the runs compared has the year 1999.";
        QTest::newRow("chart kind") << QStringList{"chart", "compare", "GROW", "THIN", "--kind", "S", "-o", "x.pdf"} << 2
                                    << "--kind is no option of chart compare";
        QTest::newRow("chart both") << QStringList{"chart", "compare", "GROW", "THIN", "--density", "--statistic", "sph", "-o", "x.pdf"} << 2
                                    << "takes --statistic or --density, not both";
        QTest::newRow("chart statistic") << QStringList{"chart", "compare", "GROW", "THIN", "--statistic", "volume", "-o", "x.pdf"} << 2
                                         << "--statistic takes sph, basal-area, qmd";
        QTest::newRow("base elsewhere") << QStringList{"chart", "compare", "GROW", "THIN", "--base", "LATE", "-o", "x.pdf"} << 1
                                        << "The base LATE is not one of the runs compared.";
        QTest::newRow("stand takes one run") << QStringList{"chart", "stand", "GROW", "THIN", "--kind", "S", "-o", "x.pdf"} << 2
                                             << "unexpected argument 'THIN'";
    }
    void refusals()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, message);
        const CliRun r = tool(args);
        QCOMPARE(r.code, code);
        QVERIFY2(r.err.startsWith(QStringLiteral("sendrel-cli: ")) && r.err.contains(message), qPrintable(r.err));
    }

    // The forms: text with the title first, JSON with its tables and null for a blank.
    void forms()
    {
        const CliRun text = tool({QStringLiteral("compare"), QStringLiteral("GROW"), QStringLiteral("THIN"), QStringLiteral("-o"), QStringLiteral("-")});
        QCOMPARE(text.code, 0);
        QVERIFY2(text.out.startsWith(QStringLiteral("Before harvest SPH (stems/ha)\n")), qPrintable(text.out));
        const CliRun json = tool({QStringLiteral("compare"), QStringLiteral("GROW"), QStringLiteral("THIN"), QStringLiteral("--base"),
                                  QStringLiteral("THIN"), QStringLiteral("--table"), QStringLiteral("stock"), QStringLiteral("--year"),
                                  QStringLiteral("2010"), QStringLiteral("--classes"), QStringLiteral("0,10,5"), QStringLiteral("--format"),
                                  QStringLiteral("json"), QStringLiteral("-o"), QStringLiteral("-")});
        QCOMPARE(json.code, 0);
        const QJsonArray tables = QJsonDocument::fromJson(json.out.toUtf8()).object().value(QStringLiteral("tables")).toArray();
        QCOMPARE(tables.size(), 3);
        const QJsonObject difference = tables.at(2).toObject();
        QCOMPARE(difference.value(QStringLiteral("name")).toString(), QStringLiteral("GROW - THIN"));
        QCOMPARE(difference.value(QStringLiteral("totals")).toArray().at(0).toObject().value(QStringLiteral("total")).toDouble(), -5.0);
        // Without -o: the Work folder's file, its path printed.
        const CliRun file = tool({QStringLiteral("compare"), QStringLiteral("GROW"), QStringLiteral("THIN"), QStringLiteral("--format"), QStringLiteral("csv")});
        QCOMPARE(file.code, 0);
        QVERIFY2(file.out.trimmed().endsWith(QStringLiteral("GROW_THIN_Compare.csv")) && QFile::exists(file.out.trimmed()), qPrintable(file.out));
    }

    // --units imperial reaches compare and chart compare; --definitions puts a CSV file's beside it:
    // each column and statistic with its unit and formula, the file, both lists of a Run Id.
    void imperial()
    {
        const QString csv = m_db->filePath(QStringLiteral("imperial.csv"));
        QCOMPARE(tool({"--units", "imperial", "compare", "GROW", "THIN", "--format", "csv", "--definitions", "-o", csv}).code, 0);
        // 2010: GROW 100 stems/ha before harvest, THIN 150, as trees/acre.
        QVERIFY(ReadWholeFile(csv).contains("\nBefore harvest SPH (trees/acre),2010,40.46856422,60.70284634,20.23428211,50\r\n"));
        QMap<QString, QString> defined;   // "Section|Name|Unit": definition
        for (const QList<QVariant> &row : ReadCsv(ReadWholeFile(m_db->filePath(QStringLiteral("imperial.definitions.csv")))).rows)
            defined.insert(row.at(0).toString() + QLatin1Char('|') + row.at(1).toString() + QLatin1Char('|') + row.at(2).toString(), row.at(3).toString());
        const std::pair<const char *, const char *> rows[] = {
            {"Column|GROW|", "Run GROW's value"},
            {"Column|THIN % of GROW|%", "\"n/a\" where the base is 0"},
            {"Statistic|Total yield GTV|cu.ft/acre", "plus the cumulative removals"},
            {"Statistic|Cumulative removals NMV|cu.ft/acre", "Converted from the stored cu.m/ha to cu.ft/acre"},
            {"Statistic|Before harvest SDI|trees/acre", "reference diameter 10 in"},
            {"File|Units|", "imperial: trees/acre"},
            {"File|SDI method|", "Reineke's formula"},
            {"File|Made|", "2023-11-14T22:13:20Z"},
            {"Run|THIN:Harvested|", "Imported 2023-11-14 22:13:20. THIN treatment"}};
        for (const auto &[row, words] : rows)
            QVERIFY2(defined.value(QLatin1String(row)).contains(QLatin1String(words)), row);
        QCOMPARE(tool({"--units", "imperial", "chart", "compare", "GROW", "THIN", "--density", "-o", "d.png"}).code, 0);
        QCOMPARE(m_written.last().second.first().ChartBottomTitle(), QStringLiteral("QMD (in)"));
    }

    // A PDF without --statistic: each statistic, then the density diagram; PNG files one each.
    void charts()
    {
        m_written.clear();
        QCOMPARE(tool({"chart", "compare", "GROW", "THIN", "-o", m_db->filePath(QStringLiteral("all.pdf"))}).code, 0);
        QCOMPARE(m_written.size(), 1);
        QCOMPARE(m_written.first().second.size(), 12);
        QVERIFY(m_written.first().second.last().ChartLogAxes());
        QCOMPARE(tool({"chart", "compare", "GROW", "THIN", "--statistic", "YIELD-GTV", "--difference", "--bw", "-o", "y.png"}).code, 0);
        QCOMPARE(m_written.last().first, QStringLiteral("y.png"));
        QVERIFY(m_written.last().second.first().ChartTopTitle().startsWith(QStringLiteral("Difference from GROW: Total yield GTV")));
        QCOMPARE(m_written.last().second.first().ChartScreenStyle(), 0);
        QCOMPARE(tool({"chart", "compare", "GROW", "THIN", "-o", m_db->filePath(QStringLiteral("c.svg"))}).code, 0);
        QCOMPARE(m_written.last().first, m_db->filePath(QStringLiteral("c-density.svg")));
    }
};

SENDREL_TEST_MAIN(tst_clicompare)
#include "tst_clicompare.moc"
