#include "support/SampleRuns.h"

#include "support/RunDatabase.h"

namespace sendrel::test {

void AddReportTestRun(RunDatabase &db)
{
    const QString r = kReportTestRunId;
    const QString s = QStringLiteral("S");
    db.addRun(r, s);
    db.exec(QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc, run_parameters) VALUES ('CLIRPT', 'Report run', 'Thinned to 400 sph in 2010')"));
    db.addHeader(r, s, 1, 2000);
    db.addHeader(r, s, 2, 2010);
    db.addHeader(r, s, 3, 2020);

    // Cycle 1: FD, PW, BL (codes 3, 1, 9) in order of first appearance.
    db.addTree(r, s, 1, 3, 12, 40, 0.25);     // FD 12.5: 40 stems, 10 m3
    db.addTree(r, s, 1, 1, 17, 10, 2.0);      // PW 17.5: 10 stems, 20 m3
    db.addTree(r, s, 1, 1, 9, 100, 0.1);      // below the first class: in no table
    db.addTree(r, s, 1, 9, 40, 5, 1.5);       // BL in the bucket: 5 stems, 7.5 m3
    db.addTree(r, s, 1, 3, 15, 20.5, 0.5);    // FD on the edge 15 goes up: 20.5 stems, 10.25 m3

    // Cycle 2: FD, PW, HW, BL (3, 1, 5, 9); SE (8) has a record without stems and is not listed.
    db.addTree(r, s, 2, 3, 13, 35, 0.4);
    db.addTree(r, s, 2, 5, 21, 12, 1.25);
    db.addTree(r, s, 2, 1, 18, 8, 2.5);
    db.addTree(r, s, 2, 8, 12, 0, 1.0);
    db.addTree(r, s, 2, 9, 60, 3, 4.0);

    // Cycle 3: LW, then PW only in the bucket, in thousands.
    db.addTree(r, s, 3, 1, 26, 1500, 0.8);
    db.addTree(r, s, 3, 2, 11, 250.25, 0.3);

    // The same Run Id of harvested trees must stay out of a standing report.
    db.addRun(r, QStringLiteral("H"));
    db.addHeader(r, QStringLiteral("H"), 2, 2010);
    db.addTree(r, QStringLiteral("H"), 2, 3, 13, 999, 9.0);
}

void AddSampleRun(RunDatabase &db)
{
    db.addRun(QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("Spacing trial"));
    db.addHeader(QStringLiteral("R1"), QStringLiteral("S"), 1, 2000);
    db.addHeader(QStringLiteral("R1"), QStringLiteral("S"), 2, 2010);
    const struct {
        int cycle, species;
        double dbh, tph, vol;
    } trees[] = {
        {1, 3, 12.0, 100, 0.10}, {1, 3, 20.0, 50, 0.40}, {1, 1, 25.0, 30, 0.55}, {1, 7, 8.0, 200, 0.02},
        {1, 3, 95.0, 2, 6.0},    {2, 3, 30.0, 80, 0.9},
    };
    for (const auto &t : trees) {
        db.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                               "Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES ('R1', %1, %2, %3, %4, %5, 'S', 0)")
                    .arg(t.species)
                    .arg(t.tph)
                    .arg(t.dbh)
                    .arg(t.vol)
                    .arg(t.cycle));
    }
}

}  // namespace sendrel::test
