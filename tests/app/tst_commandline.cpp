#include "support/TestMain.h"
#include "app/CommandLine.h"

#include <QTest>

using namespace sendrel;

class tst_commandline : public QObject {
    Q_OBJECT
private slots:
    void options_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("run");
        QTest::addColumn<int>("variant");
        QTest::newRow("nothing") << "" << "" << 2;
        QTest::newRow("lower case option") << "/r RUN1" << "RUN1" << 2;
        QTest::newRow("option last") << "/V KD /R" << "" << 2;
        QTest::newRow("option as value") << "/R /V KD" << "/V" << 2;
        QTest::newRow("no blank behind") << "/RRUN1" << "" << 2;
        QTest::newRow("several blanks") << "/R  RUN1  /V  TRW" << "RUN1" << 1;
        QTest::newRow("blank in run id") << "/R A B" << "A" << 2;
        QTest::newRow("variant 1") << "/V 1" << "" << 1;
        QTest::newRow("variant kd lower") << "/v kd" << "" << 2;
        QTest::newRow("variant 7") << "/V 7" << "" << 0;
        QTest::newRow("variant XX") << "/V XX /R R2" << "R2" << 0;
        QTest::newRow("quotes stay") << "/R \"Q\"" << "\"Q\"" << 2;
    }
    void options()
    {
        QFETCH(QString, line);
        const CommandLineValues v = ReadCommandLine(line);
        QTEST(v.CurrentRunId, "run");
        QTEST(int(v.ModelVariant), "variant");
    }
};

SENDREL_TEST_MAIN(tst_commandline)
#include "tst_commandline.moc"
