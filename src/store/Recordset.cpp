#include "store/Recordset.h"

#include "base/SendrelError.h"

namespace sendrel {

struct Recordset::Data {
    QStringList names;
    QVector<Row> rows;
    int position = 0;
    bool open = true;
};

namespace {

SendrelError closedRecordset()
{
    return SendrelError(ErrNo::ClosedObject, QStringLiteral("Recordset"),
                        QStringLiteral("Operation is not allowed when the object is closed."));
}

SendrelError noCurrentRecord()
{
    return SendrelError(ErrNo::NoCurrentRecord, QStringLiteral("Recordset"),
                        QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
}

}  // namespace

Recordset::Recordset() : d(std::make_shared<Data>())
{
    d->open = false;
}

Recordset::Recordset(QStringList names, QVector<Row> rows) : d(std::make_shared<Data>())
{
    d->names = std::move(names);
    d->rows = std::move(rows);
}

Recordset::Data &Recordset::data() const
{
    if (!d->open)
        throw closedRecordset();
    return *d;
}

bool Recordset::Eof() const
{
    const Data &x = data();
    return x.position >= x.rows.size();
}

void Recordset::MoveFirst()
{
    data().position = 0;
}

void Recordset::MoveNext()
{
    Data &x = data();
    if (x.position >= x.rows.size())
        throw noCurrentRecord();
    ++x.position;
}

int Recordset::RecordCount() const
{
    return static_cast<int>(data().rows.size());
}

QVariant Recordset::Fields(const QString &name) const
{
    const int index = FieldIndex(name);
    if (index < 0)
        throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("Recordset"),
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: ") +
                               name);
    return Fields(index);
}

QVariant Recordset::Fields(int index) const
{
    const Data &x = data();
    if (index < 0 || index >= x.names.size())
        throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("Recordset"),
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal."));
    if (x.position >= x.rows.size())
        throw noCurrentRecord();
    return x.rows[x.position][index];
}

int Recordset::FieldIndex(const QString &name) const
{
    const Data &x = data();
    for (int i = 0; i < x.names.size(); ++i) {
        if (x.names[i].compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

void Recordset::Close()
{
    if (!d->open)
        throw closedRecordset();
    d->open = false;
    d->rows.clear();
}

bool Recordset::IsOpen() const
{
    return d->open;
}

}  // namespace sendrel
