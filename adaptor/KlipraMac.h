#pragma once

#include "adaptor/HistoryTreeItem.h"
#include "adaptor/KlipraMacDelegate.h"
#include "adaptor/LevelColors.h"
#include "adaptor/PeakScan.h"
#include "adaptor/TemporaryFiles.h"
#include "adaptor/WaveContext.h"
#include "engine/Klipra.h"
#include "platform/PageArray.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

class Session;
struct SessionRecord;

/// The engine on a desktop: its hooks filled in with temporary files, the desktop's alerts and save
/// panel, the wave image and the history tree. What concerns controls goes on to a delegate.
///
/// The wave image is painted by a thread of its own, the peak scan, from the left to the right
/// while others already draw what is finished. It reads the engine and the image, so it is stopped
/// and joined before these change or go away. Everything else happens on the main thread, save
/// EnablePlayStopButton.
class KlipraMac : public Klipra, private PeakSink {
public:
    /// What setNeedRefresh is told when a scan begins, and as the last thing when it ends.
    static constexpr int kRefreshWhileScanning = 2147483647;
    static constexpr int kRefreshAfterScan = 2;

    static constexpr int kWaveHeight = 201;         ///< pixels
    static constexpr int kMaxZoom = 100;            ///< of any file
    static constexpr int kMaxWaveWidth = 1'000'000; ///< pixels: an image of 800 MB

    /// Whether streams are played on the default audio output or into silence, as they are where
    /// there is no output.
    enum class Sound { Audible, Silent };

    /// @param delegate  not owned; outlives this object
    /// @param path      the opened file
    KlipraMac(KlipraMacDelegate* delegate, FormatType format, const std::string& path,
              Sound sound = Sound::Audible);
    KlipraMac(const KlipraMac&) = delete;
    KlipraMac& operator=(const KlipraMac&) = delete;

    /// Stops the scan, removes the temporary files of this process and closes the audio.
    ~KlipraMac() override;

    // Files.

    /// Removes the temporary files of this process; always true. The spelling of the name is fixed.
    bool DeleteTempraryFiles() const;
    std::string MakeTargetPath(const std::string& suffix) override;
    /// Asks on the desktop, beginning in the folder of the opened file; proposes a name made of
    /// that file's and the current label, such as song-1-2.mp3, that no file there has yet.
    std::string QueryOutputPath() override;
    /// As the engine does it, but its bytes on a thread of its own; see
    /// KlipraMacDelegate::AwaitWork.
    bool CutExec(bool keep, const std::string& source, const std::string& target,
                 unsigned long long start, unsigned long long end) override;
    /// An existing second file is replaced at once and whole; on a thread of its own as well.
    bool CopyFile(const std::string& from, const std::string& to) override;
    /// On a thread of its own, likewise.
    bool FinishExec(const EditedAudio& audio, const std::string& target) override;
    void ErrorMsg(int code) override;
    /// Does something on a thread of its own, see KlipraMacDelegate::AwaitWork; what it has to say
    /// to the person is shown when it is done.
    /// @return what it returns
    bool DoWork(const std::function<bool()>& work);

    // Controls: stored where the engine has a field for it, then passed on to the delegate.

    void EnableTimer() override { appDelegate->enableTimer(); }
    void DisableTimer() override { appDelegate->disableTimer(); }
    void Zoom(int factor) override;
    void EnableZoomMenu() override { appDelegate->enableZoomMenu(); }
    void EnableCutButton() override { appDelegate->EnableCutButton(); }
    void EnablePlayStopButton(bool isPlaying) override;
    void EnableSaveButton() override;
    void EnableSceneChangeMoveButton() override { appDelegate->EnableSceneChangeMoveButton(); }

    /// Whether playback is heard; without an output, or once it is lost, it goes on in silence, at
    /// the same pace.
    static bool HasOutput();

    /// How many places the cut positions name: 0, 1 (one is unset, or both are the same) or 2.
    int GetDefinedCutPositionCount() const;

    // The wave image. Column x shows the peaks of the `bytesPerPixel` bytes of decoded audio from
    // x * `bytesPerPixel` on, left upwards and right downwards from the centre row, which stays
    // black, as does what the audio does not reach.

    void SetWaveSize(int width) { waveSize = {width, kWaveHeight}; } ///< of the next image
    void SetDrawSize(int width) { drawSize = {width, kWaveHeight}; } ///< of its visible part

    /// Replaces the image by an empty one of the wave size, sets `bytesPerPixel` and `maxZoom`, and
    /// starts its scan; a running scan is stopped first. A file that cannot be decoded leaves the
    /// image black.
    /// @return false without a current entry. Also for a wave size that no image can have (its
    ///         width is 1 to kMaxWaveWidth) and when memory runs out: there is no image then.
    bool CreateWaveImage() override;

    /// The image, to be drawn from on the main thread; none before the first. It stays where it is
    /// until the next CreateWaveImage.
    const std::optional<WaveContext>& GetWaveContext() const { return waveContext; }
    SIZE GetImageSize() const { return imageSize; }

    // The history tree. The root is the opened file; under each entry are those that the latest
    // edit of it has made.

    /// Files the entry under its parent, or under the root when the tree does not hold that.
    void PushHistory(const std::string& name, const std::string& path, bool saved,
                     int parentId) override;
    void DeleteAllChildren() override;
    std::string GetCurrentHistoryItemName() override;
    /// The node of an entry, or null. Valid until the tree changes.
    HistoryTreeItem* FindHistoryTreeItem(int id) { return FindHistoryTreeItem(&historyRoot, id); }
    /// The same in a node's subtree.
    static HistoryTreeItem* FindHistoryTreeItem(HistoryTreeItem* node, int id);
    /// After a save: adds the saved file's name to the current entry's, and marks it saved.
    void UpdateHistoryItem(const std::string& path);

    // The session: what outlives this process, should it not end as it should.

    /// Once the opened file is loaded: keeps a journal of every edit from now on, clears away what
    /// dead sessions of this user have left, and offers the edits of one that died while it had
    /// this file open. Without it there is no journal.
    /// @param folder  of the journals; see SessionJournal::Folder
    /// @return false when edits were to be restored, and not all could be; those before the one
    ///         that failed are there, and GetLastFailure tells why
    [[nodiscard]] bool BeginSession(const std::string& folder);
    /// The person ends the session: its edits are not to be offered again.
    void EndSession();

private:
    bool Restore();
    SessionRecord Record();
    void WriteJournal();
    void TellThatEditsDoNotSurvive();

    std::string ProposeOutputName(const std::string& folder);
    const char* GetExtension() const;

    void DeleteDroppedFiles();

    void DropWaveImage();
    bool AllocateImage();
    void ComputeScale();

    // Scan thread.
    void AddColumn(float left, float right) override;
    void FinishColumns() override;
    void ScanHasEnded() override;

    // Main thread. The scan reads these, which do not change while it runs, and paints by way of
    // waveContext, which publishes the columns.
    SIZE imageSize;
    std::uint32_t scanStream = 0; // the scan's own, until that has been joined
    std::optional<WaveContext> waveContext;
    KlipraMacDelegate* const appDelegate;
    const std::string filePath; // the opened file
    LevelColors levelColors{};
    PageArray<std::uint32_t> wavePixels; // what waveContext paints into

    // Main thread alone.
    std::thread scanThread;
    HistoryTreeItem historyRoot;
    std::vector<int> m_droppedIds; // entries that have left the tree, and whose files may go
    const TemporaryFiles m_temporaryFiles;
    std::unique_ptr<Session> m_session; // none where edits are not kept
    bool m_isRestoring = false;
    bool m_isJournalCurrent = true; // false: the tree has lost entries that it still has
    bool m_hasToldOfJournal = false;
    PeakScan m_scan{{scanThread, scanStream, abortScan, channel}, *this}; // last: uses the others
};
