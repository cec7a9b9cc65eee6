#include "app/gui/frmSendrel.h"

#include "app/FolderLocation.h"
#include "app/TreeModel.h"

#include <QMdiArea>

namespace sendrel {

frmSendrel::frmSendrel(TreeModel &tm, QWidget *parent) : QMainWindow(parent), m_tm(tm), m_mdi(new QMdiArea(this))
{
    setObjectName(QStringLiteral("frmSendrel"));
    setWindowTitle(QStringLiteral("Sendrel"));
    setCentralWidget(m_mdi);
}

void frmSendrel::Form_Load()
{
    setWindowState(windowState() | Qt::WindowMaximized);
    Locate_Directories();
}

bool frmSendrel::Locate_Directories()
{
    return PathIsDirectory(m_tm.settings.DataDir) && PathIsDirectory(m_tm.settings.WorkDir);
}

}  // namespace sendrel
