#pragma once

#include "app/AppDelegate.h"
#include "app/Language.h"
#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <QAbstractButton>
#include <QAction>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

/// Lets the program go on until something has come true.
inline void Await(const std::function<bool()>& condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 30'000));
}

/// Five seconds at 16 bytes a millisecond, quiet from 1.5 to 2 and from 3 to 3.5 seconds.
inline Samples Song() {
    Samples samples(40'000);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const bool isQuiet = (i >= 12'000 && i < 16'000) || (i >= 24'000 && i < 28'000);
        samples[i] = static_cast<std::int16_t>(isQuiet ? 0 : (i % 251 + 1) * 64 + i / 251);
    }
    return samples;
}

/// The program, which has opened a real file and scanned it. Its desktop answers as it is told.
struct Program {
    explicit Program(const std::string& bytes = Wav(Song()), const std::string& name = "a song.wav")
        : path(folder.Write(name, bytes)) {
        SpeakLanguage(Language::Japanese);
        delegate.applicationDidFinishLaunching({"klipra", path});
        // Before the window is active, no key is a command.
        EXPECT_TRUE(QTest::qWaitForWindowActive(delegate.GetWindow()));
        AwaitScan();
    }

    KlipraMac& Engine() { return *delegate.GetKlipra(); }
    template <typename Type = QWidget>
    Type* Find(const QString& name) {
        return delegate.GetWindow()->findChild<Type*>(name);
    }
    void AwaitScan() {
        const auto& wave = Engine().GetWaveContext();
        Await([&] { return !wave || wave->GetFinishedColumns() == wave->GetSize().width; });
    }

    /// Presses a button, or chooses a menu item.
    void Trigger(const QString& name) {
        auto* const button = Find<QAbstractButton>(name);
        button != nullptr ? button->click() : Find<QAction>(name)->trigger();
    }
    /// The same with the cut positions set.
    void Trigger(const QString& name, unsigned long long start, unsigned long long end) {
        Engine().cutPositions = {start, end};
        delegate.EnableCutButton();
        Trigger(name);
    }

    /// Position, length, start and end in milliseconds, -1 where unset; the entry's name.
    std::string State() {
        std::string state;
        for (const auto bytes : {Engine().GetCurrentPosition(), Engine().length,
                                 Engine().GetStartPosition(), Engine().GetEndPosition()}) {
            const long long time = Engine().PositionToMilliSeconds(bytes);
            state += std::to_string(bytes == kUnsetPosition ? -1 : time) + " ";
        }
        return state + Engine().FindHistoryItem(Engine().currentHistoryId)->name;
    }

    /// The commands that are enabled, among those that are not always.
    std::string Enabled() {
        std::string names;
        for (const QString name : {"Play", "Stop", "CutDel", "CutExt", "Split", "SaveRange", "Save",
                                   "ScBack", "ScNext", "CutUndo"}) {
            const auto* const button = Find<QAbstractButton>(name + "Button");
            const auto* const item = Find<QAction>(name + "Menu");
            const bool isEnabled = button != nullptr ? button->isEnabled() : item->isEnabled();
            EXPECT_TRUE(item == nullptr || item->isEnabled() == isEnabled) << name.toStdString();
            const auto* const finished = Find<QAction>(name + "FinishedMenu");
            EXPECT_TRUE(finished == nullptr || finished->isEnabled() == isEnabled);
            names += isEnabled ? name.toStdString() + " " : "";
        }
        return names;
    }

    TemporaryFolder folder;
    std::string path;
    AlertRecorder desktop;
    AppDelegate delegate;
};
