#include "domain/output/ReportTables.h"

#include "base/UserQuestions.h"
#include "store/RunStore.h"

#include <QDir>

namespace sendrel {

void ClearReportTables(RunStore &db, bool standLevels)
{
    QStringList tables = {QStringLiteral("Species2"), QStringLiteral("Report_Header"), QStringLiteral("Report_Detail")};
    if (standLevels)
        tables.append(QStringLiteral("Stand_Levels_Report"));
    for (const QString &table : std::as_const(tables))
        Statement(db.DBEngine, QStringLiteral("DELETE FROM ") + table).run();
}

SendrelError MissingRun(const RunKey &run, const QString &databasePath)
{
    return SendrelError(ErrNo::RunMissing, QStringLiteral("Sendrel"),
                        QStringLiteral("There is no run %1 in %2.").arg(run.displayName(), QDir::toNativeSeparators(databasePath)));
}

void RequireRun(RunStore &db, const RunKey &run)
{
    if (!db.runExists(run))
        throw MissingRun(run, db.DBEngine.PathToDB);
}

BusyMessage::BusyMessage(UserQuestions &questions, const QString &message) : m_questions(questions)
{
    show(message);
}

BusyMessage::~BusyMessage()
{
    m_questions.hideBusyMessage();
}

void BusyMessage::show(const QString &message)
{
    m_questions.showBusyMessage(QStringLiteral("Please wait..."), message);
}

}  // namespace sendrel
