#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

namespace sendrel {

// A tree list read line by line through a fixed buffer, so that memory stays flat whatever the
// file's size. A line ends at CR LF, or at LF alone; the end of the file ends the last line.
class TreeListFile {
public:
    explicit TreeListFile(const QString &fileName);

    // False when the file cannot be opened for reading; errorString() says why.
    bool open();
    QString errorString() const { return m_file.errorString(); }
    const QString &fileName() const { return m_fileName; }

    // True when no further line can be read.
    bool atEnd();
    // The next line without its line end; valid until the next call. Fails at a read error.
    QByteArrayView readLine();
    // 1-based number of the line last read.
    qint64 lineNumber() const { return m_lineNumber; }

    void close() { m_file.close(); }

private:
    bool fill();

    QString m_fileName;
    QFile m_file;
    QByteArray m_buffer;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    bool m_eof = false;
    qint64 m_lineNumber = 0;
};

}  // namespace sendrel
