#pragma once

#include <QDialog>
#include <QString>

#include <functional>

class QLineEdit;

namespace sendrel {

// "Server Database": the connection text of a PostgreSQL database to open in place of the file.
class frmServerDatabase : public QDialog {
    Q_OBJECT
public:
    explicit frmServerDatabase(QWidget *parent = nullptr);

    void setConnection(const QString &connection);
    QString connection() const;

    QString HelpFile;
    int HelpContextID = 97;
    std::function<void(const QString &helpFile, int topic)> OpenHelp;

private:
    QLineEdit *txtConnection;
};

}  // namespace sendrel
