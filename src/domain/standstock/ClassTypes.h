#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

// One diameter class, in cm. MinDia belongs to the class, MaxDia to the next one; the last
// class of a layout (the bucket) holds every diameter from its MinDia up, and its MaxDia only
// serves drawing and the report row.
struct ClassType {
    double MinDia = 0;
    double MaxDia = 0;
    double MidPoint = 0;  // also the value by which the class is labelled
};

// The cell of one diameter class and one species.
struct ReportEntryType {
    QString DBHClass;  // class label
    double MinDia = 0;
    double MaxDia = 0;
    double MidPoint = 0;
    qint16 Species = -1;  // numeric species code; -1 while the cell has none
    double Density = 0;  // stems per hectare
    double MerchVol = 0;  // gross total volume, cu.m per hectare
};

}  // namespace sendrel
