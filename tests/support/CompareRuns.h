#pragma once

namespace sendrel::test {

class RunDatabase;

// Three small runs worked out by hand for the comparison (volumes per tree; each tree's net
// volume is half its gross):
//   GROW  standing only: 2000 sp1 d20 100/ha 0.5; 2010 sp1 d30 100/ha 1.0; 2020 sp1 d40 100/ha 2.0
//   THIN  standing: 2000 as GROW; 2010 sp1 d30 100/ha 1.0 and sp2 d10 50/ha 0.1; 2030 sp1 d45 60/ha 3.0
//         harvested: 2010 sp1 d30 40/ha 1.0
//   LATE  standing only: 2050 sp1 d20 10/ha 0.5, no year in common with the others
void AddComparisonRuns(RunDatabase &db);

}  // namespace sendrel::test
