#include "cli/Cli.h"

#include "app/FolderLocation.h"
#include "app/Settings.h"
#include "app/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

// What the suite's installer does: points the shared settings at an installation's Data and Work
// folders, so that a first start opens the bundled database. A folder already set is left alone.
int CliRegisterInstallation(CliContext &ctx)
{
    if (ctx.args.size() != 1)
        return CliUsageError(ctx, QStringLiteral("register-installation takes the installation folder"));
    const QString root = QFileInfo(ctx.args.first()).absoluteFilePath();
    SettingsStore store;
    for (const QString &key : {QStringLiteral("DataDir"), QStringLiteral("WorkDir")}) {
        const QString folder = root + QLatin1Char('/') + key.left(4);
        if (!PathIsDirectory(folder)) {
            ctx.err << "sendrel-cli: " << folder << " is no folder\n";
            return CliFailure;
        }
        const QString current = store.GetSetting(kSectionCommon, key);
        if (!current.isEmpty() && PathIsDirectory(current)) {
            ctx.out << key << "\t" << current << "\t(kept)\n";
            continue;
        }
        const QString value = PathAddBackslash(QDir::toNativeSeparators(folder));
        store.SaveSetting(kSectionCommon, key, value);
        ctx.out << key << "\t" << value << "\n";
    }
    store.sync();
    return CliOk;
}

}  // namespace sendrel
