#include "domain/output/ReportTables.h"

#include "store/RunStore.h"

namespace sendrel {

void ClearReportTables(RunStore &db, bool standLevels)
{
    QStringList tables = {QStringLiteral("Species2"), QStringLiteral("Report_Header"), QStringLiteral("Report_Detail")};
    if (standLevels)
        tables.append(QStringLiteral("Stand_Levels_Report"));
    for (const QString &table : std::as_const(tables))
        Statement(db.DBEngine, QStringLiteral("DELETE FROM ") + table).run();
}

void KeepWhatWasWritten(std::optional<WriteTransaction> &transaction) noexcept
{
    if (!transaction || !transaction->isOpen())
        return;
    // A damaged file is left as it was found: what a commit would write there could be lost or
    // spread the damage.
    if (transaction->engine().damageFound()) {
        transaction->rollback();
        return;
    }
    try {
        transaction->commit();
    } catch (const SendrelError &) {
        transaction->rollback();
    }
}

}  // namespace sendrel
