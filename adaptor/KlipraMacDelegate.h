#pragma once

#include "adaptor/BackgroundWork.h"

/// What the adaptor tells whoever shows the engine's state: a window, a terminal, a test.
///
/// Whoever does not show something leaves that member as it is, doing nothing. Called on the main
/// thread, but for the two members that say otherwise.
class KlipraMacDelegate {
public:
    virtual ~KlipraMacDelegate() = default;

    /// Starts the timer of the periodic redraw, afresh when it runs.
    virtual void enableTimer() {}
    virtual void disableTimer() {}

    /// Lays the waveform out anew for a zoom factor, also when that stays the same: sets the
    /// adaptor's wave size to the factor x the visible width, and has it create the wave image.
    virtual void Zoom(int /*factor*/) {}

    /// Enables the zoom commands that `maxZoom` allows.
    virtual void enableZoomMenu() {}
    /// Enables the edits that the number of defined cut positions allows.
    virtual void EnableCutButton() {}
    /// Switches the controls between playing and stopped; `playing` is set already. Main thread, or
    /// a thread of the audio library when playback has reached the end.
    virtual void EnablePlayStopButton(bool /*isPlaying*/) {}
    /// Enables the save command when there is more than one entry.
    virtual void EnableSaveButton() {}
    /// Enables the moves between scene changes as `sceneChangePositions` allow.
    virtual void EnableSceneChangeMoveButton() {}

    /// Sets how many ticks of the timer still redraw the waveform while nothing plays. Main thread,
    /// or the peak scan's when that ends; the last thing the scan does.
    virtual void setNeedRefresh(int /*count*/) {}

    /// Returns when the work is done, which writes what the engine is asked for at this moment. A
    /// window stays alive meanwhile, but gives the engine no other command that edits or selects:
    /// the engine would not follow it. Whoever cancels the work waits for its end all the same.
    virtual void AwaitWork(BackgroundWork& work) { work.Wait(); }

    /// The edits of an earlier session are being restored: so many of them are done, in AwaitWork
    /// the next one is.
    virtual void restoringEdits(int /*done*/, int /*count*/) {}
    /// The journal cannot be written: should the program not end as it should, edits are lost. Told
    /// once.
    virtual void editsDoNotSurvive() {}

    /// Shows the history tree anew and selects an entry.
    /// @param id  of the entry; one that is not shown, such as -1, leaves the selection alone
    virtual void refreshHistoryOutlineView(int /*id*/) {}
};
