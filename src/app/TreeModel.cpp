#include "app/TreeModel.h"

#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace sendrel {

TreeModel::TreeModel(SettingsStore &s, UserQuestions &q)
    : store(s), questions(q), EndProcess([](int code) { std::exit(code); })
{
}

QString TreeModel::InstallationFolder() const
{
    return QFileInfo(QDir::cleanPath(ProgramDir)).path();
}

}  // namespace sendrel
