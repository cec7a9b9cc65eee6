#pragma once

#include "base/UserQuestions.h"

#include <QDialog>
#include <QString>

#include <functional>

class QCheckBox;
class QRadioButton;

namespace sendrel {

// "Options": the units of the summary, the exports and our own charts, the method of the
// summary's stand density index, and whether a CSV export writes its definitions beside it.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    explicit frmOptions(QWidget *parent = nullptr);

    void setChoices(const OptionsRequest &request);
    OptionsRequest choices() const;

    QString HelpFile;
    int HelpContextID = 96;
    std::function<void(const QString &helpFile, int topic)> OpenHelp;

private:
    QRadioButton *optMetric;
    QRadioButton *optImperial;
    QRadioButton *optSdiReineke;
    QRadioButton *optSdiSummation;
    QCheckBox *chkCsvDefinitions;
};

}  // namespace sendrel
