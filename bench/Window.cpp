#include "app/AppDelegate.h"
#include "app/PrepareApplication.h"
#include "app/WaveView.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QSlider>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

constexpr double kMillisecondsANanosecond = 1e-6;
constexpr double kRepaintBound = 10.0; // milliseconds: a tenth of the refresh timer's interval

/// Runs the event loop until something is so.
/// @return the longest time, in milliseconds, for which it did not come back to it
template <typename Condition>
double RunUntil(Condition condition) {
    qint64 longest = 0;
    QElapsedTimer timer;
    while (!condition()) {
        timer.start();
        QCoreApplication::processEvents();
        longest = std::max(longest, timer.nsecsElapsed());
    }
    return static_cast<double>(longest) * kMillisecondsANanosecond;
}

double ProcessorMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 +
           static_cast<double>(time.tv_nsec) * kMillisecondsANanosecond;
}

void Idle(int milliseconds) {
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(milliseconds);
    loop.exec();
}

double Milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) * kMillisecondsANanosecond;
}

/// Changes to every zoom factor of the menu with the middle of the file in view, and tells after
/// how long what is in view is painted and what the longest pause was meanwhile.
void MeasureZoomChanges(KlipraMac& klipra, WaveView& view) {
    klipra.SetCurrentPosition(klipra.length / 2);
    for (const int factor : {2, 5, 10, 20, 50, 100, 1}) {
        if (factor > klipra.maxZoom) {
            continue;
        }
        QElapsedTimer timer;
        timer.start();
        klipra.Zoom(factor);
        const double change = Milliseconds(timer);
        const double pause = RunUntil([&] {
            const int end = view.visibleRegion().boundingRect().right() + 1;
            return klipra.GetWaveContext()->GetFinishedColumns() >=
                   std::min(end, klipra.GetImageSize().width);
        });
        view.display();
        std::printf("view painted after a change to zoom %3d       %8.2f ms (longest pause %.2f)\n",
                    factor, Milliseconds(timer), std::max(change, pause));
    }
}

/// Tells how long a step of a slider takes until the list of quiet places is what it has to be, and
/// painted.
void MeasureSlider(QWidget& window) {
    window.findChild<QAction*>(QStringLiteral("QuietListMenu"))->trigger();
    const auto* const count = window.findChild<QLabel*>(QStringLiteral("quietCount"));
    RunUntil([&] { return count->text().endsWith(QStringLiteral("か所")); });
    auto* const slider = window.findChild<QSlider*>(QStringLiteral("quietSeconds"));
    constexpr int kSteps = 10;
    double longest = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        QElapsedTimer step;
        step.start();
        slider->setValue(slider->value() - 1);
        QCoreApplication::processEvents();
        longest = std::max(longest, Milliseconds(step));
    }
    std::printf("step of a slider until listed, longest        %8.2f ms (%s)\n", longest,
                qPrintable(count->text()));
    window.findChild<QAction*>(QStringLiteral("QuietListMenu"))->trigger();
}

/// Removes the middle of the file, as the menu does, and tells how long that took and for how long
/// the window did not answer meanwhile.
void MeasureRemoval(KlipraMac& klipra) {
    for (const bool isStart : {true, false}) {
        klipra.SetCurrentPosition(klipra.length / 100 * (isStart ? 49 : 51));
        isStart ? klipra.SetStartPosition() : klipra.SetEndPosition();
    }
    qint64 longest = 0;
    QElapsedTimer all;
    QElapsedTimer beat;
    QTimer heart;
    heart.callOnTimeout([&] { longest = std::max(longest, beat.nsecsElapsed()), beat.start(); });
    heart.start(0);
    all.start();
    beat.start();
    const bool isCut = klipra.Cut(false);
    longest = std::max(longest, beat.nsecsElapsed());
    std::printf("removal of a fiftieth %-22s %10.2f ms (longest pause %.2f)\n",
                isCut ? "" : "failed", Milliseconds(all),
                static_cast<double>(longest) * kMillisecondsANanosecond);
}

/// Mean and longest repaint of the strip, in milliseconds.
std::pair<double, double> MeasureRepaints(WaveView& view) {
    constexpr int kRepaints = 200;
    qint64 sum = 0;
    qint64 longest = 0;
    QElapsedTimer timer;
    for (int i = 0; i < kRepaints; ++i) {
        timer.start();
        view.display();
        const qint64 elapsed = timer.nsecsElapsed();
        sum += elapsed;
        longest = std::max(longest, elapsed);
    }
    return {static_cast<double>(sum) * kMillisecondsANanosecond / kRepaints,
            static_cast<double>(longest) * kMillisecondsANanosecond};
}

} // namespace

// Opens a file as the program does, and tells how quickly its window answers while the waveform is
// painted, how soon it shows another zoom, how long a search, a step of a slider and a repaint at
// the largest zoom take, and what the window costs at rest.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: klipra-window FILE\n", stderr);
        return 2;
    }
    int programNameOnly = 1;
    const QApplication application(programNameOnly, argv);
    PrepareApplication();
    AppDelegate delegate;
    delegate.applicationDidFinishLaunching({argv[0], argv[1]});
    KlipraMac* const klipra = delegate.GetKlipra();
    if (klipra == nullptr || klipra->channel == 0) {
        return 1;
    }
    RunUntil([calls = 0]() mutable { return ++calls > 3; }); // the window comes up
    const auto isComplete = [&] {
        return klipra->GetWaveContext()->GetFinishedColumns() == klipra->GetImageSize().width;
    };
    std::printf("longest pause while the waveform is painted  %8.2f ms\n", RunUntil(isComplete));

    auto* const view = delegate.GetWindow()->findChild<WaveView*>();
    MeasureZoomChanges(*klipra, *view);
    RunUntil(isComplete);
    QElapsedTimer search;
    search.start();
    const int places = klipra->SearchSceanChange();
    std::printf("search with all levels known, %6d places    %8.2f ms\n", places,
                Milliseconds(search));
    MeasureSlider(*delegate.GetWindow());

    klipra->Zoom(klipra->maxZoom);
    klipra->SetStartPosition();
    klipra->SetCurrentPosition(klipra->length / 1000); // seen, and painted soon
    klipra->SetEndPosition();
    RunUntil([&] { return klipra->GetWaveContext()->GetFinishedColumns() > 2000; });
    const auto [mean, longest] = MeasureRepaints(*view);
    std::printf("repaint at zoom %3d, mean                     %8.2f ms (at most %.0f)\n"
                "repaint at zoom %3d, longest                  %8.2f ms\n",
                klipra->maxZoom, mean, kRepaintBound, klipra->maxZoom, longest);

    klipra->Zoom(1);
    RunUntil(isComplete);
    constexpr int kSettle = 1000; // milliseconds
    constexpr int kRest = 5000;
    Idle(kSettle);
    const double before = ProcessorMilliseconds();
    Idle(kRest);
    std::printf("processor time of %d s at rest                 %8.2f ms\n", kRest / 1000,
                ProcessorMilliseconds() - before);
    MeasureRemoval(*klipra);
    delegate.applicationWillTerminate();
    return mean <= kRepaintBound ? 0 : 1;
}
