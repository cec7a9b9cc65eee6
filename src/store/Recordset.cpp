#include "store/Recordset.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"

namespace sendrel {

struct Recordset::Data {
    QStringList names;
    QVector<Row> rows;
    int position = 0;
    bool open = true;
    Loader loader;
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

Recordset Recordset::deferred(Loader loader)
{
    Recordset rs;
    rs.d->open = true;
    rs.d->loader = std::move(loader);
    return rs;
}

Recordset::Data &Recordset::data() const
{
    if (!d->open)
        throw closedRecordset();
    if (d->loader) {
        Loader loader = std::move(d->loader);
        d->loader = nullptr;
        loader(d->names, d->rows);
    }
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

bool Recordset::Find(const QString &criteria)
{
    Data &x = data();
    const qsizetype eq = criteria.indexOf(QLatin1Char('='));
    if (eq < 0)
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Recordset"), QStringLiteral("Invalid criteria: ") + criteria);
    const QString column = criteria.left(eq).trimmed();
    const QString valueText = criteria.mid(eq + 1).trimmed();
    const int index = FieldIndex(column);
    if (index < 0)
        throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("Recordset"),
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: ") + column);

    const bool isText = valueText.startsWith(QLatin1Char('\''));
    QString text;
    double number = 0;
    if (isText) {
        if (valueText.size() < 2 || !valueText.endsWith(QLatin1Char('\'')))
            throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Recordset"), QStringLiteral("Invalid criteria: ") + criteria);
        text = valueText.mid(1, valueText.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
    } else {
        number = ReadNumber(valueText);
    }

    for (; x.position < x.rows.size(); ++x.position) {
        const QVariant &v = x.rows[x.position][index];
        if (v.isNull())
            continue;
        if (isText ? v.toString().compare(text, Qt::CaseInsensitive) == 0 : v.toDouble() == number)
            return true;
    }
    return false;
}

QVariant Recordset::Fields(const QString &name) const
{
    const int index = FieldIndex(name);
    if (index < 0)
        throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("Recordset"),
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: ") + name);
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

int Recordset::FieldCount() const
{
    return static_cast<int>(data().names.size());
}

QString Recordset::FieldName(int index) const
{
    return data().names.value(index);
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
    d->loader = nullptr;
    d->rows.clear();
}

bool Recordset::IsOpen() const
{
    return d->open;
}

}  // namespace sendrel
