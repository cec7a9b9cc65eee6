#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/export/TableExport.h"
#include "domain/summary/StandSummaryTable.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <optional>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A part of a workbook, as unzip gives it.
QByteArray workbookPart(const QString &path, const QString &part)
{
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), path, part});
    unzip.waitForFinished();
    return unzip.readAllStandardOutput();
}

// A file's table as read back: the header row's texts, then the rows' cells, a number or none.
struct ReadBack {
    QStringList headers;
    QList<QList<std::optional<double>>> rows;
};

ReadBack readCsv(const QString &path)
{
    ReadBack back;
    QStringList lines = QString::fromUtf8(ReadWholeFile(path)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    back.headers = lines.takeFirst().split(QLatin1Char(','));
    for (const QString &line : std::as_const(lines)) {
        QList<std::optional<double>> row;
        for (const QString &field : line.split(QLatin1Char(','))) {
            bool number = false;
            const double value = field.toDouble(&number);
            row.append(field.isEmpty() ? std::nullopt : std::optional<double>(number ? value : qQNaN()));
        }
        back.rows.append(row);
    }
    return back;
}

// The first sheet of a workbook: texts through the shared strings, numbers from their <v>.
ReadBack readXlsx(const QString &path)
{
    QStringList shared;
    QXmlStreamReader strings(workbookPart(path, QStringLiteral("xl/sharedStrings.xml")));
    while (!strings.atEnd()) {
        if (strings.readNext() == QXmlStreamReader::StartElement && strings.name() == QLatin1String("t"))
            shared.append(strings.readElementText());
    }
    ReadBack back;
    QXmlStreamReader sheet(workbookPart(path, QStringLiteral("xl/worksheets/sheet1.xml")));
    int row = -1;
    int column = 0;
    bool text = false;
    while (!sheet.atEnd()) {
        if (sheet.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (sheet.name() == QLatin1String("c")) {
            const QString ref = sheet.attributes().value(QStringLiteral("r")).toString();   // "AB12"
            qsizetype i = 0;
            for (column = 0; i < ref.size() && ref.at(i).isLetter(); ++i)
                column = column * 26 + (ref.at(i).unicode() - 'A' + 1);
            --column;
            row = ref.mid(i).toInt() - 1;
            text = sheet.attributes().value(QStringLiteral("t")) == QLatin1String("s");
        } else if (sheet.name() == QLatin1String("v")) {
            const QString value = sheet.readElementText();
            if (row == 0) {
                back.headers.resize(column + 1);
                back.headers[column] = text ? shared.value(value.toInt()) : QStringLiteral("number ") + value;
                continue;
            }
            back.rows.resize(row);
            back.rows[row - 1].resize(column + 1);
            // A text in a row of numbers reads as NaN, which equals nothing.
            back.rows[row - 1][column] = text ? qQNaN() : value.toDouble();
        }
    }
    return back;
}

ExportTable sample()
{
    ExportTable t;
    t.name = QStringLiteral("2000 / cycle 1");
    t.headers = {QStringLiteral("DBH class (cm)"), QStringLiteral("FD (SPH)"), QStringLiteral("Note")};
    t.rows = {{12.5, 1234567.5, QStringLiteral("plain")}, {17.5, 0.1 + 0.2, QStringLiteral("a \"quoted\", listed\nline")}};
    return t;
}

}  // namespace

class tst_tableexport : public QObject {
    Q_OBJECT

private slots:
    void numbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 1234567.0 << "1234567";
        QTest::newRow("half") << 1234567.5 << "1234567.5";
        QTest::newRow("every digit that counts") << 0.1 + 0.2 << "0.30000000000000004";
        QTest::newRow("small") << 0.0001 << "0.0001";
        QTest::newRow("negative") << -3.0 << "-3";
        QTest::newRow("zero") << -0.0 << "0";
    }
    void numbers()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        // The locale of the user never reaches the file.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString written = ExportNumber(value);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(written, text);
        QCOMPARE(written.toDouble(), value);
    }

    void csvFollowsRfc4180()
    {
        QCOMPARE(CsvText(sample()), QByteArray("DBH class (cm),FD (SPH),Note\r\n"
                                               "12.5,1234567.5,plain\r\n"
                                               "17.5,0.30000000000000004,\"a \"\"quoted\"\", listed\nline\"\r\n"));
    }

    void workbookSheets()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("t.xlsx"));
        ExportTable second = sample();
        second.name = sample().name;   // the same name twice gets a sheet of its own
        SaveXlsx({sample(), second}, path);
        const QByteArray workbook = workbookPart(path, QStringLiteral("xl/workbook.xml"));
        QVERIFY2(workbook.contains("name=\"2000 _ cycle 1\"") && workbook.contains("name=\"2000 _ cycle 1 2\""), workbook.constData());
        const QByteArray sheet = workbookPart(path, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY2(sheet.contains("ySplit=\"1\"") && sheet.contains("state=\"frozen\""), sheet.constData());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("t.xlsx")});
        // Readable by others as any new file of the user is, not a scratch file's owner-only mode.
        QFile plain(dir.filePath(QStringLiteral("plain")));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QCOMPARE(QFileInfo(path).permissions(), plain.permissions());
    }

    // Files read back hold every number of the rows they were made from: the composition report's
    // rows of each statistic, the summary's rows. The CSV to the last digit, the workbook to the 16
    // significant digits its writer keeps.
    void filesHoldTheTables_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<int>("statistic");
        QTest::addColumn<QString>("kind");
        QTest::newRow("composition SPH") << "composition" << int(StandLevelsStatistic::Sph) << "S";
        QTest::newRow("composition basal area") << "composition" << int(StandLevelsStatistic::BasalArea) << "S";
        QTest::newRow("composition GTV") << "composition" << int(StandLevelsStatistic::MerchVol) << "S";
        QTest::newRow("summary of a standing run") << "summary" << 0 << "S";
        QTest::newRow("summary of a harvested run") << "summary" << 0 << "H";
    }
    void filesHoldTheTables()
    {
        QFETCH(QString, what);
        QFETCH(int, statistic);
        QFETCH(QString, kind);
        RunDatabase db;
        AddReportTestRun(db);
        const RunKey run{kReportTestRunId, KindOfText(kind)};
        ExportTable table;
        QList<QList<std::optional<double>>> expected;
        if (what == QLatin1String("composition")) {
            const StandLevelsCycleSums sums = ReadStandLevelsCycleSums(db.db, run.runId, run.letter());
            const auto s = static_cast<StandLevelsStatistic>(statistic);
            table = StandLevelsExportTable(db.db, sums, s);
            for (const StandLevelsReportRow &row : StandLevelsReportRows(db.db, sums.cycles, sums.species, sums, s)) {
                expected.append(QList<std::optional<double>>{double(row.year)});
                for (double v : row.values)
                    expected.last().append(v);
            }
        } else {
            const StandSummary summary = ReadStandSummary(db.db, run);
            table = StandSummaryExportTable(summary);
            for (const StandSummaryRow &row : summary.rows) {
                expected.append(QList<std::optional<double>>());
                for (const SummaryColumn &column : StandSummaryColumns(run.kind))
                    expected.last().append(column.value(row));
            }
        }
        QCOMPARE(expected.size(), kind == QLatin1String("S") ? 3 : 1);   // a row per year

        for (const QString &suffix : {QStringLiteral("csv"), QStringLiteral("xlsx")}) {
            const QString path = db.filePath(QStringLiteral("t.") + suffix);
            SaveExport(path, {table}, table);
            const ReadBack back = suffix == QLatin1String("csv") ? readCsv(path) : readXlsx(path);
            QCOMPARE(back.headers, table.headers);
            QCOMPARE(back.rows.size(), expected.size());
            for (qsizetype r = 0; r < expected.size(); ++r) {
                QCOMPARE(expected[r].size(), table.headers.size());
                for (qsizetype c = 0; c < expected[r].size(); ++c) {
                    const std::optional<double> cell = back.rows[r].value(c);
                    const std::optional<double> want = expected[r][c];
                    const QByteArray where = QStringLiteral("%1 row %2 column %3").arg(suffix).arg(r + 1).arg(table.headers[c]).toUtf8();
                    QVERIFY2(cell.has_value() == want.has_value(), where.constData());
                    if (want && suffix == QLatin1String("csv"))
                        QVERIFY2(*cell == *want, where.constData());
                    else if (want)
                        QVERIFY2(qAbs(*cell - *want) <= qAbs(*want) * 1e-15, where.constData());
                }
            }
        }
    }

    // A place that cannot take the file: a clear message naming it, and nothing left behind.
    void unwritableTargets_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("target");
        QTest::newRow("csv into a missing folder") << "csv" << "missing/t.csv";
        QTest::newRow("xlsx into a missing folder") << "xlsx" << "missing/t.xlsx";
        QTest::newRow("csv over a folder") << "csv" << "taken";
        QTest::newRow("xlsx over a folder") << "xlsx" << "taken";
        QTest::newRow("csv over a read-only file") << "csv" << "locked";
        QTest::newRow("xlsx over a read-only file") << "xlsx" << "locked";
    }
    void unwritableTargets()
    {
        QFETCH(QString, format);
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
            if (format == QLatin1String("csv"))
                SaveCsv(sample(), path);
            else
                SaveXlsx({sample()}, path);
            QFAIL("wrote where no file can be");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(target), qPrintable(e.description()));
            // Both formats refuse a read-only file alike.
            if (locked)
                QVERIFY2(e.description().contains(QStringLiteral("Existing file %1 is not writable").arg(path)), qPrintable(e.description()));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), locked ? QStringList{target} : QStringList());
        if (locked)
            QCOMPARE(ReadWholeFile(path), QByteArray("kept"));
    }
};

SENDREL_TEST_MAIN(tst_tableexport)
#include "tst_tableexport.moc"
