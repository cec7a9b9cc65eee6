#include "cli/Commands.h"

#include "domain/import/ImportTreeList.h"

namespace sendrel {

namespace {

class ImportCommand : public Command {
public:
    QString name() const override { return QStringLiteral("import"); }
    QString synopsis() const override
    {
        return QStringLiteral("FILE --kind standing|harvested|S|H [--run-id ID] [--on-duplicate fail|overwrite|rename]");
    }
    QString summary() const override
    {
        return QStringLiteral("Imports one tree list as one run, with the transactions and table states of the desktop import. "
                              "Prints: Run Id, S or H, cycles read, tree records read.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("kind"), QStringLiteral("Standing or harvested trees."), QStringLiteral("KIND")),
                QCommandLineOption(QStringLiteral("run-id"),
                                   QStringLiteral("The Run Id, at most 25 characters (default: the first header's run name, "
                                                  "else the upper-cased file name up to its first \".\")."),
                                   QStringLiteral("ID")),
                QCommandLineOption(QStringLiteral("on-duplicate"),
                                   QStringLiteral("When the Run Id is taken: fail (default, nothing touched), overwrite, or rename "
                                                  "to the next free \"ID:n\"."),
                                   QStringLiteral("fail|overwrite|rename"))};
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const RunKind kind = KindOption(parser);
        QString runId;
        if (parser.isSet(QStringLiteral("run-id")))
            runId = RunIdArgument(parser.value(QStringLiteral("run-id")), QStringLiteral("run-id"));
        const int onDuplicate = ChoiceOption(parser, QStringLiteral("on-duplicate"),
                                             {QStringLiteral("fail"), QStringLiteral("overwrite"), QStringLiteral("rename")}, 0);

        CliSession session(ctx);
        session.questions.onDuplicate = static_cast<CliQuestions::OnDuplicate>(onDuplicate);
        session.open();
        const ImportResult r = ImportTreeList(session.tm.db, session.questions, args.first(), kind, runId);
        for (const MessageRequest &told : ImportMessages(args.first(), r))
            session.questions.message(told);
        if (r.completed()) {
            ctx.out << EscapedForLine(r.runId) << '\t' << KindLetter(kind) << '\t' << r.cyclesRead << '\t' << r.treeRecordsRead << '\n';
            return CliOk;
        }
        // A refusal, an invalid file and a failure are told on stderr as the desktop tells them.
        if (r.ending == ImportEnding::Cancelled && !session.questions.duplicateRefused())
            ctx.err << "Import cancelled.\n";
        return CliFailure;
    }
};

}  // namespace

std::unique_ptr<Command> MakeImportCommand()
{
    return std::make_unique<ImportCommand>();
}

}  // namespace sendrel
