#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

namespace sendrel::test {

// Builds fixed-column lines for tests: text placed at 1-based columns, blanks between.
class ColumnLine {
public:
    ColumnLine &at(int firstColumn, const QByteArray &text);
    // Right-aligned in the field, as the growth model writes numbers.
    ColumnLine &right(int firstColumn, int width, const QByteArray &text);
    QByteArray bytes() const { return m_line; }
    operator QByteArray() const { return m_line; }
    operator QByteArrayView() const { return m_line; }

private:
    QByteArray m_line;
};

// A header line: "-999", the three numbers in columns 6-20, the run name from column 21 and, when
// given, the stamp "MM/DD/YYYY HH:MM:SS" from column 61.
QByteArray HeaderLine(int firstNumber, int cycle, int year, const QByteArray &runName = QByteArray(),
                      const QByteArray &stamp = QByteArray());

// A plausible tree line of the given species letters and number, diameter and volumes.
QByteArray TreeLine(const QByteArray &treeId, const QByteArray &letters, int speciesNumber, double tph, double dbh,
                    double totalVolume, double merchVolume);

// Lines joined with CR LF, with a closing CR LF.
QByteArray TreeListText(const QList<QByteArray> &lines);

}  // namespace sendrel::test
