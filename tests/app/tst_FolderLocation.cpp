// The first start: setting up the Data and Work folders, copying the installation's files.
#include "support/TestMain.h"
#include "app/FolderLocation.h"
#include "support/ScriptedQuestions.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "app/TreeModel.h"
#include "support/RunDatabase.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace sendrel;
using sendrel::test::ReadWholeFile;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(content);
}

const QString kDataQuestion = QStringLiteral(
    "Your Data folder needs to be set up.  Choose Yes to use the following default location, or No to choose a custom folder.\n\n");
const QString kWorkQuestion = QStringLiteral(
    "Your Work folder needs to be set up.  Choose Yes to use the following default location, or No to choose a custom folder.\n\n");

}  // namespace

class tst_FolderLocation : public QObject {
    Q_OBJECT

    QTemporaryDir m_install;
    QString m_documents;

    void resetDocuments()
    {
        QDir(m_documents + QStringLiteral("/Tolvane")).removeRecursively();
    }

    // An installation: bin/ for the program, Data and Work with the shipped files.
    void makeInstallation()
    {
        QDir root(m_install.path());
        root.mkpath(QStringLiteral("bin"));
        root.mkpath(QStringLiteral("Data"));
        root.mkpath(QStringLiteral("Work"));
        writeFile(root.filePath(QStringLiteral("Data/tolv_game.mdb")), "database");
        writeFile(root.filePath(QStringLiteral("Data/readme.txt")), "data readme");
        writeFile(root.filePath(QStringLiteral("Work/sample.lst")), "sample list");
        QFile::setPermissions(root.filePath(QStringLiteral("Data/readme.txt")), QFile::ReadOwner | QFile::ReadUser);
    }

    // A model whose program folder is that of the installation; no database.
    struct Bench : test::RunDatabase {
        explicit Bench(const QString &installation) : RunDatabase(Db::None)
        {
            tm.ProgramDir = installation + QStringLiteral("/bin");
        }
    };

private slots:
    void initTestCase()
    {
        QVERIFY(m_install.isValid());
        makeInstallation();
        m_documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        QVERIFY(!m_documents.isEmpty());
    }

    void init()
    {
        resetDocuments();
        SettingsStore store;
        QFile::remove(store.fileName());
    }

    void defaultFoldersLieUnderTheDocumentsFolder()
    {
        resetDocuments();
        const QString data = GetDefaultDataFolder(false);
        QCOMPARE(data, QDir::toNativeSeparators(m_documents + QStringLiteral("/Tolvane/Data/")));
        QCOMPARE(GetDefaultWorkFolder(false), QDir::toNativeSeparators(m_documents + QStringLiteral("/Tolvane/Work/")));
        QCOMPARE(GetProductFolder(false), QDir::toNativeSeparators(m_documents + QStringLiteral("/Tolvane/")));
        QVERIFY(!QFileInfo::exists(data));
        QCOMPARE(GetDefaultDataFolder(true), data);
        QVERIFY(QFileInfo(data).isDir());

        QString path;
        QCOMPARE(GetMyDocumentsFolderPath(QStringLiteral("Co"), QString(), false, path), kFolderStatusOK);
        QCOMPARE(path, QDir::toNativeSeparators(m_documents + QStringLiteral("/Co/")));
        QVERIFY(!QFileInfo::exists(path));
    }

    // Yes: the default folder is made, filled from the installation and stored; the suite's
    // front end loses its own key.
    void yesUsesTheDefaultFolderAndCopiesFiles()
    {
        Bench b(m_install.path());
        b.store.SaveSetting(kSectionKestrane, QStringLiteral("DataDir"), QStringLiteral("/old/"));
        b.questions.answerMessage(Answer::Yes);
        QString dataDir;
        QVERIFY(LocateDataFolder(b.tm, dataDir));

        const QString expected = GetDefaultDataFolder(false);
        QCOMPARE(dataDir, expected);
        QCOMPARE(b.questions.asked().size(), 1);
        QCOMPARE(b.questions.asked()[0].title, QStringLiteral("Sendrel - Data Folder"));
        QCOMPARE(b.questions.asked()[0].text, kDataQuestion + expected);
        QCOMPARE(ReadWholeFile(expected + QStringLiteral("tolv_game.mdb")), QByteArray("database"));
        QCOMPARE(ReadWholeFile(expected + QStringLiteral("readme.txt")), QByteArray("data readme"));
        // The read-only installation file is writable in the user's folder.
        QVERIFY(QFile::permissions(expected + QStringLiteral("readme.txt")) & QFile::WriteOwner);
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), expected);
        QCOMPARE(b.store.GetSetting(kSectionKestrane, QStringLiteral("DataDir"), QStringLiteral("<none>")), QStringLiteral("<none>"));
    }

    // Yes while the default folder holds the files already: each one asks, No by default, and
    // No keeps the user's file.
    void yesOverAnExistingFolderAsksBeforeOverwriting()
    {
        const QString folder = GetDefaultWorkFolder(true);
        writeFile(folder + QStringLiteral("sample.lst"), "edited by the user");

        Bench b(m_install.path());
        b.questions.answerMessage(Answer::Yes);   // default location
        b.questions.answerMessage(Answer::No);    // keep sample.lst
        QString workDir;
        QVERIFY(LocateWorkFolder(b.tm, workDir));
        QCOMPARE(workDir, folder);
        QCOMPARE(b.questions.asked().size(), 2);
        QCOMPARE(b.questions.asked()[0].text, kWorkQuestion + folder);
        QCOMPARE(b.questions.asked()[1].title, QStringLiteral("Sendrel - Copy Work Files"));
        QCOMPARE(b.questions.asked()[1].text,
                 QStringLiteral("The following file already exists.  Overwrite with the original installation file?\n\n") + folder
                     + QStringLiteral("sample.lst"));
        QCOMPARE(ReadWholeFile(folder + QStringLiteral("sample.lst")), QByteArray("edited by the user"));

        Bench again(m_install.path());
        again.questions.answerMessage(Answer::Yes);
        again.questions.answerMessage(Answer::Yes);   // overwrite this time
        QVERIFY(LocateWorkFolder(again.tm, workDir));
        QCOMPARE(ReadWholeFile(folder + QStringLiteral("sample.lst")), QByteArray("sample list"));
        QCOMPARE(again.store.GetSetting(kSectionCommon, QStringLiteral("WorkDir")), folder);
    }

    void overwriteQuestionDefaultsToNo()
    {
        QTemporaryDir target;
        writeFile(target.path() + QStringLiteral("/sample.lst"), "x");
        struct Recorder : ScriptedQuestions {
            Answer lastDefault = Answer::OK;
            bool rightKind = false;
            Answer message(const MessageRequest &r) override
            {
                lastDefault = r.defaultAnswer;
                rightKind = r.icon == MsgIcon::Question && r.buttons == MsgButtons::YesNo;
                return Answer::No;
            }
        } q;
        QCOMPARE(CopyFolderFiles(q, m_install.path() + QStringLiteral("/Work/"), target.path() + QStringLiteral("/"), true,
                                 QStringLiteral("Copy Work Files")),
                 qint16(1));
        QCOMPARE(q.lastDefault, Answer::No);
        QVERIFY(q.rightKind);
        // Without askOverwrite the file is simply replaced.
        QCOMPARE(CopyFolderFiles(q, m_install.path() + QStringLiteral("/Work/"), target.path() + QStringLiteral("/"), false,
                                 QStringLiteral("Copy Work Files")),
                 qint16(1));
        QCOMPARE(ReadWholeFile(target.path() + QStringLiteral("/sample.lst")), QByteArray("sample list"));
    }

    // No: the folder dialog; cancelling it asks whether to try again; Retry brings the dialog back.
    void noThenCancelThenRetryShowsTheDialogAgain()
    {
        QTemporaryDir custom;
        Bench b(m_install.path());
        b.questions.answerMessage(Answer::No);
        b.questions.answerFolder(QString());
        b.questions.answerMessage(Answer::Retry);
        b.questions.answerFolder(custom.path());
        QString dataDir;
        QVERIFY(LocateDataFolder(b.tm, dataDir));
        QCOMPARE(b.questions.pendingAnswers(), 0);

        const auto &asked = b.questions.asked();
        QCOMPARE(asked.size(), 4);
        QCOMPARE(asked[1].kind, QStringLiteral("chooseFolder"));
        QCOMPARE(asked[1].title, QStringLiteral("Sendrel - Choose the Data Folder"));
        QCOMPARE(asked[1].text, GetDefaultDataFolder(false));   // the dialog starts at the default
        QCOMPARE(asked[2].text, QStringLiteral("The Data folder is required to successfully run Sendrel.  Do you want to try again?"));
        QCOMPARE(asked[3].kind, QStringLiteral("chooseFolder"));

        const QString expected = QDir::toNativeSeparators(custom.path() + QStringLiteral("/"));
        QCOMPARE(dataDir, expected);
        QCOMPARE(ReadWholeFile(expected + QStringLiteral("tolv_game.mdb")), QByteArray("database"));
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), expected);
        // The default folder was not made.
        QVERIFY(!QFileInfo::exists(GetDefaultDataFolder(false)));
    }

    void cancelGivesFalseAndStoresNothing()
    {
        Bench b(m_install.path());
        b.questions.answerMessage(Answer::No);
        b.questions.answerFolder(QString());
        b.questions.answerMessage(Answer::Cancel);
        QString workDir = QStringLiteral("unchanged");
        QVERIFY(!LocateWorkFolder(b.tm, workDir));
        QCOMPARE(workDir, QStringLiteral("unchanged"));
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("WorkDir"), QStringLiteral("<none>")), QStringLiteral("<none>"));
        QCOMPARE(b.questions.asked().last().text,
                 QStringLiteral("The Work folder is required to successfully run Sendrel.  Do you want to try again?"));
    }

    // Only what is missing is asked for, and both answers count.
    void locateDirectoriesAsksOnlyForMissingFolders()
    {
        QTemporaryDir data;
        {
            Bench b(m_install.path());
            b.tm.settings.DataDir = data.path() + QStringLiteral("/");
            b.tm.settings.WorkDir = data.path() + QStringLiteral("/gone/");
            b.questions.answerMessage(Answer::Yes);
            QVERIFY(LocateDirectories(b.tm));
            QCOMPARE(b.questions.asked().size(), 1);
            QCOMPARE(b.questions.asked()[0].title, QStringLiteral("Sendrel - Work Folder"));
            QCOMPARE(b.tm.settings.WorkDir, GetDefaultWorkFolder(false));
            QCOMPARE(b.tm.settings.DataDir, data.path() + QStringLiteral("/"));
        }
        {
            Bench b(m_install.path());
            b.tm.settings.DataDir = data.path();
            b.tm.settings.WorkDir = data.path();
            QVERIFY(LocateDirectories(b.tm));
            QVERIFY(b.questions.asked().isEmpty());
        }
        {
            // The Data folder refused, the Work folder set up: false, and the Work folder stays set up.
            resetDocuments();
            Bench b(m_install.path());
            b.questions.answerMessage(Answer::No);
            b.questions.answerFolder(QString());
            b.questions.answerMessage(Answer::Cancel);
            b.questions.answerMessage(Answer::Yes);
            QVERIFY(!LocateDirectories(b.tm));
            QCOMPARE(b.questions.pendingAnswers(), 0);
            QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("WorkDir")), GetDefaultWorkFolder(false));
        }
    }

    // An installation without its Data folder: the failure carries the trail of both routines.
    void missingInstallationFolderFails()
    {
        QTemporaryDir bare;
        Bench b(bare.path());
        b.questions.answerMessage(Answer::Yes);
        try {
            LocateDirectories(b.tm);
            QFAIL("no failure");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::PathNotFound);
            QVERIFY2(e.description().startsWith(QStringLiteral("Sendrel.Locate_Directories(), TolvUtil.LocateDataFolder(), Path not found: ")),
                     qPrintable(e.description()));
        }
        // Nothing was stored.
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("DataDir"), QStringLiteral("<none>")), QStringLiteral("<none>"));
    }

    // A folder that cannot be made or a target that vanished fails, naming the path; nothing is
    // taken as done.
    void foldersThatCannotBeMadeOrFilled()
    {
        writeFile(m_documents + QStringLiteral("/NotAFolder"), "a file where a folder would go");
        QString path = QStringLiteral("unchanged");
        try {
            GetMyDocumentsFolderPath(QStringLiteral("NotAFolder"), QStringLiteral("P"), true, path);
            QFAIL("no failure");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::PathNotFound);
        }
        QFile::remove(m_documents + QStringLiteral("/NotAFolder"));
        QCOMPARE(path, QStringLiteral("unchanged"));

        ScriptedQuestions q;
        const QString gone = m_install.path() + QStringLiteral("/gone/");
        try {
            CopyFolderFiles(q, m_install.path() + QStringLiteral("/Work/"), gone, false, QStringLiteral("Copy Work Files"));
            QFAIL("no failure");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::PathNotFound);
            QVERIFY2(e.description().endsWith(gone + QStringLiteral("sample.lst")), qPrintable(e.description()));
        }
    }
};

SENDREL_TEST_MAIN(tst_FolderLocation)
#include "tst_FolderLocation.moc"
