#pragma once

#include "app/TreeModel.h"
#include "support/ScriptedQuestions.h"
#include "base/SettingsStore.h"
#include "store/RunStore.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

namespace sendrel::test {

// Reading and filling a run database in tests, on whatever store holds it.
void Exec(RunStore &db, const QString &sql);
// The first column of the first row, or an invalid variant.
QVariant Scalar(RunStore &db, const QString &sql);
qint64 Count(RunStore &db, const QString &table, const QString &where = QString());
// Rows of the statement, each as its columns joined by "|" (NULL for a null).
QStringList Rows(RunStore &db, const QString &sql);
// Every row of the run tables, the kept sums and the Run table, in table order: the run database
// as a whole, to compare before and after a write.
QStringList RunTableRows(RunStore &db);
// A Model_Run row as an import leaves it and, with a description, the Run row unless there is one.
void AddRun(RunStore &db, const QString &runId, const QString &sorH, const QString &description = QString());
void AddHeader(RunStore &db, const QString &runId, const QString &sorH, int cycle, int year);
// A tree record; its net volume is half its gross one, so that a table reading the wrong column shows.
void AddTree(RunStore &db, const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
             double treesPerHa, double totalVolume);

// A temporary folder with "bin" (the program's folder) and "Work", and a run database in it:
// the store, questions answered by `questions`, and the process state around them in `tm`
// (EndProcess recorded in `ended` and thrown as ProcessEnded).
class RunDatabase {
public:
    enum class Db {
        None,  // no database file yet (on the server: an empty database)
        Created,  // the file made by CreateRunDatabase, not opened
        Open,  // created and opened as a start opens it
    };
    explicit RunDatabase(Db db = Db::Open);
    ~RunDatabase();

    QString dir() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    // The folder with a closing separator, as the settings keep it.
    QString folder() const;
    // The file, or in a program's server half the connection text of its database.
    QString path() const;
    QString programDir() const { return filePath(QStringLiteral("bin")); }
    QString workDir() const { return filePath(QStringLiteral("Work")); }

    // Creates the file unless there is one and opens it with OpenGameDB, as a start does.
    void openAsProgram();

    void exec(const QString &sql) { Exec(db, sql); }
    QVariant scalar(const QString &sql) { return Scalar(db, sql); }
    qint64 count(const QString &table, const QString &where = QString()) { return Count(db, table, where); }
    QStringList rows(const QString &sql) { return Rows(db, sql); }
    // Writes a file into the folder (bytes as given) and returns its path.
    QString writeFile(const QString &name, const QByteArray &content);

    void addRun(const QString &runId, const QString &sorH, const QString &description = QString())
    {
        AddRun(db, runId, sorH, description);
    }
    void addHeader(const QString &runId, const QString &sorH, int cycle, int year) { AddHeader(db, runId, sorH, cycle, year); }
    void addTree(const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter, double treesPerHa,
                 double totalVolume)
    {
        AddTree(db, runId, sorH, cycle, speciesCode, diameter, treesPerHa, totalVolume);
    }

private:
    QTemporaryDir m_dir;
    QString m_server;
    Db m_kind;

public:
    SettingsStore store;
    ScriptedQuestions questions;
    TreeModel tm;
    RunStore &db;
    QList<int> ended;  // codes of EndProcess calls
};

// The whole of a file, or a null array when it cannot be read.
QByteArray ReadWholeFile(const QString &path);

}  // namespace sendrel::test
