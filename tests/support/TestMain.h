#pragma once

// Every test program's own main: it pins the locale, the time zone, the platform and a home of
// its own before the application starts, so that it passes when run directly under any LANG as
// well as through CTest.

#include "support/ServerDatabase.h"

#include <QDir>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

#ifdef QT_WIDGETS_LIB
#include <QApplication>
#define SENDREL_TEST_APPLICATION QApplication
#else
#include <QCoreApplication>
#define SENDREL_TEST_APPLICATION QCoreApplication
#endif

namespace sendrel::test {

// A home, configuration, documents and temporary folder of the program's own, with the C locale, UTC,
// the offscreen platform and the clock of the expected report files.
class TestEnvironment {
public:
    TestEnvironment()
    {
        const QByteArray home = m_home.path().toLocal8Bit();
        qputenv("HOME", home);
        qputenv("XDG_CONFIG_HOME", home + "/config");
        qputenv("XDG_DOCUMENTS_DIR", home + "/Documents");
        qputenv("XDG_RUNTIME_DIR", home);
        // Temporary files of their own: the two halves of a program run at the same time.
        QDir(m_home.path()).mkpath(QStringLiteral("tmp"));
        qputenv("TMPDIR", home + "/tmp");
        qputenv("LANG", "C.UTF-8");
        qputenv("LC_ALL", "C.UTF-8");
        qunsetenv("LANGUAGE");
        qputenv("TZ", "UTC");
        qputenv("SOURCE_DATE_EPOCH", "1700000000");
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    void pinLocale() { QLocale::setDefault(QLocale::c()); }
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
};

}  // namespace sendrel::test

#define SENDREL_TEST_MAIN(TestObject)                                                                                                      \
    int main(int argc, char *argv[])                                                                                                       \
    {                                                                                                                                      \
        sendrel::test::TestEnvironment environment;                                                                                        \
        SENDREL_TEST_APPLICATION app(argc, argv);                                                                                          \
        environment.pinLocale();                                                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                                         \
        if (sendrel::test::OnServer() && !sendrel::test::ServerUnavailable().isEmpty()) {                                                  \
            sendrel::test::ServerHalfSkipped skipped;                                                                                      \
            return QTest::qExec(&skipped, argc, argv);                                                                                     \
        }                                                                                                                                  \
        TestObject tc;                                                                                                                     \
        const int failures = QTest::qExec(&tc, argc, argv);                                                                                \
        sendrel::test::StopServer();                                                                                                       \
        return failures;                                                                                                                   \
    }
