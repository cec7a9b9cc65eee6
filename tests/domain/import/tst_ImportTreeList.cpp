#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/import/ImportTreeList.h"
#include "domain/import/ModelEntryInserter.h"
#include "domain/import/TreeListReader.h"
#include "store/CycleSums.h"

#include "support/RunDatabase.h"
#include "support/TreeListLines.h"

#include <QHash>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

const QByteArray kStamp = "03/15/2021 10:20:30";

// Three cycles: 2, 1 and 0 trees; the second header's run name differs and changes nothing.
QByteArray threeCycles(const QByteArray &runName = "PLOT 7")
{
    return TreeListText({
        "Growth model output, any preamble",
        "",
        HeaderLine(11, 1, 2000, runName, kStamp),
        TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
        "",
        TreeLine("2", "PL", 7, 300.5, 12.5, 0.2, 0.1),
        HeaderLine(12, 2, 2010, "OTHER"),
        TreeLine("1", "FD", 3, 240.0, 34.0, 1.1, 0.9),
        HeaderLine(13, 3, 2020),
        "   ",
    });
}

// A list whose third cycle holds species number 12.
QByteArray badSpeciesInCycle3()
{
    return TreeListText({
        HeaderLine(1, 1, 2000, "BAD", kStamp),
        TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
        HeaderLine(1, 2, 2010),
        TreeLine("1", "FD", 3, 240.0, 34.0, 1.1, 0.9),
        HeaderLine(1, 3, 2020),
        TreeLine("1", "FD", 3, 230.0, 38.0, 1.3, 1.1),
        TreeLine("2", "XX", 12, 10.0, 20.0, 0.3, 0.2),
        TreeLine("3", "FD", 3, 230.0, 38.0, 1.3, 1.1),
    });
}

// What the window and the tool tell of an import, as texts.
QStringList told(const QString &path, const ImportResult &r)
{
    QStringList texts;
    for (const MessageRequest &m : ImportMessages(path, r))
        texts.append(m.text);
    return texts;
}

}  // namespace

class tst_ImportTreeList : public QObject {
    Q_OBJECT

private:
    // A database holding run "PLOT 7" of both kinds, from a complete import each.
    static void importBothKinds(RunDatabase &f, const QString &path)
    {
        for (const char *kind : {"S", "H"}) {
            f.questions.answerRunId(DialogEnd::Check);
            QVERIFY(ImportTreeList(f.db, f.questions, path, KindOfText(QString::fromLatin1(kind))).completed());
        }
        f.questions.clear();
    }

    static QString runRows(RunDatabase &f, const QString &table, const QString &kind)
    {
        return QString::number(f.count(table, QStringLiteral("Run_Id = 'PLOT 7' AND Standing_Harvested = '%1'").arg(kind)));
    }

private slots:
    void completedImport()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);

        QVERIFY(r.completed());
        QCOMPARE(r.runId, QStringLiteral("PLOT 7"));
        QCOMPARE(r.cyclesRead, 3);
        QCOMPARE(r.treeRecordsRead, 3);
        QCOMPARE(r.dialogResult, DialogEnd::OK);
        // The suggestion was offered once, unchanged in case.
        QCOMPARE(f.questions.asked().first().kind, QStringLiteral("askRunId"));
        QCOMPARE(f.questions.asked().first().text, QStringLiteral("PLOT 7"));
        QCOMPARE(f.questions.messageTexts(), QStringList());

        QCOMPARE(f.rows(QStringLiteral("SELECT * FROM Model_Run")),
                 QStringList({QStringLiteral("PLOT 7|2021-03-15|10:20:30|Not Used|S|2")}));
        QCOMPARE(f.rows(QStringLiteral("SELECT * FROM Model_Header ORDER BY rowid")),
                 QStringList({QStringLiteral("PLOT 7|11|1|2000|S"), QStringLiteral("PLOT 7|12|2|2010|S"),
                              QStringLiteral("PLOT 7|13|3|2020|S")}));
        QCOMPARE(f.rows(QStringLiteral("SELECT Tree_Id, Species_Code, Cycle_Number, Trees_per_ha, Species_Letters, "
                                       "round(MerchVolLessDWB, 10) FROM Model_Entries ORDER BY rowid")),
                 QStringList({QStringLiteral("1|3|1|250|FD|0.6769"), QStringLiteral("2|7|1|300.5|PL|0.0957"),
                              QStringLiteral("1|3|2|240|FD|0.8694")}));
        // The busy message named the last cycle and is gone.
        QCOMPARE(f.questions.lastBusyMessage(), QStringLiteral("Importing cycle number: 3"));
        QVERIFY(!f.questions.busyVisible());
    }

    void rowsAreThoseOfTheirLines()
    {
        // Two batches and a rest: every row lands whole, in order, each value by its position and of its column's type.
        RunDatabase f;
        QList<QByteArray> lines{HeaderLine(1, 4, 2000, "FAST", kStamp)};
        const int trees = 2 * ModelEntryInserter::kBatchRows + 7;
        for (int i = 0; i < trees; ++i)
            lines.append(TreeLine(QByteArray::number(i), i % 2 ? "CW" : "HW", i % 2 ? 6 : 5, 10.0 + i, 8.0 + i % 90, 0.01 * i, 0.005 * i));
        lines.append(ColumnLine().at(2, QByteArray("\xe9t\xe9", 3)).at(16, "SE").at(19, " 8").at(50, "22.2"));
        const QString path = f.writeFile(QStringLiteral("fast.lst"), TreeListText(lines));
        f.questions.answerRunId(DialogEnd::Check);
        QVERIFY(ImportTreeList(f.db, f.questions, path, RunKind::Standing).completed());

        Statement stored(f.tm.DBEngine, QStringLiteral("SELECT * FROM Model_Entries ORDER BY rowid"));
        qsizetype line = 1;
        for (; stored.next(); ++line) {
            const TreeRecord record = ParseTreeRecord(lines.at(line), 4);
            const QHash<int, QString> texts{{EntryPos::RunId, QStringLiteral("FAST")}, {EntryPos::TreeId, record.treeIdText()},
                                            {EntryPos::StandingHarvested, QStringLiteral("S")}, {EntryPos::SpeciesLetters, record.speciesLetters()}};
            for (int pos = 0; pos < EntryPos::Count; ++pos) {
                const QVariant v = stored.value(pos);
                const bool ok = texts.contains(pos) ? v.toString() == texts.value(pos)
                                : kModelEntryTypes[pos] == FieldType::Double
                                    ? v.typeId() == QMetaType::Double && v.toDouble() == record.values[pos]
                                    : v.typeId() == QMetaType::LongLong && v.toLongLong() == static_cast<qint64>(record.values[pos]);
                if (!ok)
                    QFAIL(qPrintable(QStringLiteral("line %1, position %2: %3").arg(line).arg(pos).arg(v.toString())));
            }
        }
        QCOMPARE(line, lines.size());

        // The sums kept beside the rows are those of the rows, to the last bit, with the rowids of
        // each group's first and last row.
        QCOMPARE(f.rows(QStringLiteral("SELECT Cycle_Number, Species_Code, First_Record, Last_Record FROM Model_Cycle_Sums ORDER BY First_Record")),
                 f.rows(QStringLiteral("SELECT Cycle_Number, Species_Code, MIN(rowid), MAX(rowid) FROM Model_Entries "
                                       "WHERE Run_Id = 'FAST' GROUP BY 1, 2 ORDER BY 3")));
        auto bits = [](const QList<CycleSpeciesSums> &groups) {
            QStringList out;
            for (const CycleSpeciesSums &g : groups)
                for (double v : {g.sums.sph, g.sums.basalArea, g.sums.totalVolume, g.sums.grossMerchVolume, g.sums.netMerchVolume})
                    out.append(QString::number(v, 'g', 17));
            return out;
        };
        const RunKey fastRun{QStringLiteral("FAST"), RunKind::Standing};
        QCOMPARE(bits(ReadCycleSums(f.db.DBEngine, fastRun)), bits(SumCycleRecords(f.db.DBEngine, fastRun)));
    }

    void emptyCyclesBlankLinesAndRepeatedCycles()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("e.lst"), TreeListText({
            HeaderLine(1, 5, 2000, "E"), "", "",
            HeaderLine(1, 5, 2005), TreeLine("1", "SE", 8, 1, 10, 0.1, 0),
            "", HeaderLine(1, 6, 2010), "      "}));
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Harvested);
        QVERIFY(r.completed());
        QCOMPARE(f.rows(QStringLiteral("SELECT Cycle, Cycle_Year FROM Model_Header ORDER BY rowid")),
                 QStringList({QStringLiteral("5|2000"), QStringLiteral("5|2005"), QStringLiteral("6|2010")}));
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 1);
    }

    void fileNameSuggestionAndEditedRunId()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("stand.b.lst"), threeCycles(QByteArray()));
        f.questions.answerRunId(DialogEnd::Check, QStringLiteral(" Edited\t"));   // blanks at the ends are no part of it
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(f.questions.asked().first().text, QStringLiteral("STAND"));
        QCOMPARE(r.runId, QStringLiteral("Edited"));
        QCOMPARE(f.count(QStringLiteral("Model_Header"), QStringLiteral("Run_Id = 'Edited'")), 3);

        // Blanks alone are no Run Id.
        f.questions.answerRunId(DialogEnd::Check, QStringLiteral("   "));
        const ImportResult blank = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(blank.ending, ImportEnding::Refused);
        QVERIFY2(blank.detail.contains(QLatin1String("the Run Id is empty")), qPrintable(blank.detail));
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 1);
    }

    void cancelAtEachDialogTouchesNothing()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        const QStringList before = f.rows(QStringLiteral("SELECT * FROM Model_Entries ORDER BY rowid"));

        // A free Run Id is offered and cancelled.
        const QString other = f.writeFile(QStringLiteral("new.lst"), threeCycles("NEW"));
        f.questions.answerRunId(DialogEnd::Cancel);
        QCOMPARE(ImportTreeList(f.db, f.questions, other, RunKind::Standing).ending, ImportEnding::Cancelled);
        // The taken one meets the duplicate dialog: Cancel.
        f.questions.answerDuplicateId(DialogEnd::Cancel);
        QCOMPARE(ImportTreeList(f.db, f.questions, path, RunKind::Standing).ending, ImportEnding::Cancelled);
        // Rename, then Cancel in the Run Id dialog.
        f.questions.answerDuplicateId(DialogEnd::Rename);
        f.questions.answerRunId(DialogEnd::Cancel);
        const ImportResult renamed = ImportTreeList(f.db, f.questions, path, RunKind::Harvested);
        QCOMPARE(renamed.ending, ImportEnding::Cancelled);
        QCOMPARE(renamed.dialogResult, DialogEnd::Cancel);

        QCOMPARE(f.questions.pendingAnswers(), 0);
        QCOMPARE(f.rows(QStringLiteral("SELECT * FROM Model_Entries ORDER BY rowid")), before);
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 2);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 6);
    }

    void invalidFilesTouchNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no header") << TreeListText({"preamble", TreeLine("1", "FD", 3, 1, 10, 0.1, 0)});
        QTest::newRow("header is the last line") << TreeListText({"preamble", HeaderLine(1, 1, 2000)});
        QTest::newRow("header is the last line, no line end") << QByteArray("x\r\n") + HeaderLine(1, 1, 2000);
    }

    void invalidFilesTouchNothing()
    {
        QFETCH(QByteArray, content);
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("bad.lst"), content);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::InvalidFile);
        QCOMPARE(told(path, r), QStringList({kInvalidFileFormatMessage}));
        QCOMPARE(ImportMessages(path, r).first().title, QStringLiteral("Sendrel"));
        QCOMPARE(f.questions.asked().size(), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 0);
    }

    void refusalsBeforeAnyQuestion()
    {
        RunDatabase f;
        const QString missing = f.filePath(QStringLiteral("missing.lst"));
        ImportResult r = ImportTreeList(f.db, f.questions, missing, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Refused);
        QVERIFY(told(missing, r).value(0).contains(QStringLiteral("missing.lst")));

        // A first header number beyond 16 bits: named with its file and line.
        f.questions.clear();
        const QString path = f.writeFile(QStringLiteral("big.lst"),
                                         TreeListText({"preamble", HeaderLine(1, 40000, 2000), TreeLine("1", "FD", 3, 1, 10, 0.1, 0)}));
        r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Refused);
        QCOMPARE(f.questions.asked().size(), 0);   // no dialog
        QVERIFY2(r.detail.contains(QStringLiteral("big.lst, line 2: the first header is out of range (column 11, ")), qPrintable(r.detail));
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
    }

    void overwriteKeepsTheOtherKind()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        const QStringList harvested = f.rows(QStringLiteral("SELECT * FROM Model_Entries WHERE Standing_Harvested = 'H' ORDER BY rowid"));

        const QString shorter = f.writeFile(QStringLiteral("short.lst"),
                                            TreeListText({HeaderLine(1, 9, 2090, "PLOT 7", kStamp), TreeLine("9", "CW", 6, 5, 50, 2, 1.5)}));
        f.questions.answerDuplicateId(DialogEnd::Overwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, shorter, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.dialogResult, DialogEnd::Overwrite);
        QCOMPARE(runRows(f, QStringLiteral("Model_Header"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(runRows(f, QStringLiteral("Model_Entries"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(runRows(f, QStringLiteral("Model_Run"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(f.rows(QStringLiteral("SELECT * FROM Model_Entries WHERE Standing_Harvested = 'H' ORDER BY rowid")), harvested);
    }

    // An overwrite is one unit: a list that fails in its third cycle, or a failure met while the
    // old run is deleted, leaves the whole database as it was, old run included.
    void failedOverwriteKeepsTheOldRun_data()
    {
        QTest::addColumn<QString>("failure");
        QTest::newRow("invalid species in cycle 3") << "species";
        for (const char *table : {"Model_Cycle_Sums", "Model_Entries", "Model_Header", "Model_Run"})
            QTest::newRow(table) << table;
    }
    void failedOverwriteKeepsTheOldRun()
    {
        QFETCH(QString, failure);
        RunDatabase f;
        const QString good = f.writeFile(QStringLiteral("good.lst"), threeCycles("BAD"));
        importBothKinds(f, good);   // earlier rows of BAD, both kinds
        const QStringList before = RunTableRows(f.db);

        const bool species = failure == QLatin1String("species");
        const QString path = species ? f.writeFile(QStringLiteral("bad.lst"), ::badSpeciesInCycle3()) : good;
        f.db.beforeDeleteStatement = [&](const QString &table) {
            if (table == failure)
                throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("test"), QStringLiteral("injected"));
        };
        f.questions.answerDuplicateId(DialogEnd::Overwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);

        QCOMPARE(r.ending, ImportEnding::Failed);
        QCOMPARE(RunTableRows(f.db), before);
        QVERIFY(!f.questions.busyVisible());
        QVERIFY(!f.tm.DBEngine.InTransaction());
        const QStringList texts = told(path, r);
        if (species) {
            // Two messages: the species, then where, by file and line.
            QCOMPARE(texts.size(), 2);
            QCOMPARE(texts.first(), QStringLiteral("Invalid species code: 12  (Valid range is 1-11)"));
            QVERIFY(texts.last().startsWith(QStringLiteral("Import Error")));
            QVERIFY(texts.last().contains(QStringLiteral("bad.lst, line 7")));
        } else {
            QCOMPARE(texts.size(), 1);
            QVERIFY2(texts.last().startsWith(QStringLiteral("Import Error")) && texts.last().contains(QLatin1String("injected")),
                     qPrintable(texts.last()));
        }
    }

    // Fields the reading cut or could not read are told once, after the import: how many, the
    // first ten, each with its file, line and column.
    void warningsAreToldOnceAfterTheImport()
    {
        RunDatabase f;
        QList<QByteArray> lines{HeaderLine(1, 1, 2000, "W", kStamp)};
        for (int i = 0; i < 12; ++i)
            lines.append(ColumnLine().at(1, TreeLine(QByteArray::number(i), "FD", 3, 250.0, 30.0, 0.9, 0.7)).at(50, " 25,4"));
        const QString path = f.writeFile(QStringLiteral("w.lst"), TreeListText(lines));
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.warnings.size(), 10);
        QCOMPARE(r.moreWarnings, 2);
        QVERIFY2(r.warnings.at(9).endsWith(QStringLiteral("w.lst, line 11, column 53: the diameter (columns 50-54): \"25,4\" is read as 25; "
                                                           "the reading stops at \",4\"")),
                 qPrintable(r.warnings.at(9)));
        QCOMPARE(f.scalar(QStringLiteral("SELECT Current_Diameter FROM Model_Entries LIMIT 1")).toDouble(), 25.0);
        const QStringList texts = told(path, r);
        QCOMPARE(texts.size(), 1);
        QVERIFY2(texts.first().contains(QStringLiteral("12 places of it may not have been read as meant (the first 10 below)")), qPrintable(texts.first()));
        QVERIFY(texts.first().endsWith(r.warnings.join(QLatin1Char('\n'))));
    }

    // A value no tree can have refuses the list where it stands; nothing of it is stored.
    void impossibleValueRefusesTheList()
    {
        RunDatabase f;
        importBothKinds(f, f.writeFile(QStringLiteral("good.lst"), threeCycles("KEEP")));
        const QStringList before = RunTableRows(f.db);

        const QString path = f.writeFile(QStringLiteral("bad.lst"),
                                         TreeListText({HeaderLine(1, 1, 2000, "KEEP", kStamp), TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
                                                       TreeLine("2", "FD", 3, 250.0, -25.0, 0.9, 0.7)}));
        f.questions.answerDuplicateId(DialogEnd::Overwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Failed);
        QVERIFY2(r.detail.contains(QStringLiteral("bad.lst, line 3 failed: column 50, the diameter (columns 50-54): \"-25.0\" is no value")),
                 qPrintable(r.detail));
        QVERIFY(told(path, r).last().contains(r.detail));
        QCOMPARE(RunTableRows(f.db), before);   // the old run whole: the overwrite is one unit
    }

    void overflowInALaterHeaderRollsBack()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("o.lst"), TreeListText({HeaderLine(1, 1, 2000, "O"),
                                                                                 TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
                                                                                 HeaderLine(1, 2, 99999)}));
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Failed);
        QVERIFY(told(path, r).value(0).startsWith(QStringLiteral("Import Error")));
        // No run row without data, which would make the corrected list a duplicate.
        QCOMPARE(RunTableRows(f.db), QStringList());
        QVERIFY(!f.tm.DBEngine.InTransaction());
    }

    void renameTakesTheNextFreeSuffix()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        f.addRun(QStringLiteral("PLOT 7:1"), QStringLiteral("S"));
        f.addRun(QStringLiteral("plot 7:2"), QStringLiteral("H"));   // either kind, any case
        QCOMPARE(NextFreeRunId(f.db, QStringLiteral("PLOT 7")), QStringLiteral("PLOT 7:3"));

        // Rename offers PLOT 7:3; the user types the taken PLOT 7:1, which meets the dialog again.
        f.questions.answerDuplicateId(DialogEnd::Rename);
        f.questions.answerRunId(DialogEnd::Check, QStringLiteral("PLOT 7:1"));
        f.questions.answerDuplicateId(DialogEnd::Rename);
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QStringList asked;
        for (const auto &a : f.questions.asked())
            asked.append(a.kind + QLatin1Char(' ') + a.text);
        QCOMPARE(asked, QStringList({QStringLiteral("askDuplicateId PLOT 7"), QStringLiteral("askRunId PLOT 7:3"),
                                     QStringLiteral("askDuplicateId PLOT 7:1"), QStringLiteral("askRunId PLOT 7:1:1")}));
        QCOMPARE(r.runId, QStringLiteral("PLOT 7:1:1"));
        QCOMPARE(f.count(QStringLiteral("Model_Entries"), QStringLiteral("Run_Id = 'PLOT 7:1:1'")), 3);
    }

    void renameReadsTheTableAsItIsNow()
    {
        // A name taken since the program opened the database is not offered.
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        f.addRun(QStringLiteral("PLOT 7:1"), QStringLiteral("S"));
        f.questions.answerDuplicateId(DialogEnd::Rename);
        f.questions.answerRunId(DialogEnd::Check);
        QCOMPARE(ImportTreeList(f.db, f.questions, path, RunKind::Standing).runId, QStringLiteral("PLOT 7:2"));
        QCOMPARE(f.questions.asked().at(1).text, QStringLiteral("PLOT 7:2"));
    }

    void quotesInRunIds()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("q.lst"), threeCycles("O'Hara"));
        importBothKinds(f, path);
        f.questions.answerDuplicateId(DialogEnd::Rename);
        f.questions.answerRunId(DialogEnd::Check);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.runId, QStringLiteral("O'Hara:1"));
    }
};

SENDREL_TEST_MAIN(tst_ImportTreeList)
#include "tst_ImportTreeList.moc"
