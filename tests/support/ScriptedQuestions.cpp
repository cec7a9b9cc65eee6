#include "support/ScriptedQuestions.h"

#include "base/SendrelError.h"

namespace sendrel {

ScriptedQuestions::Entry ScriptedQuestions::take(const QString &kind, const QString &title, const QString &text)
{
    m_asked.append({kind, title, text});
    if (m_script.isEmpty() || m_script.first().kind != kind) {
        const QString expected = m_script.isEmpty() ? QStringLiteral("nothing") : m_script.first().kind;
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("ScriptedQuestions"),
                           QStringLiteral("Unexpected %1 \"%2\" (script expected %3)").arg(kind, title + QLatin1String(": ") + text, expected));
    }
    return m_script.takeFirst();
}

Answer ScriptedQuestions::message(const MessageRequest &request)
{
    if (request.buttons == MsgButtons::OK) {
        m_asked.append({QStringLiteral("message"), request.title, request.text});
        return Answer::OK;
    }
    return static_cast<Answer>(take(QStringLiteral("message"), request.title, request.text).value.toInt());
}

QString ScriptedQuestions::openFile(const FileRequest &request)
{
    return take(QStringLiteral("openFile"), request.title, request.startFolder + QLatin1Char('|') + request.fileName).value.toString();
}

QString ScriptedQuestions::saveFile(const FileRequest &request)
{
    return take(QStringLiteral("saveFile"), request.title, request.startFolder + QLatin1Char('|') + request.fileName).value.toString();
}

QString ScriptedQuestions::chooseFolder(const QString &title, const QString &startFolder)
{
    return take(QStringLiteral("chooseFolder"), title, startFolder).value.toString();
}

DialogEnd ScriptedQuestions::askRunId(QString &name)
{
    const Entry e = take(QStringLiteral("askRunId"), QStringLiteral("Enter Run ID"), name);
    if (!e.extra.toString().isEmpty())
        name = e.extra.toString();
    return static_cast<DialogEnd>(e.value.toInt());
}

DialogEnd ScriptedQuestions::askDuplicateId(const QString &name)
{
    return static_cast<DialogEnd>(take(QStringLiteral("askDuplicateId"), QStringLiteral("Duplicate Run Id"), name).value.toInt());
}

std::optional<RunKind> ScriptedQuestions::askStandingOrHarvested()
{
    const QVariant kind = take(QStringLiteral("askStandingOrHarvested"), QStringLiteral("Standing or Harvested"), QString()).value;
    return kind.isNull() ? std::nullopt : std::optional<RunKind>(static_cast<RunKind>(kind.toInt()));
}

bool ScriptedQuestions::askReportText(ReportTextRequest &request)
{
    const Entry e = take(QStringLiteral("askReportText"), request.title, request.description);
    const QStringList texts = e.extra.toStringList();
    if (texts.size() == 2) {
        if (!texts[0].isEmpty())
            request.title = texts[0];
        if (!texts[1].isEmpty())
            request.description = texts[1];
    }
    return e.value.toBool();
}

bool ScriptedQuestions::askOptions(OptionsRequest &request)
{
    const Entry e = take(QStringLiteral("askOptions"), request.units, request.sdiMethod);
    const QStringList chosen = e.extra.toStringList();
    if (e.value.toBool() && chosen.size() == 3)
        request = {chosen[0], chosen[1], chosen[2] == QLatin1String("YES")};
    return e.value.toBool();
}

bool ScriptedQuestions::askServerDatabase(QString &connection)
{
    const Entry e = take(QStringLiteral("askServerDatabase"), QStringLiteral("Server Database"), connection);
    if (e.value.toBool())
        connection = e.extra.toString();
    return e.value.toBool();
}

bool ScriptedQuestions::askPassword(const QString &connection, QString &password)
{
    const Entry e = take(QStringLiteral("askPassword"), QStringLiteral("Password"), connection);
    if (e.value.toBool())
        password = e.extra.toString();
    return e.value.toBool();
}

bool ScriptedQuestions::askPrint(PrintRequest &request)
{
    const QString file = take(QStringLiteral("askPrint"), request.title, request.outputFile).value.toString();
    if (file.isEmpty())
        return false;
    request.outputFile = file;
    return true;
}

void ScriptedQuestions::showBusyMessage(const QString &title, const QString &message)
{
    Q_UNUSED(title)
    ++m_busyCalls;
    m_busyVisible = true;
    m_lastBusy = message;
}

void ScriptedQuestions::hideBusyMessage()
{
    m_busyVisible = false;
}

QStringList ScriptedQuestions::messageTexts() const
{
    QStringList texts;
    for (const Asked &a : m_asked) {
        if (a.kind == QLatin1String("message"))
            texts.append(a.text);
    }
    return texts;
}

void ScriptedQuestions::clear()
{
    m_script.clear();
    m_asked.clear();
    m_busyCalls = 0;
    m_busyVisible = false;
    m_lastBusy.clear();
}

}  // namespace sendrel
