#include "support/TestMain.h"
#include "support/FileSizeLimit.h"

#include "base/SendrelError.h"
#include "domain/table/TableFile.h"
#include "domain/table/TableRender.h"
#include "support/RunDatabase.h"
#include "support/TableReadBack.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>


using namespace sendrel;
using namespace sendrel::test;

namespace {

TableDocument sample()
{
    DataTable t;
    t.name = QStringLiteral("2000 / cycle 1");
    t.title = QStringLiteral("Sample table");
    t.columns = {MakeTableColumn(QStringLiteral("dbh"), QStringLiteral("DBH class"), QStringLiteral("cm")),
                 MakeTableColumn(QStringLiteral("fd"), QStringLiteral("FD"), QStringLiteral("stems/ha"), 0, QStringLiteral("stems of FD per hectare")),
                 MakeTableColumn(QStringLiteral("note"), QStringLiteral("Note"))};
    t.columns[1].group = QStringLiteral("Before harvest");
    t.rows = {{12.5, 1234567.5, QStringLiteral("plain")}, {17.5, 0.35232375000000005, QStringLiteral("a \"quoted\", listed\nline")},
              {22.5, QVariant(), QVariant()}};
    t.totals = {{QStringLiteral("Total"), 1234567.891234, QVariant()}};
    TableDocument d;
    d.title = QStringLiteral("Sample");
    d.tables = {t};
    d.runs = {{QStringLiteral("R1"), QStringLiteral("Standing"), QStringLiteral("thinned"), QStringLiteral("2026-11-25")}};
    d.made = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    return d;
}

// A document of many rows: well over the size limit of the full-disk cases in every format.
TableDocument large()
{
    TableDocument d = sample();
    for (int r = 0; r < 3000; ++r)
        d.tables[0].rows.append({r * 0.5, r * 1.25, QStringLiteral("row %1").arg(r)});
    return d;
}

}  // namespace

class tst_tablefiles : public QObject {
    Q_OBJECT

private slots:
    void numbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 1234567.0 << "1234567";
        QTest::newRow("half") << 1234567.5 << "1234567.5";
        QTest::newRow("noise of a sum") << 0.35232375000000005 << "0.35232375";
        QTest::newRow("ten digits kept") << 1.234567891 << "1.234567891";
        QTest::newRow("eleventh digit rounded") << 12345.678915 << "12345.67892";
        QTest::newRow("small, no exponent") << 0.0001 << "0.0001";
        QTest::newRow("large, no exponent") << 123456789012.0 << "123456789000";
        QTest::newRow("negative") << -3.0 << "-3";
        QTest::newRow("negative zero") << -0.0 << "0";
    }
    void numbers()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        // The locale of the user never reaches the file.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString written = TableNumber(value);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(written, text);
        QCOMPARE(written.toDouble(), TableValue(value));
    }

    // Each reason for quotes alone, and blanks at the ends kept as they are.
    void csvQuoting_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("plain") << "plain" << QByteArray("plain");
        QTest::newRow("comma") << "a,b" << QByteArray("\"a,b\"");
        QTest::newRow("quote") << "a\"b" << QByteArray("\"a\"\"b\"");
        QTest::newRow("CR") << "a\rb" << QByteArray("\"a\rb\"");
        QTest::newRow("LF") << "a\nb" << QByteArray("\"a\nb\"");
        QTest::newRow("leading blank") << " a" << QByteArray(" a");
        QTest::newRow("trailing blank") << "a " << QByteArray("a ");
        QTest::newRow("not ASCII") << "Épinette" << QByteArray("Épinette");
    }
    void csvQuoting()
    {
        QFETCH(QString, field);
        QFETCH(QByteArray, written);
        DataTable t;
        t.columns = {MakeTableColumn(QStringLiteral("k"), field)};
        t.rows = {{field}};
        QCOMPARE(CsvText(t), written + "\r\n" + written + "\r\n");
        // And read back as it was.
        const ReadBack back = ReadCsv(CsvText(t));
        QCOMPARE(back.headers, QStringList{field});
        QCOMPARE(back.rows.value(0).value(0).toString(), field);
    }

    void csvDocument()
    {
        QCOMPARE(CsvText(CsvTable(sample())), QByteArray("DBH class (cm),FD (stems/ha),Note\r\n"
                                                         "12.5,1234567.5,plain\r\n"
                                                         "17.5,0.35232375,\"a \"\"quoted\"\", listed\nline\"\r\n"
                                                         "22.5,,\r\n"
                                                         "Total,1234567.891,\r\n"));
        TableDocument two = sample();
        two.tables.append(two.tables.first());
        QVERIFY_THROWS_EXCEPTION(SendrelError, CsvTable(two));
        two.single = sample().tables.first();
        two.single.name = QStringLiteral("joined");
        QCOMPARE(CsvTable(two).name, QStringLiteral("joined"));
    }

    // Every format holds every cell: CSV and the workbook read back number for number, JSON parsed.
    void filesHoldTheDocument()
    {
        QTemporaryDir dir;
        TableDocument d = sample();
        d.tables.append(d.tables.first());   // the same name twice gets a sheet of its own
        d.single = d.tables.first();
        const QString csv = dir.filePath(QStringLiteral("t.csv"));
        SaveExport(d, csv);
        const QString differs = Differs(ReadCsv(ReadWholeFile(csv)), d.single);
        QVERIFY2(differs.isEmpty(), qPrintable(differs));

        const QString xlsx = dir.filePath(QStringLiteral("t.xlsx"));
        SaveExport(d, xlsx);
        QCOMPARE(WorkbookSheets(xlsx), (QStringList{"2000 _ cycle 1", "2000 _ cycle 1 2", "Definitions"}));
        for (int s = 1; s <= 2; ++s) {
            const QString sheetDiffers = Differs(ReadXlsx(xlsx, s), d.tables.at(s - 1));
            QVERIFY2(sheetDiffers.isEmpty(), qPrintable(sheetDiffers));
        }
        const QByteArray sheet = WorkbookPart(xlsx, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY2(sheet.contains("ySplit=\"1\"") && sheet.contains("state=\"frozen\""), sheet.constData());
        const ReadBack definitions = ReadXlsx(xlsx, 3);
        QCOMPARE(definitions.rows.value(0), (QList<QVariant>{"FD", "stems/ha", "stems of FD per hectare"}));
        QVERIFY(definitions.rows.contains(QList<QVariant>{"Run", "Standing", "R1: thinned", "2026-11-25"}));
        QVERIFY(WorkbookPart(xlsx, QStringLiteral("docProps/core.xml")).contains("2023-11-14T22:13:20Z"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"t.csv", "t.xlsx"}));
        // Readable by others as any new file of the user is, not a scratch file's owner-only mode.
        QFile plain(dir.filePath(QStringLiteral("plain")));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QCOMPARE(QFileInfo(xlsx).permissions(), plain.permissions());

        QJsonParseError error{};
        const QJsonObject json = QJsonDocument::fromJson(TableText(d, TableFormat::Json), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(json.value("made").toString(), QStringLiteral("2023-11-14T22:13:20Z"));
        QCOMPARE(json.value("units").toString(), QStringLiteral("metric"));
        QCOMPARE(json.value("runs").toArray().at(0).toObject().value("description").toString(), QStringLiteral("thinned"));
        QCOMPARE(json.value("definitions").toObject().value("fd").toString(), QStringLiteral("stems of FD per hectare"));
        const QJsonObject table = json.value("tables").toArray().at(0).toObject();
        QCOMPARE(table.value("columns").toArray().at(1).toObject().value("unit").toString(), QStringLiteral("stems/ha"));
        const QJsonArray rows = table.value("rows").toArray();
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(1).toObject().value("fd").toDouble(), 0.35232375);
        QCOMPARE(rows.at(1).toObject().value("note").toString(), QStringLiteral("a \"quoted\", listed\nline"));
        QVERIFY(rows.at(2).toObject().value("fd").isNull());
        QCOMPARE(table.value("totals").toArray().at(0).toObject().value("dbh").toString(), QStringLiteral("Total"));
        // JSON has no NaN: a cell without a number is null.
        d.tables[0].rows[0][1] = qQNaN();
        const QJsonObject withNaN = QJsonDocument::fromJson(TableText(d, TableFormat::Json), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QVERIFY(withNaN.value("tables").toArray().at(0).toObject().value("rows").toArray().at(0).toObject().value("fd").isNull());
    }

    // A workbook made twice under SOURCE_DATE_EPOCH is the same, byte for byte: no scratch name, no
    // clock inside.
    void workbookTwiceTheSame()
    {
        QTemporaryDir dir;
        qputenv("SOURCE_DATE_EPOCH", "1700000000");
        TableDocument d = sample();
        d.made = TableMadeNow();
        qunsetenv("SOURCE_DATE_EPOCH");
        for (const char *name : {"a.xlsx", "b.xlsx"})
            SaveTableFile(d, TableFormat::Xlsx, dir.filePath(QLatin1String(name)));
        QCOMPARE(ReadWholeFile(dir.filePath(QStringLiteral("a.xlsx"))), ReadWholeFile(dir.filePath(QStringLiteral("b.xlsx"))));
        QCOMPARE(d.made, QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC));
    }

    // Text and print: groups over their columns, the label and unit, the rounded cells, the totals
    // set apart.
    void textAndPrint()
    {
        const QStringList lines = FixedText(sample()).split(QLatin1Char('\n'));
        QCOMPARE(lines.mid(0, 9), (QStringList{"Sample table",
                                               "             - Before harvest -                         ",
                                               "  DBH class                  FD                     Note",
                                               "         cm            stems/ha                         ",
                                               "       12.5             1234568                    plain",
                                               "       17.5                   0  a \"quoted\", listed line",
                                               "       22.5                                             ",
                                               QString(56, QLatin1Char('-')),
                                               "      Total             1234568                         "}));

        const QString html = HtmlText(sample());
        QVERIFY2(html.contains(QStringLiteral("<th colspan=\"1\">Before harvest</th>")), qPrintable(html));
        // A unit breaks after its slash, a heading never at its blank.
        QVERIFY2(html.contains(QStringLiteral("<th>DBH&nbsp;class<br>cm</th><th>FD<br>stems/&#8203;ha</th>")), qPrintable(html));
        QVERIFY2(html.contains(QStringLiteral("<td align=\"left\"><b>Total</b></td>")), qPrintable(html));
    }

    // A full disk, as a file size limit gives it, in every format: the write fails naming the file
    // and the cause, the earlier file stays as it was and no scratch file is left.
    void fullDisk_data()
    {
        QTest::addColumn<int>("formatNumber");
        QTest::newRow("txt") << int(TableFormat::Txt);
        QTest::newRow("csv") << int(TableFormat::Csv);
        QTest::newRow("xlsx") << int(TableFormat::Xlsx);
        QTest::newRow("json") << int(TableFormat::Json);
    }
    void fullDisk()
    {
        QFETCH(int, formatNumber);
        const auto format = static_cast<TableFormat>(formatNumber);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("kept") + TableFileSuffix(format));
        SaveTableFile(sample(), format, path);
        const QByteArray before = ReadWholeFile(path);
        const QStringList scratchBefore = QDir::temp().entryList({QStringLiteral("sendrel-export-*")});
        try {
            FileSizeLimit limit(4096);
            SaveTableFile(large(), format, path);
            QFAIL("wrote past the limit");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(path) && e.description().contains(QStringLiteral("large")), qPrintable(e.description()));
        }
        QCOMPARE(ReadWholeFile(path), before);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QFileInfo(path).fileName()});
        QCOMPARE(QDir::temp().entryList({QStringLiteral("sendrel-export-*")}), scratchBefore);
    }

    // A place that cannot take the file: a clear message naming it, and nothing left behind.
    void unwritableTargets_data()
    {
        QTest::addColumn<int>("formatNumber");
        QTest::addColumn<QString>("target");
        QTest::newRow("csv into a missing folder") << int(TableFormat::Csv) << "missing/t.csv";
        QTest::newRow("xlsx into a missing folder") << int(TableFormat::Xlsx) << "missing/t.xlsx";
        QTest::newRow("csv over a folder") << int(TableFormat::Csv) << "taken";
        QTest::newRow("xlsx over a read-only file") << int(TableFormat::Xlsx) << "locked";
        QTest::newRow("json over a read-only file") << int(TableFormat::Json) << "locked";
    }
    void unwritableTargets()
    {
        QFETCH(int, formatNumber);
        const auto format = static_cast<TableFormat>(formatNumber);
        QFETCH(QString, target);
        QTemporaryDir dir;
        QDir(dir.path()).mkdir(QStringLiteral("taken"));
        const QString path = dir.filePath(target);
        const bool locked = target == QLatin1String("locked");
        if (locked) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
            file.close();
            QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
            if (QFileInfo(path).isWritable())
                QSKIP("the superuser may write any file");
        }
        try {
            SaveTableFile(sample(), format, path);
            QFAIL("wrote where no file can be");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(target), qPrintable(e.description()));
            if (locked)
                QVERIFY2(e.description().contains(QStringLiteral("Existing file %1 is not writable").arg(path)), qPrintable(e.description()));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), locked ? QStringList{target} : QStringList());
        if (locked)
            QCOMPARE(ReadWholeFile(path), QByteArray("kept"));
    }

    void exportFormats()
    {
        QCOMPARE(ExportFormatOf(QStringLiteral("a/b.XLSX")), TableFormat::Xlsx);
        QCOMPARE(ExportFormatOf(QStringLiteral("b.csv")), TableFormat::Csv);
        QVERIFY_THROWS_EXCEPTION(SendrelError, ExportFormatOf(QStringLiteral("b.json")));
        QCOMPARE(ExportFileStem({QStringLiteral("A/B"), RunKind::Harvested}, QStringLiteral("Stock")), QStringLiteral("A%2FB_Harvested_Stock"));
    }
};

SENDREL_TEST_MAIN(tst_tablefiles)
#include "tst_tablefiles.moc"
