#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/export/TableExport.h"
#include "support/RunDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A part of a workbook, as unzip gives it.
QByteArray workbookPart(const QString &path, const QString &part)
{
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), path, part});
    unzip.waitForFinished();
    return unzip.readAllStandardOutput();
}

ExportTable sample()
{
    ExportTable t;
    t.name = QStringLiteral("2000 / cycle 1");
    t.headers = {QStringLiteral("DBH class (cm)"), QStringLiteral("FD (SPH)"), QStringLiteral("Note")};
    t.rows = {{12.5, 1234567.5, QStringLiteral("plain")}, {17.5, 0.1 + 0.2, QStringLiteral("a \"quoted\", listed\nline")}};
    return t;
}

}  // namespace

class tst_tableexport : public QObject {
    Q_OBJECT

private slots:
    void numbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << 1234567.0 << "1234567";
        QTest::newRow("half") << 1234567.5 << "1234567.5";
        QTest::newRow("every digit that counts") << 0.1 + 0.2 << "0.30000000000000004";
        QTest::newRow("small") << 0.0001 << "0.0001";
        QTest::newRow("negative") << -3.0 << "-3";
        QTest::newRow("zero") << -0.0 << "0";
    }
    void numbers()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        // The locale of the user never reaches the file.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString written = ExportNumber(value);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(written, text);
        QCOMPARE(written.toDouble(), value);
    }

    void csvFollowsRfc4180()
    {
        QCOMPARE(CsvText(sample()), QByteArray("DBH class (cm),FD (SPH),Note\r\n"
                                               "12.5,1234567.5,plain\r\n"
                                               "17.5,0.30000000000000004,\"a \"\"quoted\"\", listed\nline\"\r\n"));
    }

    void workbookHoldsNumbersAsNumbers()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("t.xlsx"));
        ExportTable second = sample();
        second.name = sample().name;   // the same name twice gets a sheet of its own
        SaveXlsx({sample(), second}, path);
        const QByteArray workbook = workbookPart(path, QStringLiteral("xl/workbook.xml"));
        QVERIFY2(workbook.contains("name=\"2000 _ cycle 1\"") && workbook.contains("name=\"2000 _ cycle 1 2\""), workbook.constData());
        const QByteArray sheet = workbookPart(path, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY2(sheet.contains("ySplit=\"1\"") && sheet.contains("state=\"frozen\""), sheet.constData());
        QVERIFY(sheet.contains("<c r=\"B2\"><v>1234567.5</v></c>"));
        QVERIFY(sheet.contains("<c r=\"A3\"><v>17.5</v></c>"));
        QVERIFY(workbookPart(path, QStringLiteral("xl/sharedStrings.xml")).contains("FD (SPH)"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("t.xlsx")});
        // Readable by others as any new file of the user is, not a scratch file's owner-only mode.
        QFile plain(dir.filePath(QStringLiteral("plain")));
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QCOMPARE(QFileInfo(path).permissions(), plain.permissions());
    }

    // A place that cannot take the file: a clear message naming it, and nothing left behind.
    void unwritableTargets_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("target");
        QTest::newRow("csv into a missing folder") << "csv" << "missing/t.csv";
        QTest::newRow("xlsx into a missing folder") << "xlsx" << "missing/t.xlsx";
        QTest::newRow("csv over a folder") << "csv" << "taken";
        QTest::newRow("xlsx over a folder") << "xlsx" << "taken";
        QTest::newRow("csv over a read-only file") << "csv" << "locked";
        QTest::newRow("xlsx over a read-only file") << "xlsx" << "locked";
    }
    void unwritableTargets()
    {
        QFETCH(QString, format);
        QFETCH(QString, target);
        QTemporaryDir dir;
        QDir(dir.path()).mkdir(QStringLiteral("taken"));
        const QString path = dir.filePath(target);
        const bool locked = target == QLatin1String("locked");
        if (locked) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
            file.close();
            QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
            if (QFileInfo(path).isWritable())
                QSKIP("the superuser may write any file");
        }
        try {
            if (format == QLatin1String("csv"))
                SaveCsv(sample(), path);
            else
                SaveXlsx({sample()}, path);
            QFAIL("wrote where no file can be");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(target), qPrintable(e.description()));
            // Both formats refuse a read-only file alike.
            if (locked)
                QVERIFY2(e.description().contains(QStringLiteral("Existing file %1 is not writable").arg(path)), qPrintable(e.description()));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), locked ? QStringList{target} : QStringList());
        if (locked)
            QCOMPARE(ReadWholeFile(path), QByteArray("kept"));
    }
};

SENDREL_TEST_MAIN(tst_tableexport)
#include "tst_tableexport.moc"
