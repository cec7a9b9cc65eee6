#include "base/UserQuestions.h"

namespace sendrel {

void UserQuestions::ShowInfoMessage(const QString &text)
{
    message({QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK});
}

void UserQuestions::ShowErrorMessage(const QString &description)
{
    message({QStringLiteral("Sendrel"), QStringLiteral("The following error occured:\n") + description,
             MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
}

}  // namespace sendrel
