#pragma once

// Header only, shared by the stand and stock window tests: a run database with one run and the
// lookup of controls by name.

#include "support/TestEnv.h"

#include <QString>
#include <QWidget>

namespace sendrel::test {

// Run "R1", standing, with two cycles: cycle 1 is the year 2000 with three species, cycle 2 the
// year 2010 with one. Diameters fall on class edges and beyond the last class on purpose.
inline void AddSampleRun(TestEnv &env)
{
    env.exec(QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc) VALUES ('R1', 'Spacing trial')"));
    env.exec(QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested) "
                            "VALUES ('R1', '', '', '', 'S')"));
    env.exec(QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) "
                            "VALUES ('R1', 1, 1, 2000, 'S')"));
    env.exec(QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) "
                            "VALUES ('R1', 2, 2, 2010, 'S')"));
    const struct {
        int cycle, species;
        double dbh, tph, vol;
    } trees[] = {
        {1, 3, 12.0, 100, 0.10}, {1, 3, 20.0, 50, 0.40}, {1, 1, 25.0, 30, 0.55}, {1, 7, 8.0, 200, 0.02},
        {1, 3, 95.0, 2, 6.0},    {2, 3, 30.0, 80, 0.9},
    };
    for (const auto &t : trees) {
        env.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                "Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES ('R1', %1, %2, %3, %4, %5, 'S', 0)")
                     .arg(t.species)
                     .arg(t.tph)
                     .arg(t.dbh)
                     .arg(t.vol)
                     .arg(t.cycle));
    }
}

// The control of that name that belongs to the window itself, not to a window it owns (the
// range editor has a cmdOK and a lblDbhError too).
template <typename T> T *Control(QWidget *form, const QString &name)
{
    for (T *c : form->findChildren<T *>(name)) {
        if (c->window() == form->window())
            return c;
    }
    return nullptr;
}

}  // namespace sendrel::test
