#pragma once

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sendrel::test {

// A fresh run database in a temporary folder, with a TreeModel over it whose questions are
// scripted and whose end of process is recorded (thrown as ProcessEnded) instead of exiting.
class TestEnv {
public:
    TestEnv();
    ~TestEnv();

    // Creates tolv_game.mdb in the folder and opens it as the program does (no dialog).
    void openNewDatabase();
    QString dir() const { return m_dir.path(); }
    QString dbPath() const;
    // Runs a statement on the open engine; fails the test when it fails.
    void exec(const QString &sql);
    int count(const QString &sql);

    ScriptedQuestions questions;
    SettingsStore store;
    std::unique_ptr<TreeModel> tm;
    int endCode = -1;

private:
    QTemporaryDir m_dir;
};

}  // namespace sendrel::test
