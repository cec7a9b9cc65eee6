#include "shell/frmSendrel.h"

#include "app/FolderLocation.h"
#include "app/SaveSettingsAndEnd.h"
#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "shell/RevealPicture.h"
#include "shell/frmKD_About.h"
#include "windows/common/ChildFrame.h"
#include "windows/common/ChildMenus.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/WindowMenu.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QStyleOptionTitleBar>

#include <algorithm>

namespace sendrel {

namespace {

// The scroll area around a form in its sub-window: the form fills it while there is room and
// scrolls inside it below its least size. It passes the form's caption on to the sub-window,
// and a close of the sub-window (title bar, Ctrl+F4) on to the form, which may refuse it.
class ChildScroll : public QScrollArea {
public:
    explicit ChildScroll(QWidget *form)
    {
        setObjectName(QLatin1String(kChildScrollName));
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setWidget(form);
        setWindowTitle(form->windowTitle());
        form->installEventFilter(this);
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        if (QWidget *form = widget(); form && !form->close()) {
            event->ignore();
            return;
        }
        event->accept();
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == widget() && event->type() == QEvent::WindowTitleChange)
            setWindowTitle(widget()->windowTitle());
        return false;
    }
};

}  // namespace

frmSendrel::frmSendrel(TreeModel &tm, QWidget *parent) : QMainWindow(parent), m_tm(tm), m_mdi(new QMdiArea(this))
{
    setObjectName(QStringLiteral("frmSendrel"));
    setWindowTitle(QStringLiteral("Sendrel"));
    setWindowIcon(ProgramIcon());
    m_mdi->setObjectName(QStringLiteral("mdiArea"));
    m_mdi->setBackground(QColor(171, 171, 171));
    // On a small screen the arranged windows reach past the frame: the work area scrolls to them.
    m_mdi->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdi->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdi);
    resize(1024, 720);
    buildMenus();
    UpdateMenus();

    connect(m_mdi, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *) { UpdateMenus(); });
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, [this] {
        int topic = HelpContextID;
        if (QWidget *form = FormOf(m_mdi->activeSubWindow())) {
            const QVariant id = form->property("HelpContextID");
            if (id.isValid())
                topic = id.toInt();
        }
        ShowHelpTopic(topic);
    });
}

frmSendrel::~frmSendrel()
{
    // The child windows go down with the frame; their last signals find no menu bar any more.
    disconnect(m_mdi, nullptr, this, nullptr);
}

QMenu *frmSendrel::addMenu(const QString &name, const QString &caption)
{
    auto *menu = new QMenu(caption, this);
    menu->setObjectName(name);
    menu->menuAction()->setObjectName(name);
    m_ownMenus.append(menu);
    return menu;
}

QAction *frmSendrel::addItem(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

void frmSendrel::buildMenus()
{
    QMenu *file = addMenu(QStringLiteral("mnu_File"), QStringLiteral("&File"));
    connect(addItem(file, QStringLiteral("mnu_Exit"), QStringLiteral("E&xit")), &QAction::triggered, this, &frmSendrel::SaveSettingsAndEnd);

    QMenu *window = addMenu(QStringLiteral("mnu_Window"), QStringLiteral("&Window"));
    connect(addItem(window, QStringLiteral("mnu_Window_Cascade"), QStringLiteral("&Cascade")), &QAction::triggered, this,
            [this] { Arrange(kArrangeCascade); });
    connect(addItem(window, QStringLiteral("mnu_Window_TileHorizontally"), QStringLiteral("Tile &Horizontally")), &QAction::triggered, this,
            [this] { Arrange(kArrangeTileHorizontal); });
    connect(addItem(window, QStringLiteral("mnu_Window_TileVertically"), QStringLiteral("Tile &Vertically")), &QAction::triggered, this,
            [this] { Arrange(kArrangeTileVertical); });
    connect(addItem(window, QStringLiteral("mnuArrangeWindows"), QStringLiteral("&Arrange Windows")), &QAction::triggered, this,
            &frmSendrel::ArrangeWindows);
    connect(addItem(window, QStringLiteral("mnu_Window_ArrangeIcons"), QStringLiteral("&Arrange Icons")), &QAction::triggered, this,
            [this] { Arrange(kArrangeIcons); });
    ListOpenWindows(window, *this);

    QMenu *help = addMenu(QStringLiteral("mnuHelp"), QStringLiteral("&Help"));
    connect(addItem(help, QStringLiteral("mnuHelpContents"), QStringLiteral("&Contents")), &QAction::triggered, this,
            [this] { ShowHelpTopic(0); });
    connect(addItem(help, QStringLiteral("mnuHelpSearch"), QStringLiteral("&Search for help on...")), &QAction::triggered, this,
            [this] { ShowHelpTopic(0); });
    connect(addItem(help, QStringLiteral("mnuHelpTechnicalSupport"), QStringLiteral("&Obtaining Technical Support")), &QAction::triggered,
            this, [this] { ShowHelpTopic(14); });
    connect(addItem(help, QStringLiteral("mnuHelpAcknowledgements"), QStringLiteral("Acknowledgements")), &QAction::triggered, this,
            [this] { ShowHelpTopic(15); });
    help->addSeparator()->setObjectName(QStringLiteral("mnuHelpSep1"));
    connect(addItem(help, QStringLiteral("mnuHelpAbout"), QStringLiteral("&About...")), &QAction::triggered, this, &frmSendrel::ShowAbout);
}

void frmSendrel::UpdateMenus()
{
    QList<QMenu *> wanted = m_ownMenus;
    QMdiSubWindow *active = m_mdi->activeSubWindow();
    if (!active) {
        // The frame itself lost the focus (a dialog is up): the last child's menu stays while
        // that child is still there.
        const QList<QMdiSubWindow *> subs = m_mdi->subWindowList(QMdiArea::ActivationHistoryOrder);
        for (auto it = subs.rbegin(); it != subs.rend() && !active; ++it) {
            if ((*it)->isVisible())
                active = *it;
        }
    }
    if (active) {
        if (auto *owner = dynamic_cast<ChildMenus *>(FormOf(active)))
            wanted = owner->ChildMenuList();
    }
    if (wanted == m_shownMenus && menuBar()->actions().size() == wanted.size())
        return;
    menuBar()->clear();
    for (QMenu *m : wanted)
        menuBar()->addMenu(m);
    m_shownMenus = wanted;
}

void frmSendrel::Form_Load()
{
    bool located = false;
    try {
        setWindowState(windowState() | Qt::WindowMaximized);
        m_leftForm = nullptr;
        m_rightForm = nullptr;
        HelpContextID = 29;
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        located = Locate_Directories();
        if (!located) {
            m_tm.questions.message({QStringLiteral("Sendrel"),
                                    QStringLiteral("Cannot locate all the required files necessary to successfully run Sendrel.  "
                                                   "Exiting the program."),
                                    MsgIcon::Critical, MsgButtons::OK, Answer::OK});
            SaveSettingsAndEnd();
        }
    } catch (const SendrelError &e) {
        m_tm.questions.message({QStringLiteral("Sendrel"), QStringLiteral("frmSendrel|MDIForm_Load\n") + e.description(), MsgIcon::Critical,
                                MsgButtons::OK, Answer::OK});
        if (!located)
            SaveSettingsAndEnd();
    }
}

bool frmSendrel::Locate_Directories()
{
    return LocateDirectories(m_tm);
}

QMdiSubWindow *frmSendrel::SubWindowOf(const QWidget *form) const
{
    if (!form)
        return nullptr;
    for (QMdiSubWindow *sub : m_mdi->subWindowList()) {
        if (FormOf(sub) == form || sub->widget() == form)
            return sub;
    }
    return nullptr;
}

QList<QWidget *> frmSendrel::ChildForms() const
{
    QList<QWidget *> forms;
    for (QMdiSubWindow *sub : m_mdi->subWindowList(QMdiArea::CreationOrder)) {
        if (QWidget *form = FormOf(sub))
            forms.append(form);
    }
    return forms;
}

QMdiSubWindow *frmSendrel::AddChildWindow(QWidget *form)
{
    // The child window keeps the size its form was given, with its frame and title bar around it.
    const bool sized = form->testAttribute(Qt::WA_Resized);
    const QSize wanted = form->size();
    QMdiSubWindow *sub = m_mdi->addSubWindow(new ChildScroll(form));
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(ProgramIcon());
    if (sized) {
        QStyleOptionTitleBar title;
        title.initFrom(sub);
        title.titleBarFlags = sub->windowFlags();
        const int frame = sub->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, sub);
        const int titleHeight = sub->style()->pixelMetric(QStyle::PM_TitleBarHeight, &title, sub);
        sub->resize(wanted.width() + 2 * frame, wanted.height() + titleHeight + frame);
    }
    FitIntoWorkArea(sub, QRect(QPoint(0, 0), m_mdi->viewport()->size()));
    // A form that closed by itself takes its sub-window along: no empty window stays.
    connect(
        form, &QObject::destroyed, sub, [sub] { sub->close(); }, Qt::QueuedConnection);
    connect(
        sub, &QObject::destroyed, this, [this] { UpdateMenus(); }, Qt::QueuedConnection);
    return sub;
}

void frmSendrel::ArrangeWindows()
{
    // Each place is the room from its corner to the work area's edges, the left one only up to
    // the right one when both are taken, so that neither hides the other; a maximised window
    // already fills the work area and stays as it is.
    const QSize room = m_mdi->viewport()->size();
    QMdiSubWindow *right = SubWindowOf(m_rightForm);
    if (QMdiSubWindow *left = SubWindowOf(m_leftForm); left && !left->isMaximized())
        FitIntoWorkArea(left, QRect(QPoint(0, 0), QSize(right ? room.width() / 2 : room.width(), room.height())), true);
    if (right && !right->isMaximized())
        FitIntoWorkArea(right, QRect(QPoint(room.width() / 2, 0), QSize(room.width() - room.width() / 2, room.height())), true);
}

void FitIntoWorkArea(QWidget *window, const QRect &room, bool toCorner)
{
    if (room.isEmpty())
        return;
    const QSize size = window->size().boundedTo(room.size());
    if (size != window->size())
        window->resize(size);
    QPoint at = toCorner ? room.topLeft() : window->pos();
    at.setX(std::clamp(at.x(), room.left(), room.right() + 1 - size.width()));
    at.setY(std::clamp(at.y(), room.top(), room.bottom() + 1 - size.height()));
    if (at != window->pos())
        window->move(at);
}

void frmSendrel::Arrange(int command)
{
    switch (command) {
    case kArrangeCascade:
        m_mdi->cascadeSubWindows();
        break;
    case kArrangeTileHorizontal:
        tile(true);
        break;
    case kArrangeTileVertical:
        tile(false);
        break;
    case kArrangeIcons:
        arrangeIcons();
        break;
    default:
        break;
    }
}

void frmSendrel::tile(bool horizontally)
{
    QList<QMdiSubWindow *> windows;
    for (QMdiSubWindow *sub : m_mdi->subWindowList(QMdiArea::StackingOrder)) {
        if (sub->isVisible() && !sub->isMinimized())
            windows.append(sub);
    }
    if (windows.isEmpty())
        return;
    // Room is left at the bottom for the icons of minimised windows.
    bool icons = false;
    for (QMdiSubWindow *sub : m_mdi->subWindowList())
        icons = icons || (sub->isVisible() && sub->isMinimized());
    QRect area = m_mdi->viewport()->rect();
    if (icons)
        area.setBottom(area.bottom() - 32);
    const int n = static_cast<int>(windows.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow *sub = windows[i];
        if (sub->isMaximized())
            sub->showNormal();
        QRect r;
        if (horizontally) {
            const int h = area.height() / n;
            r = QRect(area.left(), area.top() + i * h, area.width(), h);
        } else {
            const int w = area.width() / n;
            r = QRect(area.left() + i * w, area.top(), w, area.height());
        }
        sub->setGeometry(r);
    }
}

void frmSendrel::arrangeIcons()
{
    const QRect area = m_mdi->viewport()->rect();
    int x = area.left();
    for (QMdiSubWindow *sub : m_mdi->subWindowList(QMdiArea::CreationOrder)) {
        if (!sub->isVisible() || !sub->isMinimized())
            continue;
        const QSize size = sub->size();
        sub->move(x, area.bottom() - size.height() + 1);
        x += size.width();
    }
}

bool frmSendrel::SaveSettingsAndEnd()
{
    m_ending = true;
    try {
        ::sendrel::SaveSettingsAndEnd(m_tm, x(), y());
        return true;
    } catch (const SendrelError &e) {
        m_ending = false;
        m_tm.questions.ShowErrorMessage(e.description());
        return false;
    }
}

void frmSendrel::closeEvent(QCloseEvent *event)
{
    // Closing the frame closes the browser with it, and that is the program's end.
    if (!m_ending)
        SaveSettingsAndEnd();
    if (m_ending)
        event->accept();
    else
        event->ignore();
}

void frmSendrel::ShowBusyMessage(const QString &title, const QString &message)
{
    m_tm.questions.showBusyMessage(title, message);
}

void frmSendrel::HideBusyMessage()
{
    m_tm.questions.hideBusyMessage();
}

void frmSendrel::SetMousePointer(int pointer)
{
    if (pointer == m_pointer)
        return;
    if (m_pointer != 0)
        QApplication::restoreOverrideCursor();
    m_pointer = pointer;
    if (pointer == 11)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else if (pointer == 9)
        QApplication::setOverrideCursor(Qt::SizeHorCursor);
    else
        m_pointer = 0;
}

void frmSendrel::ShowHelpTopic(int topic)
{
    ShowHelp(HelpContentsAndTopic, m_tm.settings.HelpFile, topic);
}

frmKD_About *frmSendrel::About() const
{
    return m_about;
}

void frmSendrel::ShowAbout()
{
    if (!m_about) {
        m_about = new frmKD_About(this);
        auto *help = new QShortcut(QKeySequence::HelpContents, m_about);
        connect(help, &QShortcut::activated, this, [this] { ShowHelpTopic(m_about->HelpContextID); });
    }
    m_about->show();
    m_about->raise();
    m_about->activateWindow();
}

}  // namespace sendrel
