#include "cli/Command.h"

#include "graph/Graph.h"

#include <QApplication>
#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// The command of the line: the first argument behind the global options.
bool drawsChart(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--db") == 0 || std::strcmp(argv[i], "--wait") == 0 || std::strcmp(argv[i], "--units") == 0) {
            ++i;
            continue;
        }
        if (std::strncmp(argv[i], "--", 2) == 0)
            continue;  // a global option with its value joined: --units=imperial
        return std::strcmp(argv[i], "chart") == 0;
    }
    return false;
}

}  // namespace

int main(int argc, char *argv[])
{
    // Only `chart` draws. The chart library lays charts out on a graphics scene, which needs a
    // QApplication and a platform; without a display the offscreen one serves. Every other
    // command stays on QCoreApplication and never touches the windowing libraries.
    const bool drawing = drawsChart(argc, argv);
    std::unique_ptr<QCoreApplication> app;
    if (drawing) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
            qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QApplication>(argc, argv);
        sendrel::SetChartFileWriter(
            [](const QList<sendrel::ChartData> &pages, const QString &path) { sendrel::Graph::SaveCharts(pages, path); });
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setApplicationName(QStringLiteral("sendrel-cli"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    const int code = sendrel::RunCli(app->arguments().mid(1), out, err);
    // Output that did not reach the standard output (a full disk behind "> file") is a failure.
    out.flush();
    const bool lost = out.status() != QTextStream::Ok;
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) || lost) {
        // The cause is known when the last flush gave it; an earlier write's is gone by now.
        const int cause = errno;
        std::fprintf(stderr, "sendrel-cli: cannot write the standard output%s%s\n", cause ? ": " : " whole",
                     cause ? std::strerror(cause) : "");
        return 1;
    }
    return code;
}
