#include "store/GameDB.h"

#include "app/FolderLocation.h"
#include "app/SendrelError.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"

#include <QDir>
#include <QSqlError>
#include <QSqlQuery>

namespace sendrel {

namespace {

// A recordset that is kept for the process but read by nothing: the statement is checked now,
// its rows are fetched only if someone reads them, so a large run does not slow the start.
Recordset deferredRecordset(clsDBEngine &engine, const QString &sql)
{
    {
        QSqlQuery probe(engine.database());
        if (!probe.prepare(sql))
            throw clsDBEngine::errorFrom(probe.lastError());
    }
    clsDBEngine *e = &engine;
    return Recordset::deferred([e, sql](QStringList &names, QVector<Recordset::Row> &rows) {
        e->SQLString = sql;
        Recordset full = e->RetreiveRecords();
        for (int i = 0; i < full.FieldCount(); ++i)
            names.append(full.FieldName(i));
        for (full.MoveFirst(); !full.Eof(); full.MoveNext()) {
            Recordset::Row row(names.size());
            for (int i = 0; i < names.size(); ++i)
                row[i] = full.Fields(i);
            rows.append(row);
        }
    });
}

}  // namespace

bool OpenGameDB(TreeModel &tm, bool forceDialog, const std::function<void()> &beforeLocate)
{
    try {
        QString path = tm.GameDBPath;
        if (beforeLocate)
            beforeLocate();
        if (!LocateFile(tm.questions, QStringLiteral("Locate Tolv Game Database"), kGameDBFilter, path, forceDialog))
            throw SendrelError(ErrNo::DialogCancelled, QStringLiteral("Sendrel"), QStringLiteral("Cancel was selected."));
        tm.GameDBPath = path;

        const QString folder = PathAddBackslash(QDir::toNativeSeparators(PathRemoveFileSpec(path)));
        tm.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), folder);
        tm.store.sync();

        tm.DBEngine.PathToDB = tm.GameDBPath;
        tm.DBEngine.OpenDB();
        tm.settings.DataDir = QDir::toNativeSeparators(PathRemoveFileSpec(path));

        tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
        tm.ModelRunRS = tm.DBEngine.RetreiveRecords();
        tm.ModelEntriesRS = deferredRecordset(tm.DBEngine, QStringLiteral("Select * from Model_Entries WHERE 0=0"));
        tm.ModelHeaderRS = deferredRecordset(tm.DBEngine, QStringLiteral("Select * from Model_Header"));
        ReadSpecies(tm);
        return true;
    } catch (const SendrelError &e) {
        if (e.number() == ErrNo::DialogCancelled)
            throw e.withDescription(QStringLiteral("Canceled by the User"));
        throw e.withDescription(QStringLiteral("Cannot open the database.\n") + e.description());
    }
}

void ReadSpecies(TreeModel &tm)
{
    try {
        tm.DBEngine.SQLString = QStringLiteral("Select * from Species where Variant_ID=2");
        tm.SpeciesRS = tm.DBEngine.RetreiveRecords();
        if (tm.SpeciesRS.Eof()) {
            tm.questions.message({QStringLiteral("Missing Data"),
                                  QStringLiteral("Species codes for the current variant are missing from the database."),
                                  MsgIcon::Information, MsgButtons::OK, Answer::OK});
            CloseGameDB(tm);
            tm.EndProcess(1);
            return;
        }
        tm.SpeciesRS.MoveLast();
        tm.SpeciesRS.MoveFirst();
        tm.NumSpecies = tm.SpeciesRS.RecordCount();
    } catch (const SendrelError &e) {
        throw e.tagged(kTreeModelTag + QStringLiteral("|ReadSpecies"));
    }
}

QString SpeciesStrCode(TreeModel &tm, qint16 numCode)
{
    try {
        tm.DBEngine.SQLString = QStringLiteral("SELECT Str_Code FROM Species WHERE Num_Code = ") + QString::number(numCode)
                                + QStringLiteral(" AND Variant_ID=2");
        Recordset rs = tm.DBEngine.RetreiveRecords();
        if (rs.Eof())
            return QStringLiteral("xx");
        return rs.Fields(QStringLiteral("Str_Code")).toString();
    } catch (const SendrelError &e) {
        throw e.tagged(kTreeModelTag);
    }
}

void CloseGameDB(TreeModel &tm)
{
    for (Recordset *rs : {&tm.ModelRunRS, &tm.ModelHeaderRS, &tm.ModelEntriesRS, &tm.SpeciesRS}) {
        if (rs->IsOpen())
            rs->Close();
    }
    tm.DBEngine.CloseDB();
}

}  // namespace sendrel
