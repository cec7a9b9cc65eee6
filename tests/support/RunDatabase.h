#pragma once

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sendrel::test {

// A fresh run database with the installed species in a temporary folder, and a TreeModel
// opened on it (NumSpecies read), to which runs, cycles and trees are added row by row.
class RunDatabase {
public:
    RunDatabase();
    ~RunDatabase();

    TreeModel &tm() { return *m_tm; }
    QString path() const;
    QString dir() const { return m_dir.path(); }

    void addRun(const QString &runId, const QString &sorH);
    void addHeader(const QString &runId, const QString &sorH, int cycle, int year);
    void addTree(const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
                 double treesPerHa, double totalVolume);
    // Runs a statement; fails the test when it fails.
    void exec(const QString &sql);

    ScriptedQuestions questions;

private:
    QTemporaryDir m_dir;
    SettingsStore m_store;
    std::unique_ptr<TreeModel> m_tm;
};

}  // namespace sendrel::test
