#pragma once

#include <string>
#include <vector>

/// Why a cut failed. Each is a text of its own in every language that the program speaks.
enum class CutReason {
    None,
    SourceUnreadable,   ///< cannot be opened or read; has an error number where one is known
    SourceChanged,      ///< another program changed or replaced it while it was cut
    SourceEndsInFrame,  ///< its last MPEG frame is cut short, and lies in the range
    NoFrame,            ///< no MPEG audio frame in it
    DamagedTag,         ///< a tag that cannot be measured
    NotWAV,             ///< no RIFF file of the form WAVE
    FormatNotFirst,     ///< a WAV that does not begin with its format
    DamagedWAV,         ///< a WAV whose format makes no sense
    NoData,             ///< a WAV that ends before its samples
    TooManyChunks,      ///< before the samples of a WAV
    NotPCM,             ///< samples of another format than the cutter takes
    CompressedWAV,      ///< samples of a format that nobody here can cut
    NoSamples,          ///< a WAV without any
    NoAudioInRange,     ///< the range lies behind the audio
    NothingLeft,        ///< everything is cut out
    ResultTooLarge,     ///< for the sizes in a WAV file
    OutputNotCreatable, ///< has an error number
    OutputNotWritable,  ///< has an error number
    DiskFull,           ///< or the person's share of it is used up
    EditAltered,        ///< an edit's file is not of its source: another program altered either
    Cancelled,          ///< by whoever installed a CutProgress
    OutOfMemory,
};

/// What kept a cut from being written.
struct CutProblem {
    CutReason reason = CutReason::None;
    std::string path;    ///< the file at fault, as the cutter was given it: its source or an output
    int errorNumber = 0; ///< of the C library; 0 where the reason says all

    friend bool operator==(const CutProblem&, const CutProblem&) = default;
};

/// What the last cut failed for; the reason is None after one that succeeded. Stands there also
/// when the MPEG parser has shown its own message. To be read when the cut has returned.
const CutProblem& CutFailure();

/// What is wrong, in English and in words, to be put behind the name of the file at fault: "cannot
/// be read: Input/output error". Empty for None.
std::string DescribeFailure(const CutProblem& problem);

/// The same for a mere reason.
std::string DescribeFailure(CutReason reason);

/// Whether an output is at fault, and not the source.
bool IsAboutOutput(CutReason reason);

/// What a cut did that was not asked for, or found to be other than the file says.
enum class CutWarning {
    LastFrameLeftOut, ///< the source's last MPEG frame is cut short and was left out
    FrameCountWrong,  ///< the VBR header counts other frames than there are
    FormatChanges,    ///< frames of another version, layer, rate or number of channels follow
};

/// What the last cut warns of, each kind once, in the order of the list above; empty after one that
/// failed.
const std::vector<CutWarning>& CutWarnings();

/// A warning in English, to be put behind the name of the source.
std::string DescribeWarning(CutWarning warning);
