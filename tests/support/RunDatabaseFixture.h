#pragma once

#include <QString>
#include <QTemporaryDir>

namespace sendrel {
struct TreeModel;
}

// A run database of its own in a temporary folder, with the installed species, and helpers to
// put runs into it with SQL as another program of the suite would.
class RunDatabaseFixture {
public:
    RunDatabaseFixture();

    bool isValid() const { return m_valid; }
    // The folder, with a closing separator, and the database file in it.
    QString folder() const;
    QString path() const;

    // Points the model at the database (DataDir, WorkDir, GameDBPath) and opens it with
    // OpenGameDB, as a start does.
    void open(sendrel::TreeModel &tm) const;

    // A Model_Run row of variant 2 and, unless there is one, the Run row with the description.
    static void addRun(sendrel::TreeModel &tm, const QString &runId, const QString &sorH, const QString &description);
    static void execute(sendrel::TreeModel &tm, const QString &sql);
    // The first column of the first row of a query, as a number.
    static int count(sendrel::TreeModel &tm, const QString &sql);

private:
    QTemporaryDir m_dir;
    bool m_valid = false;
};
