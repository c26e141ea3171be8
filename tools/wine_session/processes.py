"""Child processes that never outlive this one."""

import ctypes
import os
import signal
import subprocess
import sys
import time

_libc = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1
_PR_CAPBSET_DROP = 24
_PR_SET_CHILD_SUBREAPER = 36
_CAP_DAC_OVERRIDE = 1


class StartFailure(RuntimeError):
    """A helper program did not come up; the text says which and what it printed."""


def prefer(pid=0):
    """Lets a process (this one: 0), with its threads, go before the machine's other work where that is allowed: when the
    processors are taken, sound has gaps."""
    for thread in os.listdir(f"/proc/{pid}/task") if pid else [0]:
        try:
            os.sched_setscheduler(int(thread), os.SCHED_RR, os.sched_param(1))
        except PermissionError:
            return


def _prepare_child():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)
    prefer()


def start(arguments, env=None, **options):
    """Starts a helper, with precedence, that the kernel ends if this process is killed before it can clean up."""
    return subprocess.Popen(arguments, env=env, preexec_fn=_prepare_child, **options)


def stop(process, limit=3.0):
    """Asks a process to end, insists after `limit` seconds, and collects it."""
    if process is None or process.poll() is not None:
        return
    process.terminate()
    try:
        process.wait(limit)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def unwind_on_signals():
    """Makes Ctrl+C, a plain kill and a closed terminal leave by an exception, so that sessions end what they started."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda received, _: sys.exit(128 + received))


def adopt_orphans():
    """Makes this process the parent of what its children leave behind: Wine's own services detach themselves."""
    _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1)


def obey_file_rights():
    """Makes the rights of files and folders count for everything started from now on, also when it runs as root."""
    if os.geteuid() == 0 and _libc.prctl(_PR_CAPBSET_DROP, _CAP_DAC_OVERRIDE, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "cannot give up root's right to write everywhere")


def children():
    """Process ids of this process's children."""
    with open(f"/proc/self/task/{os.getpid()}/children") as file:
        return [int(pid) for pid in file.read().split()]


def collect_orphans(known, limit=3.0):
    """Ends and collects every child that is not in `known`; returns the ids of those that had to be killed."""
    end = time.monotonic() + limit
    killed = []
    while left := [pid for pid in children() if pid not in known]:
        for pid in left:
            if time.monotonic() > end and pid not in killed:
                os.kill(pid, signal.SIGKILL)
                killed.append(pid)
            try:
                os.waitpid(pid, os.WNOHANG)
            except ChildProcessError:
                pass
        time.sleep(0.01)
    return killed


def wait_until(condition, limit=10.0, what="condition", step=0.02):
    """Polls `condition` until it gives something true, which is returned; raises TimeoutError after `limit` seconds."""
    end = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TimeoutError(f"not within {limit:g} s: {what}")
        time.sleep(step)
