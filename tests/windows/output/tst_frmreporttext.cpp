// "Report Description": the title and description of a report, asked modally before it is compiled.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "windows/output/frmReportText.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace sendrel;

class TestFrmReportText : public QObject {
    Q_OBJECT

private slots:
    // 50 characters by typing; a longer title given by the caller is kept but cannot grow.
    void titleTypingLimit()
    {
        frmReportText form;
        form.show();
        QLineEdit *title = form.txtReportTitle;
        title->setFocus();
        QTest::keyClicks(title, QString(48, QLatin1Char('a')) + QStringLiteral("bcdef"));
        QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bc"));
        QTest::keyClick(title, Qt::Key_Backspace);
        QTest::keyClicks(title, QStringLiteral("xy"));
        QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bx"));

        const QString preset = QString(48, QLatin1Char('R')) + QStringLiteral(": Stand Table");
        title->setText(preset);
        title->end(false);
        QTest::keyClicks(title, QStringLiteral("z"));
        QCOMPARE(title->text(), preset);
        QTest::keyClick(title, Qt::Key_Backspace);
        QTest::keyClicks(title, QStringLiteral("z"));
        QCOMPARE(title->text(), preset.chopped(1));
    }

    // Through the desktop's questions, modally: OK gives the edited boxes (the window stays loaded
    // until they are read); every other way out cancels and gives nothing back.
    void askReportText_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::addColumn<bool>("ok");
        QTest::newRow("OK") << "cmdOK" << true;
        QTest::newRow("Cancel") << "cmdCancel" << false;
        QTest::newRow("Escape") << "Escape" << false;
        QTest::newRow("close box") << "close" << false;
    }

    void askReportText()
    {
        QFETCH(QString, leave);
        QFETCH(bool, ok);
        GuiQuestions questions;
        ReportTextRequest request{QStringLiteral("R7: Stock Table"), QStringLiteral("Printed by: \r\n\r\nThin to 400")};
        QString shownDescription;
        onNextModal([&](QWidget *w) {
            auto *form = qobject_cast<frmReportText *>(w);
            QVERIFY(form);
            shownDescription = form->txtReportDesc->toPlainText();
            form->txtReportTitle->selectAll();
            QTest::keyClicks(form->txtReportTitle, QStringLiteral("Spacing trial"));
            form->txtReportDesc->moveCursor(QTextCursor::End);
            QTest::keyClicks(form->txtReportDesc, QStringLiteral(" at 2010"));
            if (leave == QLatin1String("Escape"))
                QTest::keyClick(form, Qt::Key_Escape);
            else if (leave == QLatin1String("close"))
                form->close();
            else
                QTest::mouseClick(form->findChild<QPushButton *>(leave), Qt::LeftButton);
        });
        QCOMPARE(questions.askReportText(request), ok);
        QCOMPARE(shownDescription, QStringLiteral("Printed by: \n\nThin to 400"));
        QCOMPARE(request.title, ok ? QStringLiteral("Spacing trial") : QStringLiteral("R7: Stock Table"));
        QCOMPARE(request.description, ok ? QStringLiteral("Printed by: \n\nThin to 400 at 2010") : QStringLiteral("Printed by: \r\n\r\nThin to 400"));
    }

    // Help opens the help file at topic 73, and the window waits on.
    void helpOpensTopic73()
    {
        frmReportText form;
        form.HelpFile = QStringLiteral("/inst/Help/Tolvane.chm");
        QString opened;
        form.OpenHelp = [&](const QString &file, int topic) { opened = file + QLatin1Char('|') + QString::number(topic); };
        form.show();
        QTest::mouseClick(form.cmdHelp, Qt::LeftButton);
        QCOMPARE(opened, QStringLiteral("/inst/Help/Tolvane.chm|73"));
        QVERIFY(form.isVisible());
        QVERIFY(form.bReportCancelled);
    }
};

SENDREL_TEST_MAIN(TestFrmReportText)
#include "tst_frmreporttext.moc"
