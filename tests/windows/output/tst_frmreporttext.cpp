#include "support/TestMain.h"
#include "shell/GuiQuestions.h"
#include "windows/output/frmReportText.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace sendrel;

namespace {

template <typename T>
T *control(QWidget &form, const char *name)
{
    T *w = form.findChild<T *>(QString::fromLatin1(name));
    if (!w)
        qFatal("no control %s", name);
    return w;
}

// Runs check on the modal frmReportText once it is up.
void whenShown(const std::function<void(frmReportText &)> &check)
{
    QTimer::singleShot(0, [check] {
        auto *form = qobject_cast<frmReportText *>(QApplication::activeModalWidget());
        if (!form) {
            QFAIL("frmReportText is not shown modally");
            return;
        }
        check(*form);
    });
}

}  // namespace

class TestFrmReportText : public QObject {
    Q_OBJECT

private slots:
    void controlsAndCaptions();
    void titleTakesFiftyTypedCharacters();
    void longPresetTitleCannotGrow();
    void okKeepsTheBoxesReadable();
    void everyOtherWayOutCancels_data();
    void everyOtherWayOutCancels();
    void helpOpensTopic73();
    void askReportTextShowsItModally();
    void askReportTextCancelled();
};

void TestFrmReportText::controlsAndCaptions()
{
    frmReportText form;
    QCOMPARE(form.objectName(), QStringLiteral("frmReportText"));
    QCOMPARE(form.windowTitle(), QStringLiteral("Report Description"));
    QVERIFY(form.isModal());
    QCOMPARE(control<QLabel>(form, "Label1")->text(), QStringLiteral("Edit report title:"));
    QCOMPARE(control<QLabel>(form, "Label2")->text(), QStringLiteral("Enter report description:"));
    QCOMPARE(control<QPushButton>(form, "cmdOK")->text(), QStringLiteral("OK"));
    QCOMPARE(control<QPushButton>(form, "cmdCancel")->text(), QStringLiteral("Cancel"));
    QCOMPARE(control<QPushButton>(form, "cmdHelp")->text(), QStringLiteral("Help"));
    QVERIFY(control<QLineEdit>(form, "txtReportTitle"));
    auto *desc = control<QPlainTextEdit>(form, "txtReportDesc");
    QCOMPARE(desc->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    QVERIFY(form.bReportCancelled);
}

void TestFrmReportText::titleTakesFiftyTypedCharacters()
{
    frmReportText form;
    form.show();
    auto *title = control<QLineEdit>(form, "txtReportTitle");
    title->setFocus();
    QTest::keyClicks(title, QString(48, QLatin1Char('a')) + QStringLiteral("bcdef"));
    QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bc"));
    // Deleting makes room again for exactly one.
    QTest::keyClick(title, Qt::Key_Backspace);
    QTest::keyClicks(title, QStringLiteral("xy"));
    QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bx"));
}

void TestFrmReportText::longPresetTitleCannotGrow()
{
    frmReportText form;
    form.show();
    auto *title = control<QLineEdit>(form, "txtReportTitle");
    // A long Run Id: the caller's title is set whole, beyond what typing may reach.
    const QString preset = QString(48, QLatin1Char('R')) + QStringLiteral(": Stand Table");
    title->setText(preset);
    QCOMPARE(title->text(), preset);
    title->setFocus();
    title->end(false);
    QTest::keyClicks(title, QStringLiteral("z"));
    QCOMPARE(title->text(), preset);
    QTest::keyClick(title, Qt::Key_Backspace);
    QTest::keyClicks(title, QStringLiteral("z"));
    QCOMPARE(title->text(), preset.chopped(1));
}

void TestFrmReportText::okKeepsTheBoxesReadable()
{
    frmReportText form;
    form.txtReportTitle->setText(QStringLiteral("R7: Stand Table"));
    form.txtReportDesc->setPlainText(QStringLiteral("Printed by: \n\nThin"));
    form.show();
    QTest::mouseClick(control<QPushButton>(form, "cmdOK"), Qt::LeftButton);
    QVERIFY(!form.bReportCancelled);
    QVERIFY(!form.isVisible());
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(form.txtReportTitle->text(), QStringLiteral("R7: Stand Table"));
    QCOMPARE(form.txtReportDesc->toPlainText(), QStringLiteral("Printed by: \n\nThin"));
}

void TestFrmReportText::everyOtherWayOutCancels_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("Cancel") << 0;
    QTest::newRow("Escape") << 1;
    QTest::newRow("close box") << 2;
}

void TestFrmReportText::everyOtherWayOutCancels()
{
    QFETCH(int, way);
    frmReportText form;
    form.show();
    // A window first left by OK and shown again is cancelled by any other way out.
    form.bReportCancelled = false;
    if (way == 0)
        QTest::mouseClick(control<QPushButton>(form, "cmdCancel"), Qt::LeftButton);
    else if (way == 1)
        QTest::keyClick(&form, Qt::Key_Escape);
    else
        form.close();
    QVERIFY(form.bReportCancelled);
    QVERIFY(!form.isVisible());
}

void TestFrmReportText::helpOpensTopic73()
{
    frmReportText form;
    form.HelpFile = QStringLiteral("/inst/Help/Tolvane.chm");
    QString file;
    int topic = 0;
    form.OpenHelp = [&](const QString &f, int t) {
        file = f;
        topic = t;
    };
    form.show();
    QTest::mouseClick(control<QPushButton>(form, "cmdHelp"), Qt::LeftButton);
    QCOMPARE(file, QStringLiteral("/inst/Help/Tolvane.chm"));
    QCOMPARE(topic, 73);
    QVERIFY(form.isVisible());
    QVERIFY(form.bReportCancelled);
}

void TestFrmReportText::askReportTextShowsItModally()
{
    GuiQuestions questions;
    ReportTextRequest request{QStringLiteral("R7: Stock Table"), QStringLiteral("Printed by: \r\n\r\nThin to 400")};
    bool shown = false;
    whenShown([&](frmReportText &form) {
        shown = true;
        QCOMPARE(form.txtReportTitle->text(), QStringLiteral("R7: Stock Table"));
        QCOMPARE(form.txtReportDesc->toPlainText(), QStringLiteral("Printed by: \n\nThin to 400"));
        form.txtReportTitle->selectAll();
        QTest::keyClicks(form.txtReportTitle, QStringLiteral("Spacing trial"));
        form.txtReportDesc->moveCursor(QTextCursor::End);
        QTest::keyClicks(form.txtReportDesc, QStringLiteral(" at 2010"));
        QTest::mouseClick(form.cmdOK, Qt::LeftButton);
    });
    QVERIFY(questions.askReportText(request));
    QVERIFY(shown);
    QCOMPARE(request.title, QStringLiteral("Spacing trial"));
    QCOMPARE(request.description, QStringLiteral("Printed by: \n\nThin to 400 at 2010"));
}

void TestFrmReportText::askReportTextCancelled()
{
    GuiQuestions questions;
    ReportTextRequest request{QStringLiteral("R7: Stand Table"), QStringLiteral("Printed by: ")};
    whenShown([](frmReportText &form) {
        QTest::keyClicks(form.txtReportTitle, QStringLiteral("changed"));
        QTest::mouseClick(form.cmdCancel, Qt::LeftButton);
    });
    QVERIFY(!questions.askReportText(request));
    QCOMPARE(request.title, QStringLiteral("R7: Stand Table"));
    QCOMPARE(request.description, QStringLiteral("Printed by: "));
}

SENDREL_TEST_MAIN(TestFrmReportText)
#include "tst_frmreporttext.moc"
