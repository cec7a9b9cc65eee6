#include "windows/common/frmHelp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

namespace sendrel {

namespace {

const QString kContentsPage = QStringLiteral("index.html");

QString pageTitle(const QString &html)
{
    static const QRegularExpression title(QStringLiteral("<title>(.*)</title>"), QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = title.match(html);
    return m.hasMatch() ? m.captured(1).trimmed() : QString();
}

}  // namespace

frmHelp::frmHelp(QWidget *parent)
    : QWidget(parent, Qt::Window), txtTopic(new QTextBrowser(this)), txtSearch(new QLineEdit(this)), cmdContents(new QPushButton(this))
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Sendrel Help"));
    txtTopic->setObjectName(QStringLiteral("txtTopic"));
    txtTopic->setOpenLinks(true);
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    txtSearch->setPlaceholderText(QStringLiteral("Search for help on..."));
    txtSearch->setClearButtonEnabled(true);
    cmdContents->setObjectName(QStringLiteral("cmdContents"));
    cmdContents->setText(QStringLiteral("&Contents"));

    auto *bar = new QHBoxLayout;
    bar->addWidget(cmdContents);
    bar->addWidget(txtSearch, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(txtTopic, 1);
    resize(720, 560);

    connect(cmdContents, &QPushButton::clicked, this, &frmHelp::ShowContents);
    connect(txtSearch, &QLineEdit::returnPressed, this, &frmHelp::runSearch);
}

bool frmHelp::SetHelpFolder(const QString &folder)
{
    m_folder = folder;
    txtTopic->setSearchPaths({folder});
    return QFileInfo::exists(QDir(folder).filePath(kContentsPage));
}

void frmHelp::ShowContents()
{
    txtTopic->setSource(QUrl::fromLocalFile(QDir(m_folder).filePath(kContentsPage)));
}

bool frmHelp::ShowTopic(int topic)
{
    return ShowPage(QString::number(topic) + QStringLiteral(".html"));
}

bool frmHelp::ShowPage(const QString &name)
{
    const QString page = QDir(m_folder).filePath(name);
    if (!QFileInfo::exists(page))
        return false;
    txtTopic->setSource(QUrl::fromLocalFile(page));
    return true;
}

void frmHelp::ShowSearch(const QString &query)
{
    txtSearch->setText(query);
    txtSearch->setFocus();
    if (query.isEmpty())
        ShowContents();
    else
        runSearch();
}

void frmHelp::runSearch()
{
    const QStringList words = txtSearch->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        ShowContents();
        return;
    }
    QString result = QStringLiteral("<h2>Topics found</h2><ul>");
    int found = 0;
    const QDir dir(m_folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name)) {
        QFile f(dir.filePath(name));
        if (!f.open(QIODevice::ReadOnly))
            continue;
        const QString html = QString::fromUtf8(f.readAll());
        QTextDocument doc;
        doc.setHtml(html);
        const QString text = doc.toPlainText();
        bool all = true;
        for (const QString &w : words)
            all = all && text.contains(w, Qt::CaseInsensitive);
        if (!all)
            continue;
        ++found;
        result += QStringLiteral("<li><a href=\"%1\">%2</a></li>").arg(name, pageTitle(html).toHtmlEscaped());
    }
    result += QStringLiteral("</ul>");
    if (found == 0)
        result = QStringLiteral("<h2>No topic found</h2><p>No help page holds all of the words you typed.</p>");
    txtTopic->setHtml(result);
}

}  // namespace sendrel
