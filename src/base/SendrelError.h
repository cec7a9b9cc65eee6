#pragma once

#include <QString>
#include <exception>

namespace sendrel {

// A failure as the program passes it upward: number, source and description.
// Routines add their tag in front of the description and raise it again (the error trail).
class SendrelError : public std::exception {
public:
    SendrelError(long number, QString source, QString description);

    long number() const { return m_number; }
    const QString &source() const { return m_source; }
    const QString &description() const { return m_description; }

    // The same failure with "tag", a line break and the old description.
    SendrelError tagged(const QString &tag) const;
    // The same number and source with a new description.
    SendrelError withDescription(const QString &description) const;

    const char *what() const noexcept override;

private:
    long m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

// Failure numbers that the program tests for.
namespace ErrNo {
constexpr long InvalidCall = 5;  // a settings key that is not there, a bad argument
constexpr long Overflow = 6;  // a 16-bit conversion out of range
constexpr long DivisionByZero = 11;
constexpr long FileNotFound = 53;
constexpr long DeviceIO = 57;  // a write, flush or close that failed
constexpr long FileAlreadyExists = 58;
constexpr long PermissionDenied = 70;  // a folder that cannot be made or written
constexpr long PathFileAccess = 75;  // a file that cannot be opened for writing
constexpr long PathNotFound = 76;
constexpr long NoCurrentRecord = 3021;  // a read past the last row of a recordset
constexpr long ItemNotFound = 3265;  // a field or column that does not exist
constexpr long ClosedObject = 3704;  // closing a closed connection
constexpr long DialogCancelled = 32755;  // a file dialog cancelled
constexpr long DatabaseFailure = -2147467259;  // the database layer's general failure
constexpr long CommandFailure = -2147217900;  // a statement the database refused
// Outputs: report files, charts, print to file.
constexpr long SubscriptOutOfRange = 9;  // a report block without a column heading
constexpr long PrinterError = 482;  // a printer (or a print to file) cannot be started
// Reports, the program's own.
constexpr long NothingToReport = 31001;  // no cycle selected, a cycle without trees, a run without cycles
constexpr long ReportDataUnavailable = 31002;  // no Report_Header row for the run
constexpr long RunMissing = 31003;  // the run is not (or no longer) in the database
constexpr long ReportTableFault = 31004;  // the report tables hold what no report writer writes
}  // namespace ErrNo

// Tag of the shared routine modules in the error trail.
inline const QString kTreeModelTag = QStringLiteral("Module:TREEMODL");

}  // namespace sendrel
