#pragma once

// TEMPORARY: stands in for the import core (import/ImportTreeList.h, import/RunDeletion.h) that is
// built on its own branch. When that branch is merged: delete this file and
// InterimImportCore.cpp, and point ImportCoreBridge.h at the real headers.

#include <QString>
#include <QStringList>

#include <functional>

namespace sendrel {

struct TreeModel;

namespace interim {

struct ImportResult {
    bool completed = false;
    QString runId;
};

// Not available until the import core is merged: fails with a clear message.
ImportResult ImportTreeList(TreeModel &tm, const QString &fileName, const QString &kind);

// The name, ":" and the first n = 1, 2, ... for which Model_Run has no row of either kind.
QString NextFreeRunId(TreeModel &tm, const QString &name);

class OpenReportWindows {
public:
    virtual ~OpenReportWindows();
    virtual bool isRunOpen(const QString &runId, const QString &sorH) const = 0;
};

// The rows of one run of one kind, entries first.
void DeleteRun(TreeModel &tm, const QString &runId, const QString &sorH);

// The Delete button of the delete window: selected are the texts of the selected entries in list
// order, refresh re-reads the database and gives the refreshed list.
void cmdDelete(TreeModel &tm, const QStringList &selected, const std::function<QStringList()> &refresh,
               const OpenReportWindows &openWindows);

}  // namespace interim
}  // namespace sendrel
