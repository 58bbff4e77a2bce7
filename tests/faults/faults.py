"""Faults from outside: faults.py ZELVO SHIM [--long]

Fails the n-th open, write, flush, close and allocation of a run, for n = 1 to their count (--long) or for
some of them; ends it at random times; closes its standard streams; limits its memory and its files. Every
fault has to end in a status and a line that says what is wrong, soon, with whole stages on the disk."""
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ZELVO, SHIM = (str(Path(p).resolve()) for p in sys.argv[1:3])
LONG = "--long" in sys.argv
FILES = [f"{kind}0987.txt" for kind in ("rxn", "axf", "def", "sec", "str", "ibr", "ebr", "rot", "csc")]
SOON = 120  # seconds
NO_MEMORY = (71, 254)
MODEL = """ngird
1
lgbr
96
secdim
60 72 84 12 144 8
webthick
1
96 .5
botfthick
1
96 1
tfthick
1
96 1.5
internal_brace
1
48 1 5
top_lateral
2
1 0 48 4
2 48 96 4
support
2
0
96
studs
1
96 12 3
pour_seq
{stages}
1
96
{rows}
0
buckle
{check} 3
1
solver
1 1e-4
end
"""
failures = []


def model(check, stages):
    return MODEL.format(stages=stages, check="T" if check else "F", rows="\n".join([".1 .001 1", "9 2 2"][:stages]))


def fail(what, run):
    failures.append(what)
    print(f"FAILED {what}: status {run.returncode}\n{run.stderr.decode()[-500:]}", flush=True)


class Run:
    """One run in a folder of its own; files holds what it left."""

    def __init__(self, text, fault=None, limits=(), closed=(), end_after=None, end_at=None, how=signal.SIGKILL):
        with tempfile.TemporaryDirectory() as folder:
            mark = Path(folder) / "mark"
            Path(folder, "zvinp.txt").write_text(text)
            env = dict(os.environ)
            if fault:
                env |= {"LD_PRELOAD": SHIM, "ZELVO_FAULT": fault, "ZELVO_FAULT_MARK": str(mark)}

            def prepare():
                for kind, bytes_ in limits:
                    resource.setrlimit(kind, (bytes_, bytes_))
                for stream in closed:
                    os.close(stream)

            child = subprocess.Popen([ZELVO], cwd=folder, env=env, stdin=subprocess.DEVNULL,
                                     stdout=subprocess.PIPE, stderr=subprocess.PIPE, preexec_fn=prepare)
            seen = b""
            while end_at and end_at not in seen and (line := child.stdout.readline()):
                seen += line
            if end_at:
                child.send_signal(how)
            try:
                self.stdout, self.stderr = child.communicate(timeout=end_after or SOON)
            except subprocess.TimeoutExpired:
                child.send_signal(how if end_after else signal.SIGKILL)
                self.stdout, self.stderr = child.communicate()
                if not end_after:
                    self.stderr += b"it hangs"
            self.returncode = child.returncode
            self.struck = mark.exists()
            self.count = int(mark.read_text() or 0) if self.struck else 0
            self.files = {f: Path(folder, f).read_bytes() for f in FILES if Path(folder, f).exists()}


def whole_stages(run, first, both):
    """Each file holds no stage, the first, or both."""
    return all(content in (b"", first.files[f], both.files[f]) for f, content in run.files.items())


def holds(run, first):
    return all(run.files[f].startswith(content) for f, content in first.files.items())


def beginnings(run, both):
    return all(both.files[f].startswith(content) for f, content in run.files.items())


def told(run, statuses):
    return run.returncode in statuses and run.stderr.startswith(b"zelvo: ") or run.returncode in NO_MEMORY and \
        b"\nzelvo: no memory for " in b"\n" + run.stderr


def numbers(count, most):
    """All, or those at both ends and some between."""
    if LONG or count <= most:
        return range(1, count + 1)
    return sorted({*range(1, 6), *range(count - 5, count + 1), *range(1, count + 1, count // most)})


def fail_calls(check):
    text, first, both = model(check, 2), Run(model(check, 1)), Run(model(check, 2))
    assert first.returncode == both.returncode == 0, both.stderr
    for kind, statuses, most in (("open", (74,), 99), ("write", (74,), 40), ("flush", (74,), 40), ("close", (74,), 99),
                                 ("allocate", NO_MEMORY, 60)):
        count = Run(text, f"{kind}:0").count
        assert count >= 9, f"{kind}: only {count} calls are seen"

        def judge(n):
            what = f"{kind} {n} of {count}, check {check}"
            run = Run(text, f"{kind}:{n}")
            if not run.struck:
                fail(what + " was never made", run)
            # The input is read to its end before it is closed, and the C library itself allocates what it can do
            # without.
            harmless = run.returncode == 0 and run.files == both.files and kind in ("close", "allocate")
            # To open a file the C library allocates, too.
            opening = kind == "allocate" and told(run, (74,)) and b"Cannot allocate memory" in run.stderr
            if not (harmless or opening or told(run, statuses)):
                fail(what, run)
            begun = b"Start of Analysis Number 2" in run.stdout
            if not whole_stages(run, first, both) or begun and not holds(run, first):
                fail(what + " leaves parts of stages, or none", run)
            return harmless

        with ThreadPoolExecutor(os.cpu_count()) as pool:
            harmless = sum(pool.map(judge, numbers(count, most)))
        print(f"check {check}: {kind}, {len(numbers(count, most))} of {count} calls failed, {harmless} without harm", flush=True)


def end_at_random(check, times):
    text, first, both = model(check, 2), Run(model(check, 1)), Run(model(check, 2))
    chance = random.Random(7)
    for _ in range(times):
        how = chance.choice((signal.SIGKILL, signal.SIGTERM, signal.SIGINT))
        run = Run(text, end_after=chance.uniform(0.001, 0.4), how=how)
        if run.returncode not in (0, -how):
            fail(f"ended by {how.name}", run)
        if not beginnings(run, both):
            fail(f"ended by {how.name}: the files are no beginnings", run)
        if b"Start of Analysis Number 2" in run.stdout and not holds(run, first):
            fail(f"ended by {how.name}: stage 1 is not whole", run)
    run = Run(text, end_at=b"Start of Analysis Number 2")
    if not (run.returncode == -signal.SIGKILL and holds(run, first) and beginnings(run, both)):
        fail("ended where stage 2 begins", run)
    print(f"check {check}: ended {times} times", flush=True)


def close_streams(check):
    text, both = model(check, 2), Run(model(check, 2))
    for closed in ((0,), (1,), (2,), (0, 1), (0, 2), (1, 2), (0, 1, 2)):
        run = Run(text, closed=closed)
        if run.returncode != 0 or run.files != both.files:
            fail(f"streams {closed} closed", run)


def limit(check):
    text, both = model(check, 2), Run(model(check, 2))
    step = 2 if LONG else 16
    for megabytes in range(40, 260, step):
        run = Run(text, limits=[(resource.RLIMIT_AS, megabytes << 20)])
        if run.returncode != 127 and run.returncode != 0 and not told(run, NO_MEMORY):
            fail(f"{megabytes} MB of address space, check {check}", run)
        if not beginnings(run, both):
            fail(f"{megabytes} MB of address space: the files are no beginnings", run)
    largest = max(map(len, both.files.values()))
    for bytes_ in range(0, largest, max(largest // (200 if LONG else 12), 1)):
        run = Run(text, limits=[(resource.RLIMIT_FSIZE, bytes_)])
        if not (told(run, (74,)) and b"File too large" in run.stderr and beginnings(run, both)):
            fail(f"files of {bytes_} bytes at most", run)
    print(f"check {check}: memory and files limited", flush=True)


for with_check in (False, True):
    fail_calls(with_check)
    end_at_random(with_check, 400 if LONG else 12)
    close_streams(with_check)
    limit(with_check)
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
