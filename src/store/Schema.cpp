#include "store/Schema.h"

#include "base/SendrelError.h"
#include "store/CycleSums.h"
#include "store/DBEngine.h"
#include "store/EngineBackend.h"

#include <QFile>

namespace sendrel {

namespace {

QString sp12Columns(const QString &pattern)
{
    QStringList cols;
    for (int n = 1; n <= 12; ++n)
        cols.append(pattern.arg(n));
    return cols.join(QStringLiteral(",\n  "));
}

}  // namespace

QStringList RunDatabaseSchema()
{
    QStringList s;
    // Positions 0-4 are written by the import; Variant_ID follows with the only variant this
    // program knows, so the browser's "WHERE Variant_ID = 2" finds every imported run.
    s << QStringLiteral("CREATE TABLE Model_Run (\n"
                        "  Run_Id TEXT COLLATE NOCASE NOT NULL,\n"
                        "  Run_Date TEXT,\n"
                        "  Run_Time TEXT,\n"
                        "  Not_Used TEXT,\n"
                        "  Standing_Harvested TEXT COLLATE NOCASE NOT NULL,\n"
                        "  Variant_ID INTEGER NOT NULL DEFAULT 2)");
    s << QStringLiteral("CREATE UNIQUE INDEX Model_Run_Key ON Model_Run (Run_Id, Standing_Harvested)");

    s << QStringLiteral("CREATE TABLE Model_Header (\n"
                        "  Run_Id TEXT COLLATE NOCASE NOT NULL,\n"
                        "  First_Header_Number INTEGER,\n"
                        "  Cycle INTEGER,\n"
                        "  Cycle_Year INTEGER,\n"
                        "  Standing_Harvested TEXT COLLATE NOCASE NOT NULL)");
    s << QStringLiteral("CREATE INDEX Model_Header_Run ON Model_Header (Run_Id, Standing_Harvested, Cycle)");

    // Columns without a name of their own are named after the tree-list columns they carry.
    s << QStringLiteral("CREATE TABLE Model_Entries (\n"
                        "  Run_Id TEXT COLLATE NOCASE NOT NULL,\n"
                        "  Tree_Id TEXT,\n"
                        "  Col_11_14 INTEGER,\n"
                        "  Species_Code INTEGER,\n"
                        "  Col_28_30 INTEGER,\n"
                        "  Trees_per_ha REAL,\n"
                        "  Current_Diameter REAL,\n"
                        "  Col_56_60 REAL,\n"
                        "  Col_62_66 REAL,\n"
                        "  Col_68_71 REAL,\n"
                        "  Constant_1 INTEGER,\n"
                        "  Col_73_74 INTEGER,\n"
                        "  Col_84_89 REAL,\n"
                        "  Col_22_23 INTEGER,\n"
                        "  Total_Volume REAL,\n"
                        "  Gross_Merch_Volume REAL,\n"
                        "  Col_111_117 REAL,\n"
                        "  Col_125_127 INTEGER,\n"
                        "  Cycle_Number INTEGER,\n"
                        "  Constant_1b INTEGER,\n"
                        "  Col_81_82 INTEGER,\n"
                        "  Standing_Harvested TEXT COLLATE NOCASE NOT NULL,\n"
                        "  Col_41_48 REAL,\n"
                        "  Species_Letters TEXT,\n"
                        "  Col_76_79 REAL,\n"
                        "  Col_91_95 INTEGER,\n"
                        "  Col_119_120 INTEGER,\n"
                        "  Col_122_123 INTEGER,\n"
                        "  Col_25_26 INTEGER,\n"
                        "  MerchVolLessDWB REAL)");
    s << QStringLiteral("CREATE INDEX Model_Entries_Cycle ON Model_Entries (Run_Id, Standing_Harvested, Cycle_Number)");
    // Model_Cycle_Sums (the sums of each run's records by cycle and species) is made by
    // MakeCycleSumsTable, also in a database from before it.

    s << QStringLiteral("CREATE TABLE Run (\n"
                        "  Run_Id TEXT COLLATE NOCASE PRIMARY KEY,\n"
                        "  Run_Desc TEXT,\n"
                        "  run_parameters TEXT)");

    s << QStringLiteral("CREATE TABLE Species (\n"
                        "  Num_Code INTEGER NOT NULL,\n"
                        "  Str_Code TEXT COLLATE NOCASE,\n"
                        "  Name TEXT,\n"
                        "  Variant_ID INTEGER NOT NULL)");
    s << QStringLiteral("CREATE UNIQUE INDEX Species_Key ON Species (Num_Code, Variant_ID)");

    s << ScratchReportTableSchema();
    return s;
}

QStringList ScratchReportTableSchema()
{
    QStringList s;
    s << QStringLiteral("CREATE TABLE Report_Header (\n"
                        "  Report_Id INTEGER,\n"
                        "  Run_ID TEXT COLLATE NOCASE,\n"
                        "  Report_Type TEXT,\n"
                        "  Num_Species INTEGER,\n"
                        "  Cycle_Num INTEGER,\n"
                        "  Cycle_Year INTEGER,\n"
                        "  Report_Title TEXT,\n"
                        "  [Desc] TEXT)");

    s << QStringLiteral("CREATE TABLE Report_Detail (\n"
                        "  IsBucket TEXT,\n"
                        "  Report_id INTEGER,\n"
                        "  DBH_MinDia REAL,\n"
                        "  DBH_MaxDia REAL,\n"
                        "  DBH_Midpoint REAL,\n"
                        "  DBH_Class TEXT,\n  ") +
             sp12Columns(QStringLiteral("Sp%1 TEXT, Sp%1_Density REAL, Sp%1_MerchVol REAL")) + QStringLiteral(")");
    s << QStringLiteral("CREATE INDEX Report_Detail_Report ON Report_Detail (Report_id)");

    s << QStringLiteral("CREATE TABLE Stand_Levels_Report (\n"
                        "  Report_id INTEGER,\n"
                        "  [Year] INTEGER,\n  ") +
             sp12Columns(QStringLiteral("Sp%1 TEXT")) + QStringLiteral(",\n  ") + sp12Columns(QStringLiteral("Value%1 REAL")) +
             QStringLiteral(")");
    s << QStringLiteral("CREATE INDEX Stand_Levels_Report_Report ON Stand_Levels_Report (Report_id)");

    QStringList species;
    for (int n = 1; n <= 11; ++n)
        species.append(QStringLiteral("Str_Code%1 TEXT, Name%1 TEXT").arg(n));
    s << QStringLiteral("CREATE TABLE Species2 (\n  Report_id INTEGER,\n  ") + species.join(QStringLiteral(",\n  ")) + QStringLiteral(")");
    return s;
}

void MakeScratchReportTables(clsDBEngine &engine)
{
    // Created in the connection's temporary database, where an unqualified name is looked up
    // first: the file's tables of the same names stand behind them, unread and unwritten.
    for (QString statement : ScratchReportTableSchema()) {
        if (statement.startsWith(QLatin1String("CREATE TABLE ")))
            statement.replace(0, 13, QStringLiteral("CREATE TEMP TABLE IF NOT EXISTS "));
        else  // a name of its own: the file's index of the same name would stop a VACUUM
            statement.replace(0, 13, QStringLiteral("CREATE INDEX IF NOT EXISTS temp.Scratch_"));
        Statement(engine, statement).run();
    }
}

const QList<SpeciesRow> &InstalledSpecies()
{
    // In the column order of the volume-deduction table.
    static const QList<SpeciesRow> rows = {
        {1, "PW", "western white pine"}, {2, "LW", "western larch"},    {3, "FD", "Douglas-fir"},       {4, "BG", "grand fir"},
        {5, "HW", "western hemlock"},    {6, "CW", "western redcedar"}, {7, "PL", "lodgepole pine"},    {8, "SE", "Engelmann spruce"},
        {9, "BL", "subalpine fir"},      {10, "PY", "ponderosa pine"},  {11, "HM", "mountain hemlock"},
    };
    return rows;
}

void CreateRunDatabase(const QString &path)
{
    clsDBEngine engine;
    engine.PathToDB = path;
    engine.CreateDB();
    try {
        engine.backend().prepareEmptyDatabase();
        WriteTransaction transaction(engine);
        for (const QString &statement : RunDatabaseSchema())
            Statement(engine, statement).run();
        MakeCycleSumsTable(engine);
        Statement species(engine, QStringLiteral("INSERT INTO Species (Num_Code, Str_Code, Name, Variant_ID) VALUES (?1, ?2, ?3, 2)"));
        for (const SpeciesRow &row : InstalledSpecies())
            species.bind(1, row.Num_Code).bind(2, QString::fromLatin1(row.Str_Code)).bind(3, QString::fromLatin1(row.Name)).run();
        transaction.commit();
        engine.UseWriteAheadLog();
    } catch (const SendrelError &e) {
        engine.CloseDB();
        // On a server the transaction's rollback took everything back.
        if (clsDBEngine::IsServerDatabase(path))
            throw e.tagged(QStringLiteral("Cannot create ") + path);
        QFile::remove(path);
        QFile::remove(path + QStringLiteral("-wal"));
        QFile::remove(path + QStringLiteral("-shm"));
        throw e.tagged(QStringLiteral("Cannot create ") + path);
    }
    engine.CloseDB();
}

}  // namespace sendrel
