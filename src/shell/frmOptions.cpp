#include "shell/frmOptions.h"

#include "domain/summary/StandSummary.h"
#include "domain/units/Units.h"
#include "shell/DialogButtons.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace sendrel {

namespace {

QRadioButton *option(QWidget *parent, const QString &name, const QString &caption)
{
    auto *o = new QRadioButton(caption, parent);
    o->setObjectName(name);
    return o;
}

}  // namespace

frmOptions::frmOptions(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    auto *layout = new QVBoxLayout(this);

    auto *units = new QGroupBox(QStringLiteral("Units of the summary, exports and charts"), this);
    units->setObjectName(QStringLiteral("fraUnits"));
    optMetric = option(units, QStringLiteral("optMetric"), QStringLiteral("&Metric: per hectare, cm, m"));
    optImperial = option(units, QStringLiteral("optImperial"), QStringLiteral("&Imperial: per acre, inches, feet"));
    auto *unitsLayout = new QVBoxLayout(units);
    unitsLayout->addWidget(optMetric);
    unitsLayout->addWidget(optImperial);
    layout->addWidget(units);

    auto *sdi = new QGroupBox(QStringLiteral("Stand density index of the summary"), this);
    sdi->setObjectName(QStringLiteral("fraSdi"));
    optSdiReineke = option(sdi, QStringLiteral("optSdiReineke"), QStringLiteral("&Reineke's formula from the quadratic mean diameter"));
    optSdiSummation = option(sdi, QStringLiteral("optSdiSummation"), QStringLiteral("&Summation over the trees"));
    auto *sdiLayout = new QVBoxLayout(sdi);
    sdiLayout->addWidget(optSdiReineke);
    sdiLayout->addWidget(optSdiSummation);
    layout->addWidget(sdi);

    chkCsvDefinitions = new QCheckBox(QStringLiteral("A CSV export writes its &definitions beside it (NAME.definitions.csv)"), this);
    chkCsvDefinitions->setObjectName(QStringLiteral("chkCsvDefinitions"));
    layout->addWidget(chkCsvDefinitions);

    AddDialogButtons(this, layout, [this] {
        if (OpenHelp)
            OpenHelp(HelpFile, HelpContextID);
    });
}

void frmOptions::setChoices(const OptionsRequest &request)
{
    (UnitSystemOfSetting(request.units) == UnitSystem::Imperial ? optImperial : optMetric)->setChecked(true);
    (SdiMethodOfSetting(request.sdiMethod) == SdiMethod::Summation ? optSdiSummation : optSdiReineke)->setChecked(true);
    chkCsvDefinitions->setChecked(request.csvDefinitions);
}

OptionsRequest frmOptions::choices() const
{
    return {UnitSystemName(optImperial->isChecked() ? UnitSystem::Imperial : UnitSystem::Metric),
            SdiMethodName(optSdiSummation->isChecked() ? SdiMethod::Summation : SdiMethod::Reineke), chkCsvDefinitions->isChecked()};
}

}  // namespace sendrel
