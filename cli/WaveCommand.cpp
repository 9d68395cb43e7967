#include "adaptor/KlipraMac.h"
#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/MP3Info.h"
#include "cli/Operands.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "cli/WriteOutputs.h"
#include "cli/WritePng.h"
#include "places/PrintableText.h"

#include <algorithm>
#include <atomic>
#include <strings.h>
#include <thread>

namespace {

constexpr int kDefaultWidth = 1000;
constexpr int kMostWidth = KlipraMac::kMaxWaveWidth / KlipraMac::kMaxZoom;

/// The adaptor without a window: lays the waveform out for a visible width, and waits for its scan.
class HeadlessAdaptor : public KlipraMacDelegate {
public:
    HeadlessAdaptor(FormatType format, const std::string& path, int visibleWidth)
        : m_visibleWidth(visibleWidth), m_adaptor(this, format, path, KlipraMac::Sound::Silent) {
        m_adaptor.SetDrawSize(visibleWidth);
        m_adaptor.PushHistory("# " + Klipra::ExtractFilename(path), path, true, 0);
    }

    /// @return false after a failure, which has been reported
    bool Load() {
        const Progress progress([&] { return "Reading " + Printable(GetPath()); });
        return m_adaptor.LoadPlayFile();
    }

    /// Zooms and scans to the end.
    /// @return false after a failure, which has been reported
    bool Scan(int factor) {
        const int most = std::max(m_adaptor.maxZoom, 1);
        if (factor > most) {
            ReportError(GetPath(), "too short for zoom " + std::to_string(factor) +
                                       ": at this width at most " + std::to_string(most));
            return false;
        }
        if (factor != m_adaptor.zoom) {
            m_adaptor.Zoom(factor);
        }
        if (!m_adaptor.GetWaveContext()) {
            ReportError("out of memory");
            return false;
        }
        const Progress progress([&] { return DescribeScan(); });
        m_needRefresh.wait(KlipraMac::kRefreshWhileScanning);
        if (!m_isScanned) {
            ReportScanFailure(GetPath());
            return false;
        }
        return ReportReadFailure(GetPath(), m_adaptor.channel);
    }

    const WaveContext& GetImage() const { return *m_adaptor.GetWaveContext(); }

    void Zoom(int factor) override {
        m_adaptor.SetWaveSize(factor * m_visibleWidth);
        m_adaptor.CreateWaveImage();
    }
    void setNeedRefresh(int count) override {
        // A scan that ends on the thread that starts it has not begun.
        m_isScanned = std::this_thread::get_id() != m_mainThread;
        m_needRefresh = count;
        m_needRefresh.notify_all();
    }

private:
    /// Says in English what is wrong with the file.
    class EnglishAdaptor : public KlipraMac {
    public:
        using KlipraMac::KlipraMac;
        void ErrorMsg(int /*code*/) override { ReportLoadFailure(histories.front().path); }
    };

    const std::string& GetPath() const { return m_adaptor.histories.front().path; }

    std::string DescribeScan() const {
        const int percent = GetImage().GetFinishedColumns() * 100 / GetImage().GetSize().width;
        return "Measuring " + Printable(GetPath()) + ": " + std::to_string(percent) + " %";
    }

    const int m_visibleWidth;
    const std::thread::id m_mainThread = std::this_thread::get_id();
    std::atomic<bool> m_isScanned{false}; // scan -> main: before m_needRefresh
    std::atomic<int> m_needRefresh{0};    // scan -> main: that the scan has ended
    EnglishAdaptor m_adaptor;             // last: its scan uses the others
};

} // namespace

int RunWave(const Arguments& arguments) {
    const std::string& source = arguments.operands[0];
    const std::string& output = arguments.operands[1];
    const std::optional<FormatType> format = SourceFormat(source);
    if (!format) {
        return kFailed;
    }
    const int width = CountOption(arguments, Option::Width, kDefaultWidth, kMostWidth);
    const int zoom = CountOption(arguments, Option::Zoom, 1, KlipraMac::kMaxZoom);
    if (strcasecmp(Klipra::ExtractExtension(output).c_str(), "png") != 0) {
        throw UsageError(Quoted(output) + " needs the extension .png");
    }
    HeadlessAdaptor adaptor(*format, source, width);
    if (!adaptor.Load() || !adaptor.Scan(zoom)) {
        return kFailed;
    }
    const auto write = [&](const std::vector<std::string>& paths) {
        const std::error_code error = WritePng(adaptor.GetImage(), paths.front());
        if (error) {
            ReportError(output, "cannot be written: " + error.message());
        }
        return !error;
    };
    if (!WriteOutputs(source, {output}, arguments.Has(Option::NoReplace), write)) {
        return kFailed;
    }
    if (format == FormatType::MP3) {
        ReportOddities(source);
    }
    return kDone;
}
