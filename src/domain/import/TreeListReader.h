#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariantList>
#include <QtGlobal>

#include <array>
#include <vector>

namespace sendrel {

class clsDBEngine;

// The tree list: a text file of fixed columns written by the growth model. Each cycle starts
// with a "-999" header line, followed by one line for each tree record. Columns are 1-based
// character positions in the line as read (a byte of the file is one character); trimming
// serves only to recognise a line, so indentation never moves a field.

enum class FieldType {
    Text,  // blanks trimmed from both ends
    Letters,  // exactly the characters of the columns, not trimmed
    Int16,  // the number-reading rule, rounded half to even, -32768..32767 or Overflow
    Int32,
    Double,
};

struct FieldLayout {
    const char *field;
    int firstColumn;  // 1-based
    int width;
    FieldType type;
    int position;  // place in the row it goes to; -1 when the value is not stored
};

// Header: columns 1-5 hold the marker; positions are those of the Model_Header row.
inline constexpr std::array<FieldLayout, 4> kCycleHeaderLayout{{
    {"first header number", 6, 5, FieldType::Int16, 1},
    {"cycle number", 11, 5, FieldType::Int16, 2},
    {"cycle year", 16, 5, FieldType::Int16, 3},
    {"run name", 21, 10, FieldType::Text, -1},
}};

// The date and time stamp, read from the first header only. Columns 63, 66, 71, 74 and 77 hold
// separators and are not read.
inline constexpr std::array<FieldLayout, 6> kHeaderStampLayout{{
    {"month", 61, 2, FieldType::Int16, -1},
    {"day", 64, 2, FieldType::Int16, -1},
    {"year", 67, 4, FieldType::Int16, -1},
    {"hour", 72, 2, FieldType::Int16, -1},
    {"minute", 75, 2, FieldType::Int16, -1},
    {"second", 78, 2, FieldType::Int16, -1},
}};

// Tree record, in the order of the line; positions are those of the Model_Entries row.
// Column 1, the one-column gaps and anything behind column 127 are not read.
inline constexpr std::array<FieldLayout, 24> kTreeRecordLayout{{
    {"tree id", 2, 8, FieldType::Text, 1},
    {"columns 11-14", 11, 4, FieldType::Int16, 2},
    {"species letter code", 16, 2, FieldType::Letters, 23},
    {"species number", 19, 2, FieldType::Int16, 3},
    {"columns 22-23", 22, 2, FieldType::Int16, 13},
    {"columns 25-26", 25, 2, FieldType::Int16, 28},
    {"columns 28-30", 28, 3, FieldType::Int16, 4},
    {"trees per hectare", 32, 8, FieldType::Double, 5},
    {"columns 41-48", 41, 8, FieldType::Double, 22},
    {"diameter", 50, 5, FieldType::Double, 6},
    {"columns 56-60", 56, 5, FieldType::Double, 7},
    {"columns 62-66", 62, 5, FieldType::Double, 8},
    {"columns 68-71", 68, 4, FieldType::Double, 9},
    {"columns 73-74", 73, 2, FieldType::Int16, 11},
    {"columns 76-79", 76, 4, FieldType::Double, 24},
    {"columns 81-82", 81, 2, FieldType::Int16, 20},
    {"columns 84-89", 84, 6, FieldType::Double, 12},
    {"columns 91-95", 91, 5, FieldType::Int32, 25},
    {"total volume", 97, 6, FieldType::Double, 14},
    {"gross merchantable volume", 104, 6, FieldType::Double, 15},
    {"columns 111-117", 111, 7, FieldType::Double, 16},
    {"columns 119-120", 119, 2, FieldType::Int16, 26},
    {"columns 122-123", 122, 2, FieldType::Int16, 27},
    {"columns 125-127", 125, 3, FieldType::Int16, 17},
}};

// Positions of the Model_Entries row that the reader fills itself.
namespace EntryPos {
constexpr int RunId = 0;
constexpr int TreeId = 1;
constexpr int SpeciesCode = 3;
constexpr int TreesPerHa = 5;
constexpr int CurrentDiameter = 6;
constexpr int ConstantOne = 10;
constexpr int TotalVolume = 14;
constexpr int GrossMerchVolume = 15;
constexpr int CycleNumber = 18;
constexpr int ConstantOneB = 19;
constexpr int StandingHarvested = 21;
constexpr int SpeciesLetters = 23;
constexpr int MerchVolLessDWB = 29;
constexpr int Count = 30;
}  // namespace EntryPos

// The column type of each Model_Entries position, as the row is written.
inline constexpr std::array<FieldType, EntryPos::Count> kModelEntryTypes{{
    FieldType::Text,  // 0 Run_Id
    FieldType::Text,  // 1 tree id
    FieldType::Int16,  // 2
    FieldType::Int16,  // 3 Species_Code
    FieldType::Int16,  // 4
    FieldType::Double,  // 5 Trees_per_ha
    FieldType::Double,  // 6 Current_Diameter
    FieldType::Double,  // 7
    FieldType::Double,  // 8
    FieldType::Double,  // 9
    FieldType::Int32,  // 10 constant 1
    FieldType::Int16,  // 11
    FieldType::Double,  // 12
    FieldType::Int16,  // 13
    FieldType::Double,  // 14 Total_Volume
    FieldType::Double,  // 15 gross merchantable volume
    FieldType::Double,  // 16
    FieldType::Int16,  // 17
    FieldType::Int16,  // 18 Cycle_Number
    FieldType::Int32,  // 19 constant 1
    FieldType::Int16,  // 20
    FieldType::Text,  // 21 Standing_Harvested
    FieldType::Double,  // 22
    FieldType::Letters,  // 23 species letter code
    FieldType::Double,  // 24
    FieldType::Int32,  // 25
    FieldType::Int16,  // 26
    FieldType::Int16,  // 27
    FieldType::Int16,  // 28
    FieldType::Double,  // 29 MerchVolLessDWB
}};

enum class LineKind { Blank, Header, Record };

// Blank: nothing but blanks (a tab is not a blank). Header: with blanks trimmed from both ends,
// the first four characters are "-999". Anything else is a tree record (or, ahead of the first
// header, preamble).
LineKind ClassifyLine(QByteArrayView line);

// True for a line that is no header only because of what stands ahead of its "-999": characters
// that do not print (tabs, NUL bytes, a byte order mark). Such a line is read as the rules say,
// but the user is told, since a header was most likely meant.
bool IsHiddenHeader(QByteArrayView line);

struct CycleHeader {
    qint16 firstNumber = 0;
    qint16 cycle = 0;
    qint16 year = 0;
    QString runName;
};

// The first header's date and time stamp; only its digits count.
struct HeaderStamp {
    qint16 month = 0;
    qint16 day = 0;
    qint16 year = 0;
    qint16 hour = 0;
    qint16 minute = 0;
    qint16 second = 0;

    // The date and the time as stored in Model_Run ("yyyy-MM-dd", "HH:mm:ss"). Parts beyond their
    // range carry over into the next larger part; a date that still cannot be formed is empty.
    QString dateText() const;
    QString timeText() const;
};

// One tree record, its values by Model_Entries position. The two texts are kept as the bytes of
// the line, so that reading a record allocates nothing.
struct TreeRecord {
    std::array<double, EntryPos::Count> values{};  // numbers; integer positions hold whole numbers
    char treeId[8] = {};
    int treeIdLength = 0;
    char letters[2] = {};
    int lettersLength = 0;

    QString treeIdText() const { return QString::fromLatin1(treeId, treeIdLength); }
    QString speciesLetters() const { return QString::fromLatin1(letters, lettersLength); }
    qint16 speciesNumber() const { return static_cast<qint16>(values[EntryPos::SpeciesCode]); }
    qint16 cycleNumber() const { return static_cast<qint16>(values[EntryPos::CycleNumber]); }
    double merchVolLessDWB() const { return values[EntryPos::MerchVolLessDWB]; }
};

// The text of columns first..first+width-1; shorter or empty where the line ends early.
QByteArrayView CutField(QByteArrayView line, int firstColumn, int width);

// A field that the reading had to cut or could not read. The value stays as the reading gives it;
// the user is told, with the column where the trouble begins.
struct FieldWarning {
    int column = 0;  // 1-based
    QString text;
};
using FieldWarnings = std::vector<FieldWarning>;

// What no tree can have, refused with the field's column (ErrNo::InvalidCall) rather than stored:
// a negative or non-finite diameter, number of stems or volume, and a cycle year outside 1 to
// 9999. The upper bounds keep every number that one record adds to a report cell within a
// tenth of what the cell holds (ten characters: a blank and 9,999,999 with its separators), and
// each lies beyond what a stand can hold:
inline constexpr double kMostDiameterCm = 2000.0;  // the stoutest tree known is about 1,150 cm
inline constexpr double kMostStemsPerHa = 1000000.0;  // one stem on every 100 sq.cm of ground
inline constexpr double kMostTreeVolume = 10000.0;  // cu.m; the largest tree known holds about 1,500
inline constexpr double kMostBasalAreaPerHa = 10000.0;  // sq.m/ha: the stems cannot cover more than the hectare
inline constexpr double kMostVolumePerHa = 1000000.0;  // cu.m/ha: a hectare of trees 100 m tall, wall to wall
inline constexpr int kFirstCycleYear = 1;
inline constexpr int kLastCycleYear = 9999;

// The number-reading rule on a field of the line. Plain fields (blanks, a sign, digits, a point
// and digits) are read here without any allocation; anything else goes to ReadNumber, so both
// always agree.
double ReadFieldNumber(QByteArrayView field);

// With warnings given, every field the reading had to cut or could not read is added to them.
// Failures name the column: Overflow (6) when a number is beyond its 16-bit range, InvalidCall
// (5) for a cycle year outside 1 to 9999.
CycleHeader ParseCycleHeader(QByteArrayView line, FieldWarnings *warnings = nullptr);
HeaderStamp ParseHeaderStamp(QByteArrayView line, FieldWarnings *warnings = nullptr);
// The record with the cycle number copied in and MVol_less_DWB applied. Failures name the
// column: Overflow (6), and InvalidCall (5) for a value no tree can have (see the bounds above).
TreeRecord ParseTreeRecord(QByteArrayView line, qint16 cycleNumber, FieldWarnings *warnings = nullptr);
// The same into a record that is reused line after line; every value of it is written.
void ParseTreeRecord(QByteArrayView line, qint16 cycleNumber, TreeRecord &record, FieldWarnings *warnings = nullptr);

// A species number that the system knows: 1 to 11.
bool IsValidSpeciesNumber(qint16 number);
// "Invalid species code: 12  (Valid range is 1-11)"
QString InvalidSpeciesMessage(qint16 number);

// The first header's run name, or else the file's name up to its first ".", in upper case.
QString SuggestRunId(const CycleHeader &firstHeader, const QString &fileName);

// "Invalid File Format.  Expecting a Marquel file with -999 header."
extern const QString kInvalidFileFormatMessage;

// The Model_Header row of a cycle, by position.
void AddModelHeader(clsDBEngine &engine, const CycleHeader &header, const QString &runId, const QString &kind);

}  // namespace sendrel
