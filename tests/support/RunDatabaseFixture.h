#pragma once

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"

#include <QTemporaryDir>
#include <QVariant>

namespace sendrel::test {

// A fresh run database in a temporary folder with a TreeModel on it, opened as the desktop opens
// it (engine, Model_Run recordset), questions answered by a script.
struct RunDatabaseFixture {
    RunDatabaseFixture();
    ~RunDatabaseFixture();

    // Re-reads the long-lived Model_Run recordset, as a new start of the program would.
    void reopenModelRunRS();
    // Runs a statement for its effect; fails the test's expectations by throwing.
    void exec(const QString &sql);
    // The first column of the first row, or an invalid variant.
    QVariant scalar(const QString &sql);
    qint64 count(const QString &table, const QString &where = QString());
    // Rows of the statement, each as its columns joined by "|".
    QStringList rows(const QString &sql);
    // Writes a file into the fixture's folder (bytes as given) and returns its path.
    QString writeFile(const QString &name, const QByteArray &content);
    // Adds a Model_Run row of the given kind, as an import would have left it.
    void addRun(const QString &runId, const QString &kind);

    QTemporaryDir dir;
    QString dbPath;
    SettingsStore store;
    ScriptedQuestions questions;
    TreeModel tm;
};

}  // namespace sendrel::test
