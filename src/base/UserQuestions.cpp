#include "base/UserQuestions.h"

namespace sendrel {

QString UserQuestions::openFile(const FileRequest &)
{
    return QString();
}

QString UserQuestions::saveFile(const FileRequest &)
{
    return QString();
}

QString UserQuestions::chooseFolder(const QString &, const QString &)
{
    return QString();
}

std::optional<RunKind> UserQuestions::askStandingOrHarvested()
{
    return std::nullopt;
}

bool UserQuestions::askOptions(OptionsRequest &)
{
    return false;
}

bool UserQuestions::askServerDatabase(QString &)
{
    return false;
}

bool UserQuestions::askPassword(const QString &, QString &)
{
    return false;
}

bool UserQuestions::askPrint(PrintRequest &)
{
    return false;
}

void UserQuestions::ShowInfoMessage(const QString &text)
{
    message({QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK});
}

void UserQuestions::ShowErrorMessage(const QString &description)
{
    message({QStringLiteral("Sendrel"), QStringLiteral("The following error occured:\n") + description, MsgIcon::Exclamation,
             MsgButtons::OK, Answer::OK});
}

}  // namespace sendrel
