#include "domain/import/TreeListFile.h"

#include "base/SendrelError.h"

#include <QFileInfo>

#include <cstring>

namespace sendrel {

namespace {

// Room for the longest line that is read, and for reading on behind it without moving it.
constexpr qsizetype kChunk = 1 << 20;
static_assert(kChunk > 2 * TreeListFile::kMaxLineBytes);

const QString kSource = QStringLiteral("Sendrel");

}  // namespace

TreeListFile::TreeListFile(const QString &fileName) : m_fileName(fileName), m_file(fileName)
{
}

bool TreeListFile::open()
{
    // Looked at before opening: opening a pipe without a writer would wait for one.
    const QString refused =
        QStringLiteral("it is no regular file (a device, a pipe or a folder), and a tree list is read from a file only");
    const QFileInfo info(m_fileName);
    if (info.exists() && !info.isFile()) {
        m_error = refused;
        return false;
    }
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = m_file.errorString();
        return false;
    }
    if (m_file.isSequential()) {  // swapped for a device since it was looked at
        m_file.close();
        m_error = refused;
        return false;
    }
    m_buffer.resize(kChunk);
    m_begin = m_end = 0;
    m_lf = m_cr = Seen();
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
        for (Seen *seen : {&m_lf, &m_cr}) {
            if (seen->at >= 0)
                seen->at -= m_begin;
            seen->upTo = qMax<qsizetype>(0, seen->upTo - m_begin);
        }
        m_end -= m_begin;
        m_begin = 0;
    }
    const qint64 got = m_file.read(m_buffer.data() + m_end, m_buffer.size() - m_end);
    if (got < 0)
        throw SendrelError(ErrNo::DeviceIO, kSource, QStringLiteral("Device I/O error: ") + m_file.errorString());
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

// The first such byte at or after from, or -1. What was searched in vain is remembered, so a file
// with one kind of line end is not searched to the end of the buffer for the other at every line.
qsizetype TreeListFile::find(char byte, Seen &seen, qsizetype from) const
{
    if (seen.at >= from)
        return seen.at;
    const qsizetype start = seen.at < 0 ? qMax(from, seen.upTo) : from;
    const void *hit = start < m_end ? std::memchr(m_buffer.constData() + start, byte, m_end - start) : nullptr;
    seen.at = hit ? static_cast<const char *>(hit) - m_buffer.constData() : -1;
    seen.upTo = m_end;
    return seen.at;
}

QByteArrayView TreeListFile::takeLine(qsizetype end, qsizetype next)
{
    ++m_lineNumber;
    if (end - m_begin > kMaxLineBytes) {
        throw SendrelError(ErrNo::InvalidCall, kSource,
                           QStringLiteral("the line is longer than %1 bytes, which no tree list holds").arg(kMaxLineBytes));
    }
    QByteArrayView line(m_buffer.constData() + m_begin, end - m_begin);
    m_begin = next;
    if (m_lineNumber == 1) {
        for (;;) {
            if (line.startsWith('\0'))
                line = line.sliced(1);
            else if (line.startsWith("\xEF\xBB\xBF"))
                line = line.sliced(3);
            else
                break;
        }
    }
    return line;
}

QByteArrayView TreeListFile::readLine()
{
    for (;;) {
        const qsizetype lf = find('\n', m_lf, m_begin);
        const qsizetype cr = find('\r', m_cr, m_begin);
        const qsizetype end = cr >= 0 && (lf < 0 || cr < lf) ? cr : lf;
        // A CR as the last byte read may be the first half of a CR LF.
        const bool undecided = end >= 0 && end == cr && end + 1 == m_end && !m_eof;
        if (end >= 0 && !undecided)
            return takeLine(end, end == cr && end + 1 == lf ? end + 2 : end + 1);
        if (end < 0 && m_end - m_begin > kMaxLineBytes)
            return takeLine(m_end, m_end);  // refused there, without reading further
        if (!fill() && end < 0)
            return takeLine(m_end, m_end);  // the last line, without a line end
        // Otherwise look again: more has come, or the end of the file settles a closing CR.
    }
}

}  // namespace sendrel
