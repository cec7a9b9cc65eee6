#include "import/TreeListReader.h"

#include "app/Numbers.h"
#include "app/SendrelError.h"
#include "import/MVolLessDWB.h"
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
    qint64 whole = 0;
    while (p < end && isDigit(*p)) {
        whole = whole * 10 + (*p - '0');
        ++p;
    }
    const qsizetype wholeDigits = p - digitsBegin;
    if (wholeDigits == 0 || wholeDigits > 15)
        return false;
    bool fraction = false;
    if (p < end && *p == '.') {
        const char *const point = p++;
        while (p < end && isDigit(*p))
            ++p;
        if (p == point + 1)
            return false;   // "5." goes the long way
        fraction = true;
    }
    const char *const numberEnd = p;
    while (p < end && *p == ' ')
        ++p;
    if (p != end)
        return false;
    if (!fraction) {
        value = static_cast<double>(whole);
    } else {
        // Correctly rounded, as the full rule's conversion is.
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

constexpr FieldType entryTypes[EntryPos::Count] = {
    FieldType::Text,    // 0 Run_Id
    FieldType::Text,    // 1 tree id
    FieldType::Int16,   // 2
    FieldType::Int16,   // 3 Species_Code
    FieldType::Int16,   // 4
    FieldType::Double,  // 5 Trees_per_ha
    FieldType::Double,  // 6 Current_Diameter
    FieldType::Double,  // 7
    FieldType::Double,  // 8
    FieldType::Double,  // 9
    FieldType::Int32,   // 10 constant 1
    FieldType::Int16,   // 11
    FieldType::Double,  // 12
    FieldType::Int16,   // 13
    FieldType::Double,  // 14 Total_Volume
    FieldType::Double,  // 15 gross merchantable volume
    FieldType::Double,  // 16
    FieldType::Int16,   // 17
    FieldType::Int16,   // 18 Cycle_Number
    FieldType::Int32,   // 19 constant 1
    FieldType::Int16,   // 20
    FieldType::Text,    // 21 Standing_Harvested
    FieldType::Double,  // 22
    FieldType::Letters, // 23 species letter code
    FieldType::Double,  // 24
    FieldType::Int32,   // 25
    FieldType::Int16,   // 26
    FieldType::Int16,   // 27
    FieldType::Int16,   // 28
    FieldType::Double,  // 29 MerchVolLessDWB
};

}  // namespace

FieldType ModelEntryType(int position)
{
    return entryTypes[position];
}

LineKind ClassifyLine(QByteArrayView line)
{
    const QByteArrayView trimmed = trimBlanks(line);
    if (trimmed.isEmpty())
        return LineKind::Blank;
    if (trimmed.startsWith(QByteArrayView("-999")))
        return LineKind::Header;
    return LineKind::Record;
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
    return r;
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
        switch (entryTypes[pos]) {
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
