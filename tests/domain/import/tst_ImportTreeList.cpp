#include "support/TestMain.h"
#include "base/UserQuestions.h"
#include "domain/import/ImportTreeList.h"
#include "domain/import/ModelEntryInserter.h"
#include "domain/import/TreeListReader.h"
#include "store/CycleSums.h"

#include "support/RunDatabase.h"
#include "support/TreeListLines.h"

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

}  // namespace

class tst_ImportTreeList : public QObject {
    Q_OBJECT

private:
    // A database holding run "PLOT 7" of both kinds, from a complete import each.
    static void importBothKinds(RunDatabase &f, const QString &path)
    {
        for (const char *kind : {"S", "H"}) {
            f.questions.answerRunId(kDialogCheck);
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
        f.questions.answerRunId(kDialogCheck);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);

        QVERIFY(r.completed());
        QCOMPARE(r.runId, QStringLiteral("PLOT 7"));
        QCOMPARE(r.cyclesRead, 3);
        QCOMPARE(r.treeRecordsRead, 3);
        QCOMPARE(r.dialogResult, kDialogOK);
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

    void rowsAreThoseOfAddRecord()
    {
        // The batched insert writes exactly the row that AddModelEntry writes through AddRecord.
        RunDatabase f;
        QList<QByteArray> lines{HeaderLine(1, 4, 2000, "FAST", kStamp)};
        const int trees = 2 * ModelEntryInserter::kBatchRows + 7;   // two batches and a rest
        for (int i = 0; i < trees; ++i)
            lines.append(TreeLine(QByteArray::number(i), i % 2 ? "CW" : "HW", i % 2 ? 6 : 5, 10.0 + i, 8.0 + i % 90, 0.01 * i, 0.005 * i));
        lines.append(ColumnLine().at(2, QByteArray("\xe9t\xe9", 3)).at(16, "SE").at(19, " 8").at(50, "22.2"));
        const QString path = f.writeFile(QStringLiteral("fast.lst"), TreeListText(lines));
        f.questions.answerRunId(kDialogCheck);
        QVERIFY(ImportTreeList(f.db, f.questions, path, RunKind::Standing).completed());

        f.tm.DBEngine.StartTrans();
        for (qsizetype i = 1; i < lines.size(); ++i)
            AddModelEntry(f.tm.DBEngine, ParseTreeRecord(lines[i], 4), QStringLiteral("SLOW"), QStringLiteral("S"));
        f.tm.DBEngine.CommtTrans();
        const QString columns = QStringLiteral("Tree_Id, Col_11_14, Species_Code, Col_28_30, Trees_per_ha, Current_Diameter, Col_56_60, "
                                               "Col_62_66, Col_68_71, Constant_1, Col_73_74, Col_84_89, Col_22_23, Total_Volume, "
                                               "Gross_Merch_Volume, Col_111_117, Col_125_127, Cycle_Number, Constant_1b, Col_81_82, "
                                               "Standing_Harvested, Col_41_48, Species_Letters, Col_76_79, Col_91_95, Col_119_120, "
                                               "Col_122_123, Col_25_26, MerchVolLessDWB");
        const QString typed = QStringLiteral("SELECT ") + columns + QStringLiteral(", typeof(Col_11_14), typeof(Trees_per_ha), "
                                                                                   "typeof(Tree_Id) FROM Model_Entries WHERE Run_Id = '%1' ORDER BY rowid");
        const QStringList fast = f.rows(typed.arg(QStringLiteral("FAST")));
        QCOMPARE(fast.size(), trees + 1);
        QCOMPARE(fast, f.rows(typed.arg(QStringLiteral("SLOW"))));
        QVERIFY(fast.last().startsWith(QStringLiteral("\u00e9t\u00e9|")));

        // The sums kept beside the rows are those of the rows, to the last bit, with the rowids of
        // each group's first and last row.
        QCOMPARE(f.rows(QStringLiteral("SELECT Cycle_Number, Species_Code, First_Record, Last_Record FROM Model_Cycle_Sums ORDER BY First_Record")),
                 f.rows(QStringLiteral("SELECT Cycle_Number, Species_Code, MIN(rowid), MAX(rowid) FROM Model_Entries "
                                       "WHERE Run_Id = 'FAST' GROUP BY 1, 2 ORDER BY 3")));
        auto bits = [](const QList<CycleSpeciesSums> &groups) {
            QStringList out;
            for (const CycleSpeciesSums &g : groups) {
                for (double v : {g.sums.sph, g.sums.basalArea, g.sums.totalVolume, g.sums.grossMerchVolume, g.sums.netMerchVolume})
                    out.append(QString::number(v, 'g', 17));
            }
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
        f.questions.answerRunId(kDialogCheck);
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
        f.questions.answerRunId(kDialogCheck, QStringLiteral("Edited"));
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(f.questions.asked().first().text, QStringLiteral("STAND"));
        QCOMPARE(r.runId, QStringLiteral("Edited"));
        QCOMPARE(f.count(QStringLiteral("Model_Header"), QStringLiteral("Run_Id = 'Edited'")), 3);
    }

    void cancelAtEachDialogTouchesNothing()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        const QStringList before = f.rows(QStringLiteral("SELECT * FROM Model_Entries ORDER BY rowid"));

        // A free Run Id is offered and cancelled.
        const QString other = f.writeFile(QStringLiteral("new.lst"), threeCycles("NEW"));
        f.questions.answerRunId(kDialogCancel);
        QCOMPARE(ImportTreeList(f.db, f.questions, other, RunKind::Standing).ending, ImportEnding::Cancelled);
        // The taken one meets the duplicate dialog: Cancel.
        f.questions.answerDuplicateId(kDialogCancel);
        QCOMPARE(ImportTreeList(f.db, f.questions, path, RunKind::Standing).ending, ImportEnding::Cancelled);
        // Rename, then Cancel in the Run Id dialog.
        f.questions.answerDuplicateId(kDialogRename);
        f.questions.answerRunId(kDialogCancel);
        const ImportResult renamed = ImportTreeList(f.db, f.questions, path, RunKind::Harvested);
        QCOMPARE(renamed.ending, ImportEnding::Cancelled);
        QCOMPARE(renamed.dialogResult, kDialogCancel);

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
        QCOMPARE(f.questions.messageTexts(), QStringList({kInvalidFileFormatMessage}));
        QCOMPARE(f.questions.asked().first().title, QStringLiteral("Sendrel"));
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 0);
    }

    void refusalsBeforeAnyQuestion()
    {
        RunDatabase f;
        const QString missing = f.filePath(QStringLiteral("missing.lst"));
        ImportResult r = ImportTreeList(f.db, f.questions, missing, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Refused);
        QVERIFY(f.questions.messageTexts().value(0).contains(QStringLiteral("missing.lst")));

        // A first header number beyond 16 bits: named with its file and line.
        f.questions.clear();
        const QString path = f.writeFile(QStringLiteral("big.lst"),
                                         TreeListText({"preamble", HeaderLine(1, 40000, 2000), TreeLine("1", "FD", 3, 1, 10, 0.1, 0)}));
        r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Refused);
        QCOMPARE(f.questions.asked().size(), 1);   // the message only: no dialog
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
        f.questions.answerDuplicateId(kDialogOverwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, shorter, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.dialogResult, kDialogOverwrite);
        QCOMPARE(runRows(f, QStringLiteral("Model_Header"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(runRows(f, QStringLiteral("Model_Entries"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(runRows(f, QStringLiteral("Model_Run"), QStringLiteral("S")), QStringLiteral("1"));
        QCOMPARE(f.rows(QStringLiteral("SELECT * FROM Model_Entries WHERE Standing_Harvested = 'H' ORDER BY rowid")), harvested);
    }

    void badSpeciesInCycle3()
    {
        RunDatabase f;
        const QString good = f.writeFile(QStringLiteral("good.lst"), threeCycles("BAD"));
        importBothKinds(f, good);   // earlier rows of BAD, both kinds

        const QString path = f.writeFile(QStringLiteral("bad.lst"), ::badSpeciesInCycle3());
        f.questions.answerDuplicateId(kDialogOverwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);

        QCOMPARE(r.ending, ImportEnding::Failed);
        const QStringList told = f.questions.messageTexts();
        QCOMPARE(told.size(), 2);
        QCOMPARE(told.first(), QStringLiteral("Invalid species code: 12  (Valid range is 1-11)"));
        // The user is told where: the file and the line.
        QVERIFY(told.last().startsWith(QStringLiteral("Import Error")));
        QVERIFY(told.last().contains(QStringLiteral("bad.lst, line 7")));
        // The new Model_Run row stays; the earlier standing rows are gone with the overwrite; nothing
        // of this import's list is left; the harvested run is untouched.
        QCOMPARE(f.rows(QStringLiteral("SELECT Run_Id, Run_Date, Standing_Harvested FROM Model_Run ORDER BY Standing_Harvested")),
                 QStringList({QStringLiteral("BAD|2021-03-15|H"), QStringLiteral("BAD|2021-03-15|S")}));
        QCOMPARE(f.count(QStringLiteral("Model_Header"), QStringLiteral("Standing_Harvested = 'S'")), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Entries"), QStringLiteral("Standing_Harvested = 'S'")), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Header"), QStringLiteral("Standing_Harvested = 'H'")), 3);
        QCOMPARE(f.count(QStringLiteral("Model_Entries"), QStringLiteral("Standing_Harvested = 'H'")), 3);
        QVERIFY(!f.questions.busyVisible());

        // Importing again meets the duplicate dialog, and Overwrite cleans it up.
        f.questions.clear();
        f.questions.answerDuplicateId(kDialogOverwrite);
        QVERIFY(ImportTreeList(f.db, f.questions, good, RunKind::Standing).completed());
        QCOMPARE(f.count(QStringLiteral("Model_Entries"), QStringLiteral("Standing_Harvested = 'S'")), 3);
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
        f.questions.answerRunId(kDialogCheck);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.warnings.size(), 10);
        QCOMPARE(r.moreWarnings, 2);
        QVERIFY2(r.warnings.at(9).endsWith(QStringLiteral("w.lst, line 11, column 53: the diameter (columns 50-54): \"25,4\" is read as 25; "
                                                           "the reading stops at \",4\"")),
                 qPrintable(r.warnings.at(9)));
        QCOMPARE(f.scalar(QStringLiteral("SELECT Current_Diameter FROM Model_Entries LIMIT 1")).toDouble(), 25.0);
        const QStringList told = f.questions.messageTexts();
        QCOMPARE(told.size(), 1);
        QVERIFY2(told.first().contains(QStringLiteral("12 places of it may not have been read as meant (the first 10 below)")), qPrintable(told.first()));
        QVERIFY(told.first().endsWith(r.warnings.join(QLatin1Char('\n'))));
    }

    // A value no tree can have refuses the list where it stands; nothing of it is stored.
    void impossibleValueRefusesTheList()
    {
        RunDatabase f;
        importBothKinds(f, f.writeFile(QStringLiteral("good.lst"), threeCycles("KEEP")));
        const QString all = QStringLiteral("SELECT * FROM %1 ORDER BY rowid");
        QStringList before;
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries", "Model_Cycle_Sums"})
            before += f.rows(all.arg(QLatin1String(table)));

        const QString path = f.writeFile(QStringLiteral("bad.lst"),
                                         TreeListText({HeaderLine(1, 1, 2000, "KEEP", kStamp), TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
                                                       TreeLine("2", "FD", 3, 250.0, -25.0, 0.9, 0.7)}));
        f.questions.answerDuplicateId(kDialogOverwrite);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Failed);
        QVERIFY2(r.detail.contains(QStringLiteral("bad.lst, line 3 failed: column 50, the diameter (columns 50-54): \"-25.0\" is no value")),
                 qPrintable(r.detail));
        QVERIFY(f.questions.messageTexts().last().contains(r.detail));
        QCOMPARE(f.count(QStringLiteral("Model_Entries"), QStringLiteral("Standing_Harvested = 'S'")), 0);
        QStringList after;
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries", "Model_Cycle_Sums"})
            after += f.rows(all.arg(QLatin1String(table)));
        QEXPECT_FAIL("", "an overwrite deletes the old list in a transaction of its own until the import is made one unit", Continue);
        QCOMPARE(after, before);
    }

    void overflowInALaterHeaderRollsBack()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("o.lst"), TreeListText({HeaderLine(1, 1, 2000, "O"),
                                                                                 TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7),
                                                                                 HeaderLine(1, 2, 99999)}));
        f.questions.answerRunId(kDialogCheck);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QCOMPARE(r.ending, ImportEnding::Failed);
        QVERIFY(f.questions.messageTexts().value(0).startsWith(QStringLiteral("Import Error")));
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 1);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 0);
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 0);
        // The engine is out of its transaction: the next statement commits on its own.
        f.exec(QStringLiteral("DELETE FROM Model_Run"));
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
    }

    void renameTakesTheNextFreeSuffix()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        f.addRun(QStringLiteral("PLOT 7:1"), QStringLiteral("S"));
        f.addRun(QStringLiteral("plot 7:2"), QStringLiteral("H"));   // either kind, any case
        f.reopenModelRunRS();
        QCOMPARE(NextFreeRunId(f.db, QStringLiteral("PLOT 7")), QStringLiteral("PLOT 7:3"));

        // Rename offers PLOT 7:3; the user types the taken PLOT 7:1, which meets the dialog again.
        f.questions.answerDuplicateId(kDialogRename);
        f.questions.answerRunId(kDialogCheck, QStringLiteral("PLOT 7:1"));
        f.questions.answerDuplicateId(kDialogRename);
        f.questions.answerRunId(kDialogCheck);
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

    void renameReadsTheRecordsetOfTheOpening()
    {
        // A name taken since Model_Run was read is offered all the same, and the lookup catches it.
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("plot7.lst"), threeCycles());
        importBothKinds(f, path);
        f.reopenModelRunRS();
        f.addRun(QStringLiteral("PLOT 7:1"), QStringLiteral("S"));
        f.questions.answerDuplicateId(kDialogRename);
        f.questions.answerRunId(kDialogCheck);
        f.questions.answerDuplicateId(kDialogCancel);
        QCOMPARE(ImportTreeList(f.db, f.questions, path, RunKind::Standing).ending, ImportEnding::Cancelled);
        QCOMPARE(f.questions.asked().at(2).text, QStringLiteral("PLOT 7:1"));
    }

    void quotesInRunIds()
    {
        RunDatabase f;
        const QString path = f.writeFile(QStringLiteral("q.lst"), threeCycles("O'Hara"));
        importBothKinds(f, path);
        f.reopenModelRunRS();
        f.questions.answerDuplicateId(kDialogRename);
        f.questions.answerRunId(kDialogCheck);
        const ImportResult r = ImportTreeList(f.db, f.questions, path, RunKind::Standing);
        QVERIFY(r.completed());
        QCOMPARE(r.runId, QStringLiteral("O'Hara:1"));
    }
};

SENDREL_TEST_MAIN(tst_ImportTreeList)
#include "tst_ImportTreeList.moc"
