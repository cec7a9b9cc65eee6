#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>

namespace sendrel {

// A fully fetched, scrollable result: the operations the program asks of a recordset.
// Copies share the rows and the position. Field names match without regard to case.
class Recordset {
public:
    using Row = QVector<QVariant>;

    Recordset();
    Recordset(QStringList names, QVector<Row> rows);

    bool Eof() const;  // EOF: past the last row, or no rows at all
    void MoveFirst();
    void MoveNext();
    int RecordCount() const;

    QVariant Fields(const QString &name) const;
    QVariant Fields(int index) const;
    int FieldIndex(const QString &name) const;  // -1 when not there

    void Close();
    bool IsOpen() const;

private:
    struct Data;
    Data &data() const;
    std::shared_ptr<Data> d;
};

}  // namespace sendrel
