"""What bench/compare measures: the program's work, its peers on the same work, and the bounds.

A new row is an entry of WORKS: a function that makes a Work for a Bench.
"""

from dataclasses import dataclass
from pathlib import Path

import long_recordings

TEN_MINUTES = 600
HOUR_OF_WAV_BYTES = 3600 * 44100 * 4
MEMORY_BOUND_MB = 20


@dataclass(frozen=True)
class Peer:
    """Another program on the same work, or on work of the same size."""

    name: str
    command: list
    at_most: float | None = None  # bound of klipra-cli's time over this one's
    same_result: bool = True  # writes as much as klipra-cli does, give or take a frame or a header


@dataclass(frozen=True)
class Work:
    """A row of the comparison. Every command writes the same file, anew in each run."""

    command: list
    result: Path | None  # none where nothing is written
    result_copy: Path | None  # our result of the warm-up, for peers that copy the same bytes
    peers: list
    program: Path = Path("klipra-cli")  # to be named in the table
    memory_bound_mb: float = MEMORY_BOUND_MB


@dataclass(frozen=True)
class Recording:
    path: Path
    seconds: int
    bounded: bool  # the bounds of time hold for its format

    def bound(self, ratio):
        return ratio if self.bounded else None

    def middle(self):
        """All but ten minutes at each end, in seconds."""
        return TEN_MINUTES, self.seconds - TEN_MINUTES

    def half_time(self):
        """The ten minutes after the half, in seconds."""
        return self.seconds // 2, self.seconds // 2 + TEN_MINUTES


@dataclass(frozen=True)
class Bench:
    program: Path
    directory: Path  # where recordings are built and results written

    def cbr(self):
        path = long_recordings.mp3(self.directory, "cbr.mp3", ["--cbr", "-b", "128"], False)
        return Recording(path, long_recordings.HOURS * 3600, bounded=True)

    def vbr(self):
        path = long_recordings.mp3(self.directory, "vbr.mp3", ["-V", "4"], True)
        return Recording(path, long_recordings.HOURS * 3600, bounded=True)

    def wav(self):
        path = long_recordings.wav(self.directory, "pcm.wav")
        return Recording(path, long_recordings.wav_seconds(path), bounded=False)

    def recorders_wav(self):
        path = long_recordings.recorders_wav(self.directory, "recorder.wav")
        return Recording(path, self.wav().seconds, bounded=False)

    def hour_of_mp3(self):
        options = ["--cbr", "-b", "128"]
        return long_recordings.mp3(self.directory, "hour.mp3", options, False, hours=1)

    def hour_of_wav(self):
        return long_recordings.wav(self.directory, "hour.wav", HOUR_OF_WAV_BYTES)

    def edit(self, operation, recording, span):
        """The program's command, the file that it writes and where a copy of that is kept."""
        result = self.directory / f"result{recording.path.suffix}"
        result_copy = self.directory / f"result-copy{recording.path.suffix}"
        return [self.program, operation, recording.path, *span, result], result, result_copy


def copies(source, result, at_most):
    """Copying the same bytes: with the promise that klipra-cli gives, to have them on the disk when
    it ends, and without."""
    durable = ["sh", "-c", 'cp "$0" "$1" && sync "$1"', source, result]
    return [Peer("cp && sync", durable, at_most), Peer("cp", ["cp", source, result])]


def extract(bench, recording):
    """Keeps all but ten minutes at each end."""
    start, end = recording.middle()
    command, result, result_copy = bench.edit("extract", recording, (start, end))
    source = ["-ss", start, "-to", end, "-i", recording.path]
    peers = [
        *copies(result_copy, result, recording.bound(2)),
        Peer("ffmpeg -c copy", ffmpeg(source, result), recording.bound(1 / 3)),
    ]
    if recording.path.suffix == ".mp3":
        peers.append(Peer("mp3splt", mp3splt(recording.path, start, end, result)))
    return Work(command, result, result_copy, peers)


def finish(bench, recording):
    """The same with its joins and its header made true."""
    command, result, result_copy = bench.edit("extract", recording, recording.middle())
    peers = copies(result_copy, result, recording.bound(2))
    return Work([*command, "--finish"], result, result_copy, peers)


def extract_whole(bench, recording):
    """The same from a WAV whose chunks are all kept and corrected."""
    command, result, result_copy = bench.edit("extract", recording, recording.middle())
    return Work(command, result, result_copy, copies(result_copy, result, 1.3))


def cut_ten_minutes(bench, recording):
    """Takes ten minutes out of the middle: nearly everything is written, and where no header tells
    the number of frames they are counted first."""
    command, result, result_copy = bench.edit("cut", recording, recording.half_time())
    peers = [
        Peer("cp", ["cp", result_copy, result]),
        join_pieces(bench, recording, recording.half_time(), result),
    ]
    return Work(command, result, result_copy, peers)


def cut(bench, recording):
    """Leaves only ten minutes at each end. Little is written, but every frame of an MP3 between
    them has to be found, one after the other: a copy of all that is walked through is the bound."""
    command, result, result_copy = bench.edit("cut", recording, recording.middle())
    peers = [
        Peer("cp", ["cp", result_copy, result]),
        join_pieces(bench, recording, recording.middle(), result),
    ]
    if recording.path.suffix == ".mp3":
        copy_all = ["cp", recording.path, result]
        bound = recording.bound(2)
        peers.insert(0, Peer("cp of the source", copy_all, bound, same_result=False))
    return Work(command, result, result_copy, peers)


def join_pieces(bench, recording, cut_span, result):
    """ffmpeg joining the two pieces that a cut leaves. mp3splt cannot write two pieces as one."""
    start, end = cut_span
    pieces = bench.directory / f"pieces-{recording.path.stem}-{start}.ffconcat"
    pieces.write_text(
        "ffconcat version 1.0\n"
        f"file '{recording.path}'\noutpoint {start}\n"
        f"file '{recording.path}'\ninpoint {end}\n"
    )
    source = ["-f", "concat", "-safe", "0", "-i", pieces]
    return Peer("ffmpeg -c copy", ffmpeg(source, result), recording.bound(1 / 3))


def scenes(bench, path, cores, mpg123_bound):
    """Finds the quiet places on so many cores. mpg123 decodes and does nothing with it."""
    on_cores = use_cores(cores)
    silence = ["-af", "silencedetect=noise=0.001:d=0.2", "-f", "null", "-"]
    peers = [
        Peer("mpg123 -t", [*on_cores, "mpg123", "-q", "-t", path], mpg123_bound),
        Peer("silencedetect", [*on_cores, "ffmpeg", "-v", "error", "-nostdin", "-i", path, *silence]),
        Peer("mp3splt -s -P", [*on_cores, "mp3splt", "-Q", "-s", "-P", path]),
    ]
    return Work([*on_cores, bench.program, "scenes", path], None, None, peers)


def open_stream(bench, recording):
    """Opens a stream and knows its exact length, twice: the second time it is known already."""
    program = bench.program.parent / "klipra-open-stream"
    result = bench.directory / "result.mp3"
    peers = [Peer("cp", ["cp", recording.path, result], 0.75, same_result=False)]
    return Work([program, recording.path], result, None, peers, program=program)


def use_cores(count):
    return ["taskset", "-c", f"0-{count - 1}"]


def wave(bench, path, cores, mpg123_bound=None):
    """Draws the waveform on so many cores. mpg123 decodes an MP3 and does nothing with it."""
    result = bench.directory / "result.png"
    on_cores = use_cores(cores)
    draw = ["-filter_complex", "showwavespic=s=1000x201", "-frames:v", 1, result]
    showwavespic = [*on_cores, "ffmpeg", "-v", "error", "-nostdin", "-y", "-i", path, *draw]
    peers = [Peer("showwavespic", showwavespic, same_result=False)]
    if mpg123_bound is not None:
        decode = [*on_cores, "mpg123", "-q", "-t", path]
        peers.insert(0, Peer("mpg123 -t", decode, mpg123_bound, same_result=False))
    command = [*on_cores, bench.program, "wave", path, result]
    return Work(command, result, bench.directory / "result-copy.png", peers)


def ffmpeg(source, result):
    return ["ffmpeg", "-v", "error", "-nostdin", "-y", *source, "-c", "copy", result]


def mp3splt(source, start, end, result):
    """mp3splt writes times as minutes.seconds and adds the extension itself."""
    span = [f"{seconds // 60}.{seconds % 60:02}" for seconds in (start, end)]
    return ["mp3splt", "-Q", "-d", result.parent, "-o", result.stem, source, *span]


WORKS = {
    "cbr extract": lambda bench: extract(bench, bench.cbr()),
    "cbr finish": lambda bench: finish(bench, bench.cbr()),
    "cbr cut": lambda bench: cut(bench, bench.cbr()),
    "cbr cut 10 min": lambda bench: cut_ten_minutes(bench, bench.cbr()),
    "vbr extract": lambda bench: extract(bench, bench.vbr()),
    "vbr finish": lambda bench: finish(bench, bench.vbr()),
    "vbr cut": lambda bench: cut(bench, bench.vbr()),
    "vbr cut 10 min": lambda bench: cut_ten_minutes(bench, bench.vbr()),
    "wav extract": lambda bench: extract(bench, bench.wav()),
    "whole wav extract": lambda bench: extract_whole(bench, bench.recorders_wav()),
    "wav cut": lambda bench: cut(bench, bench.wav()),
    "wav cut 10 min": lambda bench: cut_ten_minutes(bench, bench.wav()),
    "cbr open": lambda bench: open_stream(bench, bench.cbr()),
    "vbr open": lambda bench: open_stream(bench, bench.vbr()),
    "scenes 2 cores": lambda bench: scenes(bench, bench.hour_of_mp3(), 2, 0.65),
    "scenes 1 core": lambda bench: scenes(bench, bench.hour_of_mp3(), 1, 1.05),
    "mp3 wave 2 cores": lambda bench: wave(bench, bench.hour_of_mp3(), 2, 0.65),
    "mp3 wave 1 core": lambda bench: wave(bench, bench.hour_of_mp3(), 1, 1.05),
    "wav wave 2 cores": lambda bench: wave(bench, bench.hour_of_wav(), 2),
}
