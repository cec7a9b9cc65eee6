#include "cli/CliHeadless.h"

#include "app/Numbers.h"
#include "app/ScriptedQuestions.h"
#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "store/GameDB.h"

#include <QCoreApplication>

namespace sendrel {

void PrepareHeadlessModel(TreeModel &tm, ScriptedQuestions &questions)
{
    tm.EndProcess = [&questions](int) {
        const QStringList said = questions.messageTexts();
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"), said.isEmpty() ? QStringLiteral("Ended") : said.last());
    };
    tm.ProgramDir = QCoreApplication::applicationDirPath();
    tm.settings.LoadSettings(tm.store, tm.ProgramDir);
}

void OpenHeadlessDatabase(TreeModel &tm, const QString &dbPath)
{
    tm.GameDBPath = dbPath;
    tm.DBEngine.PathToDB = dbPath;
    tm.DBEngine.OpenDB();
    ReadSpecies(tm);
}

ClassEntryCheck LayoutFromFlagsOrSettings(ClassLayout &layout, bool hasClasses, const QStringList &classes,
                                          const Settings &settings)
{
    if (hasClasses)
        return layout.SetClasses(classes.at(0), classes.at(1), classes.at(2));
    return layout.SetClasses(DefaultText(settings.ClassesStart), DefaultText(settings.ClassesWidth),
                             DefaultText(settings.NumClasses));
}

QString StoredRunId(TreeModel &tm, const QString &runId, const QString &sorH)
{
    tm.DBEngine.SQLString = QStringLiteral("Select Run_Id from Model_Run where Run_Id = '") + QuoteSQL(runId)
                            + QStringLiteral("' and Standing_Harvested = '") + QuoteSQL(sorH) + QStringLiteral("'");
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return rs.Eof() ? QString() : rs.Fields(0).toString();
}

}  // namespace sendrel
