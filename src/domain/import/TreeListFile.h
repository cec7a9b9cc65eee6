#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

namespace sendrel {

// A tree list read line by line through a fixed buffer, so that memory stays flat whatever the
// file holds. A line ends at CR LF, at LF alone or at CR alone (lists pass through machines of
// every kind); the end of the file ends the last line. A UTF-8 byte order mark and NUL bytes
// ahead of the first line (what an editor or an interrupted copy leaves there) are not part of it.
class TreeListFile {
public:
    // No tree list holds a longer line; a longer one is refused instead of read into memory.
    static constexpr qsizetype kMaxLineBytes = 64 * 1024;

    explicit TreeListFile(const QString &fileName);

    // False when the file cannot be opened for reading, or is no regular file (a device, a pipe
    // or a folder, which could block or never end); errorString() says why.
    bool open();
    QString errorString() const { return m_error; }
    const QString &fileName() const { return m_fileName; }

    // True when no further line can be read. Fails as readLine does.
    bool atEnd();
    // The next line without its line end; valid until the next call. Fails at a read error or a
    // line longer than kMaxLineBytes; lineNumber() then names that line.
    QByteArrayView readLine();
    // 1-based number of the line last read.
    qint64 lineNumber() const { return m_lineNumber; }

    void close() { m_file.close(); }

private:
    // Where a line-end byte was last found: at (-1: none in the bytes searched, up to upTo).
    struct Seen {
        qsizetype at = -1;
        qsizetype upTo = 0;
    };
    bool fill();
    qsizetype find(char byte, Seen &seen, qsizetype from) const;
    QByteArrayView takeLine(qsizetype end, qsizetype next);

    QString m_fileName;
    QFile m_file;
    QString m_error;
    QByteArray m_buffer;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    Seen m_lf;
    Seen m_cr;
    bool m_eof = false;
    qint64 m_lineNumber = 0;
};

}  // namespace sendrel
