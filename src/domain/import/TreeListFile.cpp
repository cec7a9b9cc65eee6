#include "domain/import/TreeListFile.h"

#include "base/SendrelError.h"

#include <cstring>

namespace sendrel {

namespace {
constexpr qsizetype kChunk = 1 << 20;
}

TreeListFile::TreeListFile(const QString &fileName)
    : m_fileName(fileName), m_file(fileName)
{
}

bool TreeListFile::open()
{
    if (!m_file.open(QIODevice::ReadOnly))
        return false;
    m_buffer.resize(kChunk);
    m_begin = m_end = 0;
    m_eof = false;
    m_lineNumber = 0;
    return true;
}

// Moves what is left to the front and reads more behind it; false when nothing more came.
bool TreeListFile::fill()
{
    if (m_eof)
        return false;
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.constData() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end == m_buffer.size())
        m_buffer.resize(m_buffer.size() * 2);   // a line longer than the buffer
    const qint64 got = m_file.read(m_buffer.data() + m_end, m_buffer.size() - m_end);
    if (got < 0)
        throw SendrelError(57, QStringLiteral("Sendrel"), QStringLiteral("Device I/O error: ") + m_file.errorString());
    if (got == 0) {
        m_eof = true;
        return false;
    }
    m_end += got;
    return true;
}

bool TreeListFile::atEnd()
{
    return m_begin == m_end && !fill();
}

QByteArrayView TreeListFile::readLine()
{
    qsizetype searchFrom = m_begin;
    for (;;) {
        const void *nl = std::memchr(m_buffer.constData() + searchFrom, '\n', m_end - searchFrom);
        if (nl) {
            const qsizetype at = static_cast<const char *>(nl) - m_buffer.constData();
            qsizetype lineEnd = at;
            if (lineEnd > m_begin && m_buffer.at(lineEnd - 1) == '\r')
                --lineEnd;
            const QByteArrayView line(m_buffer.constData() + m_begin, lineEnd - m_begin);
            m_begin = at + 1;
            ++m_lineNumber;
            return line;
        }
        const qsizetype scanned = m_end - m_begin;
        if (!fill()) {
            // The last line, without a line end.
            qsizetype lineEnd = m_end;
            if (lineEnd > m_begin && m_buffer.at(lineEnd - 1) == '\r')
                --lineEnd;
            const QByteArrayView line(m_buffer.constData() + m_begin, lineEnd - m_begin);
            m_begin = m_end;
            ++m_lineNumber;
            return line;
        }
        searchFrom = m_begin + scanned;
    }
}

}  // namespace sendrel
