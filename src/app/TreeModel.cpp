#include "app/TreeModel.h"

#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace sendrel {

TreeModel::TreeModel(SettingsStore &s, UserQuestions &q)
    : settingsStore(s), questions(q), DBEngine(db.DBEngine), EndProcess([](int code) { std::exit(code); })
{
}

QString TreeModel::InstallationFolder() const
{
    return QFileInfo(QDir::cleanPath(ProgramDir)).path();
}

QString TreeModel::ReportFolder() const
{
    if (!settings.WorkDir.isEmpty() && QFileInfo(settings.WorkDir).isDir())
        return settings.WorkDir;
    return settings.DataDir;
}

}  // namespace sendrel
