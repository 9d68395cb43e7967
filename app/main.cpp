#include "app/AppDelegate.h"
#include "app/PrepareApplication.h"
#include "app/QtDesktop.h"
#include "app/TerminalAnswer.h"
#include "app/TerminationSignals.h"

#include <QApplication>
#include <QSessionManager>

#include <cstdio>

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (const std::string answer = TerminalAnswer(arguments); !answer.empty()) {
        const bool isTold = std::fputs(answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
        return isTold ? 0 : 1;
    }
    // Every other argument is a file's name, also one that the toolkit would take for an option.
    int programNameOnly = std::min(argc, 1);
    QApplication application(programNameOnly, argv);
    PrepareApplication();
    QtDesktop desktop;
    InstallDesktop(&desktop);
    AppDelegate delegate;
    desktop.SetObjection([&](const std::string& path) { return delegate.ObjectionTo(path); });
    const TerminationSignals signals;
    const auto quit = [](int exitCode) { QCoreApplication::exit(exitCode); };
    QObject::connect(&delegate, &AppDelegate::terminate, &application, quit);
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &application,
                     [&] { quit(0); });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &delegate,
                     &AppDelegate::sessionShouldEnd<QSessionManager>, Qt::DirectConnection);
    // In the event loop, so that a signal ends an alert of the launch too.
    QMetaObject::invokeMethod(
        &delegate, [&] { delegate.applicationDidFinishLaunching(arguments); },
        Qt::QueuedConnection);
    const int exitCode = QApplication::exec();
    delegate.applicationWillTerminate();
    InstallDesktop(nullptr);
    return exitCode;
}
