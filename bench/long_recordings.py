"""Recordings of many hours, made in seconds by repeating the encoded frames of the demo clip.

The clip's first frame borrows no bits from an earlier one (it opens an encoder's run), so the
frames decode as they did in the clip wherever the clip begins again.
"""

import itertools
import struct
import subprocess
import wave
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CLIP = ROOT / "demo" / "demo.mp3"

HOURS = 10
WAV_BYTES = 3_000_000_000

# MPEG 1 Layer III, the one kind of frame that the clip is encoded to (ISO/IEC 11172-3, 2.4.2.3).
BITRATES_KBPS = (0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320)
SAMPLE_RATES_HZ = (44100, 48000, 32000)
SAMPLES_PER_FRAME = 1152
HEADER_BYTES = 4
STEREO_SIDE_INFO_BYTES = 32

XING_HAS_FRAMES_BYTES_AND_TABLE = 7
XING_TABLE_SIZE = 100
XING_FRAME_BITRATE_INDEX = 9  # 128 kbit/s: the first size with room for all fields


def mp3(directory, name, lame_options, with_xing_header, hours=HOURS):
    """The path of an MP3 encoded with the given options; built unless it is there."""
    path = directory / name
    if not path.exists():
        frames = split_frames(encode_clip(directory, lame_options))
        print(f"Building {path.relative_to(ROOT)}")
        write_whole(path, mp3_pieces(frames, with_xing_header, hours))
    return path


def wav(directory, name, size=WAV_BYTES):
    """The path of a stereo WAV of 16 bits with so many bytes of samples; built unless it is there."""
    path = directory / name
    if not path.exists():
        rate_hz, samples = read_samples(decode_clip(directory))
        print(f"Building {path.relative_to(ROOT)}")
        write_whole(path, wav_pieces(rate_hz, samples, size))
    return path


def recorders_wav(directory, name):
    """The path of the same WAV as a recorder leaves it, with a chunk before its format; built unless
    it is there."""
    path = directory / name
    plain = wav(directory, "pcm.wav")
    if not path.exists():
        print(f"Building {path.relative_to(ROOT)}")
        write_whole(path, with_chunk_first(plain))
    return path


def with_chunk_first(plain):
    chunk = b"JUNK" + (28).to_bytes(4, "little") + bytes(28)
    with plain.open("rb") as source:
        header = source.read(12)
        size = int.from_bytes(header[4:8], "little") + len(chunk)
        yield header[:4] + size.to_bytes(4, "little") + header[8:] + chunk
        while piece := source.read(1 << 20):
            yield piece


def wav_seconds(path):
    """How long a WAV plays, in whole seconds, the last one left out when it is not full."""
    with wave.open(str(path)) as reader:
        return reader.getnframes() // reader.getframerate()


def write_whole(path, pieces):
    """Writes the pieces beside the path first, so that a broken run leaves no half file behind."""
    partial = path.with_suffix(".partial")
    with partial.open("wb") as output:
        for piece in pieces:
            output.write(piece)
    partial.rename(path)


def decode_clip(directory):
    decoded = directory / "clip.wav"
    subprocess.run(["lame", "--quiet", "--decode", CLIP, decoded], check=True)
    return decoded


def encode_clip(directory, lame_options):
    """The clip's frames as lame encodes them, without tags and without a Xing or Info header."""
    decoded = decode_clip(directory)
    encoded = directory / "clip.mp3"
    subprocess.run(["lame", "--quiet", "-t", *lame_options, decoded, encoded], check=True)
    return encoded.read_bytes()


def frame_size(header):
    """Size in bytes of the frame that opens with these four bytes."""
    bits = int.from_bytes(header, "big")
    if bits >> 17 != 0b111_1111_1111_11_01:
        raise ValueError(f"no MPEG 1 Layer III frame header: {header.hex()}")
    bitrate_kbps = BITRATES_KBPS[bits >> 12 & 15]
    sample_rate_hz = SAMPLE_RATES_HZ[bits >> 10 & 3]
    padding = bits >> 9 & 1
    return SAMPLES_PER_FRAME // 8 * bitrate_kbps * 1000 // sample_rate_hz + padding


def split_frames(stream):
    frames = []
    offset = 0
    while offset < len(stream):
        size = frame_size(stream[offset : offset + HEADER_BYTES])
        frames.append(stream[offset : offset + size])
        offset += size
    return frames


def mp3_pieces(clip_frames, with_xing_header, hours):
    """The stream of a file of so many hours, piece by piece."""
    sample_rate_hz = SAMPLE_RATES_HZ[clip_frames[0][2] >> 2 & 3]
    frame_count = hours * 3600 * sample_rate_hz // SAMPLES_PER_FRAME
    repeats, rest = divmod(frame_count, len(clip_frames))
    if with_xing_header:
        sizes = map(len, itertools.islice(itertools.cycle(clip_frames), frame_count))
        yield xing_frame(clip_frames[0][:HEADER_BYTES], list(sizes))
    yield from itertools.repeat(b"".join(clip_frames), repeats)
    yield b"".join(clip_frames[:rest])


def xing_frame(first_header, sizes):
    """The frame in front of a VBR stream that tells its length and where each hundredth begins.

    The frame count leaves this frame out, the byte count takes it in, as encoders write them.
    """
    header = bytearray(first_header)
    header[1] |= 1  # no CRC
    header[2] = XING_FRAME_BITRATE_INDEX << 4 | header[2] & 0x0C  # keep the rate, no padding
    size = frame_size(header)
    byte_count = size + sum(sizes)
    fields = struct.pack(
        ">4sIII", b"Xing", XING_HAS_FRAMES_BYTES_AND_TABLE, len(sizes), byte_count
    )
    content = bytes(header) + bytes(STEREO_SIDE_INFO_BYTES) + fields + seek_table(size, sizes)
    return content.ljust(size, b"\0")


def seek_table(first_offset, sizes):
    """For each hundredth of the playing time, where it begins, in 256ths of the byte count."""
    offsets = list(itertools.accumulate(sizes, initial=first_offset))
    return bytes(
        offsets[len(sizes) * percent // XING_TABLE_SIZE] * 256 // offsets[-1]
        for percent in range(XING_TABLE_SIZE)
    )


def read_samples(path):
    """Sampling rate, and all samples of a stereo WAV of 16 bits."""
    with wave.open(str(path)) as reader:
        assert reader.getnchannels() == 2 and reader.getsampwidth() == 2
        return reader.getframerate(), reader.readframes(reader.getnframes())


def wav_pieces(rate_hz, samples, size):
    """A canonical WAV file of so many bytes of samples, piece by piece."""
    block_align = 4
    yield struct.pack("<4sI4s", b"RIFF", 36 + size, b"WAVE")
    yield struct.pack(
        "<4sIHHIIHH", b"fmt ", 16, 1, 2, rate_hz, rate_hz * block_align, block_align, 16
    )
    yield struct.pack("<4sI", b"data", size)
    repeats, rest = divmod(size, len(samples))
    yield from itertools.repeat(samples, repeats)
    yield samples[:rest]
