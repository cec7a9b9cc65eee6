// The range editor of a stand and stock window: opened from the ruler, its boxes wired to the
// classes and the panels, and its change events told apart from the program's own writing.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"
#include "support/WindowHostStub.h"

#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A stand and stock window with the classes 10-15, 15-20 and 20 up (drawn to 25).
struct Editing {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;

    Editing()
    {
        env.openAsProgram();
        AddSampleRun(env);
        w = new frmParameters(env.tm, host);
        w->show();
        Retype(box(w, QStringLiteral("txtClassStart")), QStringLiteral("10"));
        Retype(box(w, QStringLiteral("txtClassWidth")), QStringLiteral("5"));
        Retype(box(w, QStringLiteral("txtNumofClasses")), QStringLiteral("3"));
    }
    ~Editing() { delete w; }

    static QLineEdit *box(QWidget *form, const QString &name) { return Control<QLineEdit>(form, name); }
    frmRange *range() const { return w->RangeEditor(); }
    ClassPanel *panel(int i) const { return w->RulerView()->SSPanel2(i); }
    // A press in the middle of the class's panel, as the user opens the editor.
    void open(int i)
    {
        QTest::mouseClick(panel(i), Qt::LeftButton, {}, QPoint(panel(i)->width() / 2, ClassRulerView::kPanelHeight / 2));
    }
    void type(const QString &name, const QString &text) { Retype(box(range(), name), text); }
    QString text(const QString &name) const { return box(range(), name)->text(); }
    QString error() const { return Control<QLabel>(range(), QStringLiteral("lblDbhError"))->text(); }
    QString edges() const
    {
        QStringList all;
        for (int i = 0; i < 3; ++i) {
            const ClassType &c = w->Layout.aClass[i];
            all << QStringLiteral("%1-%2/%3").arg(c.MinDia).arg(c.MaxDia).arg(c.MidPoint);
        }
        return all.join(QLatin1Char(' '));
    }
};

}  // namespace

class tst_frmRange : public QObject {
    Q_OBJECT

private slots:
    // Each opening fills the boxes one by one; the change events between them damage no edge.
    void opensOnThePressedClass()
    {
        Editing e;
        QVERIFY(e.range()->isHidden());
        const QString before = e.edges();
        for (int i : {1, 2, 0, 2, 1}) {
            e.open(i);
            QCOMPARE(e.range()->ClassNumber(), QString::number(i));
            QCOMPARE(e.error(), QString());
        }
        QVERIFY(e.range()->isVisible());
        QCOMPARE(e.edges(), before);
        QCOMPARE(e.text(QStringLiteral("txtMin")), QStringLiteral("15"));
        QCOMPARE(e.text(QStringLiteral("txtMax")), QStringLiteral("20"));
        QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.5"));
        QCOMPARE(e.panel(1)->TextColour(), QColor(30, 50, 150));
        QCOMPARE(e.panel(2)->TextColour(), QColor(Qt::black));
        QVERIFY(!e.w->Reset.bClassesEdited);
    }

    // An accepted edge moves the class and its neighbour, on the ruler too, and sets the centre.
    // It is no drag: a new entry in the class boxes replaces it without a question.
    void acceptedEdgeMovesTheNeighbour()
    {
        Editing e;
        e.open(1);
        e.type(QStringLiteral("txtMin"), QStringLiteral("15.5"));
        QCOMPARE(e.error(), QString());
        QCOMPARE(e.edges(), QStringLiteral("10-15.5/12.75 15.5-20/17.75 20-25/22.5"));
        QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.75"));
        QCOMPARE(e.panel(0)->text(), QStringLiteral("12.75"));
        QCOMPARE(e.panel(1)->text(), QStringLiteral("17.75"));
        QCOMPARE(e.panel(1)->x(), e.panel(0)->x() + e.panel(0)->width());
        Retype(Editing::box(e.w, QStringLiteral("txtClassWidth")), QStringLiteral("4"));
        QVERIFY(e.env.questions.asked().isEmpty());
        QCOMPARE(e.edges(), QStringLiteral("10-14/12 14-18/16 18-22/20"));
    }

    // A refused edge shows its fault and changes nothing, until the next good edit.
    void refusedEdgeChangesNothing()
    {
        Editing e;
        e.open(1);
        const QString before = e.edges();
        e.type(QStringLiteral("txtMin"), QStringLiteral("10"));
        QCOMPARE(e.error(), QStringLiteral("Minimum must be  10.5 or larger."));
        QCOMPARE(e.edges(), before);
        QCOMPARE(e.text(QStringLiteral("txtCentre")), QStringLiteral("17.5"));
        QCOMPARE(e.panel(1)->text(), QStringLiteral("17.5"));
        e.type(QStringLiteral("txtMin"), QStringLiteral("16"));
        QCOMPARE(e.error(), QString());
    }

    // New classes from the boxes while the editor is open: it shows its class's new edges, whole.
    void rebuildWhileOpenFollowsTheLayout()
    {
        Editing e;
        e.open(1);
        Retype(Editing::box(e.w, QStringLiteral("txtClassStart")), QStringLiteral("20"));
        QCOMPARE(e.edges(), QStringLiteral("20-25/22.5 25-30/27.5 30-35/32.5"));
        QCOMPARE(e.text(QStringLiteral("txtMin")), QStringLiteral("25"));
        QCOMPARE(e.text(QStringLiteral("txtMax")), QStringLiteral("30"));
        QCOMPARE(e.error(), QString());
    }

    // Close hides the editor and clears the highlight; the same editor comes back.
    void closeHidesAndClearsTheHighlight()
    {
        Editing e;
        e.open(2);
        QPointer<frmRange> first = e.range();
        QTest::mouseClick(Control<QPushButton>(e.range(), QStringLiteral("cmdOK")), Qt::LeftButton);
        QVERIFY(e.range()->isHidden());
        QCOMPARE(e.range()->ClassNumber(), QStringLiteral("-1"));
        QCOMPARE(e.panel(2)->TextColour(), QColor(Qt::black));
        e.open(0);
        QCOMPARE(e.range(), first.data());
        QVERIFY(e.range()->isVisible());
    }
};

SENDREL_TEST_MAIN(tst_frmRange)
#include "tst_frmRange.moc"
