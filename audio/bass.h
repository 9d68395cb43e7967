#pragma once

#include <cstdint>

/// The audio library: plays, decodes and measures MP3 and WAV files behind a C call interface.
///
/// Sample data are 16-bit signed, interleaved, at the file's own sampling rate and channel count. A
/// position is a byte offset into that decoded data: sample frame x channels x 2. Every length is
/// exact from the moment a stream is open, and the data at a position are the same bytes however
/// one got there.
///
/// Every call may come from any thread. A call that fails changes nothing and answers what its own
/// comment says; handle 0 and handles that were freed fail on every call. Nothing is thrown.
///
/// KLIPRA_DECODE_THREADS in the environment (1 to 64) sets how many threads decode ahead for each
/// decoding stream instead of one per processor, at most 16; the decoded bytes do not depend on it.

using BOOL = int;
using DWORD = std::uint32_t;
using QWORD = std::uint64_t;
using HSTREAM = DWORD; ///< a stream opened with BASS_StreamCreateFile; 0 is none
using HMUSIC = DWORD;  ///< a stream opened with BASS_MusicLoad; 0 is none
using HSYNC = DWORD;   ///< a registered sync; 0 is none

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

/// The upper 16 bits of BASS_GetVersion: version 2.4.
inline constexpr DWORD BASSVERSION = 0x204;

// Flags of BASS_StreamCreateFile and BASS_MusicLoad.
inline constexpr DWORD BASS_STREAM_DECODE = 0x200000; ///< decoded on request, cannot be played
inline constexpr DWORD BASS_MUSIC_DECODE = BASS_STREAM_DECODE; ///< the same for a module
inline constexpr DWORD BASS_MUSIC_RAMPS = 0x400;     ///< smooth changes of volume in a module
inline constexpr DWORD BASS_MUSIC_POSRESET = 0x8000; ///< no note sounds on after a seek
inline constexpr DWORD BASS_MUSIC_PRESCAN = 0x20000; ///< measure a module when it is opened

// Modes of a position.
inline constexpr DWORD BASS_POS_BYTE = 0;          ///< in bytes of decoded data
inline constexpr DWORD BASS_POS_SCAN = 0x40000000; ///< flag: complete the seek information

inline constexpr DWORD BASS_SYNC_END = 2; ///< the last sample was heard

inline constexpr DWORD BASS_LEVEL_STEREO = 2; ///< two levels, left then right

inline constexpr DWORD BASS_ATTRIB_SCANINFO = 10; ///< seek information, an opaque block

// Answers of BASS_ChannelIsActive.
inline constexpr DWORD BASS_ACTIVE_STOPPED = 0; ///< not playing, or decoded to the end
inline constexpr DWORD BASS_ACTIVE_PLAYING = 1; ///< playing, or not yet decoded to the end

/// A part of a file that could not be had.
struct BASS_READFAILURE {
    QWORD position;   ///< from here on sound is missing, in bytes of decoded data
    QWORD fileOffset; ///< of the first byte of the file that could not be read
    DWORD error;      ///< the system's error number (errno); 0: the file has become shorter
};

/// Called on a thread of the library, the one that feeds the stream: it should return soon.
/// @param handle   the sync
/// @param channel  the stream that it was registered on
/// @param data     0
/// @param user     the pointer given to BASS_ChannelSetSync
using SYNCPROC = void(HSYNC handle, DWORD channel, DWORD data, void* user);

#define BASS_API __attribute__((visibility("default")))

extern "C" {

/// The library's version: 2.4 in the upper 16 bits, the revision in the lower.
BASS_API DWORD BASS_GetVersion();

/// Opens the audio output. Streams can be opened, decoded and measured without it.
/// @param device  -1, the default device; no other can be chosen
/// @param freq    rate in Hz to try the device with; a stream plays at its own rate
/// @param flags   0
/// @param win     not used, nor is clsid
/// @return FALSE when there is no device to play on, or the parameters are wrong. Streams then play
///         into silence at the right pace. Calling it again tries again.
BASS_API BOOL BASS_Init(int device, DWORD freq, DWORD flags, void* win, const void* clsid);

/// Whether what plays is heard.
/// @return FALSE where there is no device, and from when the system has lost it until a stream that
///         is played afterwards finds one again
BASS_API BOOL BASS_IsOutputAudible();

/// Frees every stream and closes the output.
/// @return FALSE when BASS_Init was not called since the last time
BASS_API BOOL BASS_Free();

/// Opens a file, WAV or MPEG audio by its content. The frames of an MPEG file are all indexed, so
/// that a large file takes as long as reading it does; the index is kept, and opening the file
/// again is immediate as long as it has not changed.
///
/// MPEG: no frame is trimmed; a Xing, Info or VBRI frame is not decoded; frames of another version,
/// layer or sampling rate than the first one's, and anything between frames, are skipped; the
/// stream ends where 32 KiB hold no frame. Frames with another channel count than the first one's
/// are converted to it. A frame that cannot be decoded is silent, and so is what an opened file no
/// longer holds; BASS_ChannelGetReadFailure tells of the latter.
///
/// @param mem     FALSE: streams are opened from files only
/// @param file    path, as the file system takes it
/// @param offset  0, and so is length: the whole file
/// @param flags   0 for a stream to play, BASS_STREAM_DECODE for one to read and measure
/// @return 0 when the file cannot be read, is not a regular file or holds no audio; see
///         BASS_GetOpenFailure
BASS_API HSTREAM BASS_StreamCreateFile(BOOL mem, const void* file, QWORD offset, QWORD length,
                                       DWORD flags);

/// Why the calling thread's last BASS_StreamCreateFile answered 0, where that is not for what the
/// file holds: it cannot be opened or read, or the system has no more memory, files or threads.
/// @param failure  the reason; its position is 0
/// @return FALSE, and failure is untouched, when that call succeeded or the file holds no audio
BASS_API BOOL BASS_GetOpenFailure(BASS_READFAILURE* failure);

/// Opens a music module. No module format is supported: always 0, whatever the parameters.
BASS_API HMUSIC BASS_MusicLoad(BOOL mem, const void* file, QWORD offset, DWORD length, DWORD flags,
                               DWORD freq);

/// Stops and frees a stream. When it returns, no sync of the stream is running and none will run;
/// it waits for one that is, except when called from it. Syncs of two streams must therefore not
/// free one another's stream: each could wait for the other.
/// @return FALSE for an unknown handle
BASS_API BOOL BASS_StreamFree(HSTREAM handle);

/// Plays from the current position, from the beginning when that is the end.
/// @param restart  TRUE: from the beginning
/// @return FALSE for a decoding stream, or when no thread can be started. A stream that is playing
///         goes on.
BASS_API BOOL BASS_ChannelPlay(DWORD handle, BOOL restart);

/// Stops playing; the position stays. A stream that is not playing stays as it is, which is no
/// error.
/// @return FALSE for a decoding stream
BASS_API BOOL BASS_ChannelStop(DWORD handle);

/// Whether a stream to play is playing, or whether a decoding stream has not ended: it ends with
/// the level of which the end of the data left less than the whole length.
/// @return BASS_ACTIVE_PLAYING or BASS_ACTIVE_STOPPED, the latter for an unknown handle too
BASS_API DWORD BASS_ChannelIsActive(DWORD handle);

/// Registers a callback. Each time the stream has played to its end, every registered callback is
/// called once, in the order of registration, the stream having stopped. Those that have not begun
/// when the stream is played again are left out.
/// @param type   BASS_SYNC_END
/// @param param  not used
/// @param proc   may make any call, also BASS_StreamFree of its own stream
/// @return 0 for another type, no callback or a decoding stream
BASS_API HSYNC BASS_ChannelSetSync(DWORD handle, DWORD type, QWORD param, SYNCPROC* proc,
                                   void* user);

/// Length of the decoded data in bytes.
/// @param mode  BASS_POS_BYTE
/// @return all bits set on failure
BASS_API QWORD BASS_ChannelGetLength(DWORD handle, DWORD mode);

/// Current position in bytes; of a playing stream what is heard now.
/// @param mode  BASS_POS_BYTE
/// @return all bits set on failure
BASS_API QWORD BASS_ChannelGetPosition(DWORD handle, DWORD mode);

/// Moves to a position; a playing stream plays on from there.
/// @param pos   0 to the length inclusive, in bytes; rounded down to a sample frame
/// @param mode  BASS_POS_BYTE; with BASS_POS_SCAN and pos all bits set nothing moves: the seek
///              information is complete from the start; if a measurement left no more than
///              two seconds of the end, their levels become known
/// @return FALSE beyond the length or for another mode
BASS_API BOOL BASS_ChannelSetPosition(DWORD handle, QWORD pos, DWORD mode);

/// Seconds that a byte count lasts, which need not be whole sample frames.
/// @return a negative number on failure
BASS_API double BASS_ChannelBytes2Seconds(DWORD handle, QWORD pos);

/// Byte count of the whole sample frames in so many seconds. A millionth of a sample frame is
/// allowed for rounding, so that a position converted to seconds and back is itself.
/// @return all bits set on failure, also for a negative time or one that no count can hold
BASS_API QWORD BASS_ChannelSeconds2Bytes(DWORD handle, double pos);

/// Measures and consumes the next stretch of a decoding stream: the largest absolute sample /
/// 32768, 0 to 1, of the left (even) and right (odd) channels; mono gives both.
///
/// With T the sum in 64-bit floating point of the lengths asked for since the stream was opened or
/// positioned, the stretch ends at sample frame floor(T x rate + 0.5) after that point, so
/// roundings do not add up. A stretch cut short by the end is measured as far as it goes. With it,
/// or when nothing is left, the stream becomes BASS_ACTIVE_STOPPED until it is positioned anew.
/// @param levels  two values, left and right
/// @param length  seconds, more than 0, at most 1
/// @param flags   BASS_LEVEL_STEREO
/// @return FALSE when nothing was left to measure, and for a stream to play
BASS_API BOOL BASS_ChannelGetLevelEx(DWORD handle, float* levels, float length, DWORD flags);

/// How much of a decoding stream, from its beginning, has levels that are known by now: whoever
/// decodes a file to measure it leaves its levels to all who measure it after him, as long as it
/// has not changed. A measurement there decodes next to nothing; one that reaches what another
/// stream is measuring waits for that. It waits for nothing itself.
///
/// Levels are not kept of files of more than 83 hours, nor of compressed WAVs.
/// @return bytes; 0 where no levels are kept, and for a stream to play; all bits set on failure
BASS_API QWORD BASS_ChannelGetLevelsKnown(DWORD handle);

/// Whether streams that are opened from now on keep levels, at first they do. A program that
/// measures a file but once saves the memory: up to 60 MB a file, 160 MB in all.
BASS_API void BASS_KeepLevels(BOOL keep);

/// Whether sound was missing that should have been decoded: bytes that could not be read, a file
/// that has become shorter since it was opened, no memory to decode. Silence, or fewer frames, then
/// stand in for it. A file that promises more than it holds when it is opened is none of this.
///
/// Every stream of a file tells of what any stream of the same file met while it was open itself,
/// so that the one to play can be asked about a scan. It waits for nothing.
/// @param failure  of several places the earliest
/// @return FALSE, and failure is untouched, when nothing was missing, and for an unknown handle
BASS_API BOOL BASS_ChannelGetReadFailure(DWORD handle, BASS_READFAILURE* failure);

/// Size of an attribute's value, or a copy of it.
/// @param attrib  BASS_ATTRIB_SCANINFO: the index of an MPEG file's frames; a WAV has none
/// @param value   where to, or null to ask for the size
/// @param size    bytes there
/// @return the value's size in bytes; 0 where there is none, and when it does not fit
BASS_API DWORD BASS_ChannelGetAttributeEx(DWORD handle, DWORD attrib, void* value, DWORD size);

/// Gives a stream the seek information that another stream of the same file gathered. Each stream
/// has all of it already, so that nothing is taken over.
/// @return FALSE unless it is that of the same file in the same state
BASS_API BOOL BASS_ChannelSetAttributeEx(DWORD handle, DWORD attrib, void* value, DWORD size);

} // extern "C"
