#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

class QIODevice;

namespace sendrel {

// Writes made-up tree lists in the growth model's format: a mixed stand (Douglas-fir, lodgepole
// pine, spruce, subalpine fir, cedar, hemlock and a few others) grown cycle by cycle, thinned
// from below once, with the standing list (each cycle's stand before its harvest, as the growth
// model writes it) and the harvested list of the same run. There is no ingrowth: a cycle's stems
// are the previous cycle's after its harvest, less mortality. The same
// options and seed always give the same bytes. For tests, benchmarks and the sample data of an
// installation.
struct SampleStandOptions {
    quint32 seed = 1;
    QString runName = QStringLiteral("SAMPLE");  // columns 21-30 of the headers, at most 10 characters
    int cycles = 8;
    int recordsPerCycle = 60;  // tree records of the standing list in each cycle
    int firstYear = 2000;
    int yearsPerCycle = 10;
    int thinningCycle = 3;  // the cycle in which the stand is thinned; 0: never
    int standNumber = 1;  // the first header number
    QDateTime stamp = QDateTime(QDate(2023, 11, 14), QTime(22, 13, 20));
};

struct SampleListCounts {
    int cycles = 0;
    qint64 standingRecords = 0;
    qint64 harvestedRecords = 0;
};

// Lines end in CR LF. Fails (SendrelError) when a device refuses to write.
SampleListCounts WriteSampleTreeLists(const SampleStandOptions &options, QIODevice &standing, QIODevice &harvested);
SampleListCounts WriteSampleTreeListFiles(const SampleStandOptions &options, const QString &standingPath, const QString &harvestedPath);

}  // namespace sendrel
