#include "support/CompareRuns.h"

#include "support/RunDatabase.h"

#include <tuple>

namespace sendrel::test {

void AddComparisonRuns(RunDatabase &db)
{
    for (const auto &[run, kind] : {std::tuple{"GROW", "S"}, {"THIN", "S"}, {"THIN", "H"}, {"LATE", "S"}})
        db.addRun(QLatin1String(run), QLatin1String(kind), QStringLiteral("%1 treatment").arg(QLatin1String(run)));
    const struct {
        const char *run, *kind;
        int cycle, year;
    } headers[] = {{"GROW", "S", 1, 2000}, {"GROW", "S", 2, 2010}, {"GROW", "S", 3, 2020}, {"THIN", "S", 1, 2000},
                   {"THIN", "S", 2, 2010}, {"THIN", "S", 3, 2030}, {"THIN", "H", 7, 2010},  {"LATE", "S", 1, 2050}};
    for (const auto &h : headers)
        db.addHeader(QLatin1String(h.run), QLatin1String(h.kind), h.cycle, h.year);
    const struct {
        const char *run, *kind;
        int cycle, species;
        double d, tph, volume;
    } trees[] = {{"GROW", "S", 1, 1, 20, 100, 0.5}, {"GROW", "S", 2, 1, 30, 100, 1.0}, {"GROW", "S", 3, 1, 40, 100, 2.0},
                 {"THIN", "S", 1, 1, 20, 100, 0.5}, {"THIN", "S", 2, 1, 30, 100, 1.0}, {"THIN", "S", 2, 2, 10, 50, 0.1},
                 {"THIN", "S", 3, 1, 45, 60, 3.0},  {"THIN", "H", 7, 1, 30, 40, 1.0},  {"LATE", "S", 1, 1, 20, 10, 0.5}};
    for (const auto &t : trees)
        db.addTree(QLatin1String(t.run), QLatin1String(t.kind), t.cycle, t.species, t.d, t.tph, t.volume);
}

}  // namespace sendrel::test
