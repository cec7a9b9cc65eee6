#include "shell/frmServerDatabase.h"

#include "shell/DialogButtons.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace sendrel {

frmServerDatabase::frmServerDatabase(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmServerDatabase"));
    setWindowTitle(QStringLiteral("Server Database"));
    auto *layout = new QVBoxLayout(this);

    auto *label = new QLabel(QStringLiteral("The run database on a PostgreSQL server, by its &connection text:"), this);
    layout->addWidget(label);
    txtConnection = new QLineEdit(this);
    txtConnection->setObjectName(QStringLiteral("txtConnection"));
    txtConnection->setPlaceholderText(QStringLiteral("postgresql://user@host/dbname"));
    txtConnection->setMinimumWidth(txtConnection->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 60);
    label->setBuddy(txtConnection);
    layout->addWidget(txtConnection);
    auto *forms = new QLabel(QStringLiteral("postgresql://[user@]host[:port]/dbname\n"
                                            "postgresql:///dbname?host=/run/postgresql (on the server's own machine)\n\n"
                                            "The password is asked for when the server wants one and ~/.pgpass holds none; "
                                            "it is never kept."),
                             this);
    forms->setObjectName(QStringLiteral("lblForms"));
    forms->setWordWrap(true);
    layout->addWidget(forms);

    AddDialogButtons(this, layout, [this] {
        if (OpenHelp)
            OpenHelp(HelpFile, HelpContextID);
    });
}

void frmServerDatabase::setConnection(const QString &connection)
{
    txtConnection->setText(connection);
}

QString frmServerDatabase::connection() const
{
    return txtConnection->text().trimmed();
}

}  // namespace sendrel
