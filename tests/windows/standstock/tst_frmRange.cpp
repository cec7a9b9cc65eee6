#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"

#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"
#include "support/WindowHostStub.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A stand and stock window with the classes 10-15, 15-20 and 20 up (drawn to 25), and its
// range editor opened on one class by a press in the middle of its panel.
struct Editing {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;

    Editing()
    {
        env.openAsProgram();
        AddSampleRun(env);
        w = new frmParameters(env.tm, host);
        w->This_RunId = QStringLiteral("R1");
        w->This_SorH = QStringLiteral("S");
        w->UpdateHeaderList();
        w->show();
        Retype(box(w, QStringLiteral("txtClassStart")), QStringLiteral("10"));
        Retype(box(w, QStringLiteral("txtClassWidth")), QStringLiteral("5"));
        Retype(box(w, QStringLiteral("txtNumofClasses")), QStringLiteral("3"));
    }
    ~Editing() { delete w; }

    static QLineEdit *box(QWidget *form, const QString &name) { return Control<QLineEdit>(form, name); }
    frmRange *range() const { return w->RangeEditor(); }
    ClassPanel *panel(int i) const { return w->RulerView()->SSPanel2(i); }
    void open(int i)
    {
        const QPoint middle(panel(i)->width() / 2, ClassRulerView::kPanelHeight / 2);
        QTest::mousePress(panel(i), Qt::LeftButton, {}, middle);
        QTest::mouseRelease(panel(i), Qt::LeftButton, {}, middle);
    }
    void type(const QString &name, const QString &text) { Retype(box(range(), name), text); }
    QString text(const QString &name) const { return box(range(), name)->text(); }
    QString error() const { return Control<QLabel>(range(), QStringLiteral("lblDbhError"))->text(); }
    QString edges(int i) const
    {
        const ClassType &c = w->Layout.aClass[i];
        return QStringLiteral("%1-%2/%3").arg(c.MinDia).arg(c.MaxDia).arg(c.MidPoint);
    }
};

}  // namespace

class tst_frmRange : public QObject {
    Q_OBJECT

private slots:
    void opensOnPressedClass();
    void acceptedMinimumMovesNeighbour();
    void refusedEdges_data();
    void refusedEdges();
    void firstClassMinimumOnlyRises();
    void lastClassMaximumOnlyFalls();
    void faultWhileTypingGoesWhenComplete();
    void centreIsOnlyChecked();
    void rebuildWhileOpenFollowsLayout();
    void closeHidesAndClearsHighlight();
};

void tst_frmRange::opensOnPressedClass()
{
    Editing e;
    QVERIFY(e.range()->isHidden());
    e.open(1);
    QVERIFY(e.range()->isVisible());
    QCOMPARE(e.range()->windowTitle(), QStringLiteral("Range"));
    QCOMPARE(e.range()->ClassNumber(), QStringLiteral("1"));
    QCOMPARE(e.text(QStringLiteral("txtMin")), QStringLiteral("15"));
    QCOMPARE(e.text(QStringLiteral("txtMax")), QStringLiteral("20"));
    QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.5"));
    QCOMPARE(e.error(), QString());
    for (const auto &[name, caption] : {std::pair{"lblMin", "Minimum:"}, {"lblMax", "Maximum:"}, {"lblCentre", "Centre Point:"}})
        QCOMPARE(Control<QLabel>(e.range(), QString::fromLatin1(name))->text(), QString::fromLatin1(caption));
    QCOMPARE(Control<QPushButton>(e.range(), QStringLiteral("cmdOK"))->text(), QStringLiteral("Close"));
    QCOMPARE(Control<QPushButton>(e.range(), QStringLiteral("cmdHelp"))->text(), QStringLiteral("Help"));
    QCOMPARE(e.panel(1)->TextColour(), QColor(30, 50, 150));
    QCOMPARE(e.panel(0)->TextColour(), QColor(Qt::black));
    // Opening it on each class in turn damages no edge on the way.
    const QString before = e.edges(0) + e.edges(1) + e.edges(2);
    for (int i : {2, 0, 2, 1, 0}) {
        e.open(i);
        QCOMPARE(e.range()->ClassNumber(), QString::number(i));
        QCOMPARE(e.error(), QString());
    }
    QCOMPARE(e.edges(0) + e.edges(1) + e.edges(2), before);
    QCOMPARE(e.text(QStringLiteral("txtMin")), QStringLiteral("10"));
    QCOMPARE(e.panel(0)->TextColour(), QColor(30, 50, 150));
    QCOMPARE(e.panel(1)->TextColour(), QColor(Qt::black));
    // No drag: the layout doesn't count as edited by hand.
    QVERIFY(!e.w->Reset.bClassesEdited);
}

void tst_frmRange::acceptedMinimumMovesNeighbour()
{
    Editing e;
    e.open(1);
    e.type(QStringLiteral("txtMin"), QStringLiteral("15.5"));
    QCOMPARE(e.error(), QString());
    QCOMPARE(e.edges(0), QStringLiteral("10-15.5/12.75"));
    QCOMPARE(e.edges(1), QStringLiteral("15.5-20/17.75"));
    QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.75"));
    QCOMPARE(e.panel(0)->text(), QStringLiteral("12.75"));
    QCOMPARE(e.panel(1)->text(), QStringLiteral("17.75"));
    QCOMPARE(e.panel(1)->x(), e.panel(0)->x() + e.panel(0)->width());
    e.type(QStringLiteral("txtMax"), QStringLiteral("22"));
    QCOMPARE(e.edges(1), QStringLiteral("15.5-22/18.75"));
    QCOMPARE(e.edges(2), QStringLiteral("22-25/23.5"));
    QCOMPARE(e.panel(2)->text(), QStringLiteral("22+"));
    // A change made here is no drag: a new entry in the boxes replaces it without a question.
    Retype(Editing::box(e.w, QStringLiteral("txtClassWidth")), QStringLiteral("4"));
    QVERIFY(e.env.questions.asked().isEmpty());
    QCOMPARE(e.edges(1), QStringLiteral("14-18/16"));
}

void tst_frmRange::refusedEdges_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fault");
    // Every text of a fault is checked against the rules in tst_classrange; here one of each kind.
    QTest::newRow("minimum 10") << "txtMin" << "10" << "Minimum must be  10.5 or larger.";
    QTest::newRow("maximum 20.25") << "txtMax" << "20.25" << "Maximum must be a multiple of 0.5";
    QTest::newRow("maximum below") << "txtMax" << "12" << "Maximum must be larger than minimum.";
}

void tst_frmRange::refusedEdges()
{
    QFETCH(QString, box);
    QFETCH(QString, text);
    QFETCH(QString, fault);
    Editing e;
    e.open(1);
    const QString before = e.edges(0) + e.edges(1) + e.edges(2);
    e.type(box, text);
    QCOMPARE(e.error(), fault);
    QCOMPARE(e.edges(0) + e.edges(1) + e.edges(2), before);
    QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.5"));
    QCOMPARE(e.panel(1)->text(), QStringLiteral("17.5"));
    // The fault goes at the next good edit.
    e.type(box, box == QLatin1String("txtMin") ? QStringLiteral("16") : QStringLiteral("19"));
    QCOMPARE(e.error(), QString());
}

void tst_frmRange::firstClassMinimumOnlyRises()
{
    Editing e;
    e.open(0);
    const int left = e.panel(0)->x();
    e.type(QStringLiteral("txtMin"), QStringLiteral("9.5"));
    QCOMPARE(e.error(), QStringLiteral("Minimum must be  10 or larger."));
    QCOMPARE(e.edges(0), QStringLiteral("10-15/12.5"));
    e.type(QStringLiteral("txtMin"), QStringLiteral("12"));
    QCOMPARE(e.error(), QString());
    QCOMPARE(e.edges(0), QStringLiteral("12-15/13.5"));
    QVERIFY(e.panel(0)->x() > left);
    QCOMPARE(e.panel(0)->x() + e.panel(0)->width(), e.panel(1)->x());
}

void tst_frmRange::lastClassMaximumOnlyFalls()
{
    Editing e;
    e.open(2);
    e.type(QStringLiteral("txtMax"), QStringLiteral("30"));
    QCOMPARE(e.error(), QStringLiteral("Maximum must be  25 or smaller."));
    QCOMPARE(e.edges(2), QStringLiteral("20-25/22.5"));
    const int width = e.panel(2)->width();
    e.type(QStringLiteral("txtMax"), QStringLiteral("24"));
    QCOMPARE(e.error(), QString());
    QCOMPARE(e.edges(2), QStringLiteral("20-24/22"));
    QVERIFY(e.panel(2)->width() < width);
    QCOMPARE(e.panel(2)->text(), QStringLiteral("20+"));
}

void tst_frmRange::faultWhileTypingGoesWhenComplete()
{
    Editing e;
    e.open(1);
    e.type(QStringLiteral("txtMax"), QStringLiteral("2"));
    QCOMPARE(e.error(), QStringLiteral("Maximum must be larger than minimum."));
    QCOMPARE(e.edges(1), QStringLiteral("15-20/17.5"));
    QTest::keyClicks(Editing::box(e.range(), QStringLiteral("txtMax")), QStringLiteral("1"));
    QCOMPARE(e.error(), QString());
    QCOMPARE(e.edges(1), QStringLiteral("15-21/18"));
    QCOMPARE(e.edges(2), QStringLiteral("21-25/23"));
}

void tst_frmRange::centreIsOnlyChecked()
{
    Editing e;
    e.open(1);
    e.type(QStringLiteral("txtCentre"), QStringLiteral("17.3"));
    QCOMPARE(e.error(), QStringLiteral("Centre must be a multiple of 0.25"));
    e.type(QStringLiteral("txtCentre"), QStringLiteral("16"));
    QCOMPARE(e.error(), QString());
    // An accepted centre reaches the class only with the next change of an edge, which puts
    // the mean of the edges in its place.
    QCOMPARE(e.edges(1), QStringLiteral("15-20/17.5"));
    e.type(QStringLiteral("txtMax"), QStringLiteral("19"));
    QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17"));
    QCOMPARE(e.edges(1), QStringLiteral("15-19/17"));
}

void tst_frmRange::rebuildWhileOpenFollowsLayout()
{
    Editing e;
    e.open(1);
    Retype(Editing::box(e.w, QStringLiteral("txtClassStart")), QStringLiteral("20"));
    // The editor shows the new edges of its class, and they are whole.
    QCOMPARE(e.edges(0), QStringLiteral("20-25/22.5"));
    QCOMPARE(e.edges(1), QStringLiteral("25-30/27.5"));
    QCOMPARE(e.edges(2), QStringLiteral("30-35/32.5"));
    QCOMPARE(e.text(QStringLiteral("txtMin")), QStringLiteral("25"));
    QCOMPARE(e.text(QStringLiteral("txtMax")), QStringLiteral("30"));
    QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("27.5"));
    QCOMPARE(e.error(), QString());
}

void tst_frmRange::closeHidesAndClearsHighlight()
{
    Editing e;
    e.open(2);
    QPointer<frmRange> first = e.range();
    QTest::mouseClick(Control<QPushButton>(e.range(), QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(e.range()->isHidden());
    QCOMPARE(e.range()->ClassNumber(), QStringLiteral("-1"));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(e.panel(i)->TextColour(), QColor(Qt::black));
    // The same editor comes back for the next press.
    e.open(0);
    QCOMPARE(e.range(), first.data());
    QVERIFY(e.range()->isVisible());
    QCOMPARE(e.text(QStringLiteral("txtMax")), QStringLiteral("15"));
}

SENDREL_TEST_MAIN(tst_frmRange)
#include "tst_frmRange.moc"
