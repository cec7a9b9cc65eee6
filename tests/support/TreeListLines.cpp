#include "support/TreeListLines.h"

namespace sendrel::test {

ColumnLine &ColumnLine::at(int firstColumn, const QByteArray &text)
{
    const int start = firstColumn - 1;
    if (m_line.size() < start + text.size())
        m_line.append(QByteArray(start + text.size() - m_line.size(), ' '));
    m_line.replace(start, text.size(), text);
    return *this;
}

ColumnLine &ColumnLine::right(int firstColumn, int width, const QByteArray &text)
{
    return at(firstColumn, QByteArray(qMax<qsizetype>(0, width - text.size()), ' ') + text);
}

QByteArray HeaderLine(int firstNumber, int cycle, int year, const QByteArray &runName, const QByteArray &stamp)
{
    ColumnLine line;
    line.at(1, "-999")
        .right(6, 5, QByteArray::number(firstNumber))
        .right(11, 5, QByteArray::number(cycle))
        .right(16, 5, QByteArray::number(year));
    if (!runName.isEmpty())
        line.at(21, runName);
    if (!stamp.isEmpty())
        line.at(61, stamp);
    return line;
}

QByteArray TreeLine(const QByteArray &treeId, const QByteArray &letters, int speciesNumber, double tph, double dbh,
                    double totalVolume, double merchVolume)
{
    ColumnLine line;
    line.right(2, 8, treeId)
        .right(11, 4, "7")
        .at(16, letters)
        .right(19, 2, QByteArray::number(speciesNumber))
        .right(22, 2, "2")
        .right(25, 2, "0")
        .right(28, 3, "45")
        .right(32, 8, QByteArray::number(tph, 'f', 3))
        .right(41, 8, "0.5")
        .right(50, 5, QByteArray::number(dbh, 'f', 1))
        .right(56, 5, "21.3")
        .right(62, 5, "40.0")
        .right(68, 4, "1.25")
        .right(73, 2, "1")
        .right(76, 4, "3.1")
        .right(81, 2, "18")
        .right(84, 6, "8.25")
        .right(91, 5, "40000")
        .right(97, 6, QByteArray::number(totalVolume, 'f', 4))
        .right(104, 6, QByteArray::number(merchVolume, 'f', 4))
        .right(111, 7, "12.125")
        .right(119, 2, "1")
        .right(122, 2, "3")
        .right(125, 3, "12");
    return line;
}

QByteArray TreeListText(const QList<QByteArray> &lines)
{
    QByteArray text;
    for (const QByteArray &l : lines)
        text += l + "\r\n";
    return text;
}

}  // namespace sendrel::test
