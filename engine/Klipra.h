#pragma once

#include "engine/CutPositions.h"
#include "engine/EditFailure.h"
#include "engine/FormatType.h"
#include "engine/HistoryItem.h"
#include "engine/SIZE.h"
#include "finish/EditedAudio.h"
#include "finish/FinishNote.h"
#include "platform/FileReplacement.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The editing engine: one opened audio file, what is heard of it, and every state that edits have
/// made of it.
///
/// Plays, seeks, cuts into new files, searches for quiet places and keeps the history. Whatever
/// needs a desktop (controls, dialogs, temporary paths, the wave image, the history tree) is a hook
/// that an adaptor implements; the engine knows no window. The opened file is only ever read.
///
/// Positions are byte offsets into the decoded stream of the current entry's file, as the audio
/// library counts them. Used on the main thread, but for the members that say otherwise.
class Klipra {
public:
    /// Everything at its default; does not touch the audio library.
    Klipra() = default;
    Klipra(const Klipra&) = delete;
    Klipra& operator=(const Klipra&) = delete;

    /// Closes the audio. A class whose hooks use members of its own calls CloseBASS before they go:
    /// until then the end of playback may still call EnablePlayStopButton.
    virtual ~Klipra();

    // The hooks, in the order of their slots.

    /// Starts the periodic redraw. Called after playback has started and after every edit.
    virtual void EnableTimer() = 0;
    /// Stops the periodic redraw. Not called by the engine.
    virtual void DisableTimer() = 0;
    /// Rebuilds the wave image of the current entry and starts its scan; not called by the engine.
    /// @return false without a current entry, or when a running scan could not be stopped
    virtual bool CreateWaveImage() = 0;
    /// Sets `zoom` to a factor from 1 and lays the wave image out anew, at the same factor too.
    virtual void Zoom(int factor) = 0;
    /// Cuts a range of a file, or everything but that range, to another file: a new file is written
    /// and takes the target's place when it is complete. On failure the target is as it was.
    ///
    /// Refused are the source itself and the opened file as the target. The temporary file of an
    /// entry is not: an edit that bears the label of one which it replaces writes over its file.
    /// @param keep    true: the range; false: everything but the range
    /// @param source  a file of the format `formatType`
    /// @param start   position in the playback stream, as is end; in either order
    /// @return whether the target was written
    virtual bool CutExec(bool keep, const std::string& source, const std::string& target,
                         unsigned long long start, unsigned long long end);
    /// The current entry's label: its name up to the first blank. Empty without a current entry.
    virtual std::string GetCurrentHistoryItemName() = 0;
    /// Copies a file; the engine has made sure that no entry uses the second path.
    /// @return whether it was copied
    virtual bool CopyFile(const std::string& from, const std::string& to) = 0;
    /// Appends an entry, makes it current and unsets the cut positions; the playback stream stays.
    /// An override calls this one first, then files the entry in its tree.
    /// @param parentId  the entry that this one was made from
    virtual void PushHistory(const std::string& name, const std::string& path, bool saved,
                             int parentId);
    /// Removes every child of the current entry from the history tree; `histories` keeps them.
    virtual void DeleteAllChildren() = 0;
    /// The path of a temporary file, always the same one for a suffix, with the extension of
    /// `formatType`.
    /// @param suffix  an entry's label without its first two characters, such as 1 or 2-1
    virtual std::string MakeTargetPath(const std::string& suffix) = 0;
    /// Asks for a file to write to; empty when the person cancels.
    virtual std::string QueryOutputPath() = 0;
    /// Enables the zoom commands that `maxZoom` allows.
    virtual void EnableZoomMenu() = 0;
    /// Enables the edits that `cutPositions` allow.
    virtual void EnableCutButton() = 0;
    /// Stores the flag in `playing` and switches the controls. Also called on a thread of the audio
    /// library, when playback has reached the end.
    virtual void EnablePlayStopButton(bool isPlaying) = 0;
    /// Enables the save command as the number of entries allows.
    virtual void EnableSaveButton() = 0;
    /// Enables the moves between scene changes as `sceneChangePositions` allow.
    virtual void EnableSceneChangeMoveButton() = 0;
    /// Tells the person about a failure; returns when they have seen it.
    /// @param code  kErrorLoad, kErrorSave
    virtual void ErrorMsg(int code) = 0;

    static constexpr int kErrorLoad = 1; ///< the audio of an entry could not be loaded
    static constexpr int kErrorSave = 2; ///< an edit or a save failed

    /// Writes what edits have made of the opened file anew, from that file itself: joins that
    /// nobody hears, headers that tell the truth (see FinishEditedMP3 and FinishEditedWAV).
    /// Otherwise as CutExec, but for good.
    virtual bool FinishExec(const EditedAudio& audio, const std::string& target);

    // History. The engine's own PushHistory is among the hooks.

    /// The entry with an id, or null. Valid until the next entry is appended.
    HistoryItem* FindHistoryItem(int id);
    /// Stores the cut positions into the current entry; nothing where there is none.
    void UpdateCurrentHistory();
    /// Makes another entry current and loads it; the cut positions of the entry that is left are
    /// not stored. Nothing for the current entry. An unknown id loads nothing, but clears the scene
    /// changes all the same.
    void SelectHistory(int id);
    /// Whether every entry is saved; true when there is none.
    bool IsSavedAll() const;

    // Playback.

    /// Opens the audio output, for a window handle or null.
    /// @return whether there is one; without it streams play into silence
    bool OpenBASS(void* window);
    /// Stops and frees the playback stream, if there is one, and releases the audio library. After
    /// it no callback of the library runs.
    void CloseBASS();
    /// Opens an entry's file as the playback stream, makes the entry current and goes to zoom 1.
    /// @return false when the file cannot be opened, which has been shown: the entry is current
    ///         then, without a stream. True for an unknown id, which changes nothing.
    [[nodiscard]] bool LoadPlayFile(int id);
    [[nodiscard]] bool LoadPlayFile(); ///< the same for the current entry
    void PlayStart();                  ///< plays from the current position
    void PlayStop();                   ///< the position stays; nothing without a stream
    void PlayOrStop();                 ///< stops when `playing` is set, starts otherwise
    /// Called by the audio library, on a thread of its own, when playback has reached the end.
    /// @param user  the engine
    static void PlayEndProc(std::uint32_t sync, std::uint32_t stream, std::uint32_t data,
                            void* user);

    // Positions.

    /// In bytes; all bits set without a stream.
    unsigned long long GetCurrentPosition() const;
    /// @return false, and nothing moves, beyond the stream's end
    bool SetCurrentPosition(unsigned long long position);
    double GetCurrentPositionInSeconds() const; ///< negative without a stream
    /// Moves to a time; one that is not inside the stream means its last position.
    bool SetCurrentPositionInSeconds(double seconds);
    /// Truncated to whole milliseconds.
    long long PositionToMilliSeconds(unsigned long long position) const;
    /// Where the sample frame that a position falls into begins; all bits set without a stream.
    unsigned long long SampleFrameAt(unsigned long long position) const;
    unsigned long long SetStartPosition(); ///< to the current position, which is returned
    unsigned long long SetEndPosition();   ///< to the current position, which is returned
    /// All bits set when unset, as is the end.
    unsigned long long GetStartPosition() const { return cutPositions.start; }
    unsigned long long GetEndPosition() const { return cutPositions.end; }
    /// Changes the zoom factor by a delta, within 1 and `maxZoom`.
    void ZoomDelta(int delta);

    // Edits. Each makes new entries under the current one, the last of which is current and loaded
    // afterwards; false means a failure, which has been shown unless it was cancelled, or that
    // there was nothing to do. While one is under way the others do nothing.

    /// Fails where one of the cut positions is unset, as SaveRange does.
    /// @param keep  true: an entry that holds only the range of the cut positions; false: one that
    ///              holds everything else
    bool Cut(bool keep);
    /// Splits at the cut positions that lie inside the stream; pieces written before a failure
    /// stay, the last of them is current then, and the stream is still the parent's. One that is
    /// cancelled leaves no piece behind.
    bool Split();
    /// Makes an entry as an earlier session has made it; loads the parent unless its stream is
    /// there, and makes the new entry current, but does not load it. Where something is missing or
    /// the edit fails, nothing is made; but for a file that cannot be loaded that is not shown.
    /// @param marks  the parent's cut positions when it was edited
    /// @param range  of the edit; see HistoryItem
    /// @param piece  what the label adds to the parent's
    bool RepeatEdit(int parentId, EditKind edit, const CutPositions& marks,
                    const CutPositions& range, int piece);
    /// Writes the range of the cut positions to a file that the person names, or to the one that a
    /// link named leads to. A file that an entry uses is refused, and a link that leads nowhere.
    void SaveRange();
    /// Why the opened file cannot be cut, though it may be played; None where it can.
    CutReason WhyUncuttable() const;
    /// Whether an entry has this file, under whatever name: it must not be saved over.
    bool IsUsedByHistory(const std::string& path) const;
    /// Copies the current entry's file to one that the person names, likewise, and marks the entry
    /// saved.
    /// @param path  out: the file named, empty when the person cancels
    bool Save(std::string& path);
    /// As Save and SaveRange, but by FinishExec. What is saved begins and ends at the very marks.
    bool SaveFinished(std::string& path);
    void SaveRangeFinished();
    /// What the last of them could not do as it should; empty when it has not written anything.
    const std::vector<FinishNote>& GetFinishNotes() const { return m_finishNotes; }
    /// Why the last of these failed; no reason (None) when it did not, or for something else than
    /// its files.
    const EditFailure& GetLastFailure() const { return m_lastFailure; }
    /// What the last SaveRange or Save has written, as the person named it; empty when it has not.
    const std::string& GetLastOutput() const { return m_lastOutput; }
    bool IsBusy() const { return m_isBusy; } ///< an edit or a save is under way

    // Parts of a path, searched for from its end; the whole path where the character is absent.

    static std::string ExtractFolder(const std::string& path);   ///< what is before the last "/"
    static std::string ExtractFilename(const std::string& path); ///< what is after the last "/"
    /// What is after the last ".", even in a folder's name.
    static std::string ExtractExtension(const std::string& path);

    // Scene changes and navigation.

    /// Finds the quiet stretches of the current entry's file: runs of 20 ms blocks below
    /// `thresholdLevel` on both sides for at least `thresholdTime`. Stops playback and moves to the
    /// first position found. Decodes the whole file before it returns.
    ///
    /// The spelling of the name is fixed.
    /// @return the number of positions; 0 also when the file cannot be opened
    int SearchSceanChange();
    /// How far the search has come, in bytes of `length`. From any thread.
    unsigned long long GetSearchPosition() const { return m_searchPosition; }

    bool MovePositionNext();  ///< to the next scene change; false when there is none
    bool MovePositionBack();  ///< to the scene change before; false when there is none
    bool MovePositionTop();   ///< to the beginning; always true
    bool MovePositionLast();  ///< to the last position, which is read back; always true
    void MovePositionLeft();  ///< by `moveAmount`, not beyond the beginning
    void MovePositionRight(); ///< by `moveAmount`, not beyond `length`
    /// To pixel x + y x image width / 200 of the wave image, in 32-bit integers.
    void MovePositionRelative(int x, int y);

    // The settings.

    double moveAmount = 1.0;       ///< seconds; a negative one exchanges left and right
    float thresholdLevel = 0.001F; ///< 0 to 1; a block below it is quiet
    float thresholdTime = 0.2F;    ///< seconds that a quiet stretch lasts at least

    int maxZoom = 1; ///< set with the wave image; may be 0 for a very short file
    int zoom = 1;    ///< the factor by which the wave image is enlarged, from 1

    /// Playback is running. Main and audio library threads -> main: the control state alone, no
    /// other data hang on it.
    std::atomic<bool> playing{false};

    // The stream that is loaded.
    unsigned long long length = 0;                        ///< bytes
    float bytesPerMilliSecond = 0.0F;                     ///< 100 for a stream that lasts no time
    unsigned int bytesPerPixel = 0;                       ///< of the whole wave image; set with it
    std::vector<unsigned long long> sceneChangePositions; ///< ascending

    std::vector<HistoryItem> histories; ///< in order of creation; entries are never removed
    FormatType formatType{};            ///< set once, by the adaptor's constructor

    /// Handle of the playback stream; 0 is none. Main -> scan thread, which hands its seek
    /// information to whichever stream is there when it ends.
    std::atomic<std::uint32_t> channel{0};

    SIZE waveSize; ///< of the whole wave image
    SIZE drawSize; ///< of the part that is visible, which is the whole at zoom 1

    /// Main -> scan thread: stop early. Cleared by the scan; publishes no other data, joining the
    /// thread does.
    std::atomic<bool> abortScan{false};

    CutPositions cutPositions;           ///< set by the person, in the current entry's stream
    unsigned long long lastPosition = 0; ///< last position with a sample
    int currentHistoryId = -1;           ///< -1 before the first entry
    int lastHistoryId = 0;               ///< the last id handed out

protected:
    /// Cuts straight into a file of the caller's that holds nothing yet; as CutExec otherwise.
    [[nodiscard]] bool CutToFile(bool keep, const std::string& source, const std::string& output,
                                 unsigned long long start, unsigned long long end) const;

    /// For CopyFile and the like: what the last work on a file failed for.
    EditFailure m_lastFailure;
    bool m_isBusy = false; ///< main thread: an edit is under way

private:
    using WriteFile = std::function<bool(const std::string& path)>;

    bool HasRoom(double bytes, const std::string& target);
    bool WriteReplacing(const std::string& source, const std::string& target, Lasting lasting,
                        double bytes, const WriteFile& write);
    CutRange ToSeconds(const CutPositions& range) const;
    FrameRuns RunsOfEdit(EditKind edit, const CutPositions& range, int parentId);
    bool Finish(const HistoryItem& item, std::optional<CutRange> range, const std::string& target);
    using WriteItem = std::function<bool(const HistoryItem& item, const std::string& target)>;
    void SaveRangeBy(const WriteItem& write);
    bool SaveBy(std::string& path, const WriteItem& write);
    void ReportFailure();
    bool ExecuteEdit(EditKind edit, const std::string& source, const std::string& target,
                     const CutPositions& range);
    void AbandonSplit(int parentId);
    void PushEdit(EditKind edit, const CutPositions& range, const std::string& name,
                  const std::string& path, int parentId);
    std::string ResolveOutput(const std::string& path);
    bool HasRange() const {
        return cutPositions.start != kUnsetPosition && cutPositions.end != kUnsetPosition;
    }
    HistoryItem* FindCurrentHistoryItem() { return FindHistoryItem(currentHistoryId); }
    std::vector<unsigned long long> SplitPoints() const;
    void FinishEdit();
    void MoveBy(double seconds);

    std::string m_lastOutput;
    bool m_isForGood = false;         // what CutExec writes is to outlast a power cut
    int m_loadedId = 0;               // the entry whose stream is there
    EditKind m_edit = EditKind::None; // under way
    CutPositions m_editRange;         // of the entry that it makes next
    FrameRuns m_editRuns;             // likewise
    std::vector<FinishNote> m_finishNotes;

    // main -> any thread: how far the search is; nothing else hangs on it (relaxed)
    std::atomic<unsigned long long> m_searchPosition{0};
};
