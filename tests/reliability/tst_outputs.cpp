#include "support/TestMain.h"
#include "support/FileSizeLimit.h"

#include "base/Numbers.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "cli/CliQuestions.h"
#include "cli/Command.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockDocument.h"
#include "domain/standstock/StandStockReport.h"
#include "graph/Graph.h"
#include "store/Schema.h"
#include "support/CliRun.h"
#include "support/Failures.h"
#include "support/OtherProgram.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"

#include <QDir>
#include <QFile>
#include <QPrinter>

#include <sys/stat.h>
#include <unistd.h>

using namespace sendrel;
using namespace sendrel::test;

namespace {

constexpr rlim_t kLimit = 200;    // below every report, chart and print of the tests

// Every cycle of a standing run, as "View Reports" takes them when all are selected.
QList<SelectedCycle> cyclesOf(RunStore &db, const QString &runId)
{
    QList<SelectedCycle> cycles;
    for (const CycleListEntry &e : UpdateHeaderList(db, {runId, RunKind::Standing}))
        cycles.append({ToInt16(e.cycle), e.yearText});
    return cycles;
}

// The stand table of those cycles, with no file; beforeEachCycle runs ahead of each cycle's reading.
QString standReport(RunStore &db, const QString &runId, const QList<SelectedCycle> &cycles, const std::function<void()> &beforeEachCycle = {})
{
    ClassLayout layout;
    layout.SetClasses(u"10", u"5", u"4");
    StandStockData data(layout, db.NumSpecies);
    data.LetEventsRun = beforeEachCycle;
    StandStockReportRequest request;
    request.This_RunId = runId;
    request.This_SorH = QStringLiteral("S");
    request.cycles = cycles;
    QString told;
    QTextStream stream(&told);
    CliQuestions questions(stream);
    return CompileStandStockReport(db, questions, request, layout, data).text;
}

QString compositionReport(RunStore &db, const QString &runId)
{
    StandLevelsReportRequest request;
    request.This_RunId = runId;
    request.This_SorH = QStringLiteral("S");
    request.sums = ReadStandLevelsCycleSums(db, runId, request.This_SorH);
    request.CycleRS = request.sums->cycles;
    request.SpeciesListRS = request.sums->species;
    QString told;
    QTextStream stream(&told);
    CliQuestions questions(stream);
    return CompileStandLevelsReport(db, questions, request).text;
}

// How many rows the stand table export of those cycles has, years joined.
qsizetype standExport(RunStore &db, const QString &runId, const QList<SelectedCycle> &cycles,
                                   const std::function<void()> &beforeEachCycle)
{
    ClassLayout layout;
    layout.SetClasses(u"10", u"5", u"4");
    StandStockData data(layout, db.NumSpecies);
    data.LetEventsRun = beforeEachCycle;
    return CompileStandStockDocument(db, {{runId, RunKind::Standing}, true, cycles}, layout, data).single.rows.size();
}

// What another program's delete of the run does, as one unit.
void deleteFromAnotherProgram(const QString &path, const QString &runId)
{
    OtherProgram other(path);
    WriteTransaction transaction(other.db.DBEngine);
    other.db.deleteRun({runId, RunKind::Standing});
    transaction.commit();
}

}  // namespace

// Outputs that are all or nothing, reports of a database that cannot be written, and reports
// that read their run as of one moment.
class tst_outputs : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        SetChartFileWriter([](const QList<ChartData> &pages, const QString &path) { Graph::SaveCharts(pages, path); });
    }

    // On a full disk every output fails naming its file and the cause, exit 1, and the file
    // that was there stays as it was, with nothing left beside it.
    void outputsOnAFullDisk_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("full");
        const QStringList stand{"report", "stand", "CLIRPT", "--kind", "S"};
        QTest::newRow("room enough") << stand + QStringList{"-o", "out.txt"} << "out.txt" << false;
        QTest::newRow("stand table to a file") << stand + QStringList{"-o", "out.txt"} << "out.txt" << true;
        QTest::newRow("stand table to its place") << stand << "Work/CLIRPT_Stand.txt" << true;
        QTest::newRow("composition") << QStringList{"report", "composition", "CLIRPT", "--kind", "S", "-o", "out.txt"} << "out.txt" << true;
        for (const char *type : {"png", "svg", "pdf"}) {
            QTest::addRow("chart, %s", type) << QStringList{"chart", "stand", "CLIRPT", "--kind", "S", "--cycle", "1", "-o",
                                                            QStringLiteral("c.") + type}
                                             << QStringLiteral("c.") + type << true;
        }
        QTest::newRow("composition chart") << QStringList{"chart", "composition", "CLIRPT", "--kind", "S", "-o", "c.svg"} << "c.svg" << true;
    }
    void outputsOnAFullDisk()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, file);
        QFETCH(bool, full);
        RunDatabase f;
        AddReportTestRun(f);
        SettingsStore store;
        store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), f.workDir());
        store.sync();
        const QString path = f.writeFile(file, "earlier");
        const int o = static_cast<int>(args.indexOf(QStringLiteral("-o")));
        if (o >= 0)
            args[o + 1] = f.filePath(args.at(o + 1));
        const QStringList before = QDir(QFileInfo(path).path()).entryList(QDir::Files);
        CliRun r;
        {
            std::optional<FileSizeLimit> limit;
            if (full)
                limit.emplace(kLimit);
            r = RunTool(QStringList{"--db", f.path()} + args);
        }
        QCOMPARE(r.code, full ? 1 : 0);
        if (!full) {
            QVERIFY(ReadWholeFile(path).size() > qint64(kLimit));
            return;
        }
        QVERIFY2(r.err.contains(QDir::toNativeSeparators(path)) && r.err.contains(QLatin1String("File too large")), qPrintable(r.err));
        QCOMPARE(ReadWholeFile(path), QByteArray("earlier"));
        QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Files), before);
    }

    // A print to a file on a full disk fails naming the file and the cause and leaves the earlier
    // file; with room it is a PDF.
    void printToFileOnAFullDisk()
    {
        RunDatabase f(RunDatabase::Db::None);
        const QString path = f.writeFile(QStringLiteral("chart.pdf"), "earlier");
        Graph graph;
        graph.ChartSeriesCount(1);
        graph.ChartPointCount(2);
        graph.ChartValue(5);
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        graph.setPrinter(&printer);
        std::optional<SendrelError> failure;
        {
            const FileSizeLimit limit(kLimit);
            failure = FailureOf([&] { graph.ChartDraw(5); });
        }
        QVERIFY(failure);
        QVERIFY2(failure->description() == QStringLiteral("Cannot write %1: File too large").arg(path), qPrintable(failure->description()));
        QCOMPARE(ReadWholeFile(path), QByteArray("earlier"));
        QCOMPARE(QDir(f.dir()).entryList(QDir::Files), QStringList{"chart.pdf"});
        graph.ChartDraw(5);
        QVERIFY(ReadWholeFile(path).startsWith("%PDF"));
    }

    // A database whose file, or whose folder, cannot be written lists its runs and gives every
    // report, and is left byte for byte as it was, with nothing added beside it. Permissions do not
    // stop the superuser: then the engine is told that the file or folder cannot be written.
    void aReadOnlyDatabaseGivesReports_data()
    {
        QTest::addColumn<int>("accessNumber");
        QTest::newRow("read-only file") << static_cast<int>(clsDBEngine::Access::ReadOnlyFile);
        QTest::newRow("read-only folder") << static_cast<int>(clsDBEngine::Access::ReadOnlyFolder);
    }
    void aReadOnlyDatabaseGivesReports()
    {
        QFETCH(int, accessNumber);
        const auto access = static_cast<clsDBEngine::Access>(accessNumber);
        RunDatabase f;
        AddReportTestRun(f);
        const QList<SelectedCycle> cycles = cyclesOf(f.db, kReportTestRunId);
        const QString alone[2] = {standReport(f.db, kReportTestRunId, cycles), compositionReport(f.db, kReportTestRunId)};
        const qsizetype runs = f.db.runs().size();
        f.db.close();
        const QString folder = QFileInfo(f.path()).path();
        const QByteArray bytes = ReadWholeFile(f.path());
        const QStringList files = QDir(folder).entryList(QDir::Files);
        const bool root = ::geteuid() == 0;
        const QString locked = access == clsDBEngine::Access::ReadOnlyFile ? f.path() : folder;
        if (!root)
            QCOMPARE(::chmod(QFile::encodeName(locked).constData(), access == clsDBEngine::Access::ReadOnlyFile ? 0444 : 0555), 0);
        {
            OtherProgram reader(f.path(), 10000, root ? access : clsDBEngine::Access::AsFound);
            QVERIFY(reader.db.DBEngine.IsReadOnly());
            QCOMPARE(reader.db.runs().size(), runs);
            QCOMPARE(standReport(reader.db, kReportTestRunId, cycles), alone[0]);
            QCOMPARE(compositionReport(reader.db, kReportTestRunId), alone[1]);
            // It is read only indeed.
            QVERIFY(FailureOf([&] { reader.db.deleteRun({kReportTestRunId, RunKind::Standing}); }));
        }
        if (!root)
            ::chmod(QFile::encodeName(locked).constData(), access == clsDBEngine::Access::ReadOnlyFile ? 0644 : 0755);
        QCOMPARE(ReadWholeFile(f.path()), bytes);
        if (access == clsDBEngine::Access::ReadOnlyFolder)
            QCOMPARE(QDir(folder).entryList(QDir::Files), files);
    }

    // Another program deletes the run while a report or an export reads it: what is read is the
    // run as of the report's start, whole; a run deleted before the start is missing.
    void aDeleteRacingAReport_data()
    {
        QTest::addColumn<bool>("exported");
        QTest::newRow("report") << false;
        QTest::newRow("export") << true;
    }
    void aDeleteRacingAReport()
    {
        QFETCH(bool, exported);
        RunDatabase f;
        AddReportTestRun(f);
        const QList<SelectedCycle> cycles = cyclesOf(f.db, kReportTestRunId);
        const auto made = [&](const std::function<void()> &beforeEachCycle) {
            return exported ? QVariant::fromValue(standExport(f.db, kReportTestRunId, cycles, beforeEachCycle))
                            : QVariant(standReport(f.db, kReportTestRunId, cycles, beforeEachCycle));
        };
        const QVariant alone = made({});
        bool deleted = false;
        const QVariant raced = made([&] {
            if (!deleted)
                deleteFromAnotherProgram(f.path(), kReportTestRunId);
            deleted = true;
        });
        QVERIFY(deleted);
        QCOMPARE(raced, alone);
        const std::optional<SendrelError> missing = FailureOf([&] { made({}); });
        QVERIFY(missing);
        QCOMPARE(missing->number(), ErrNo::RunMissing);
        QVERIFY2(missing->description().startsWith(QStringLiteral("There is no run CLIRPT:Standing in ")), qPrintable(missing->description()));
    }
};

SENDREL_TEST_MAIN(tst_outputs)
#include "tst_outputs.moc"
