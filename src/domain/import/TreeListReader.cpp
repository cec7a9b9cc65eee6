#include "domain/import/TreeListReader.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "domain/import/MVolLessDWB.h"
#include "store/DBEngine.h"

#include <QDate>
#include <QTime>

#include <QVarLengthArray>

#include <charconv>
#include <cmath>

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
    quint64 mantissa = 0;  // wraps harmlessly past 19 digits, which go to from_chars
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
            return false;  // "5." goes the long way
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

const QString kSource = QStringLiteral("Sendrel");

// "the diameter (columns 50-54)", or "the field of columns 56-60" for one that has no name.
QString fieldName(const FieldLayout &f)
{
    const QString columns = QStringLiteral("columns %1-%2").arg(f.firstColumn).arg(f.firstColumn + f.width - 1);
    if (QByteArrayView(f.field).startsWith("columns"))
        return QStringLiteral("the field of ") + columns;
    return QStringLiteral("the %1 (%2)").arg(QLatin1String(f.field), columns);
}

QString fieldText(QByteArrayView line, const FieldLayout &f)
{
    return QString::fromLatin1(trimBlanks(CutField(line, f.firstColumn, f.width)));
}

SendrelError fieldFailure(long number, int column, const FieldLayout &f, const QString &why)
{
    return SendrelError(number, kSource, QStringLiteral("column %1, %2: %3").arg(column).arg(fieldName(f), why));
}

void warn(FieldWarnings *warnings, int column, const FieldLayout &f, const QString &what)
{
    if (warnings)
        warnings->push_back({column, fieldName(f) + QStringLiteral(": ") + what});
}

// How a field that is not a plain number stands to the number-reading rule.
enum class Shape { Whole, Empty, Cut, NoNumber, NonFinite };
struct Examined {
    Shape shape = Shape::Whole;
    qsizetype at = 0;  // where in the field the number, or what cut it, begins
};

// Walks the field as ReadNumber does (blanks, tabs and line feeds skipped wherever they stand)
// and says what of it the reading left out. value is what ReadNumber gave.
Examined examineNumber(QByteArrayView field, double value)
{
    QVarLengthArray<qsizetype, 16> kept;
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] != ' ' && field[i] != '\t' && field[i] != '\n')
            kept.append(i);
    }
    const qsizetype n = kept.size();
    if (n == 0)
        return {Shape::Empty, 0};
    const auto c = [&](qsizetype k) { return field[kept[k]]; };
    qsizetype k = 0;
    if (c(k) == '+' || c(k) == '-')
        ++k;
    bool digits = false;
    bool nonZero = false;
    for (bool fraction = false;; fraction = true) {
        while (k < n && isDigit(c(k))) {
            digits = true;
            nonZero = nonZero || c(k) != '0';
            ++k;
        }
        if (fraction || k == n || c(k) != '.')
            break;
        ++k;
    }
    if (!digits) {
        // "NaN", "inf", "Infinity": words for what no field can hold.
        QByteArray word;
        for (qsizetype j = (c(0) == '+' || c(0) == '-') ? 1 : 0; j < n && word.size() < 3; ++j)
            word.append(static_cast<char>(c(j) | 0x20));
        return {word == "nan" || word == "inf" ? Shape::NonFinite : Shape::NoNumber, kept[0]};
    }
    bool negativeExponent = false;
    if (k < n && (c(k) == 'e' || c(k) == 'E' || c(k) == 'd' || c(k) == 'D')) {
        qsizetype j = k + 1;
        if (j < n && (c(j) == '+' || c(j) == '-'))
            negativeExponent = c(j++) == '-';
        const qsizetype exponentDigits = j;
        while (j < n && isDigit(c(j)))
            ++j;
        if (j > exponentDigits)
            k = j;
        else
            negativeExponent = false;
    }
    // ReadNumber gives 0 for a number beyond a double; one too small for it is as good as 0.
    if (value == 0.0 && nonZero && !negativeExponent)
        return {Shape::NonFinite, kept[0]};
    if (k < n)
        return {Shape::Cut, kept[k]};
    return {Shape::Whole, 0};
}

bool isTreeMeasure(const FieldLayout &f)
{
    return f.position == EntryPos::TreesPerHa || f.position == EntryPos::CurrentDiameter || f.position == EntryPos::TotalVolume ||
           f.position == EntryPos::GrossMerchVolume;
}

// The field's number: the plain shape read at once, anything else by the full rule, and told
// when the rule had to cut it or could not read it.
double fieldValue(QByteArrayView line, const FieldLayout &f, FieldWarnings *warnings)
{
    const QByteArrayView text = CutField(line, f.firstColumn, f.width);
    double number = 0.0;
    if (!readPlainNumber(text, number)) {
        number = ReadNumber(QString::fromLatin1(text));
        const Examined e = examineNumber(text, number);
        const int column = f.firstColumn + static_cast<int>(e.at);
        const QString shown = QString::fromLatin1(trimBlanks(text));
        switch (e.shape) {
        case Shape::Whole:
        case Shape::Empty:
            break;
        case Shape::Cut:
            warn(warnings, column, f,
                 QStringLiteral("\"%1\" is read as %2; the reading stops at \"%3\"")
                     .arg(shown, DefaultText(number), QString::fromLatin1(text.sliced(e.at)).trimmed()));
            break;
        case Shape::NoNumber:
            warn(warnings, column, f, QStringLiteral("\"%1\" holds no number and is read as 0").arg(shown));
            break;
        case Shape::NonFinite:
            if (f.type != FieldType::Double) {
                throw fieldFailure(ErrNo::Overflow, column, f,
                                   QStringLiteral("\"%1\" is beyond the range of the field's whole numbers").arg(shown));
            }
            if (isTreeMeasure(f))
                throw fieldFailure(ErrNo::InvalidCall, column, f,
                                   QStringLiteral("\"%1\" is no finite number, which no tree has").arg(shown));
            warn(warnings, column, f, QStringLiteral("\"%1\" is no finite number and is read as 0").arg(shown));
            break;
        }
    }
    try {
        switch (f.type) {
        case FieldType::Int16:
            return ToInt16(number);
        case FieldType::Int32:
            return ToInt32(number);
        default:
            return number;
        }
    } catch (const SendrelError &e) {
        throw fieldFailure(e.number(), f.firstColumn, f,
                           QStringLiteral("\"%1\" is beyond the range of the field's whole numbers").arg(fieldText(line, f)));
    }
}

// Text kept as its bytes, a character for each: a byte that is no printable ASCII character
// (a letter of another code page, a UTF-8 sequence, a control character) is stored as some
// other character, so the user is told.
void checkBytes(QByteArrayView text, int column, const FieldLayout &f, FieldWarnings *warnings)
{
    if (!warnings)
        return;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uchar>(text[i]);
        if (byte < 0x20 || byte >= 0x7f) {
            warn(warnings, column + static_cast<int>(i), f,
                 QStringLiteral("bytes %1 are no plain characters; each is stored as a character of its own")
                     .arg(QString::fromLatin1(text.sliced(i).toByteArray().toHex(' ').toUpper())));
            return;
        }
    }
}

const FieldLayout &treeField(int position)
{
    for (const FieldLayout &f : kTreeRecordLayout) {
        if (f.position == position)
            return f;
    }
    Q_UNREACHABLE();
}

// Values no tree can have are refused, naming the column.
void checkTreeMeasures(QByteArrayView line, const TreeRecord &r)
{
    static const struct {
        const FieldLayout &field;
        double most;
        const char *unit;
    } measures[] = {
        {treeField(EntryPos::TreesPerHa), kMostStemsPerHa, "stems/ha"},
        {treeField(EntryPos::CurrentDiameter), kMostDiameterCm, "cm"},
        {treeField(EntryPos::TotalVolume), kMostTreeVolume, "cu.m"},
        {treeField(EntryPos::GrossMerchVolume), kMostTreeVolume, "cu.m"},
    };
    for (const auto &m : measures) {
        const double v = r.values[m.field.position];
        if (!(v >= 0.0 && v <= m.most)) {
            throw fieldFailure(ErrNo::InvalidCall, m.field.firstColumn, m.field,
                               QStringLiteral("\"%1\" is no value a tree can have (0 to %2 %3)")
                                   .arg(fieldText(line, m.field), DefaultText(m.most), QLatin1String(m.unit)));
        }
    }
    const double stems = r.values[EntryPos::TreesPerHa];
    const double radius = r.values[EntryPos::CurrentDiameter] / 200.0;
    const double basalArea = stems * 3.141592653589793 * radius * radius;
    const FieldLayout &stemsField = measures[0].field;
    if (basalArea > kMostBasalAreaPerHa) {
        throw fieldFailure(ErrNo::InvalidCall, stemsField.firstColumn, stemsField,
                           QStringLiteral("%1 stems/ha of %2 cm cover %3 sq.m of a hectare's %4")
                               .arg(fieldText(line, stemsField), fieldText(line, measures[1].field), DefaultText(std::round(basalArea)),
                                    DefaultText(kMostBasalAreaPerHa)));
    }
    for (int i : {2, 3}) {
        const double perHa = stems * r.values[measures[i].field.position];
        if (perHa > kMostVolumePerHa) {
            throw fieldFailure(ErrNo::InvalidCall, stemsField.firstColumn, stemsField,
                               QStringLiteral("%1 stems/ha of %2 cu.m (%3) make %4 cu.m/ha, more than the %5 a hectare can hold")
                                   .arg(fieldText(line, stemsField), fieldText(line, measures[i].field), fieldName(measures[i].field),
                                        DefaultText(std::round(perHa)), DefaultText(kMostVolumePerHa)));
        }
    }
}

// A line that ends ahead of column 127 leaves the fields behind its end cut or empty.
void checkLineLength(QByteArrayView line, FieldWarnings *warnings)
{
    const FieldLayout &last = kTreeRecordLayout.back();
    const qsizetype length = line.size();
    if (!warnings || length >= last.firstColumn + last.width - 1)
        return;
    std::size_t first = 0;
    while (kTreeRecordLayout[first].firstColumn + kTreeRecordLayout[first].width - 1 <= length)
        ++first;
    const FieldLayout &f = kTreeRecordLayout[first];
    const bool within = length >= f.firstColumn;
    const std::size_t behind = kTreeRecordLayout.size() - first - (within ? 1 : 0);
    QString what;
    if (!within)
        what = QStringLiteral("the %1 fields from column %2 on are missing and read as 0").arg(behind).arg(f.firstColumn);
    else if (behind == 0)
        what = QStringLiteral("%1 is cut short").arg(fieldName(f));
    else
        what = QStringLiteral("%1 is cut short, and the %2 fields behind it are missing and read as 0").arg(fieldName(f)).arg(behind);
    warnings->push_back({static_cast<int>(length) + 1, QStringLiteral("the line ends at column %1: %2").arg(length).arg(what)});
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

CycleHeader ParseCycleHeader(QByteArrayView line, FieldWarnings *warnings)
{
    CycleHeader h;
    h.firstNumber = static_cast<qint16>(fieldValue(line, kCycleHeaderLayout[0], warnings));
    h.cycle = static_cast<qint16>(fieldValue(line, kCycleHeaderLayout[1], warnings));
    const FieldLayout &year = kCycleHeaderLayout[2];
    h.year = static_cast<qint16>(fieldValue(line, year, warnings));
    if (h.year < kFirstCycleYear || h.year > kLastCycleYear) {
        throw fieldFailure(
            ErrNo::InvalidCall, year.firstColumn, year,
            QStringLiteral("\"%1\" is no calendar year (%2 to %3)").arg(fieldText(line, year)).arg(kFirstCycleYear).arg(kLastCycleYear));
    }
    const FieldLayout &name = kCycleHeaderLayout[3];
    const QByteArrayView runName = CutField(line, name.firstColumn, name.width);
    checkBytes(runName, name.firstColumn, name, warnings);
    h.runName = QString::fromLatin1(trimBlanks(runName));
    return h;
}

HeaderStamp ParseHeaderStamp(QByteArrayView line, FieldWarnings *warnings)
{
    HeaderStamp s;
    s.month = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[0], warnings));
    s.day = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[1], warnings));
    s.year = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[2], warnings));
    s.hour = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[3], warnings));
    s.minute = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[4], warnings));
    s.second = static_cast<qint16>(fieldValue(line, kHeaderStampLayout[5], warnings));
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

TreeRecord ParseTreeRecord(QByteArrayView line, qint16 cycleNumber, FieldWarnings *warnings)
{
    TreeRecord r;
    ParseTreeRecord(line, cycleNumber, r, warnings);
    return r;
}

void ParseTreeRecord(QByteArrayView line, qint16 cycleNumber, TreeRecord &r, FieldWarnings *warnings)
{
    for (const FieldLayout &f : kTreeRecordLayout) {
        switch (f.type) {
        case FieldType::Text: {
            const QByteArrayView text = trimBlanks(CutField(line, f.firstColumn, f.width));
            if (!text.isEmpty())
                checkBytes(text, static_cast<int>(text.data() - line.data()) + 1, f, warnings);
            r.treeIdLength = static_cast<int>(text.size());
            std::copy(text.begin(), text.end(), r.treeId);
            break;
        }
        case FieldType::Letters: {
            const QByteArrayView text = CutField(line, f.firstColumn, f.width);
            checkBytes(text, f.firstColumn, f, warnings);
            r.lettersLength = static_cast<int>(text.size());
            std::copy(text.begin(), text.end(), r.letters);
            break;
        }
        default:
            r.values[f.position] = fieldValue(line, f, warnings);
            break;
        }
    }
    checkLineLength(line, warnings);
    checkTreeMeasures(line, r);
    r.values[EntryPos::ConstantOne] = 1;
    r.values[EntryPos::ConstantOneB] = 1;
    r.values[EntryPos::CycleNumber] = cycleNumber;
    const char16_t code[2] = {static_cast<char16_t>(static_cast<uchar>(r.letters[0])),
                              static_cast<char16_t>(static_cast<uchar>(r.letters[1]))};
    r.values[EntryPos::MerchVolLessDWB] =
        MVol_less_DWB(QStringView(code, r.lettersLength), r.values[EntryPos::CurrentDiameter], r.values[EntryPos::GrossMerchVolume]);
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

void AddModelHeader(clsDBEngine &engine, const CycleHeader &header, const QString &runId, const QString &kind)
{
    engine.AddRecord(QStringLiteral("Model_Header"), {runId, int(header.firstNumber), int(header.cycle), int(header.year), kind}, false);
}

}  // namespace sendrel
