#pragma once

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

namespace sendrel::test {

// A temporary folder (with "bin" as the program's folder and "Work") and a TreeModel over a run
// database in it. Questions are answered by `questions`; every EndProcess is recorded in `ended`
// and thrown as ProcessEnded.
class RunDatabase {
public:
    enum class Db {
        None,     // no database file yet
        Created,  // the file made by CreateRunDatabase, not opened
        Open,     // created and opened as the core opens it (engine, species, Model_Run recordset)
    };
    explicit RunDatabase(Db db = Db::Open);
    ~RunDatabase();

    QString dir() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    // The folder with a closing separator, as the settings keep it.
    QString folder() const;
    QString path() const;
    QString programDir() const { return filePath(QStringLiteral("bin")); }
    QString workDir() const { return filePath(QStringLiteral("Work")); }

    // Creates the file unless there is one and opens it with OpenGameDB, as a start does.
    void openAsProgram();
    // Re-reads the long-lived Model_Run recordset, as a new start of the program would.
    void reopenModelRunRS();

    // Runs a statement; a refused one throws with the statement in front of the message.
    void exec(const QString &sql);
    // The first column of the first row, or an invalid variant.
    QVariant scalar(const QString &sql);
    qint64 count(const QString &table, const QString &where = QString());
    // Rows of the statement, each as its columns joined by "|" (NULL for a null).
    QStringList rows(const QString &sql);
    // Writes a file into the folder (bytes as given) and returns its path.
    QString writeFile(const QString &name, const QByteArray &content);

    // A Model_Run row of variant 2 as an import leaves it and, with a description, the Run row
    // unless there is one.
    void addRun(const QString &runId, const QString &sorH, const QString &description = QString());
    void addHeader(const QString &runId, const QString &sorH, int cycle, int year);
    void addTree(const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
                 double treesPerHa, double totalVolume);

    SettingsStore store;
    ScriptedQuestions questions;
    TreeModel tm;
    QList<int> ended;  // codes of EndProcess calls

private:
    QTemporaryDir m_dir;
};

// The whole of a file, or a null array when it cannot be read.
QByteArray ReadWholeFile(const QString &path);

}  // namespace sendrel::test
