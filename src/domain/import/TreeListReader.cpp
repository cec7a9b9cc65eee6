#include "domain/import/TreeListReader.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "domain/import/MVolLessDWB.h"
#include "store/DBEngine.h"

#include <QDate>
#include <QTime>

#include <charconv>

namespace sendrel {

const QString kInvalidFileFormatMessage = QStringLiteral("Invalid File Format.  Expecting a Marquel file with -999 header.");

namespace {

bool isBlank(char c)
{
    return c == ' ';
}

QByteArrayView trimBlanks(QByteArrayView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The usual shape of a field: blanks, an optional sign, digits, optionally a point and digits,
// then nothing but blanks. Gives false for anything else, which the full rule then reads.
bool readPlainNumber(QByteArrayView field, double &value)
{
    const char *p = field.data();
    const char *const end = p + field.size();
    while (p < end && *p == ' ')
        ++p;
    bool negative = false;
    if (p < end && (*p == '-' || *p == '+')) {
        negative = *p == '-';
        ++p;
    }
    const char *const digitsBegin = p;
    quint64 mantissa = 0;   // wraps harmlessly past 19 digits, which go to from_chars
    while (p < end && isDigit(*p)) {
        mantissa = mantissa * 10 + (*p - '0');
        ++p;
    }
    if (p == digitsBegin)
        return false;
    int decimals = 0;
    if (p < end && *p == '.') {
        const char *const point = p++;
        while (p < end && isDigit(*p)) {
            mantissa = mantissa * 10 + (*p - '0');
            ++p;
        }
        decimals = static_cast<int>(p - point - 1);
        if (decimals == 0)
            return false;   // "5." goes the long way
    }
    const char *const numberEnd = p;
    while (p < end && *p == ' ')
        ++p;
    if (p != end)
        return false;
    if (numberEnd - digitsBegin - (decimals > 0 ? 1 : 0) <= 15) {
        // Below 10^15 the digits are an exact double, and so is 10^decimals: one division then
        // rounds correctly, as the full rule's conversion does.
        static constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        value = static_cast<double>(mantissa) / kPowers[decimals];
    } else {
        const auto r = std::from_chars(digitsBegin, numberEnd, value, std::chars_format::fixed);
        if (r.ec != std::errc() || r.ptr != numberEnd)
            return false;
    }
    if (negative)
        value = -value;
    return true;
}

double fieldValue(QByteArrayView line, const FieldLayout &f)
{
    const QByteArrayView text = CutField(line, f.firstColumn, f.width);
    const double number = ReadFieldNumber(text);
    switch (f.type) {
    case FieldType::Int16:
        return ToInt16(number);
    case FieldType::Int32:
        return ToInt32(number);
    default:
        return number;
    }
}


}  // namespace

LineKind ClassifyLine(QByteArrayView line)
{
    const QByteArrayView trimmed = trimBlanks(line);
    if (trimmed.isEmpty())
        return LineKind::Blank;
    if (trimmed.startsWith(QByteArrayView("-999")))
        return LineKind::Header;
    return LineKind::Record;
}

bool IsHiddenHeader(QByteArrayView line)
{
    qsizetype first = 0;
    while (first < line.size() && (static_cast<uchar>(line[first]) <= ' ' || static_cast<uchar>(line[first]) >= 0x7f))
        ++first;
    return line.sliced(first).startsWith(QByteArrayView("-999")) && ClassifyLine(line) != LineKind::Header;
}

QByteArrayView CutField(QByteArrayView line, int firstColumn, int width)
{
    const qsizetype start = firstColumn - 1;
    if (start >= line.size())
        return {};
    return line.sliced(start, qMin<qsizetype>(width, line.size() - start));
}

double ReadFieldNumber(QByteArrayView field)
{
    double value = 0.0;
    if (readPlainNumber(field, value))
        return value;
    return ReadNumber(QString::fromLatin1(field));
}

CycleHeader ParseCycleHeader(QByteArrayView line)
{
    CycleHeader h;
    h.firstNumber = static_cast<qint16>(fieldValue(line, kCycleHeaderLayout[0]));
    h.cycle = static_cast<qint16>(fieldValue(line, kCycleHeaderLayout[1]));
    h.year = static_cast<qint16>(fieldValue(line, kCycleHeaderLayout[2]));
    const FieldLayout &name = kCycleHeaderLayout[3];
    h.runName = QString::fromLatin1(trimBlanks(CutField(line, name.firstColumn, name.width)));
    return h;
}

HeaderStamp ParseHeaderStamp(QByteArrayView line)
{
    HeaderStamp s;
    s.month = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[0]));
    s.day = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[1]));
    s.year = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[2]));
    s.hour = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[3]));
    s.minute = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[4]));
    s.second = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[5]));
    return s;
}

QString HeaderStamp::dateText() const
{
    // Month 13 is January of the next year, day 0 the last day of the month before.
    const QDate first(year, 1, 1);
    if (!first.isValid())
        return QString();
    const QDate date = first.addMonths(month - 1).addDays(day - 1);
    return date.isValid() ? date.toString(QStringLiteral("yyyy-MM-dd")) : QString();
}

QString HeaderStamp::timeText() const
{
    const int day = 24 * 3600;
    int seconds = (hour * 3600 + minute * 60 + second) % day;
    if (seconds < 0)
        seconds += day;
    return QTime(0, 0).addSecs(seconds).toString(QStringLiteral("HH:mm:ss"));
}

TreeRecord ParseTreeRecord(QByteArrayView line, qint16 cycleNumber)
{
    TreeRecord r;
    ParseTreeRecord(line, cycleNumber, r);
    return r;
}

void ParseTreeRecord(QByteArrayView line, qint16 cycleNumber, TreeRecord &r)
{
    for (const FieldLayout &f : kTreeRecordLayout) {
        switch (f.type) {
        case FieldType::Text: {
            const QByteArrayView text = trimBlanks(CutField(line, f.firstColumn, f.width));
            r.treeIdLength = static_cast<int>(text.size());
            std::copy(text.begin(), text.end(), r.treeId);
            break;
        }
        case FieldType::Letters: {
            const QByteArrayView text = CutField(line, f.firstColumn, f.width);
            r.lettersLength = static_cast<int>(text.size());
            std::copy(text.begin(), text.end(), r.letters);
            break;
        }
        default:
            r.values[f.position] = fieldValue(line, f);
            break;
        }
    }
    r.values[EntryPos::ConstantOne] = 1;
    r.values[EntryPos::ConstantOneB] = 1;
    r.values[EntryPos::CycleNumber] = cycleNumber;
    const char16_t code[2] = {static_cast<char16_t>(static_cast<uchar>(r.letters[0])),
                              static_cast<char16_t>(static_cast<uchar>(r.letters[1]))};
    r.values[EntryPos::MerchVolLessDWB] = MVol_less_DWB(QStringView(code, r.lettersLength),
                                                        r.values[EntryPos::CurrentDiameter],
                                                        r.values[EntryPos::GrossMerchVolume]);
}

bool IsValidSpeciesNumber(qint16 number)
{
    return number >= 1 && number <= 11;
}

QString InvalidSpeciesMessage(qint16 number)
{
    return QStringLiteral("Invalid species code: ") + QString::number(number) + QStringLiteral("  (Valid range is 1-11)");
}

QString SuggestRunId(const CycleHeader &firstHeader, const QString &fileName)
{
    if (!firstHeader.runName.isEmpty())
        return firstHeader.runName;
    // Either separator ends a folder: lists come from this system and from Windows machines.
    QString name = fileName;
    const qsizetype slash = qMax(name.lastIndexOf(QLatin1Char('\\')), name.lastIndexOf(QLatin1Char('/')));
    name = name.mid(slash + 1);
    const qsizetype dot = name.indexOf(QLatin1Char('.'));
    if (dot >= 0)
        name = name.left(dot);
    return name.toUpper();
}

QVariantList ModelEntryValues(const TreeRecord &record, const QString &runId, const QString &kind)
{
    QVariantList row;
    row.reserve(EntryPos::Count);
    for (int pos = 0; pos < EntryPos::Count; ++pos) {
        const double v = record.values[pos];
        switch (pos) {
        case EntryPos::RunId:
            row.append(runId);
            continue;
        case EntryPos::TreeId:
            row.append(record.treeIdText());
            continue;
        case EntryPos::StandingHarvested:
            row.append(kind);
            continue;
        case EntryPos::SpeciesLetters:
            row.append(record.speciesLetters());
            continue;
        default:
            break;
        }
        switch (kModelEntryTypes[pos]) {
        case FieldType::Int16:
        case FieldType::Int32:
            // Bound as int: the SQLite driver would pass a 16-bit variant on as text.
            row.append(static_cast<int>(v));
            break;
        default:
            row.append(v);
            break;
        }
    }
    return row;
}

void AddModelHeader(clsDBEngine &engine, const CycleHeader &header, const QString &runId, const QString &kind)
{
    engine.AddRecord(QStringLiteral("Model_Header"), {runId, int(header.firstNumber), int(header.cycle), int(header.year), kind}, false);
}

void AddModelEntry(clsDBEngine &engine, const TreeRecord &record, const QString &runId, const QString &kind)
{
    engine.AddRecord(QStringLiteral("Model_Entries"), ModelEntryValues(record, runId, kind), false);
}

}  // namespace sendrel
