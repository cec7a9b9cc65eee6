#include "base/SendrelError.h"

namespace sendrel {

SendrelError::SendrelError(long number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)),
      m_what(QStringLiteral("(%1) %2").arg(m_number).arg(m_description).toUtf8())
{
}

SendrelError SendrelError::tagged(const QString &tag) const
{
    return SendrelError(m_number, m_source, tag + QLatin1Char('\n') + m_description);
}

SendrelError SendrelError::withDescription(const QString &description) const
{
    return SendrelError(m_number, m_source, description);
}

const char *SendrelError::what() const noexcept
{
    return m_what.constData();
}

}  // namespace sendrel
