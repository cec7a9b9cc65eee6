#include "domain/import/TreeListWriter.h"

#include "base/SendrelError.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace sendrel {

namespace {

// splitmix64: small, fast, and the same sequence on every platform and library.
class Random {
public:
    explicit Random(quint64 seed) : m_state(seed * 0x9E3779B97F4A7C15ull + 0x632BE59BD9B4E019ull) {}
    quint64 next()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double uniform() { return static_cast<double>(next() >> 11) * (1.0 / 9007199254740992.0); }
    double uniform(double lo, double hi) { return lo + (hi - lo) * uniform(); }
    int integer(int lo, int hi) { return lo + static_cast<int>(next() % static_cast<quint64>(hi - lo + 1)); }
    double normal(double mean, double sd)
    {
        const double u1 = std::max(uniform(), 1e-12);
        const double u2 = uniform();
        return mean + sd * std::sqrt(-2.0 * std::log(u1)) * std::cos(6.283185307179586 * u2);
    }

private:
    quint64 m_state;
};

struct SpeciesTraits {
    const char *code;
    int number;  // as in the Species table
    double share;  // of the records
    double growth;  // diameter growth of a free tree, cm a year
    double maxHeight;  // m
};

// A mixed interior stand.
constexpr SpeciesTraits kStand[] = {
    {"FD", 3, 0.28, 0.55, 45.0}, {"PL", 7, 0.20, 0.50, 32.0}, {"SE", 8, 0.12, 0.45, 40.0},
    {"BL", 9, 0.10, 0.35, 33.0}, {"CW", 6, 0.10, 0.40, 42.0}, {"HW", 5, 0.10, 0.45, 40.0},
    {"LW", 2, 0.05, 0.55, 42.0}, {"PW", 1, 0.03, 0.50, 40.0}, {"PY", 10, 0.02, 0.45, 38.0},
};

struct Tree {
    int species;  // index in kStand
    int plot;
    int serial;
    int age;
    int crownClass;
    int damage;
    double dbh;
    double lastIncrement;
    double tph;
};

// A line of fixed columns, filled left to right.
class Line {
public:
    Line() { m_text.reserve(160); }
    void clear() { m_text.clear(); }
    void blanks(int n) { m_text.append(n, ' '); }
    void text(const char *s, int width, bool leftAligned = false)
    {
        const int n = std::min<int>(static_cast<int>(std::strlen(s)), width);
        if (!leftAligned)
            blanks(width - n);
        m_text.append(s, n);
        if (leftAligned)
            blanks(width - n);
    }
    void integer(long long value, int width, bool zeroPad = false)
    {
        char buf[32];
        const auto r = std::to_chars(buf, buf + sizeof buf, value);
        const int n = static_cast<int>(r.ptr - buf);
        m_text.append(std::max(0, width - n), zeroPad ? '0' : ' ');
        m_text.append(buf, n);
    }
    // The most decimals (up to maxDecimals) that fit the width.
    void fixed(double value, int width, int maxDecimals)
    {
        char buf[64];
        for (int d = maxDecimals; d >= 0; --d) {
            const auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, d);
            const int n = static_cast<int>(r.ptr - buf);
            if (n <= width || d == 0) {
                blanks(width - n);
                m_text.append(buf, std::min(n, width));
                return;
            }
        }
    }
    void end() { m_text.append("\r\n"); }
    const std::string &str() const { return m_text; }

private:
    std::string m_text;
};

void put(QIODevice &device, const std::string &text)
{
    if (device.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size()))
        throw SendrelError(ErrNo::DeviceIO, QStringLiteral("Sendrel"),
                           QStringLiteral("Cannot write the tree list: ") + device.errorString());
}

void writeHeader(QIODevice &device, Line &line, const SampleStandOptions &o, int cycle)
{
    line.clear();
    line.text("-999", 5, true);
    line.integer(o.standNumber, 5);
    line.integer(cycle, 5);
    line.integer(o.firstYear + (cycle - 1) * o.yearsPerCycle, 5);
    line.text(o.runName.left(10).toLatin1().constData(), 10, true);
    line.blanks(30);
    const QDate d = o.stamp.date();
    const QTime t = o.stamp.time();
    line.integer(d.month(), 2, true);
    line.text("/", 1);
    line.integer(d.day(), 2, true);
    line.text("/", 1);
    line.integer(d.year(), 4, true);
    line.text(" ", 1);
    line.integer(t.hour(), 2, true);
    line.text(":", 1);
    line.integer(t.minute(), 2, true);
    line.text(":", 1);
    line.integer(t.second(), 2, true);
    line.end();
    put(device, line.str());
}

double heightOf(const Tree &t)
{
    return 1.3 + kStand[t.species].maxHeight * std::pow(1.0 - std::exp(-0.035 * t.dbh), 1.2);
}

double totalVolumeOf(const Tree &t)
{
    const double basal = 0.785398163397448 * (t.dbh / 100.0) * (t.dbh / 100.0);
    return 0.45 * basal * heightOf(t);
}

double merchVolumeOf(const Tree &t)
{
    if (t.dbh < 12.5)
        return 0.0;
    return std::max(0.0, totalVolumeOf(t) * (0.88 - 3.0 / t.dbh));
}

void writeTree(QIODevice &device, Line &line, const Tree &t, double tph, int cycle)
{
    const SpeciesTraits &s = kStand[t.species];
    const double height = heightOf(t);
    const double volume = totalVolumeOf(t);
    line.clear();
    line.blanks(1);
    line.integer(t.serial, 8);  // 2-9 tree id
    line.blanks(1);
    line.integer(t.plot, 4);  // 11-14 plot
    line.blanks(1);
    line.text(s.code, 2);  // 16-17 species letters
    line.blanks(1);
    line.integer(s.number, 2);  // 19-20 species number
    line.blanks(1);
    line.integer(t.crownClass, 2);  // 22-23 crown class
    line.blanks(1);
    line.integer(t.damage, 2);  // 25-26 damage code
    line.blanks(1);
    line.integer(std::min(t.age, 999), 3);  // 28-30 age
    line.blanks(1);
    line.fixed(tph, 8, 4);  // 32-39 trees per hectare
    line.blanks(1);
    line.fixed(tph * 0.785398163397448 * (t.dbh / 100.0) * (t.dbh / 100.0), 8, 5);  // 41-48 basal area, sq.m/ha
    line.blanks(1);
    line.fixed(t.dbh, 5, 1);  // 50-54 diameter
    line.blanks(1);
    line.fixed(height, 5, 1);  // 56-60 height
    line.blanks(1);
    line.fixed(std::clamp(70.0 - t.dbh * 0.6 + t.crownClass * 3.0, 15.0, 90.0), 5, 1);  // 62-66 crown ratio
    line.blanks(1);
    line.fixed(t.lastIncrement, 4, 2);  // 68-71 last diameter increment
    line.blanks(1);
    line.integer(t.damage > 0 ? 2 : 1, 2);  // 73-74 tree class
    line.blanks(1);
    line.fixed(1.0 + t.dbh * 0.12, 4, 1);  // 76-79 crown width
    line.blanks(1);
    line.integer(18 + t.species % 5, 2);  // 81-82 site index
    line.blanks(1);
    line.fixed(height * 0.4, 6, 2);  // 84-89 height to live crown
    line.blanks(1);
    line.integer(t.serial % 100000, 5);  // 91-95 sequence number
    line.blanks(1);
    line.fixed(volume, 6, 4);  // 97-102 total volume
    line.blanks(1);
    line.fixed(merchVolumeOf(t), 6, 4);  // 104-109 gross merchantable volume
    line.blanks(1);
    line.fixed(volume * tph, 7, 3);  // 111-117 volume per hectare
    line.blanks(1);
    line.integer(1, 2);  // 119-120 status
    line.blanks(1);
    line.integer(t.species + 1, 2);  // 122-123 species group
    line.blanks(1);
    line.integer(cycle, 3);  // 125-127 cycle of record
    line.end();
    put(device, line.str());
}

std::vector<Tree> plantStand(const SampleStandOptions &o, Random &random)
{
    double shares = 0;
    for (const SpeciesTraits &s : kStand)
        shares += s.share;
    std::vector<Tree> trees(static_cast<size_t>(o.recordsPerCycle));
    const double standDensity = 1400.0;  // stems per hectare at the start
    for (size_t i = 0; i < trees.size(); ++i) {
        Tree &t = trees[i];
        double pick = random.uniform() * shares;
        t.species = 0;
        while (t.species + 1 < static_cast<int>(std::size(kStand)) && pick >= kStand[t.species].share) {
            pick -= kStand[t.species].share;
            ++t.species;
        }
        t.serial = static_cast<int>(i) + 1;
        t.plot = 1 + static_cast<int>(i % 40);
        t.age = random.integer(25, 45);
        t.crownClass = random.integer(1, 4);
        t.damage = random.uniform() < 0.1 ? random.integer(1, 9) : 0;
        t.dbh = std::clamp(random.normal(16.0, 5.5), 4.0, 45.0);
        t.lastIncrement = random.uniform(0.8, 3.0);
        t.tph = standDensity / static_cast<double>(o.recordsPerCycle) * random.uniform(0.6, 1.4);
    }
    return trees;
}

}  // namespace

SampleListCounts WriteSampleTreeLists(const SampleStandOptions &o, QIODevice &standing, QIODevice &harvested)
{
    Random random(o.seed);
    std::vector<Tree> trees = plantStand(o, random);
    SampleListCounts counts;
    Line line;
    std::vector<double> removed(trees.size());
    for (int cycle = 1; cycle <= o.cycles; ++cycle) {
        if (cycle > 1) {
            for (Tree &t : trees) {
                const double vigour = std::max(0.15, 1.0 - t.dbh / 95.0) * (1.15 - 0.1 * t.crownClass);
                t.lastIncrement = std::max(0.05, kStand[t.species].growth * o.yearsPerCycle * vigour * random.uniform(0.6, 1.4));
                t.dbh = std::min(t.dbh + t.lastIncrement, 160.0);
                t.age += o.yearsPerCycle;
                // Suppressed and small trees die first.
                const double mortality =
                    std::clamp(0.012 * o.yearsPerCycle * (20.0 / (t.dbh + 5.0)) * (0.6 + 0.2 * t.crownClass), 0.0, 0.6);
                t.tph *= 1.0 - mortality * random.uniform(0.5, 1.5);
            }
        }
        std::fill(removed.begin(), removed.end(), 0.0);
        if (cycle == o.thinningCycle) {
            // Thinning from below: most of the small stems go, a few of the larger.
            std::vector<double> diameters;
            diameters.reserve(trees.size());
            for (const Tree &t : trees)
                diameters.push_back(t.dbh);
            const size_t at = diameters.size() * 2 / 5;
            std::nth_element(diameters.begin(), diameters.begin() + static_cast<std::ptrdiff_t>(at), diameters.end());
            const double limit = diameters.empty() ? 0.0 : diameters[at];
            for (size_t i = 0; i < trees.size(); ++i) {
                const double share = trees[i].dbh < limit ? 0.6 : (random.uniform() < 0.2 ? 0.25 : 0.0);
                removed[i] = trees[i].tph * share;
            }
        }
        // The standing list is the stand before the harvest of its cycle: the harvested trees
        // leave it only after both lists of the cycle are written.
        writeHeader(standing, line, o, cycle);
        writeHeader(harvested, line, o, cycle);
        for (size_t i = 0; i < trees.size(); ++i) {
            writeTree(standing, line, trees[i], trees[i].tph, cycle);
            ++counts.standingRecords;
            if (removed[i] > 0.0) {
                writeTree(harvested, line, trees[i], removed[i], cycle);
                ++counts.harvestedRecords;
                trees[i].tph -= removed[i];
            }
        }
        ++counts.cycles;
    }
    return counts;
}

SampleListCounts WriteSampleTreeListFiles(const SampleStandOptions &options, const QString &standingPath, const QString &harvestedPath)
{
    QFile standing(standingPath);
    QFile harvested(harvestedPath);
    for (QFile *f : {&standing, &harvested}) {
        if (!f->open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw SendrelError(ErrNo::PathFileAccess, QStringLiteral("Sendrel"),
                               QStringLiteral("Cannot write %1: %2").arg(f->fileName(), f->errorString()));
    }
    return WriteSampleTreeLists(options, standing, harvested);
}

}  // namespace sendrel
