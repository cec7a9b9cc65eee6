#pragma once

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"

#include <QTemporaryDir>

namespace sendrel::test {

// A fresh run database in a temporary folder, opened through a TreeModel of its own, with the
// installed Species rows read into SpeciesRS. The folder holds "bin" (the program's folder) and
// "Work". Questions are answered by the script in `questions`.
class RunDbFixture {
public:
    RunDbFixture();
    ~RunDbFixture();

    // Runs one statement; a refused one fails with the statement in front of the message.
    void exec(const QString &sql);
    // The first column of the first row of a query.
    QVariant scalar(const QString &sql);

    QString folder() const { return m_dir.path(); }
    QString programDir() const;
    QString workDir() const;

    QTemporaryDir m_dir;
    SettingsStore store;
    ScriptedQuestions questions;
    TreeModel tm;
};

// The whole of a file, or a null array when it cannot be read.
QByteArray ReadWholeFile(const QString &path);

}  // namespace sendrel::test
