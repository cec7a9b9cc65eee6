#pragma once

#include <QString>

namespace sendrel::test {

class RunDatabase;

// Runs put into a run database as an import would have left them.

// The run behind the expected files cli_*_all_cycles.txt: "CLIRPT", standing trees, cycles
// 1, 2, 3 in the years 2000, 2010, 2020, several species per cycle (a tree below the first
// class, a tree on a class edge, a species with no stems, trees far above the last class),
// and a Run row whose parameters become the description. The files are laid out for the
// classes 10, 5, 4: 10-15, 15-20, 20-25 and 25 up.
inline const QString kReportTestRunId = QStringLiteral("CLIRPT");
void AddReportTestRun(RunDatabase &db);

// Run "R1", standing, with two cycles: cycle 1 is the year 2000 with three species, cycle 2 the
// year 2010 with one. Diameters fall on class edges and beyond the last class on purpose.
void AddSampleRun(RunDatabase &db);

}  // namespace sendrel::test
